// Tables and actions as words name them.
#pragma once

#include <string_view>

#include "reflection.h"
#include "words.h"

namespace shell {

// Each takes the next word and throws BadLine when it names nothing.
const reflection::TableFunctions &take_table(Words &words);
const reflection::TableFunctions &take_keyed_table(Words &words);
const reflection::ActionFunctions &take_entry_action(Words &words, const reflection::TableFunctions &table);

// "exact", "ternary", "lpm" or "keyless".
const char *key_kind_name(const pd::Table &table);
u32 entry_count(const pd::Table &table);

} // namespace shell
