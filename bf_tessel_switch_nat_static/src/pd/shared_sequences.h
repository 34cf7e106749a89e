// What programs call seldom, by key and for default entries, is not unrolled in each function: a table has
// one builder for its keys, an action one for what entries do by it, and each family one sequence. The
// exported functions hand their arguments on where they are, with a row beside them, and end in a jump.
#pragma once

#include <new>
#include <type_traits>

#include "action_record.h"
#include "match_record.h"
#include "shared_call.h"

namespace pd {

// Where a record is built whose kind only its builder knows.
struct MatchRoom {
    alignas(16) u8 bytes[sizeof(pipe_match_spec) + 128];
};
struct ActionRoom {
    alignas(16) u8 bytes[sizeof(pipe_action_spec) + 128];
};

template <const Table &table>
[[gnu::noinline]] pipe_match_spec *build_match(MatchRoom &room, const void *key, u32 priority)
{
    static_assert(sizeof(MatchRecord<table>) <= sizeof room);
    return (new (&room) MatchRecord<table>(key, priority))->spec();
}

struct SharedTable {
    u32 handle;
    pipe_match_spec *(*match)(MatchRoom &room, const void *key, u32 priority);
};

// An action in a table.
struct SharedEntry {
    const SharedTable *table;
    u32 action;
    pipe_action_spec *(*act)(ActionRoom &room, const void *parameters);
};

// Of what an exported function is given behind the key, that of this type; 0 if it is not among it.
template <typename Wanted, typename... Given>
[[gnu::always_inline]] inline Wanted among(Given... given)
{
    Wanted found{};
    [[maybe_unused]] const auto look_at = [&](auto one) {
        if constexpr (std::is_same_v<decltype(one), Wanted>)
            found = one;
    };
    (look_at(given), ...);
    return found;
}

// `Given` are the priority (u32) and the action's parameters (const void *), as far as the function has them.

template <typename... Given>
[[TS_SHARED]] pd_status modify_by_key TS_BESIDE(const SharedEntry &row, pd_sess_hdl sess,
                                                pd_dev_target target, const void *key, Given... given)
{
    MatchRoom match;
    ActionRoom act;
    return pipe_mgr_mat_ent_set_action_by_match_spec(
        sess, target, row.table->handle, row.table->match(match, key, among<u32>(given...)), row.action,
        row.act(act, among<const void *>(given...)), 0);
}

template <typename... Given>
[[TS_SHARED]] pd_status delete_by_key TS_BESIDE(const SharedTable &row, pd_sess_hdl sess,
                                                pd_dev_target target, const void *key, Given... given)
{
    MatchRoom match;
    return pipe_mgr_mat_ent_del_by_match_spec(sess, target, row.handle,
                                              row.match(match, key, among<u32>(given...)), 0);
}

template <typename... Given>
[[TS_SHARED]] pd_status find_by_key TS_BESIDE(const SharedTable &row, pd_sess_hdl sess, pd_dev_target target,
                                              const void *key, Given... given)
{
    MatchRoom match;
    return pipe_mgr_match_spec_to_ent_hdl(sess, target, row.handle,
                                          row.match(match, key, among<u32>(given...)),
                                          among<pd_entry_hdl *>(given...), 0);
}

template <typename... Given>
[[TS_SHARED]] pd_status set_default TS_BESIDE(const SharedEntry &row, pd_sess_hdl sess, pd_dev_target target,
                                              Given... given)
{
    ActionRoom act;
    return pipe_mgr_mat_default_entry_set(sess, target, row.table->handle, row.action,
                                          row.act(act, among<const void *>(given...)), 0,
                                          among<pd_entry_hdl *>(given...));
}

} // namespace pd
