// A recorded call's arguments, to make the call again.
#pragma once

#include <deque>
#include <vector>

#include "encoding.h"
#include "record_reader.h"
#include "replay_handles.h"

namespace shell {

// Images point into the record, which must live as long. What goes out gets room.
class ReplayValues {
public:
    ReplayValues(const tap::RecordedCall &call, ReplayHandles &handles);

    // False for arguments that mean nothing outside the process that was recorded, and for damaged ones.
    bool ok() const { return ok_; }
    const tap::Value *data() const { return values_.data(); }

    // After a call with these values that succeeded, as that of the record did: the handles that came out of
    // both.
    void learn();

private:
    tap::Value argument(std::size_t at);
    tap::Value number(tap::Kind kind);
    tap::Value action_spec();
    tap::Value place(std::size_t at);
    tap::Value queries(u32 count, u32 elements);
    tap::Value cells(u32 count);
    void check_length(std::size_t at);
    u32 mapped(tap::Kind kind, u64 handle) const;

    template <typename T>
    T *make(std::size_t count = 1);
    template <typename Record>
    Record *take();
    template <typename Record>
    tap::Value by_value();
    template <typename Record>
    tap::Value by_pointer();
    template <typename T, typename Take>
    tap::Value list(std::size_t at, Take take);
    template <typename Record>
    tap::Value records(std::size_t at);

    const std::span<const tap::ArgumentRow> rows_;
    ReplayHandles &handles_;
    tap::Cursor from_;
    u32 table_ = 0;
    bool ok_ = true;
    std::vector<tap::Value> values_;
    std::vector<u32> sizes_;              // of lists that go in, and of the room for what goes out
    std::vector<std::size_t> places_;     // the out arguments that have one
    std::deque<std::vector<u64>> memory_; // of all that values point at
};

} // namespace shell
