// The families that read entries back, by handle or from placement data, and walk them. Decoding is unrolled
// per table and action; the sequence around it is written once, over the reader of a table.
#pragma once

#include "action_reader.h"
#include "failure.h"
#include "internal.h"

namespace TS_INTERNAL pd {

// Room for the key of any table.
inline constexpr u32 max_key_bytes = 64;

struct TableReader {
    u32 handle;
    ImageSize key_size;
    u16 record_size; // 0 for a keyless table
    bool has_priority;
    void (*unbuild_key)(const pipe_match_spec *, void *key);
    void (*unbuild_mask)(const pipe_match_spec *, void *key); // null for an exact key
    std::span<const ActionReader> actions;
};

template <const Table &table>
constexpr TableReader make_reader()
{
    static_assert(image_size(table.key).bytes <= max_key_bytes);
    TableReader reader{table.handle, image_size(table.key), table.record_size, has_priority(table), nullptr,
                       nullptr,      action_readers<table>};
    if constexpr (!table.key.empty())
        reader.unbuild_key = unbuild_key<table>;
    if constexpr (key_kind(table) != Match::exact)
        reader.unbuild_mask = unbuild_mask<table>;
    return reader;
}

// Where a caller wants an entry. What a table does not have is null.
struct KeyOut {
    void *key = nullptr;
    u32 *priority = nullptr;
    u8 *is_default = nullptr;
};

// The steps of get_entry. Their arguments are in the order of the exported functions', most of whose
// registers go through untouched.
pd_status read_entry(pd_sess_hdl sess, u32 device_id, pd_entry_hdl entry, u8 from_hw, void *key,
                     char *action_name, void *action, u32 *action_number, u8 *is_default, u32 *priority,
                     const TableReader &table, const char *function, int line);

[[gnu::always_inline]] inline pd_status get_entry(const TableReader &table, pd_sess_hdl sess, u32 device_id,
                                                  pd_entry_hdl entry, u8 from_hw, const KeyOut &key,
                                                  const ActionOut &action,
                                                  Place place = {__builtin_FUNCTION(), __builtin_LINE()})
{
    return read_entry(sess, device_id, entry, from_hw, key.key, action.action_name, action.action,
                      action.action_number, key.is_default, key.priority, table, place.function, place.line);
}

pd_status get_entry_from_plcmt_data(const TableReader &table, void *plcmt_data, const KeyOut &key,
                                    pd_plcmt_action_out *action,
                                    Place place = {__builtin_FUNCTION(), __builtin_LINE()});

pd_status get_default_entry(const TableReader &table, pd_sess_hdl sess, pd_dev_target target, u8 from_hw,
                            pd_default_action_out *action);

} // namespace pd
