#include "values.h"

#include <cstdio>
#include <string_view>

#include "entry_record.h"
#include "hex.h"
#include "pd_inspection.h"

namespace pd_tessel {

namespace {

char *put(char *to, std::string_view text)
{
    std::memcpy(to, text.data(), text.size());
    return to + text.size();
}

// Deliberate: a wide field shows all its bits, whatever its mask.
char *put_tuple(char *to, const Tuple &tuple, const void *record)
{
    to = put(to, "0x");
    if (tuple.width == wide)
        to = put_wide_hex(to, static_cast<const u8 *>(record) + tuple.offset);
    else
        to = put_hex(to, value_of(tuple, record), static_cast<u32>(hex_digits(tuple.width)));
    *to = ',';
    return to + 1;
}

char *put_tuples(char *to, std::span<const Tuple> tuples, const void *record)
{
    for (const Tuple &tuple : tuples)
        to = put_tuple(to, tuple, record);
    return to;
}

char *put_key(char *to, const TableText &table, const void *key)
{
    return put(put_tuples(put(to, "( "), table.key, key), "),");
}

char *put_action(char *to, const ActionText &action, const void *parameters)
{
    to = put(put(put(to, "('"), action.name), "',(");
    return put(put_tuples(to, action.parameters, parameters), ")),");
}

// Unlike an action, a reference has no comma behind it.
char *put_reference(char *to, const EntryRecord &record)
{
    if (record.has_member)
        return to + std::sprintf(to, "('setMbrHdl',(0x%x,))", record.member);
    if (record.has_group)
        return to + std::sprintf(to, "('setGrpHdl',(0x%x,))", record.group);
    return to;
}

char *put_entry(char *to, const TableText &table, const EntryRecord &record, const char *operation)
{
    to = record.is_default ? put(to, "(),") : put_key(to, table, record.key);
    if (table.indirect)
        return put_reference(to, record);
    const ActionText &action =
        action_of(table.reader->actions, record.action.action_number, "false && \"unknown action\"",
                  place_in(operation, __LINE__, table.name));
    return put_action(to, action, &record.action.parameters);
}

u32 finish(char *end, const char *buf)
{
    *end = '\0';
    return static_cast<u32>(end - buf);
}

} // namespace

u32 match_spec_value(const TableText &table, const void *key, char *buf)
{
    return finish(put_key(buf, table, key), buf);
}

u32 action_value(const ActionText &action, const void *parameters, char *buf)
{
    return finish(put_action(buf, action, parameters), buf);
}

u32 table_value(const TableText &table, pd_sess_hdl sess, u8 device_id, pd_entry_hdl entry, u8 from_hw,
                char *buf)
{
    EntryRecord record(table);
    if (read_entry(table, sess, device_id, entry, from_hw, record) != 0)
        return 0;
    char *to = put_entry(put(buf, "(("), table, record, "value");
    to += std::sprintf(to, "),(%d,True))", static_cast<int>(record.priority));
    return static_cast<u32>(to - buf);
}

u32 plcmt_data_value(const TableText &table, void *plcmt_data, char *buf)
{
    EntryRecord record(table);
    if (read_plcmt_data(table, plcmt_data, record) != 0)
        return 0;
    return finish(put(put_entry(put(buf, "("), table, record, "plcmt_data_value"), ")"), buf);
}

u32 member_plcmt_data_value(const ProfileText &profile, void *plcmt_data, char *buf)
{
    pd_action_out action;
    if (get_member_from_plcmt_data(*profile.reader, plcmt_data,
                                   {nullptr, &action.parameters, &action.action_number},
                                   place_in("get_member_from_plcmt_data", __LINE__, profile.name)) != 0)
        return 0;
    return action_value(action_of(profile.reader->actions, action.action_number, "NULL",
                                  place_in("plcmt_data_value", __LINE__, profile.name)),
                        &action.parameters, buf);
}

} // namespace pd_tessel

// ---- By handle: 0, with the buffer left alone, for one that is not known ----

u32 p4_pd_tessel_switch_entry_value(pd_sess_hdl sess, u8 dev_id, u32 table, pd_entry_hdl entry_hdl,
                                    u8 read_from_hw, char *buf)
{
    const pd_tessel::TableText *found = pd_tessel::find_table(table);
    return found ? table_value(*found, sess, dev_id, entry_hdl, read_from_hw, buf) : 0;
}

u32 p4_pd_tessel_switch_plcmt_data_value(u32 table, void *plcmt_data, char *buf)
{
    const pd_tessel::TableText *found = pd_tessel::find_table(table);
    return found ? plcmt_data_value(*found, plcmt_data, buf) : 0;
}

u32 p4_pd_tessel_switch_adt_plcmt_data_value(u32 action_table, void *plcmt_data, char *buf)
{
    const pd_tessel::ProfileText *found = pd_tessel::find_profile(action_table);
    return found ? member_plcmt_data_value(*found, plcmt_data, buf) : 0;
}
