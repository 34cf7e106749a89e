// The text that sets the tap: items between commas, such as
// "trace:/tmp/calls.txt,record:/tmp/calls,size=16M".
#pragma once

#include <cstddef>

#include "state.h"

namespace tap {

// Sets what `text` says and turns everything else off. On a failure, an errno, one line in `error`; a text
// that is wrong changes nothing.
int set_all(State &state, const char *text, char *error, std::size_t room);

} // namespace tap
