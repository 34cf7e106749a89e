#include "buffer.h"

#include <sys/mman.h>

#include <algorithm>

namespace tap {

Buffer::~Buffer()
{
    if (data_ != first_)
        munmap(data_, room_);
}

// A failed buffer goes on as an empty one of its first room, so that nothing is written out of bounds: what
// is put into it, piece by piece, is never longer than that room.
void Buffer::grow(std::size_t bytes)
{
    constexpr std::size_t page = 4096;
    const std::size_t room = (std::max(2 * room_, size_ + bytes) + page - 1) / page * page;
    void *memory = failed_ ? MAP_FAILED
                           : mmap(nullptr, room, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (memory == MAP_FAILED) {
        failed_ = true;
        size_ = 0;
        return;
    }
    std::memcpy(memory, data_, size_);
    if (data_ != first_)
        munmap(data_, room_);
    data_ = static_cast<u8 *>(memory);
    room_ = room;
}

} // namespace tap
