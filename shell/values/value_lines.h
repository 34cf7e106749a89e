// Parts of an entry that no driver holds, as one line: in the words that add and default take, or as JSON.
#pragma once

#include "session.h"
#include "value_parser.h"

namespace shell {

// `kind` is "table" or "profile" and `name` which one; null for an action by itself. `table` may be null
// where there is no key.
void print_value(Session &session, const char *kind, const char *name, const pd::Table *table,
                 const ParsedValue &value);

} // namespace shell
