#include "recorder.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <ctime>
#include <new>

namespace tap {

namespace {

u64 now(clockid_t clock)
{
    timespec time;
    clock_gettime(clock, &time);
    return time.tv_sec * u64{1'000'000'000} + time.tv_nsec;
}

void *map_shared(void *at, std::size_t bytes, int file, off_t offset)
{
    return mmap(at, bytes, PROT_READ | PROT_WRITE, MAP_SHARED | (at != nullptr ? MAP_FIXED : 0), file,
                offset);
}

} // namespace

Recorder::~Recorder()
{
    if (ring_ != nullptr)
        munmap(ring_, 2 * capacity_);
    if (header_ != nullptr)
        munmap(header_, file_header_bytes);
}

int Recorder::open(const std::string &path, u64 size)
{
    constexpr u64 page = 4096;
    capacity_ = (size + page - 1) / page * page;
    if (capacity_ > SIZE_MAX / 4)
        return ENOMEM;
    // Another process may have the old file mapped: it keeps that one.
    unlink(path.c_str());
    const int file = ::open(path.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
    if (file < 0)
        return errno;
    const int error = map(file);
    close(file);
    if (error != 0)
        unlink(path.c_str());
    return error;
}

int Recorder::map(int file)
{
    // A full disk must show here: later it would end the process.
    if (const int error = posix_fallocate(file, 0, static_cast<off_t>(file_header_bytes + capacity_)))
        return error;
    void *header = map_shared(nullptr, file_header_bytes, file, 0);
    if (header == MAP_FAILED)
        return errno;
    header_ = new (header) FileHeader{};
    void *ring = mmap(nullptr, 2 * capacity_, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (ring == MAP_FAILED)
        return errno;
    ring_ = static_cast<u8 *>(ring);
    for (u8 *half : {ring_, ring_ + capacity_})
        if (map_shared(half, capacity_, file, file_header_bytes) == MAP_FAILED)
            return errno;
    header_->version = file_version;
    header_->header_bytes = file_header_bytes;
    header_->capacity = capacity_;
    header_->operations = operations_fingerprint();
    header_->monotonic = now(CLOCK_MONOTONIC);
    header_->real_time = now(CLOCK_REALTIME);
    header_->process = static_cast<u32>(getpid());
    std::memcpy(header_->magic, file_magic, sizeof file_magic);
    return 0;
}

void Recorder::write(Buffer &call)
{
    call.append_zeros((8 - call.size() % 8) % 8);
    const std::size_t length = call.size();
    if (call.failed() || length > capacity_ / 4) {
        header_->dropped.fetch_add(1, std::memory_order_relaxed);
        return;
    }
    CallHeader header;
    std::memcpy(&header, call.data(), sizeof header);
    header.position = header_->head.fetch_add(length, std::memory_order_relaxed);
    header.length = static_cast<u32>(length);
    std::memcpy(call.data(), &header, sizeof header);
    header.checksum = checksum_of(call.data(), length);
    std::memcpy(call.data() + offsetof(CallHeader, checksum), &header.checksum, sizeof header.checksum);

    constexpr std::size_t rest = sizeof header.position;
    u8 *const at = ring_ + header.position % capacity_;
    std::memcpy(at + rest, call.data() + rest, length - rest);
    std::atomic_ref{*reinterpret_cast<u64 *>(at)}.store(header.position, std::memory_order_release);
}

} // namespace tap
