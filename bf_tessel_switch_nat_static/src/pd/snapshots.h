// The families of snapshots. A trigger goes to the driver with the bytes of its fields reversed; the swap is
// unrolled over the rows of the two layouts.
#pragma once

#include "pd_services.h"

namespace pd {

// The stages that a caller's capture has room for.
inline constexpr u32 max_stages = 20;

pd_status snapshot_capture_trigger_set(u32 snapshot, const pd_snapshot_phv *spec,
                                       const pd_snapshot_phv *mask);
pd_status snapshot_capture_data_get(u32 snapshot, pd_word second, pd_snapshot_phv *capture, pd_word control,
                                    u32 *count);

} // namespace pd
