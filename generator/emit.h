// Writes everything that follows from the catalogue: one template an output file, named alike.
#pragma once

#include <filesystem>

#include "view.h"

namespace pdgen {

// Renders all templates of the directory `templates` into `output`, with the variables of `view`. Throws
// std::runtime_error, with one line that names the file, for a template that is wrong or uses a variable that
// has no value, and for a file that cannot be read or written.
void emit_all(const CatalogueView &view, const std::filesystem::path &templates,
              const std::filesystem::path &output);

} // namespace pdgen
