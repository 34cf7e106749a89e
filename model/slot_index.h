// Slots by the hashes of what they hold: open addressing, with one byte of each hash in an array of its own,
// so that what is not there is mostly known from that alone.
#pragma once

#include <algorithm>
#include <utility>
#include <vector>

#include "pd_types.h"

namespace model {

class SlotIndex {
public:
    static constexpr u32 none = ~u32{0};

    // The slot with this hash for which `is` holds, or none.
    template <typename Is>
    u32 find(u32 hash, Is is) const
    {
        for (u32 at = home(hash); tags_[at] != vacant; at = after(at))
            if (tags_[at] == tag(hash) && places_[at].hash == hash && is(places_[at].slot))
                return places_[at].slot;
        return none;
    }

    // Before many calls of find(), so that they wait for memory together.
    void fetch(u32 hash) const { __builtin_prefetch(&tags_[home(hash)]); }

    void insert(u32 hash, u32 slot)
    {
        if (++count_ > tags_.size() / 2)
            grow();
        put({hash, slot});
    }

    // The slot is in the index with this hash, here and in replace(). Those behind it that would be cut off
    // from their homes move up.
    void erase(u32 hash, u32 slot)
    {
        u32 gap = place_of(hash, slot);
        for (u32 at = after(gap); tags_[at] != vacant; at = after(at)) {
            if (distance(home(places_[at].hash), at) < distance(gap, at))
                continue;
            tags_[gap] = tags_[at];
            places_[gap] = places_[at];
            gap = at;
        }
        tags_[gap] = vacant;
        --count_;
    }

    void replace(u32 hash, u32 slot, u32 other) { places_[place_of(hash, slot)].slot = other; }

private:
    struct Place {
        u32 hash;
        u32 slot;
    };

    static constexpr u8 vacant = 0;
    static constexpr u32 fewest = 16;

    static u8 tag(u32 hash) { return static_cast<u8>(std::max<u32>(hash >> 24, 1)); }
    u32 mask() const { return static_cast<u32>(tags_.size() - 1); }
    u32 home(u32 hash) const { return hash & mask(); }
    u32 distance(u32 from, u32 to) const { return (to - from) & mask(); }
    u32 after(u32 at) const { return (at + 1) & mask(); }

    u32 place_of(u32 hash, u32 slot) const
    {
        u32 at = home(hash);
        while (tags_[at] != tag(hash) || places_[at].slot != slot)
            at = after(at);
        return at;
    }

    void put(Place place)
    {
        u32 at = home(place.hash);
        while (tags_[at] != vacant)
            at = after(at);
        tags_[at] = tag(place.hash);
        places_[at] = place;
    }

    void grow()
    {
        const auto tags = std::exchange(tags_, std::vector<u8>(2 * tags_.size()));
        const auto places = std::exchange(places_, std::vector<Place>(tags_.size()));
        for (std::size_t at = 0; at < tags.size(); ++at)
            if (tags[at] != vacant)
                put(places[at]);
    }

    u32 count_ = 0;
    std::vector<u8> tags_ = std::vector<u8>(fewest); // a power of two, at most half of them in use
    std::vector<Place> places_ = std::vector<Place>(fewest);
};

} // namespace model
