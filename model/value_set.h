// One parser value set of one device.
#pragma once

#include <compare>
#include <map>
#include <set>
#include <utility>

#include "status.h"

namespace model {

struct ValueSetScope {
    u32 a;
    u32 b;
    u8 c;

    auto operator<=>(const ValueSetScope &) const = default;
};

struct ValueSetKey {
    u32 value;
    u32 mask;
};

class ValueSet {
public:
    struct Entry {
        ValueSetScope scope;
        ValueSetKey key;
    };

    pd_status add(const ValueSetScope &scope, const ValueSetKey &key, u32 &entry);
    pd_status modify(u32 entry, const ValueSetKey &key);
    pd_status remove(u32 entry);

    // Null and 0 when there is none.
    const Entry *get(u32 entry) const;
    u32 find(const ValueSetScope &scope, const ValueSetKey &key) const;

    u32 next(const ValueSetScope &scope, u32 after) const; // the next higher handle in the scope, 0 for none
    u32 count(const ValueSetScope &scope) const;

    std::map<std::pair<u32, u32>, u32> properties; // by number and argument

private:
    std::map<u32, Entry> entries_; // by handle
    std::map<ValueSetScope, std::set<u32>> scopes_;
    u32 last_handle_ = 0;
};

} // namespace model
