// The commands that take a change back.
#pragma once

#include <string>

#include "reflection.h"
#include "session.h"

namespace shell {

// Give the entry, or the default entry, what it has now. Each throws BadLine when the driver refuses.
std::string modify_back(Session &session, const reflection::TableFunctions &table, pd_entry_hdl entry);
std::string default_back(Session &session, const reflection::TableFunctions &table);

} // namespace shell
