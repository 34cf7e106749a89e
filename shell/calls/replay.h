// Makes the calls of a record again.
#pragma once

#include <optional>

#include "record_reader.h"
#include "replay_handles.h"

namespace shell {

struct ReplayDifference {
    const tap::RecordedCall *call;
    pd_status status; // in place of the record's
};

class Replay {
public:
    // Plays up to the first call whose status is not that of the record. Calls go to the driver of this
    // process, in the order in which they began, so that a call out of a callback comes behind the one that
    // called back.
    std::optional<ReplayDifference> play(const tap::RecordReader &record);

    std::size_t played() const { return played_; }
    // The calls that the tap refused, and those that mean nothing outside the process that was recorded.
    std::size_t left_out() const { return left_out_; }

    // One call; what came back, or none for a call that is left out.
    std::optional<pd_status> play(const tap::RecordedCall &call);

private:
    ReplayHandles handles_;
    std::size_t played_ = 0;
    std::size_t left_out_ = 0;
};

} // namespace shell
