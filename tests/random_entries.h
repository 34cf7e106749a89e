// Random entries that are written through the library, for sweeps of the shell.
#pragma once

#include <algorithm>

#include "driver.h"
#include "random_records.h"
#include "reflection.h"
#include "values.h"

namespace sweep {

inline void clip(Bytes &record, u32 offset, u32 width, shell::Value most)
{
    const shell::Value value = shell::load(width, &record[offset]);
    shell::store({value.high & most.high, value.low & most.low}, width, &record[offset]);
}

// A key that can be typed.
inline Bytes typed_key(Random &random, const pd::Table &table)
{
    Bytes key = random.key(table);
    for (const pd::Field &field : table.key) {
        clip(key, field.offset, field.width, shell::ones(field.width));
        if (field.match == pd::Match::lpm)
            set_prefix_length(key, field, random.word() % (field.width + 1));
    }
    return key;
}

// Of an index what an entry takes when it is added.
inline Bytes typed_parameters(Random &random, const pd::Action &action)
{
    Bytes parameters = random.parameters(action);
    for (const pd::Parameter &parameter : action.parameters)
        clip(parameters, parameter.offset, parameter.width,
             shell::ones(parameter.index_of ? 16 : parameter.width));
    return parameters;
}

// Of one action: an entry with its default, then another action for it by handle, and for some of them their
// end.
inline void write_entry(const reflection::TableFunctions &table, const reflection::ActionFunctions &action,
                        Random &random)
{
    const pd_dev_target device = shell::device;
    const Bytes parameters = typed_parameters(random, *action.row->action);
    const pd_meter_spec meter{random.word(), random.word(), random.word(), random.word(), random.word() % 2};
    const Bytes key = typed_key(random, *table.row);
    reflection::EntryArguments arguments{};
    arguments.key = key.data();
    arguments.priority = random.word();
    arguments.action = parameters.data();
    arguments.meter = &meter;
    arguments.ttl = random.word() % 100;
    pd_entry_hdl entry = 0;
    if (action.set_default_action)
        action.set_default_action(1, device, arguments, &entry);
    if (!action.add || action.add(1, device, arguments, &entry) != 0)
        return;
    for (const reflection::ActionFunctions &other : table.actions)
        if (other.modify && random.word() % 2) {
            const Bytes others = typed_parameters(random, *other.row->action);
            arguments.action = others.data();
            other.modify(1, device.device_id, entry, arguments);
        }
    if (random.word() % 4 == 0)
        table.table_delete(1, device.device_id, entry);
}

// Some of every action of every table.
inline void write_everything(Random &random)
{
    for (int round = 0; round < 3; ++round)
        for (const reflection::TableFunctions *table : reflection::tables())
            for (const reflection::ActionFunctions &action : table->actions)
                write_entry(*table, action, random);
}

} // namespace sweep
