// Tables and actions as words name them.
#pragma once

#include <functional>
#include <string_view>
#include <vector>

#include "reflection.h"
#include "words.h"

namespace shell {

// The table that a counter or meter is direct to, null for an indexed one.
const reflection::TableFunctions *table_of(const pd::Counter &counter);
const reflection::TableFunctions *table_of(const pd::Meter &meter);

// What an action is for: a table's actions for entries and for its default entry differ.
enum class ActionOf { entry, default_entry };

std::vector<std::string_view> table_names();
// Those that serve this use.
std::vector<std::string_view> action_names(const reflection::TableFunctions &table, ActionOf use);
std::vector<std::string_view> all_action_names();

// Each takes the next word and throws BadLine when it names nothing.
const reflection::TableFunctions &take_table(Words &words);
const reflection::TableFunctions &take_keyed_table(Words &words);
const reflection::ActionFunctions &take_action(Words &words, const reflection::TableFunctions &table,
                                               ActionOf use);
// Any action of the program, whatever tables have it.
const pd::Action &take_any_action(Words &words);

// "exact", "ternary" or "lpm"; for a table "keyless" as well.
const char *match_name(pd::Match match);
const char *key_kind_name(const pd::Table &table);
u32 entry_count(const pd::Table &table);
// BadLine when the driver refuses.
pd_entry_hdl default_entry_of(const reflection::TableFunctions &table);
// The handle of the entry with this key. BadLine when the driver refuses, as where there is none; or 0 for
// none.
pd_entry_hdl find_entry(const reflection::TableFunctions &table, const reflection::EntryArguments &key);
pd_entry_hdl find_entry_if_any(const reflection::TableFunctions &table,
                               const reflection::EntryArguments &key);
// Visits the handles of all entries. BadLine when the driver refuses.
void walk_entries(const reflection::TableFunctions &table, const std::function<void(pd_entry_hdl)> &visit);
// How many of the field's bits lie outside its mask, and so take no part in comparisons.
unsigned uncompared_bits(const pd::Field &field);

} // namespace shell
