// Which commands a console carries out.
#pragma once

#include "words.h"

namespace console {

// BadLine for a command that is none for a process that others run, and, for a console that only reads, for
// one that is not known to do no more than that.
void check(std::string_view command, const shell::Words &words, bool read_only);

} // namespace console
