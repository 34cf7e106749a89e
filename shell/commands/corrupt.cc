// The corrupt command: makes what the chip has of an entry depart from what software placed, as a fault
// would.
#include <algorithm>
#include <functional>

#include "commands.h"
#include "driver.h"
#include "entry_body.h"
#include "entry_key.h"
#include "images.h"
#include "model.h"
#include "verb_arguments.h"

namespace shell {

namespace {

using reflection::TableFunctions;

constexpr std::string_view key_word = "key";
constexpr std::string_view missing_word = "missing";

// What is done to the hardware's copy of an entry.
using Corruption = std::function<void(pd_entry_hdl)>;

Corruption take_key(Words &words, const pd::Table &table)
{
    Options none;
    Record key{table, KeyOf::entry};
    take_assignments(words, key, table.name, none);
    return [&table, images = key_images(table, key.data())](pd_entry_hdl entry) {
        expect_success(ts_model_set_hardware_key(device.device_id, table.handle, entry, images.value.data(),
                                                 images.mask.data(), static_cast<u32>(images.value.size())));
    };
}

Corruption take_reference(Session &session, Words &words, const TableFunctions &table)
{
    const reflection::ProfileFunctions &profile = *table.indirect->profile;
    const Kind kind = take_kind(words, {key_word, missing_word});
    const u32 handle = take_object(words, profile, session.names(profile).of(kind));
    const u8 action_kind = kind == Kind::member ? PIPE_ACTION_MEMBER : PIPE_ACTION_GROUP;
    return [&table, action_kind, handle](pd_entry_hdl entry) {
        expect_success(
            ts_model_set_hardware_reference(device.device_id, table.row->handle, entry, action_kind, handle));
    };
}

Corruption take_action(Words &words, const TableFunctions &table)
{
    const ActionOf use = table.row->key.empty() ? ActionOf::default_entry : ActionOf::entry;
    std::vector<std::string_view> names = action_names(table, use);
    if (std::ranges::find(names, words.peek()) == names.end()) {
        names.insert(names.end(), {key_word, missing_word});
        refuse(words.peek(), {"action or word", table.row->name}, names);
    }
    const pd::Binding &action = *shell::take_action(words, table, use).row;
    Options none;
    Record parameters{*action.action};
    take_assignments(words, parameters, action.action->name, none);
    return [&table, &action, image = action_image(*action.action, parameters.data())](pd_entry_hdl entry) {
        expect_success(ts_model_set_hardware_action(device.device_id, table.row->handle, entry, action.handle,
                                                    image.data(), static_cast<u32>(image.size())));
    };
}

struct Fault {
    using Value = Corruption;
    static void describe(Usage &usage)
    {
        usage.add({":"});
        usage.bodies = entry_bodies();
        usage.bodies.insert(usage.bodies.end(), {{key_word, "KEY"}, {missing_word}});
    }
    static Value read(Reading &reading);
};

Corruption Fault::read(Reading &reading)
{
    Words &words = reading.words;
    const TableFunctions &table = *reading.table;
    take_colon(words,
               table.indirect ? "a member or group, 'key' or 'missing'" : "an action, 'key' or 'missing'");
    if (words.peek() == key_word) {
        words.take();
        return take_key(words, *table.row);
    }
    if (words.peek() != missing_word)
        return table.indirect ? take_reference(reading.session, words, table) : take_action(words, table);
    words.take();
    return [&table](pd_entry_hdl entry) {
        expect_success(ts_model_remove_hardware_entry(device.device_id, table.row->handle, entry));
    };
}

void corrupt(Session &, const TableFunctions &, const Cell &entry, const Corruption &fault)
{
    fault(entry.find());
}

constexpr std::string_view text =
    R"(  Alters the hardware's action or key of an entry, or what it points at, or takes the entry out of the hardware,
  and leaves software as it is: a fault for diff to find. Writing the entry's action puts both in step again.
)";

constexpr Verb verbs[] = {
    verb<corrupt, arg::Table, arg::Entry, Fault>("corrupt", "makes the hardware differ from software")};

} // namespace

const Command corrupt_command{verbs, text};

} // namespace shell
