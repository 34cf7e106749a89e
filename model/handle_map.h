// Slots by handle. Handles ascend from 1 and are never used twice; where none of a block of them is in use
// any more, the block takes no room, and a walk passes over it at once.
#pragma once

#include <array>
#include <memory>
#include <vector>

#include "pd_types.h"

namespace model {

class HandleMap {
public:
    static constexpr u32 none = ~u32{0};

    // Gives the handle.
    u32 add(u32 slot)
    {
        if (issued_ % block_size == 0)
            blocks_.push_back({std::make_unique<Slots>(), 0});
        Block &block = blocks_.back();
        if (!block.slots) // all others of it have gone
            block.slots = std::make_unique<Slots>();
        if (block.in_use++ == 0)
            block.slots->fill(none);
        (*block.slots)[issued_ % block_size] = slot;
        return ++issued_;
    }

    // `none` for a handle that is not in use.
    u32 find(u32 handle) const
    {
        if (handle - 1 >= issued_)
            return none;
        const Block &block = blocks_[(handle - 1) / block_size];
        return block.slots ? (*block.slots)[(handle - 1) % block_size] : none;
    }

    // The handle is in use. Gives its slot.
    u32 remove(u32 handle)
    {
        Block &block = blocks_[(handle - 1) / block_size];
        const u32 slot = std::exchange((*block.slots)[(handle - 1) % block_size], none);
        if (--block.in_use == 0)
            block.slots.reset();
        return slot;
    }

    // The next handle in use, 0 at the end.
    u32 next(u32 after) const
    {
        for (u32 at = after; at < issued_;) {
            const Block &block = blocks_[at / block_size];
            if (!block.slots)
                at = (at / block_size + 1) * block_size;
            else if ((*block.slots)[at % block_size] != none)
                return at + 1;
            else
                ++at;
        }
        return 0;
    }

    u32 issued() const { return issued_; }

private:
    static constexpr u32 block_size = 1024;
    using Slots = std::array<u32, block_size>;

    struct Block {
        std::unique_ptr<Slots> slots; // null when none is in use
        u32 in_use;
    };

    std::vector<Block> blocks_;
    u32 issued_ = 0;
};

} // namespace model
