// Reads record files of the tap. A file that was cut short or damaged gives the calls that are whole.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "record_file.h"

namespace tap {

struct RecordedCall {
    CallHeader header;
    bool gap_before; // something that was recorded between the call before and this one is lost
    std::span<const u8> body;

    const OperationRow &operation() const { return operations()[header.operation]; }
    bool refused() const { return header.flags & call_refused; }
    bool has_results() const { return header.flags & call_has_results; }
};

class RecordReader {
public:
    // No value, and one line in `error`, for a file that is no record or that this program cannot read.
    static std::optional<RecordReader> open(const std::string &path, std::string &error);

    // In the order in which they ended.
    const std::vector<RecordedCall> &calls() const { return calls_; }

    u32 process() const { return process_; }
    // Nanoseconds since 1970 of a call's start.
    u64 real_time(const RecordedCall &call) const { return call.header.start - monotonic_ + real_time_; }
    // Calls that were too long for the ring, or for which there was no memory.
    u64 dropped() const { return dropped_; }
    // Where in the file the first call is missing that should be there: not one that a later has overwritten.
    std::optional<u64> lost_at() const { return lost_at_; }
    // Where in the file a call stands.
    u64 place(const RecordedCall &call) const { return place(call.header.position); }

private:
    bool read_header(std::string &error);
    void read_calls();
    bool read_call(u64 at, RecordedCall &call);
    void find_gaps();
    u64 place(u64 position) const { return file_header_bytes + position % capacity_; }

    std::vector<u8> bytes_;               // of the file
    std::vector<std::vector<u8>> joined_; // calls that the end of the ring has divided
    std::vector<RecordedCall> calls_;
    u64 capacity_ = 0;
    u64 head_ = 0;
    u64 monotonic_ = 0;
    u64 real_time_ = 0;
    u64 dropped_ = 0;
    u32 process_ = 0;
    std::optional<u64> lost_at_;
};

// The call as the trace shows it.
std::string line_of(const RecordedCall &call);

} // namespace tap
