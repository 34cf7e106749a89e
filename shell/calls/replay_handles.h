// What the handles of a record are called where it is played.
#pragma once

#include <map>
#include <tuple>

#include "operation.h"

namespace shell {

class ReplayHandles {
public:
    // Whether arguments of this kind are mapped.
    static bool has(tap::Kind kind);

    // `table` is the one that the call is about, or its value set.
    void learn(tap::Kind kind, u32 table, u32 recorded, u32 played);

    // What the record does not tell the coming of stays as it is.
    u32 find(tap::Kind kind, u32 table, u32 recorded) const;

private:
    using Place = std::tuple<tap::Kind, u32, u32>; // kind, table, recorded handle

    static Place place(tap::Kind kind, u32 table, u32 recorded);

    std::map<Place, u32> played_;
};

} // namespace shell
