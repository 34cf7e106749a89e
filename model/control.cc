// The control functions for what concerns the model as a whole.
#include "device.h"
#include "faults.h"
#include "registry.h"
#include "selection_operations.h"
#include "syncs.h"
#include "system.h"
#include "trace.h"

using namespace model;

extern "C" {

void ts_model_reset(void)
{
    syncs().set_thread(false);
    trace().set(nullptr, nullptr);
    faults().reset();
    registry().reset();
    reset_devices();
    reset_selection_states();
    reset_system();
}

void ts_model_set_trace(ts_model_trace_fn sink, void *cookie)
{
    trace().set(sink, cookie);
}

void ts_model_fail_call(u32 n, pd_status status)
{
    faults().fail_call(n, status);
}

void ts_model_fail_operation(const char *operation, pd_status status)
{
    faults().fail_operation(operation, status);
}

void ts_model_fail_allocation(u32 n)
{
    faults().fail_allocation(n);
}

} // extern "C"
