// The digest command.
#include "digest_watches.h"

#include <utility>

#include "commands.h"
#include "driver.h"
#include "model.h"
#include "named.h"
#include "options.h"
#include "result.h"
#include "verb_arguments.h"

namespace shell {

namespace {

using reflection::DigestFunctions;

u8 device_number()
{
    return static_cast<u8>(device.device_id);
}

std::string entry_line(bool as_json, const pd::Digest &digest, const DigestForm &form, u8 *entry)
{
    const std::vector<u64> record = form.unpack(entry);
    Result result{as_json};
    result.text("digest", digest.name).fields("fields", form.fields(), record.data());
    return result.line("{digest}: {fields}");
}

enum : unsigned { on, off, hold };
constexpr std::string_view states[] = {"on", "off", "hold"};

void watch(Session &session, const DigestFunctions &digest, std::optional<unsigned> state)
{
    if (state == off)
        session.digest_watches().remove(digest);
    else
        session.digest_watches().add(digest, state == hold);
}

// The digest that a message is of, and its entries as the chip sends them.
struct Message {
    const DigestFunctions &digest;
    std::vector<u8> entries;
    u32 count = 0;
};

// Entries of one message stand behind each other with colons between them.
struct WholeMessage {
    using Value = Message;
    static void describe(Usage &usage)
    {
        usage.add({"DIGEST"});
        usage.places.push_back({.alternatives = {"FIELDS"}, .repeated = true});
    }
    static Value read(Reading &reading);
};

Message WholeMessage::read(Reading &reading)
{
    Message message{arg::Digest::read(reading), {}};
    Words &words = reading.words;
    const pd::Digest &digest = *message.digest.row;
    const DigestForm form{digest};
    do {
        if (words.peek() == ":")
            words.take();
        Record record = form.new_record();
        Options none;
        take_assignments(words, record, digest.name, none);
        form.pack(record, message.entries);
        ++message.count;
    } while (!words.empty());
    return message;
}

void send(Session &, const Message &message)
{
    expect_success(
        ts_model_digest(device.device_id, message.digest.row->handle, message.entries.data(), message.count));
}

void acknowledge(Session &session, const DigestFunctions &digest)
{
    session.digest_watches().acknowledge(digest);
}

void pending(Session &session, const DigestFunctions &digest)
{
    const u32 count = ts_model_pending_digests(device.device_id, digest.row->handle);
    Result result{session.json()};
    result.text("digest", digest.row->name).number("messages", count);
    session.print(result.line("messages: {messages}"));
}

// The library sets it; only the device tells what it is.
void timeout(Session &session, std::optional<u32> wanted)
{
    if (wanted) {
        session.expect_changes_allowed();
        return expect_success(
            p4_pd_tessel_switch_set_learning_timeout(driver_session, device_number(), *wanted));
    }
    Result result{session.json()};
    result.number("timeout", ts_model_learning_timeout(device.device_id));
    session.print(result.line("timeout: {timeout}"));
}

constexpr std::string_view text =
    R"(  Digests are macLearningDigest with smac, ingL2Domain, ingL2Aintf, and ptpDigest with ingress_mac_tstamp and
  ingL2Aintf. A lone ':' stands between the entries of one message.
)";

constexpr Verb verbs[] = {
    verb<watch, arg::Digest, arg::Optional<arg::Choice<"state", states>>>(
        "digest watch", "prints what comes in and acknowledges it; with hold, only prints")
        .not_in_console("the messages go to the control plane"),
    verb<send, WholeMessage>("digest send", "the chip sends a message"),
    verb<acknowledge, arg::Digest>("digest ack", "acknowledges the messages that are held")
        .not_in_console("the messages go to the control plane"),
    verb<pending, arg::Digest>("digest pending", "how many messages are not acknowledged").reads(),
    verb<timeout, arg::Optional<arg::Number<"N", "timeout">>>(
        "digest timeout", "prints, or sets, how long the chip waits for a message to fill")
        .may_change(),
};

} // namespace

void DigestWatches::add(const DigestFunctions &digest, bool hold)
{
    const auto [known, added] = watches_.try_emplace(&digest, session_, digest);
    const pd_status status = digest.register_callback(driver_session, device_number(), receive,
                                                      reinterpret_cast<pd_word>(&known->second));
    if (status != TS_MODEL_OK && added)
        watches_.erase(known);
    expect_success(status);
    known->second.hold = hold;
}

void DigestWatches::remove(const DigestFunctions &digest)
{
    acknowledge(digest);
    if (watches_.erase(&digest) != 0)
        expect_success(digest.deregister(driver_session, device_number()));
}

void DigestWatches::acknowledge(const DigestFunctions &digest)
{
    const auto known = watches_.find(&digest);
    if (known == watches_.end())
        return;
    for (const pd_word message : std::exchange(known->second.held, {}))
        expect_success(digest.notify_ack(driver_session, message));
}

void DigestWatches::clear()
{
    for (const auto &[digest, watch] : watches_) {
        for (const pd_word message : watch.held)
            digest->notify_ack(driver_session, message);
        digest->deregister(driver_session, device_number());
    }
    watches_.clear();
}

pd_status DigestWatches::receive(pd_sess_hdl sess, void *message, pd_word cookie)
{
    auto &watch = *reinterpret_cast<Watch *>(cookie);
    const auto &news = *static_cast<const ts_model_digest_message *>(message);
    const pd::Digest &digest = *watch.digest.row;
    const u32 entry_bytes = p4_pd_tessel_switch_get_digest_entry_size(digest.name);
    std::vector<u8> entries(news.entries, news.entries + std::size_t{news.count} * entry_bytes);
    for (u32 i = 0; i < news.count; ++i)
        watch.session.print_behind(entry_line(watch.session.json(), digest, watch.form,
                                              entries.data() + std::size_t{i} * entry_bytes));
    const auto word = reinterpret_cast<pd_word>(message);
    if (!watch.hold)
        return watch.digest.notify_ack(sess, word);
    watch.held.push_back(word);
    return TS_MODEL_OK;
}

const Command digest_command{verbs, text, json_option, "messages about packets, such as new stations"};

} // namespace shell
