#include <cstdio>

#include "entry_record.h"
#include "equality.h"
#include "pd_inspection.h"

namespace pd_tessel {

namespace {

u32 differ(char *msg, const char *text)
{
    std::strcpy(msg, text);
    return 0;
}

[[noreturn, gnu::cold]] void fail_to_decode(const TableText &table)
{
    char condition[128];
    std::snprintf(condition, sizeof condition, "false && \"Failed to decode plcmt_data in table %s\"",
                  table.name);
    pd::fail(condition, place_in("plcmt_data_eq_to_hw", __LINE__, table.name), source_name);
}

u32 actions_are_equal(const TableText &table, const pd_action_out &pd, const pd_action_out &hw, char *msg)
{
    if (pd.action_number != hw.action_number) {
        std::sprintf(msg, "actions differ 0x%x, vs 0x%x", pd.action_number, hw.action_number);
        return 0;
    }
    const ActionText &action =
        action_of(table.reader->actions, pd.action_number, "false && \"unknown action\"",
                  place_in("plcmt_data_eq_to_hw", __LINE__, table.name));
    return parameters_are_equal(action, &pd.parameters, &hw.parameters, msg);
}

// Deliberate: a member compares by its handle, a group by its presence, and a handle of 0 in the chip counts
// as none.
u32 references_are_equal(const EntryRecord &pd, const EntryRecord &hw, char *msg)
{
    if (pd.has_member) {
        if (!hw.has_member)
            return differ(msg, "no mbr_hdl in hw");
        if (hw.member == 0 || hw.member == pd.member)
            return 1;
        std::sprintf(msg, "mbr_hdl differs: mbr_hdl_pd=0x%x, mbr_hdl_hw=0x%x", pd.member, hw.member);
        return 0;
    }
    if (pd.has_group) {
        if (hw.has_group)
            return hw.has_group;
        return pd.is_default ? 1 : differ(msg, "pd has group handle but not hw");
    }
    if (hw.has_member)
        return hw.member == 0 ? hw.has_member : differ(msg, "hw has mbr_hdl but not pd");
    if (hw.has_group)
        return hw.group == 0 ? hw.has_group : differ(msg, "hw has grp_hdl but not pd");
    return 1;
}

} // namespace

u32 plcmt_data_eq_to_hw(const TableText &table, pd_sess_hdl sess, u8 device_id, pd_entry_hdl entry,
                        void *plcmt_data, char *msg)
{
    EntryRecord pd(table), hw(table);
    if (read_plcmt_data(table, plcmt_data, pd) != 0)
        fail_to_decode(table);
    if (read_entry(table, sess, device_id, entry, 1, hw) != 0) {
        std::sprintf(msg, "p4_pd_tessel_switch_%s_get_entry failed", table.name);
        return 0;
    }
    // Deliberate: the other way round there is no word of defaults, the keys are compared.
    if (pd.is_default && !hw.is_default)
        return differ(msg, "pd entry is default but not hw");
    if (!pd.is_default && !keys_are_equal(table, pd.key, hw.key, msg))
        return 0;
    return table.indirect ? references_are_equal(pd, hw, msg)
                          : actions_are_equal(table, pd.action, hw.action, msg);
}

} // namespace pd_tessel

u32 p4_pd_tessel_switch_plcmt_data_eq_to_hw(pd_sess_hdl sess, u8 dev_id, u32 table, pd_entry_hdl entry_hdl,
                                            void *plcmt_data, u32, char *msg)
{
    const pd_tessel::TableText *found = pd_tessel::find_table(table);
    if (!found)
        pd::fail("false && \"unknown table\"", {__func__, __LINE__}, pd_tessel::source_name);
    return plcmt_data_eq_to_hw(*found, sess, dev_id, entry_hdl, plcmt_data, msg);
}
