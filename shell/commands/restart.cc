// The restart command: what the library has of members and groups is lost and rebuilt from the driver.
#include <cjson/cJSON.h>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <optional>

#include "commands.h"
#include "driver.h"
#include "model.h"
#include "pd.h"
#include "profiles.h"
#include "result.h"

namespace shell {

namespace {

using Text = std::unique_ptr<char, decltype(&std::free)>;
using Document = std::unique_ptr<cJSON, decltype(&cJSON_Delete)>;

struct Difference {
    std::string path;
    std::string before;
    std::string after;
};

std::string text_of(const cJSON *item)
{
    if (!item)
        return "nothing";
    const std::unique_ptr<char, decltype(&cJSON_free)> text{cJSON_PrintUnformatted(item), &cJSON_free};
    return text.get();
}

// "members", or in an array "[web]" or "[3]": by name, handle or place.
std::string step_to(const cJSON *item, std::size_t index)
{
    if (item->string)
        return item->string;
    for (const char *key : {"name", "handle"})
        if (const cJSON *value = cJSON_GetObjectItemCaseSensitive(item, key))
            return '[' + (cJSON_IsString(value) ? value->valuestring : text_of(value)) + ']';
    return '[' + std::to_string(index) + ']';
}

bool same_value(const cJSON *before, const cJSON *after)
{
    return before->type == after->type && before->valuedouble == after->valuedouble &&
           (!cJSON_IsString(before) || std::strcmp(before->valuestring, after->valuestring) == 0);
}

// The first difference between two documents whose objects have their members in the same order.
std::optional<Difference> first_difference(const cJSON *before, const cJSON *after, const std::string &path)
{
    if (!before || !after || !same_value(before, after))
        return Difference{path, text_of(before), text_of(after)};
    const cJSON *old = before->child;
    const cJSON *now = after->child;
    for (std::size_t i = 0; old || now; ++i) {
        const cJSON *item = old ? old : now;
        const char *dot = item->string && !path.empty() ? "." : "";
        if (auto difference = first_difference(old, now, path + dot + step_to(item, i)))
            return difference;
        old = old->next;
        now = now->next;
    }
    return std::nullopt;
}

Text log()
{
    return {ts_model_log_state(device.device_id), &std::free};
}

Document parse(const Text &text)
{
    return {cJSON_Parse(text.get()), &cJSON_Delete};
}

void print_same(Session &session)
{
    u64 members = 0, groups = 0;
    for (const reflection::ProfileFunctions *profile : reflection::profiles()) {
        members += count_members(*profile);
        groups += count_groups(*profile);
    }
    Result result{session.json()};
    result.flag("same", true).number("members", members).number("groups", groups);
    session.print(
        result.line("the member-selection state came back the same, members: {members}, groups: {groups}"));
}

void print_difference(Session &session, const Difference &difference)
{
    Result result{session.json()};
    result.flag("same", false).text("path", difference.path);
    result.text("before", difference.before).text("after", difference.after);
    session.print(
        result.line("the member-selection state came back different, first at {path}: {before} before, "
                    "{after} after"));
}

// What the driver refuses to rebuild is put back as it was.
void forget_and_rebuild(const Text &before)
{
    expect_success(ts_model_forget_selection(device.device_id));
    const pd_status status =
        p4_pd_tessel_switch_restore_virtual_dev_state(driver_session, device.device_id, 0, 0, 0);
    if (status != TS_MODEL_OK)
        ts_model_restore_state(device.device_id, before.get());
    expect_success(status);
}

void restart(Session &session)
{
    const Text before = log();
    forget_and_rebuild(before);
    if (const auto difference = first_difference(parse(before).get(), parse(log()).get(), ""))
        print_difference(session, *difference);
    else
        print_same(session);
}

constexpr std::string_view text =
    R"(  Logs what the library has of members and groups, forgets it, lets the driver rebuild it as after a restart,
  and compares: tells that it is the same, or the first difference with both values.
)";

constexpr Verb verbs[] = {
    verb<restart>("restart", "loses and rebuilds the member-selection state, and compares")};

} // namespace

const Command restart_command{verbs, text, json_option};

} // namespace shell
