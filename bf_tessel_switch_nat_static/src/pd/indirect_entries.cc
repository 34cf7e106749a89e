#include "indirect_entries.h"

#include "pd_ms.h"

namespace pd {

// The store is asked for resources as well, and its answer is ignored, deliberately: an entry like this
// brings the driver none.
pd_status refer(const Profile &profile, u32 device_id, Reference to, ReferenceRecord &record)
{
    zero<sizeof record.spec>(&record.spec);
    record.spec.action_kind = to.kind;
    const pd_word state = *profile.state;
    pd_word resources = 0, count = 0;
    if (to.kind == PIPE_ACTION_MEMBER) {
        record.spec.member_hdl = to.handle;
        const pd_status status = p4_pd_ms_get_mbr_act(state, device_id, to.handle, &record.action);
        if (status == PD_STATUS_SUCCESS)
            p4_pd_ms_mbr_get_res(state, device_id, to.handle, &resources, &count);
        return status;
    }
    record.spec.group_hdl = to.handle;
    const pd_status status = p4_pd_ms_get_grp_act(state, device_id, to.handle, &record.action);
    if (status == PD_STATUS_SUCCESS)
        p4_pd_ms_grp_get_res(state, device_id, to.handle, &resources, &count);
    return status;
}

} // namespace pd
