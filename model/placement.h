// Placement data: the software's copy of one entry, member or group, handed out as a blob.
#pragma once

#include <variant>

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

// Runs what gives placement data out; `get` has a request to fill.
template <typename Get>
pd_status answer_request(const ts_model_plcmt_request *request, Get get)
{
    return request != nullptr ? get() : bad_argument;
}

} // namespace model
