#include "policy.h"

#include <algorithm>

namespace console {

namespace {

using shell::BadLine;
using shell::Words;

// Commands, or some of their verbs, that no console carries out.
constexpr struct {
    std::string_view command, verb, why;
} refused[] = {
    {"watch", "", "the updates go to the control plane"},
    {"digest", "watch", "the messages go to the control plane"},
    {"digest", "ack", "the messages go to the control plane"},
    {"idle", "enable", "the idle entries are told to the control plane"},
    {"idle", "disable", "the idle entries are told to the control plane"},
    {"--c", "", "other threads make calls, too"},
    {"load", "", "files are read by the client"},
};

// What only reads: the words behind the name begin with `verb`, are no more than `most`, unless that is 0,
// and none begins with `never`.
constexpr struct Reading {
    std::string_view command, verb = "", never = "";
    std::size_t most = 0;
} readings[] = {
    {"tables"},
    {"describe"},
    {"find"},
    {"lookup", "", "packets="},
    {"show"},
    {"entry"},
    {"default", "", ":"},
    {"member", "show"},
    {"group", "show"},
    {"schema"},
    {"value"},
    {"print"},
    {"label"},
    {"diff"},
    {"decode"},
    {"count"},
    {"property", "", "", 2},
    {"counter", "", "", 1},
    {"counter", "read"},
    {"meter", "read"},
    {"meter", "adjust", "", 2},
    {"register", "read"},
    {"idle", "params"},
    {"idle", "show"},
    {"idle", "ttl", "ttl="},
    {"digest", "pending"},
    {"digest", "timeout", "", 1},
    {"pvs", "find"},
    {"pvs", "show"},
    {"pvs", "property", "", 3},
    {"hash", "value"},
    {"hash", "show"},
    {"snapshot", "show"},
    {"save", "-"},
    {"echo"},
    {"help"},
    {"?"},
    {"quit"},
    {"exit"},
};

bool only_reads(const Reading &reading, Words words)
{
    if (!reading.verb.empty() && words.peek() != reading.verb)
        return false;
    std::size_t count = 0;
    for (; !words.empty(); ++count) {
        const std::string_view word = words.take();
        if (!reading.never.empty() && word.starts_with(reading.never))
            return false;
    }
    return reading.most == 0 || count <= reading.most;
}

} // namespace

void check(std::string_view command, const Words &words, bool read_only)
{
    for (const auto &row : refused)
        if (command == row.command && (row.verb.empty() || words.peek() == row.verb))
            throw BadLine{{}, "not in the console of a process: " + std::string{row.why}};
    if (command == "save" && words.peek() != "-")
        throw BadLine{{}, "not in the console of a process: files are written by the client"};
    if (read_only && std::ranges::none_of(readings, [&](const Reading &reading) {
            return command == reading.command && only_reads(reading, words);
        }))
        throw BadLine{{}, "this console only reads"};
}

} // namespace console
