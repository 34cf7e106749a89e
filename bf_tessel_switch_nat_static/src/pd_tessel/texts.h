// The catalogue as the inspection layer reads it while running: one constant per table, action and profile.
// The generated files hold them; nothing below names one.
#pragma once

#include <span>

#include "indirect_read_back.h"
#include "internal.h"
#include "labels.h"
#include "members.h"
#include "source_name.h"
#include "tuples.h"

namespace TS_INTERNAL pd_tessel {

struct Schema {
    const char *text;
    u32 length; // without the NUL
};

struct ActionText {
    const char *name;
    u32 number;
    std::span<const Tuple> parameters;
    const char *schema;
};

struct TableText {
    const char *name;
    const pd::TableReader *reader;
    std::span<const Tuple> key;
    bool indirect; // entries point at members or groups
    Schema schema;
    std::span<const Label> labels; // of the counted tables whose keys are told in words
};

struct ProfileText {
    const char *name;
    const pd::MemberReader *reader;
    Schema schema;
};

extern const ActionText action_texts[];      // by number
extern const TableText *const table_texts[]; // by handle, null for a handle in between that no table has
extern const u32 first_table_handle;
extern const u32 table_handle_count;
extern const ProfileText *const profile_texts[];
extern const u32 profile_count;

// Null for a handle that is none.
const TableText *find_table(u32 handle);
const ProfileText *find_profile(u32 action_table);

// The action with this number, as `actions` have it: a number that is not among them ends the process.
const ActionText &action_of(std::span<const pd::ActionReader> actions, u32 number, const char *condition,
                            pd::Place place);

inline pd::Place place_in(const char *operation, int line, const char *owner)
{
    return {operation, line, owner};
}

} // namespace pd_tessel
