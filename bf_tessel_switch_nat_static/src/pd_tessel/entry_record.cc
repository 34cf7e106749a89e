#include "entry_record.h"

namespace pd_tessel {

namespace {

pd::KeyOut key_of(EntryRecord &record)
{
    return {record.key, &record.priority, &record.is_default};
}

pd::ReferenceOut reference_of(EntryRecord &record)
{
    return {&record.has_member, &record.has_group, &record.member, &record.group};
}

} // namespace

pd_status read_entry(const TableText &table, pd_sess_hdl sess, u8 device_id, pd_entry_hdl entry, u8 from_hw,
                     EntryRecord &record)
{
    if (table.indirect)
        return get_indirect_entry(*table.reader, sess, device_id, entry, from_hw, key_of(record),
                                  reference_of(record));
    return get_entry(*table.reader, sess, device_id, entry, from_hw, key_of(record),
                     {nullptr, &record.action.parameters, &record.action.action_number},
                     place_in("get_entry", __LINE__, table.name));
}

pd_status read_plcmt_data(const TableText &table, void *plcmt_data, EntryRecord &record)
{
    if (table.indirect)
        return get_indirect_entry_from_plcmt_data(*table.reader, plcmt_data, key_of(record),
                                                  reference_of(record));
    return get_entry_from_plcmt_data(*table.reader, plcmt_data, key_of(record), &record.action,
                                     place_in("get_entry_from_plcmt_data", __LINE__, table.name));
}

} // namespace pd_tessel
