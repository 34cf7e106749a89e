// Setting the trigger of a snapshot as a careful person would write it, with the signature of the exported
// function.
#pragma once

#include "pd.h"

#pragma GCC visibility push(default)
namespace hand_written {

pd_status set_trigger(u32 snapshot, const pd_snapshot_phv *spec, const pd_snapshot_phv *mask);

} // namespace hand_written
#pragma GCC visibility pop
