// An entry as it is read for showing it: by handle from the driver, or out of placement data.
#pragma once

#include "internal.h"
#include "texts.h"

namespace TS_INTERNAL pd_tessel {

struct EntryRecord {
    alignas(16) u8 key[max_record_bytes];
    u32 priority = 0;
    u8 is_default;
    pd_action_out action;
    u8 has_member = 0;
    u8 has_group = 0;
    pd_mbr_hdl member = 0;
    pd_grp_hdl group = 0;

    // A keyless table has nothing but its default entry.
    explicit EntryRecord(const TableText &table) : is_default(table.key.empty()) {}
    EntryRecord(const EntryRecord &) = delete;
};

pd_status read_entry(const TableText &table, pd_sess_hdl sess, u8 device_id, pd_entry_hdl entry, u8 from_hw,
                     EntryRecord &record);
pd_status read_plcmt_data(const TableText &table, void *plcmt_data, EntryRecord &record);

} // namespace pd_tessel
