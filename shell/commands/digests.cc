// The digest command.
#include "digest_watches.h"

#include <utility>

#include "commands.h"
#include "driver.h"
#include "json.h"
#include "model.h"
#include "named.h"
#include "options.h"
#include "verbs.h"

namespace shell {

namespace {

using reflection::DigestFunctions;
using DigestVerb = void(Session &session, Words &words);

u8 device_number()
{
    return static_cast<u8>(device.device_id);
}

const DigestFunctions &take_digest(Words &words)
{
    return take_named(words, reflection::digests(), "digest");
}

std::string entry_line(bool as_json, const pd::Digest &digest, const DigestForm &form, u8 *entry)
{
    const std::vector<u64> record = form.unpack(entry);
    std::string line;
    if (as_json) {
        Json json{line};
        json.open_object().key("digest").text(digest.name).key("fields");
        append_json(json, form.fields(), record.data());
        json.close_object();
    } else {
        line = std::string{digest.name} + ':';
        append_assignments(line, form.fields(), record.data());
    }
    return line;
}

void watch(Session &session, Words &words)
{
    const DigestFunctions &digest = take_digest(words);
    enum : unsigned { on, off, hold };
    static constexpr std::string_view states[] = {"on", "off", "hold"};
    const unsigned state = words.empty() ? unsigned{on} : choose(words.take(), {"state"}, states);
    words.expect_end();
    if (state == off)
        session.digest_watches().remove(digest);
    else
        session.digest_watches().add(digest, state == hold);
}

// Entries of one message stand behind each other with colons between them.
void send(Session &, Words &words)
{
    const DigestFunctions &digest = take_digest(words);
    const DigestForm form{*digest.row};
    std::vector<u8> entries;
    u32 count = 0;
    do {
        if (words.peek() == ":")
            words.take();
        Record record = form.new_record();
        Options none;
        take_assignments(words, record, digest.row->name, none);
        form.pack(record, entries);
        ++count;
    } while (!words.empty());
    expect_success(ts_model_digest(device.device_id, digest.row->handle, entries.data(), count));
}

void acknowledge(Session &session, Words &words)
{
    const DigestFunctions &digest = take_digest(words);
    words.expect_end();
    session.digest_watches().acknowledge(digest);
}

void pending(Session &session, Words &words)
{
    const DigestFunctions &digest = take_digest(words);
    words.expect_end();
    const u32 count = ts_model_pending_digests(device.device_id, digest.row->handle);
    std::string line = "messages: " + std::to_string(count);
    if (session.json()) {
        line.clear();
        Json{line}
            .open_object()
            .key("digest")
            .text(digest.row->name)
            .key("messages")
            .number(count)
            .close_object();
    }
    session.print(line);
}

// The library sets it; only the device tells what it is.
void timeout(Session &session, Words &words)
{
    if (!words.empty()) {
        const u32 units = parse_u32(words.take(), ~u32{0}, "timeout");
        words.expect_end();
        return expect_success(
            p4_pd_tessel_switch_set_learning_timeout(driver_session, device_number(), units));
    }
    const u32 units = ts_model_learning_timeout(device.device_id);
    std::string line = "timeout: " + std::to_string(units);
    if (session.json()) {
        line.clear();
        Json{line}.open_object().key("timeout").number(units).close_object();
    }
    session.print(line);
}

constexpr Verb<DigestVerb> verbs[] = {
    {"watch", watch}, {"send", send}, {"ack", acknowledge}, {"pending", pending}, {"timeout", timeout}};

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

void run_digest(Session &session, Words &words)
{
    take_verb<DigestVerb>(words, verbs)(session, words);
}

} // namespace shell
