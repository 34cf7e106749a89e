// How an argument of a generic caller becomes that of one function.
#pragma once

#include <cstring>
#include <type_traits>

#include "pd_types.h"

namespace reflection {

template <typename To, typename From>
To as(From from)
{
    return static_cast<To>(from);
}

// A profile's record of what a member does: it has the form of the common one, with room for its own actions
// only.
template <typename Member>
class MemberRecord {
public:
    explicit MemberRecord(pd_action_out *out) : out_{out} { std::memcpy(&member_, out, sizeof member_); }
    ~MemberRecord() { std::memcpy(out_, &member_, sizeof member_); }
    MemberRecord(const MemberRecord &) = delete;
    MemberRecord &operator=(const MemberRecord &) = delete;

    operator Member *() { return &member_; }

private:
    static_assert(sizeof(Member) <= sizeof(pd_action_out));
    pd_action_out *out_;
    Member member_;
};

template <typename To>
MemberRecord<std::remove_pointer_t<To>> as(pd_action_out *out)
{
    return MemberRecord<std::remove_pointer_t<To>>{out};
}

} // namespace reflection
