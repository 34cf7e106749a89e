// The corrupt command: makes what the chip has of an entry depart from what software placed, as a fault
// would.
#include <algorithm>

#include "commands.h"
#include "driver.h"
#include "entry_body.h"
#include "entry_key.h"
#include "images.h"
#include "model.h"
#include "profiles.h"
#include "session.h"
#include "tables.h"

namespace shell {

namespace {

using reflection::TableFunctions;

constexpr std::string_view key_word = "key";
constexpr std::string_view missing_word = "missing";

void corrupt_key(Words &words, const pd::Table &table, const Cell &entry)
{
    Options none;
    Record key{table, KeyOf::entry};
    take_assignments(words, key, table.name, none);
    words.expect_end();
    const KeyImages images = key_images(table, key.data());
    expect_success(ts_model_set_hardware_key(device.device_id, table.handle, entry.find(),
                                             images.value.data(), images.mask.data(),
                                             static_cast<u32>(images.value.size())));
}

void corrupt_reference(Session &session, Words &words, const TableFunctions &table, const Cell &entry)
{
    const reflection::ProfileFunctions &profile = *table.indirect->profile;
    const Kind kind = take_kind(words, {key_word, missing_word});
    const u32 handle = take_object(words, profile, session.names(profile).of(kind));
    words.expect_end();
    const u8 action_kind = kind == Kind::member ? PIPE_ACTION_MEMBER : PIPE_ACTION_GROUP;
    expect_success(ts_model_set_hardware_reference(device.device_id, table.row->handle, entry.find(),
                                                   action_kind, handle));
}

void corrupt_action(Words &words, const TableFunctions &table, const Cell &entry)
{
    const ActionOf use = table.row->key.empty() ? ActionOf::default_entry : ActionOf::entry;
    std::vector<std::string_view> names = action_names(table, use);
    if (std::ranges::find(names, words.peek()) == names.end()) {
        names.insert(names.end(), {key_word, missing_word});
        refuse(words.peek(), {"action or word", table.row->name}, names);
    }
    const pd::Binding &action = *take_action(words, table, use).row;
    Options none;
    Record parameters{*action.action};
    take_assignments(words, parameters, action.action->name, none);
    words.expect_end();
    const std::vector<u8> image = action_image(*action.action, parameters.data());
    expect_success(ts_model_set_hardware_action(device.device_id, table.row->handle, entry.find(),
                                                action.handle, image.data(), static_cast<u32>(image.size())));
}

} // namespace

void run_corrupt(Session &session, Words &words)
{
    const TableFunctions &table = take_table(words);
    Options options;
    const Cell entry{words, table.row->name, &table, options};
    take_colon(words,
               table.indirect ? "a member or group, 'key' or 'missing'" : "an action, 'key' or 'missing'");
    if (words.peek() == key_word) {
        words.take();
        return corrupt_key(words, *table.row, entry);
    }
    if (words.peek() != missing_word)
        return table.indirect ? corrupt_reference(session, words, table, entry)
                              : corrupt_action(words, table, entry);
    words.take();
    words.expect_end();
    expect_success(ts_model_remove_hardware_entry(device.device_id, table.row->handle, entry.find()));
}

} // namespace shell
