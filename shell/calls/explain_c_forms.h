// How the library is called in C for each operation of the driver.
#pragma once

#include <string_view>

#include "arguments.h"

namespace shell {

// A call of the library, behind the prefix of its functions. What stands in braces is filled in: a number of
// the driver's call by its name; what the record keeps otherwise in capitals, with the comma before it where
// it may be missing.
struct CForm {
    std::string_view operation;
    bool (*applies)(const tap::Arguments &call); // null: to all that no row before takes
    std::string_view call;
};

// Null for what no function of the library asks for.
const CForm *find_c_form(std::string_view operation, const tap::Arguments &call);

} // namespace shell
