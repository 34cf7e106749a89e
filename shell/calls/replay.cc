#include "replay.h"

#include <algorithm>

#include "replay_values.h"

namespace shell {

std::optional<ReplayDifference> Replay::play(const tap::RecordReader &record)
{
    std::vector<const tap::RecordedCall *> calls;
    for (const tap::RecordedCall &call : record.calls())
        calls.push_back(&call);
    std::ranges::stable_sort(calls, {}, [](const tap::RecordedCall *call) { return call->header.start; });
    for (const tap::RecordedCall *call : calls) {
        const auto status = play(*call);
        ++(status ? played_ : left_out_);
        if (status && *status != static_cast<pd_status>(call->header.result))
            return ReplayDifference{call, *status};
    }
    return std::nullopt;
}

std::optional<pd_status> Replay::play(const tap::RecordedCall &call)
{
    ReplayValues values{call, handles_};
    if (call.refused() || !values.ok())
        return std::nullopt;
    const auto status = static_cast<pd_status>(tap::call(call.header.operation, values.data()));
    if (status == PD_STATUS_SUCCESS && call.has_results())
        values.learn();
    return status;
}

} // namespace shell
