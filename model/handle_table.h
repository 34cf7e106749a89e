// Objects that are named by handles, which ascend from 1 and are never used twice. They live in a flat array.
#pragma once

#include <utility>
#include <vector>

#include "handle_map.h"

namespace model {

template <typename Object>
class HandleTable {
public:
    u32 add(Object object)
    {
        if (free_.empty()) {
            objects_.push_back(std::move(object));
            return slots_.add(static_cast<u32>(objects_.size() - 1));
        }
        const u32 slot = free_.back();
        free_.pop_back();
        objects_[slot] = std::move(object);
        return slots_.add(slot);
    }

    // Null for an unknown handle.
    Object *find(u32 handle) { return knows(handle) ? &objects_[slots_.find(handle)] : nullptr; }
    const Object *find(u32 handle) const { return knows(handle) ? &objects_[slots_.find(handle)] : nullptr; }

    // The handle is known.
    void remove(u32 handle)
    {
        free_.push_back(slots_.remove(handle));
        objects_[free_.back()] = {};
    }

    u32 count() const { return static_cast<u32>(objects_.size() - free_.size()); }

    // The next handle in ascending order, 0 at the end.
    u32 next(u32 after) const { return slots_.next(after); }

private:
    bool knows(u32 handle) const { return slots_.find(handle) != HandleMap::none; }

    HandleMap slots_;
    std::vector<Object> objects_;
    std::vector<u32> free_;
};

} // namespace model
