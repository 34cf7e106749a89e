#include "printing.h"

#include <cstdio>

#include "entry_record.h"
#include "hex.h"
#include "pd_actions.h"
#include "pd_inspection.h"

namespace pd_tessel {

namespace {

// "%*c" writes at least one character: a member stands deeper than its head at every indentation.
int print_tuple(int fd, int indent, const char *prefix, const Tuple &tuple, const void *record)
{
    if (tuple.width == wide) {
        char digits[wide_digits + 1];
        *put_wide_hex(digits, static_cast<const u8 *>(record) + tuple.offset) = '\0';
        return dprintf(fd, "%*c %s%s: 0x%s\n", indent, ' ', prefix, tuple.name, digits);
    }
    const u32 value = value_of(tuple, record);
    const int digits = static_cast<int>(hex_digits(tuple.width));
    if (is_partial(tuple))
        return dprintf(fd, "%*c %s%s mask 0x%x: 0x%0*x\n", indent, ' ', prefix, tuple.name,
                       static_cast<u32>(tuple.mask.low), digits, value);
    return dprintf(fd, "%*c %s%s: 0x%0*x\n", indent, ' ', prefix, tuple.name, digits, value);
}

int print_tuples(int fd, int indent, const char *prefix, std::span<const Tuple> tuples, const void *record)
{
    int printed = 0;
    for (const Tuple &tuple : tuples)
        printed = print_tuple(fd, indent, prefix, tuple, record);
    return printed;
}

void print_named_action(int fd, int indent, const ActionText &action, const void *parameters)
{
    dprintf(fd, "%*s%s:\n", indent, "", p4_pd_tessel_switch_action_name_strings[action.number]);
    action_print(action, fd, indent, parameters);
}

} // namespace

int match_spec_print(const TableText &table, int fd, int indent, const void *key)
{
    dprintf(fd, "%*sp4_pd_tessel_switch_%s_match_spec_t:\n", indent, "", table.name);
    return print_tuples(fd, indent, "", table.key, key);
}

int action_print(const ActionText &action, int fd, int indent, const void *parameters)
{
    return print_tuples(fd, indent, "action_", action.parameters, parameters);
}

pd_status plcmt_data_print(const TableText &table, int fd, int indent, void *plcmt_data)
{
    EntryRecord record(table);
    if (const pd_status status = read_plcmt_data(table, plcmt_data, record)) {
        dprintf(fd, "cannot decode plcmt_data for p4_pd_tessel_switch_%s\n", table.name);
        return status;
    }
    if (table.key.empty())
        dprintf(fd, "%*sp4_pd_tessel_switch_%s:\n", indent, "", table.name);
    else if (!record.is_default)
        match_spec_print(table, fd, indent, record.key);
    if (!table.indirect) // deliberate: a reference is not printed
        print_named_action(fd, indent,
                           action_of(table.reader->actions, record.action.action_number, "NULL",
                                     place_in("plcmt_data_print", __LINE__, table.name)),
                           &record.action.parameters);
    return 0;
}

pd_status member_plcmt_data_print(const ProfileText &profile, int fd, int indent, void *plcmt_data)
{
    pd_action_out action;
    const pd_status status = get_member_from_plcmt_data(
        *profile.reader, plcmt_data, {nullptr, &action.parameters, &action.action_number},
        place_in("get_member_from_plcmt_data", __LINE__, profile.name));
    if (status != 0) {
        // Deliberate: here the function is named, not the object.
        dprintf(fd, "cannot decode plcmt_data for p4_pd_tessel_switch_%s_adt_plcmt_data_print\n",
                profile.name);
        return status;
    }
    print_named_action(fd, indent,
                       action_of(profile.reader->actions, action.action_number, "NULL",
                                 place_in("adt_plcmt_data_print", __LINE__, profile.name)),
                       &action.parameters);
    return 0;
}

namespace {

pd_status print_unknown(int fd, u32 handle)
{
    return static_cast<pd_status>(dprintf(fd, "0x%08x table not found\n", handle));
}

} // namespace

} // namespace pd_tessel

pd_status p4_pd_tessel_switch_plcmt_data_print(int fd, int indent, u32 table, void *plcmt_data)
{
    const pd_tessel::TableText *found = pd_tessel::find_table(table);
    return found ? plcmt_data_print(*found, fd, indent, plcmt_data) : pd_tessel::print_unknown(fd, table);
}

pd_status p4_pd_tessel_switch_adt_plcmt_data_print(int fd, int indent, u32 action_table, void *plcmt_data)
{
    const pd_tessel::ProfileText *found = pd_tessel::find_profile(action_table);
    return found ? member_plcmt_data_print(*found, fd, indent, plcmt_data)
                 : pd_tessel::print_unknown(fd, action_table);
}
