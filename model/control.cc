// The control functions for what concerns the model as a whole.
#include "device.h"
#include "model.h"
#include "registry.h"
#include "selection_operations.h"
#include "syncs.h"
#include "system.h"

using namespace model;

extern "C" {

const char *ts_model_version(void)
{
    return PD_VERSION;
}

void ts_model_reset(void)
{
    syncs().set_thread(false);
    registry().reset();
    reset_devices();
    reset_selection_states();
    reset_system();
}

} // extern "C"
