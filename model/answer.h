// An entry on its way into the records and buffers of a caller.
#pragma once

#include <optional>

#include "entry_copy.h"
#include "program.h"

namespace model {

class Table;

// The copy of the entry that the caller wants, none when it lacks the entry.
std::optional<EntryView> read_copy(const Table &table, pd_entry_hdl entry, u8 from_hw);

// Whether there are buffers for the entry. Of the default entry's key nothing is written.
bool has_buffers(const pipe_match_spec &match, const EntryView &entry);
bool has_buffers(const pipe_action_spec &spec, const EntryView &entry);

// Likewise, and whether they are long enough by the sizes in the records.
bool has_room(const pipe_match_spec &match, const EntryView &entry);
bool has_room(const pipe_action_spec &spec, const EntryView &entry);

// The buffers have been checked.
void answer_match(const ProgramTable &table, const EntryView &entry, pipe_match_spec &match);
void answer_action(const ProgramTable &table, const EntryView &entry, pipe_action_spec &spec, u32 &action);

} // namespace model
