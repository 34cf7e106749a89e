// Placement data: the software's copy of one entry, member or group, handed out as a blob.
#pragma once

#include <variant>

#include "operation.h"
#include "profile.h"

namespace model {

struct EntryPlacement {
    const ProgramTable &table;
    pd_entry_hdl entry;
    EntryCopy contents;
};

struct MemberPlacement {
    u32 table;
    pd_mbr_hdl member;
    MemberData contents;
};

struct GroupPlacement {
    std::vector<Membership> members;
};

using Placement = std::variant<EntryPlacement, MemberPlacement, GroupPlacement>;

// Null for null and for placement data of another kind.
template <typename Kind>
const Kind *placement_of(const void *plcmt_data)
{
    return std::get_if<Kind>(static_cast<const Placement *>(plcmt_data));
}

// Null unless the words that ask for placement data have the model's own meaning.
inline ts_model_plcmt_request *request_of(pd_word first, pd_word second)
{
    return second == 0 ? reinterpret_cast<ts_model_plcmt_request *>(first) : nullptr;
}

// Runs an operation that gives placement data out; `get` has a request to fill.
template <typename Get>
pd_status run_placement(const char *operation, const ts_model_plcmt_request *request, pd_word second,
                        u32 table, Get get)
{
    return run(
        operation, [&] { return request != nullptr ? get() : bad_argument; },
        [&](Line &line) {
            line.words("request", request == nullptr ? "null"
                                                     : "{dev=" + decimal(request->device_id) +
                                                           " entry=" + decimal(request->entry) + "}");
            line.number("second", second).table(table);
        });
}

} // namespace model
