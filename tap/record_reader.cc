#include "record_reader.h"

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <fstream>

#include "line.h"

namespace tap {

namespace {

template <typename T>
T load(const u8 *from)
{
    T value;
    std::memcpy(&value, from, sizeof value);
    return value;
}

// In blocks, since records are long.
std::vector<u8> whole(std::istream &file)
{
    constexpr std::size_t block = 1 << 20;
    std::vector<u8> bytes;
    while (file) {
        const std::size_t before = bytes.size();
        bytes.resize(before + block);
        file.read(reinterpret_cast<char *>(bytes.data() + before), block);
        bytes.resize(before + static_cast<std::size_t>(file.gcount()));
    }
    return bytes;
}

} // namespace

std::optional<RecordReader> RecordReader::open(const std::string &path, std::string &error)
{
    std::ifstream file(path, std::ios::binary);
    if (!file) {
        error = path + ": " + std::strerror(errno);
        return std::nullopt;
    }
    RecordReader reader;
    reader.bytes_ = whole(file);
    if (!reader.read_header(error)) {
        error = path + ": " + error;
        return std::nullopt;
    }
    reader.read_calls();
    return reader;
}

bool RecordReader::read_header(std::string &error)
{
    if (bytes_.size() < sizeof file_magic || std::memcmp(bytes_.data(), file_magic, sizeof file_magic) != 0) {
        error = "is no record of the tap";
        return false;
    }
    if (bytes_.size() < file_header_bytes) {
        error = "was cut short at byte " + std::to_string(bytes_.size()) + ", within its first page";
        return false;
    }
    const u8 *header = bytes_.data();
    if (const u32 version = load<u32>(header + offsetof(FileHeader, version)); version != file_version) {
        error = "has at byte 8 version " + std::to_string(version) +
                " of the format; this program reads version " + std::to_string(file_version);
        return false;
    }
    if (load<u32>(header + offsetof(FileHeader, header_bytes)) != file_header_bytes) {
        error = "is damaged at byte 12";
        return false;
    }
    capacity_ = load<u64>(header + offsetof(FileHeader, capacity));
    if (capacity_ == 0 || capacity_ % file_header_bytes != 0 || capacity_ > u64{1} << 40) {
        error = "is damaged at byte 16";
        return false;
    }
    if (load<u64>(header + offsetof(FileHeader, operations)) != operations_fingerprint()) {
        error = "was made by a tap with other operations, as byte 24 tells";
        return false;
    }
    head_ = load<u64>(header + offsetof(FileHeader, head));
    dropped_ = load<u64>(header + offsetof(FileHeader, dropped));
    monotonic_ = load<u64>(header + offsetof(FileHeader, monotonic));
    real_time_ = load<u64>(header + offsetof(FileHeader, real_time));
    process_ = load<u32>(header + offsetof(FileHeader, process));
    return true;
}

// A call knows its own position, so calls are found without regard to what is between them.
void RecordReader::read_calls()
{
    RecordedCall call;
    for (u64 at = 0; file_header_bytes + at + sizeof(CallHeader) <= bytes_.size() + sizeof(CallHeader);) {
        const bool whole = read_call(at, call);
        if (whole)
            calls_.push_back(call);
        at += whole ? call.header.length : 8;
    }
    std::ranges::sort(calls_, {}, [](const RecordedCall &found) { return found.header.position; });
    find_gaps();
}

void RecordReader::find_gaps()
{
    if (head_ > capacity_ && bytes_.size() < file_header_bytes + capacity_)
        lost_at_ = bytes_.size();
    u64 expected = 0;
    for (RecordedCall &found : calls_) {
        found.gap_before = found.header.position != expected;
        const bool overwritten = expected == 0 && head_ > capacity_;
        if (found.gap_before && !overwritten && !lost_at_)
            lost_at_ = place(expected);
        expected = found.header.position + found.header.length;
    }
    if (head_ > expected && !lost_at_)
        lost_at_ = place(expected);
}

bool RecordReader::read_call(u64 at, RecordedCall &call)
{
    const u64 there = std::min<u64>(bytes_.size() - file_header_bytes, capacity_);
    if (at + 16 > there)
        return false;
    const u8 *ring = bytes_.data() + file_header_bytes;
    const u64 position = load<u64>(ring + at);
    const u64 length = load<u32>(ring + at + offsetof(CallHeader, length));
    if (position % capacity_ != at || length < sizeof(CallHeader) || length % 8 != 0 ||
        length > capacity_ / 4)
        return false;
    const u8 *begin = ring + at;
    std::vector<u8> joined;
    if (at + length > capacity_ && there == capacity_) {
        joined.assign(begin, ring + capacity_);
        joined.insert(joined.end(), ring, ring + (at + length - capacity_));
        begin = joined.data();
    } else if (at + length > there) {
        return false;
    }
    call.header = load<CallHeader>(begin);
    if (checksum_of(begin, length) != call.header.checksum || call.header.operation >= operation_count)
        return false;
    call.body = {begin + sizeof(CallHeader), begin + length};
    if (!joined.empty())
        joined_.push_back(std::move(joined));
    return true;
}

std::string line_of(const RecordedCall &call)
{
    Buffer line;
    write_line(line, call.operation(), call.header.result, call.body, call.has_results());
    return line.c_str();
}

} // namespace tap
