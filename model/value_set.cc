#include "value_set.h"

namespace model {

namespace {

// Keys are the same when they match the same values.
bool same(const ValueSetKey &left, const ValueSetKey &right)
{
    return left.mask == right.mask && ((left.value ^ right.value) & left.mask) == 0;
}

} // namespace

pd_status ValueSet::add(const ValueSetScope &scope, const ValueSetKey &key, u32 &entry)
{
    if (find(scope, key) != 0)
        return already_exists;
    entry = ++last_handle_;
    entries_[entry] = {scope, key};
    scopes_[scope].insert(entry);
    return ok;
}

pd_status ValueSet::modify(u32 entry, const ValueSetKey &key)
{
    const auto known = entries_.find(entry);
    if (known == entries_.end())
        return unknown_object;
    const u32 holder = find(known->second.scope, key);
    if (holder != 0 && holder != entry)
        return already_exists;
    known->second.key = key;
    return ok;
}

pd_status ValueSet::remove(u32 entry)
{
    const auto known = entries_.find(entry);
    if (known == entries_.end())
        return unknown_object;
    scopes_[known->second.scope].erase(entry);
    entries_.erase(known);
    return ok;
}

const ValueSet::Entry *ValueSet::get(u32 entry) const
{
    const auto known = entries_.find(entry);
    return known != entries_.end() ? &known->second : nullptr;
}

u32 ValueSet::find(const ValueSetScope &scope, const ValueSetKey &key) const
{
    for (u32 entry = next(scope, 0); entry != 0; entry = next(scope, entry))
        if (same(get(entry)->key, key))
            return entry;
    return 0;
}

u32 ValueSet::next(const ValueSetScope &scope, u32 after) const
{
    const auto known = scopes_.find(scope);
    if (known == scopes_.end())
        return 0;
    const auto behind = known->second.upper_bound(after);
    return behind != known->second.end() ? *behind : 0;
}

u32 ValueSet::count(const ValueSetScope &scope) const
{
    const auto known = scopes_.find(scope);
    return known != scopes_.end() ? static_cast<u32>(known->second.size()) : 0;
}

} // namespace model
