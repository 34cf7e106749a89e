// A driver that does nothing: each operation that it is asked for becomes one line, its name and its
// arguments with every number in hex, and is answered as the test has chosen. Lines go to a fixed buffer, so
// that bf_sys_calloc is all that allocates here. Link it in place of a driver.
#pragma once

#include <array>
#include <bit>
#include <span>
#include <string>
#include <vector>

#include "bf_drv.h"
#include "pd_services.h"
#include "pipe_mgr.h"
#include "pipe_stful.h"

namespace recorder {

using Bytes = std::vector<u8>;
using Lines = std::vector<std::string>;

// ---- Text -------------------------------------------------------------------------------------------------

// The line of a call, written into a buffer of the caller's.
class Text {
public:
    explicit Text(std::span<char> room) : at(room.data()), end(room.data() + room.size()) {}

    Text &begin(const char *operation);
    void finish() { add(")"); }
    void separate(); // in front of each argument
    [[gnu::format(printf, 2, 3)]] void add(const char *format, ...);
    void add_bytes(const u8 *bytes, std::size_t size); // "01ff", "-" for none, "null"

private:
    char *at;
    char *end;
    bool first = true;
};

// Arguments as they stand in a line. A target is "device:pipe", a record "{...}", a list "[... ...]".
void put(Text &text, u64 number);
void put(Text &text, const char *words);
void put(Text &text, pd_dev_target target);
void put(Text &text, const Bytes &bytes);
void put(Text &text, const pipe_match_spec &match);
void put(Text &text, const pipe_action_data &data);
void put(Text &text, const pipe_action_spec &spec);
void put(Text &text, const pipe_res_spec &resource);
void put(Text &text, const pipe_meter_spec &meter);
void put(Text &text, const pipe_stat_data &counts);
void put(Text &text, const pipe_stful_value &value);
void put(Text &text, const pipe_hash_calc_input_field_attribute &attribute);
inline void put(Text &text, const std::string &words)
{
    put(text, words.c_str());
}
// A record of words.
template <typename Record>
requires(std::is_class_v<Record> &&std::is_trivially_copyable_v<Record>) void put(Text &text,
                                                                                  const Record &record)
{
    const auto words = std::bit_cast<std::array<u32, sizeof(Record) / sizeof(u32)>>(record);
    for (std::size_t i = 0; i < words.size(); ++i)
        text.add("%s%#x", i ? " " : "{", words[i]);
    text.add("}");
}
template <typename T>
void put(Text &text, std::span<const T> list)
{
    text.add("[");
    for (std::size_t i = 0; i < list.size(); ++i) {
        text.add(i ? " " : "");
        put(text, list[i]);
    }
    text.add("]");
}
template <typename T>
void put(Text &text, const std::vector<T> &list)
{
    put(text, std::span{list});
}

template <typename T>
std::string text_of(const T &argument)
{
    char room[4096];
    Text text{room};
    put(text, argument);
    return room;
}

// The line of a call with these arguments.
template <typename... Arguments>
std::string line(const std::string &operation, const Arguments &...arguments)
{
    char room[8192];
    Text text{room};
    text.begin(operation.c_str());
    ((text.separate(), put(text, arguments)), ...);
    text.finish();
    return room;
}

// Callbacks and places stand in a line as words.
template <typename Pointee>
pd_word word(Pointee *pointer)
{
    return reinterpret_cast<pd_word>(pointer);
}

// "01ff"
std::string hex(std::span<const u8> bytes);
inline std::string hex(const u8 *bytes, std::size_t size)
{
    return hex({bytes, size});
}

// ---- What was called --------------------------------------------------------------------------------------

struct LogLine {
    int module;
    int level;
    std::string text;
};

Lines lines();      // since the last forget(); frees are not among them
std::string last(); // "" for none
u32 calls();
u32 live_blocks();               // that bf_sys_calloc gave and that have not been freed
extern u64 allocations;          // of the process, by whatever function
extern std::vector<LogLine> log; // since the last forget()

extern pd_drv_client_callbacks callbacks; // of the last registration
extern pipe_restore_state_cb restore;     // the last callback that was handed over

// One line of standard error, as the C library writes it, with nothing but `before` in front of it.
inline std::string assertion(const char *directory, const std::string &function, const std::string &condition,
                             const std::string &before = "")
{
    return "^" + before + "[^\n]*bf_tessel_switch_nat_static/src/" + directory + ":[1-9][0-9]*: " + function +
           ": Assertion `" + condition + "' failed\\.\n$";
}

// ---- What is answered -------------------------------------------------------------------------------------

// Given whatever the status is. Images go into the caller's buffers.
struct Answer {
    std::array<u32, 4> numbers{}; // all numbers and handles of a call in their order, or a walk
    Bytes value, mask;
    u16 num_bytes = 0;       // of the key
    bool null_value = false; // match_value becomes null
    u32 partition_index = 0;
    u32 priority = 0;
    u32 action = 0;
    u8 action_kind = PIPE_ACTION_DATA;
    std::array<u8, 28> data{};
    u32 member = 0; // what an entry points at
    u32 group = 0;
    u8 resource_count = 0;
    std::array<pipe_res_spec, 4> resources{};
    pipe_stat_data counts{};
    pipe_meter_spec meter{};
    pipe_idle_params idle{};
    std::vector<Bytes> flags; // of each index of a register that is read, the elements' first bytes
    std::vector<pipe_hash_calc_input_field_attribute> attributes;
    Bytes stages; // of a snapshot; nothing is written when it is empty
};
extern Answer answer;
extern const Answer *placement; // what placement data of an entry hold; null for the same

extern pd_status status;         // of every call, but for
extern std::size_t failing_call; // the n-th since the last forget(), from 1; 0 for none
extern pd_status failing_status; // an allocation that fails gives null
extern pd_word next_state;       // the next handle of a state; counts up
extern bool debug_mode;
extern bool announce; // lines and log go to standard error as well: that is what a death test sees

void forget(); // the lines and the log

// Everything as it was at first: status 0, an empty answer, states from 1. Frees
// what the library has left allocated.
void reset();

} // namespace recorder
