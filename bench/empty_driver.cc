// A driver that does nothing, in a library of its own: what is left of a call when the driver costs nothing.
// The operations that the benchmarks reach are here.
#include <cstdlib>

#include "bf_snapshot.h"
#include "bf_sys.h"
#include "pipe_mgr_hash.h"
#include "pipe_mgr_match.h"

namespace {

pd_status nothing()
{
    __asm__ volatile("" ::: "memory");
    return 0;
}

} // namespace

pd_status pipe_mgr_mat_ent_add(pd_sess_hdl, pd_dev_target, u32, pipe_match_spec *, u32, pipe_action_spec *,
                               u32, u32, pd_entry_hdl *)
{
    return nothing();
}

pd_status bf_snapshot_capture_trigger_set(u32, u8 *, u8 *)
{
    return nothing();
}

pd_status pipe_mgr_hash_calc_calculate_hash_value(pd_sess_hdl, u32, u32, u8 *, u32, u8 *, u32)
{
    return nothing();
}

void *bf_sys_calloc(size_t count, size_t size)
{
    return std::calloc(count, size);
}

void bf_sys_free(void *memory)
{
    std::free(memory);
}
