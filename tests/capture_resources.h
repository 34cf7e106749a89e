// Counters, meters, registers, idle time and the packet-side services, captured. As with members and groups
// each call becomes a line when calls are kept; the answers that are single words are capture::entry and
// capture::answer.numbers.
#pragma once

#include <cstring>
#include <vector>

#include "capture_driver.h"
#include "capture_services.h"
#include "pd_services.h"
#include "pipe_mgr.h"
#include "pipe_stful.h"

namespace resources {

// The answers.
extern pipe_stat_data counts;
extern pipe_meter_spec meter;
extern pipe_idle_params idle;
extern std::vector<std::vector<u8>> flags; // of each index that is read, the elements' first bytes
extern std::vector<pipe_hash_calc_input_field_attribute> attributes;
extern std::vector<u8> stages; // of a snapshot; nothing is written when it is empty

// What the last call pointed at.
extern pipe_res_spec resource;
extern pd_snapshot_phv trigger_spec, trigger_mask;

void reset();

// A call as it is kept, and what it answers.
template <typename... Arguments>
pd_status call(const char *operation, const Arguments &...arguments)
{
    if (services::keep_calls)
        services::record(services::line(operation, arguments...));
    return services::answer(capture::status);
}

template <typename Pointee>
pd_word word(Pointee *pointer)
{
    return reinterpret_cast<pd_word>(pointer);
}

// "[inside]"
inline std::string bracketed(const std::string &inside)
{
    std::string text = "[";
    text.append(inside).append("]");
    return text;
}

// "[1 2 3]": words of a record as they lie in memory. Empty unless calls are kept.
template <typename Word, typename Record>
std::string words(const Record &record)
{
    if (!services::keep_calls)
        return {};
    const auto *bytes = reinterpret_cast<const u8 *>(&record);
    std::string text;
    for (std::size_t offset = 0; offset < sizeof record; offset += sizeof(Word)) {
        Word value;
        std::memcpy(&value, bytes + offset, sizeof value);
        text.append(offset ? " " : "").append(std::to_string(value));
    }
    return bracketed(text);
}

// "[type unit rate burst unit rate burst]"
std::string text(const pipe_meter_spec &meter);

} // namespace resources
