// "SECONDS [times=N] COMMAND": a command that is carried out again and again.
#pragma once

#include <chrono>

#include "settings.h"
#include "words.h"

namespace shell {

struct Repeated {
    std::chrono::seconds pause;
    u64 times;
    Words command;
};

// Until a signal ends it where no number is given.
inline constexpr Setting times_setting{"times", 32, ~u32{0}};

// Takes all words. BadLine.
Repeated take_repeated(Words &words);

} // namespace shell
