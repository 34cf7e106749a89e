// The families that read back entries which point at a member or a group: by handle, from placement data, and
// the default entry. Only the reference is told; what the member does is the profile's to tell.
#pragma once

#include "internal.h"
#include "read_back.h"

namespace TS_INTERNAL pd {

// Where a caller wants a reference. Of the two handles, only the one that the entry has is written.
struct ReferenceOut {
    u8 *has_member;
    u8 *has_group;
    pd_mbr_hdl *member;
    pd_grp_hdl *group;
};

pd_status get_indirect_entry(const TableReader &table, pd_sess_hdl sess, u32 device_id, pd_entry_hdl entry,
                             u8 from_hw, const KeyOut &key, const ReferenceOut &to);

pd_status get_indirect_entry_from_plcmt_data(const TableReader &table, void *plcmt_data, const KeyOut &key,
                                             const ReferenceOut &to);

pd_status get_indirect_default_entry(const TableReader &table, pd_sess_hdl sess, pd_dev_target target,
                                     u8 from_hw, const ReferenceOut &to);

} // namespace pd
