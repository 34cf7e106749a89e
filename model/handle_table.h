// Objects that are named by handles, which ascend from 1 and are never used twice. They live in a flat array.
#pragma once

#include <utility>
#include <vector>

#include "pd_types.h"

namespace model {

template <typename Object>
class HandleTable {
public:
    u32 add(Object object)
    {
        if (free_.empty()) {
            slots_.push_back(static_cast<u32>(objects_.size()));
            objects_.push_back(std::move(object));
        } else {
            slots_.push_back(free_.back());
            free_.pop_back();
            objects_[slots_.back()] = std::move(object);
        }
        return static_cast<u32>(slots_.size());
    }

    // Null for an unknown handle.
    Object *find(u32 handle) { return knows(handle) ? &objects_[slots_[handle - 1]] : nullptr; }
    const Object *find(u32 handle) const { return knows(handle) ? &objects_[slots_[handle - 1]] : nullptr; }

    // The handle is known.
    void remove(u32 handle)
    {
        free_.push_back(std::exchange(slots_[handle - 1], none));
        objects_[free_.back()] = {};
    }

    u32 count() const { return static_cast<u32>(objects_.size() - free_.size()); }

    // The next handle in ascending order, 0 at the end.
    u32 next(u32 after) const
    {
        for (std::size_t at = after; at < slots_.size(); ++at)
            if (slots_[at] != none)
                return static_cast<u32>(at + 1);
        return 0;
    }

private:
    static constexpr u32 none = ~u32{0};

    bool knows(u32 handle) const { return handle - 1 < slots_.size() && slots_[handle - 1] != none; }

    std::vector<u32> slots_; // by handle - 1
    std::vector<Object> objects_;
    std::vector<u32> free_;
};

} // namespace model
