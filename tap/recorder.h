// Writes calls to a record file by way of memory: each call takes its piece of the ring with one atomic
// addition and fills it, so that writers never wait for each other and a process that dies leaves whole calls
// behind.
#pragma once

#include <string>

#include "buffer.h"
#include "record_file.h"

namespace tap {

class Recorder {
public:
    Recorder() = default;
    Recorder(const Recorder &) = delete;
    Recorder &operator=(const Recorder &) = delete;
    ~Recorder();

    // Makes the file anew with a ring of `size` bytes, rounded up to whole pages; an errno when that fails.
    int open(const std::string &path, u64 size);

    // `call` begins with a CallHeader, of which position, length and checksum are filled in here.
    void write(Buffer &call);

private:
    int map(int file);

    FileHeader *header_ = nullptr;
    u8 *ring_ = nullptr; // mapped twice in a row, so that every piece lies in one piece
    u64 capacity_ = 0;
};

} // namespace tap
