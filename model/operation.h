// What every driver operation with a status has in common: it can be made to fail, and it is traced.
#pragma once

#include "faults.h"
#include "trace.h"

namespace model {

// Runs `execute` unless a fault is due, then traces the call: `arguments` writes its arguments to the line
// and `results`, after a success, what it gave back. No line is made while the trace is off.
template <typename Execute, typename Arguments, typename Results>
pd_status run(const char *operation, Execute execute, Arguments arguments, Results results)
{
    pd_status status = faults().next_call(operation);
    if (status == 0)
        status = execute();
    if (trace().on()) {
        Line line{operation};
        arguments(line);
        line.status(status);
        if (status == 0)
            results(line);
        trace().send(line.text());
    }
    return status;
}

template <typename Execute, typename Arguments>
pd_status run(const char *operation, Execute execute, Arguments arguments)
{
    return run(operation, execute, arguments, [](Line &) {});
}

} // namespace model
