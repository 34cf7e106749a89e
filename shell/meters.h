// Meters, as the commands around entries write them.
#pragma once

#include <string>

#include "reflection.h"

namespace shell {

// "meter=CR,CB,PR,PB,TYPE" of an entry, or of the default entry; empty where no meter is attached, and in
// tables without a direct meter. Throws BadLine when the driver refuses.
std::string meter_option(const reflection::TableFunctions &table, pd_entry_hdl entry);

} // namespace shell
