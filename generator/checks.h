// The catalogue's linter: whether the rows that were read fit together. It reports everything it finds.
#pragma once

#include "catalogue.h"

namespace pdgen {

void check_catalogue(const Catalogue &catalogue, Diagnostics &diagnostics);

} // namespace pdgen
