// The two ways in which the library reacts to what must not happen. A caller's impossible request ends the
// process. An answer of the driver that cannot be read is logged, and the caller goes on to return a status;
// with the driver's debug mode on it ends the process as well, behind a backtrace.
#pragma once

#include "internal.h"

namespace TS_INTERNAL pd {

// The source name in every assertion of this directory; the inspection layer beside it has one of its own.
inline constexpr char source_name[] = "bf_tessel_switch_nat_static/src/pd";

// Where a failure happened. Made as a default argument it names the caller of the function it belongs to.
// With an owner, `function` is what follows behind the owner's name: p4_pd_tessel_switch_<owner>_<function>.
struct Place {
    const char *function;
    int line;
    const char *owner = nullptr; // a table or profile
};

// Ends the process through __assert_fail, in every mode.
[[noreturn, gnu::cold]] void fail(const char *condition, Place place, const char *source = source_name);

// The failure frame; returns when debug mode is off. `format` is a log line with %s and %d for the place.
[[gnu::cold]] void report(const char *condition, const char *format, Place place);

} // namespace pd

// The condition as it stands in the assertion, and as it is shown, are string literals.
#define PD_ASSERT_OR_STATUS(condition, shown, place)                                                         \
    ::pd::report(condition, "ASSERTION FAILED: \"" condition "\" (" shown ") from %s:%d", place)
