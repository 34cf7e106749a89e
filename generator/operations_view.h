// The driver's operations as templates see them, and the names that its handles have in this program.
#pragma once

#include <kainjow/mustache.hpp>

#include "catalogue.h"

namespace pdgen {

// Sets `driver_headers`, each with its operations, `operations`, all of them in order, and `handle_names`.
void set_operations(kainjow::mustache::data &root, const Catalogue &catalogue);

} // namespace pdgen
