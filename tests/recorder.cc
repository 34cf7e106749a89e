#include "recorder.h"

#include <algorithm>
#include <cjson/cJSON.h>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <utility>

#include "bf_snapshot.h"
#include "bf_sys.h"
#include "pd_ms.h"

namespace recorder {

u64 allocations;
std::vector<LogLine> log;
pd_drv_client_callbacks callbacks;
pipe_restore_state_cb restore;
Answer answer;
const Answer *placement;
pd_status status;
std::size_t failing_call;
pd_status failing_status;
pd_word next_state = 1;
u32 client_handle = 0x77;
bool debug_mode;
bool announce;

// ---- Text -------------------------------------------------------------------------------------------------

Text &Text::begin(const char *operation)
{
    add("%s(", operation);
    return *this;
}

void Text::separate()
{
    add("%s", first ? "" : ", ");
    first = false;
}

void Text::add(const char *format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    at += std::vsnprintf(at, static_cast<std::size_t>(end - at), format, arguments);
    va_end(arguments);
    if (at >= end)
        std::abort(); // no room
}

void Text::add_bytes(const u8 *bytes, std::size_t size)
{
    if (!bytes || size == 0)
        return add("%s", bytes ? "-" : "null");
    for (std::size_t i = 0; i < size; ++i)
        add("%02x", bytes[i]);
}

namespace {

void put_match(Text &text, const pipe_match_spec &match, std::size_t size)
{
    text.add("{value=");
    text.add_bytes(match.match_value, size);
    text.add(" mask=");
    text.add_bytes(match.match_mask, size);
    text.add(" partition=%#x priority=%#x bits=%u bytes=%u reserved=%#x}", match.partition_index,
             match.priority, match.num_valid_bits, match.num_bytes, match.match_reserved);
}

void put_data(Text &text, const pipe_action_data &data, std::size_t size)
{
    text.add("bits=%u bytes=%u data=", data.num_valid_bits, data.num_bytes);
    text.add_bytes(data.data, size);
}

// Resources beyond the count are shown where they are not zero.
void put_spec(Text &text, const pipe_action_spec &spec, std::size_t size)
{
    text.add("{kind=%u ", spec.action_kind);
    put_data(text, spec.action_data, size);
    text.add(" member=%#x group=%#x resources=%u[", spec.member_hdl, spec.group_hdl, spec.resource_count);
    static constexpr pipe_res_spec zero{};
    for (u32 i = 0; i < std::size(spec.resources); ++i)
        if (i < spec.resource_count || std::memcmp(&spec.resources[i], &zero, sizeof zero) != 0)
            put(text, spec.resources[i]);
    text.add("]}");
}

} // namespace

void put(Text &text, u64 number)
{
    text.add("%#llx", static_cast<unsigned long long>(number));
}

void put(Text &text, const char *words)
{
    text.add("%s", words);
}

void put(Text &text, pd_dev_target target)
{
    text.add("%#x:%#x", target.device_id, target.pipe_id);
}

void put(Text &text, const Bytes &bytes)
{
    static constexpr u8 none = 0;
    text.add_bytes(bytes.empty() ? &none : bytes.data(), bytes.size());
}

void put(Text &text, const pipe_match_spec &match)
{
    put_match(text, match, match.num_bytes);
}

void put(Text &text, const pipe_action_data &data)
{
    text.add("{");
    put_data(text, data, data.num_bytes);
    text.add("}");
}

void put(Text &text, const pipe_action_spec &spec)
{
    put_spec(text, spec, spec.action_data.num_bytes);
}

void put(Text &text, const pipe_res_spec &resource)
{
    text.add("{handle=%#x index=%#x tag=%u", resource.res_handle, resource.res_index, resource.res_tag);
    const pipe_meter_spec &meter = resource.res_data.meter; // a register's value lies within
    if (meter.meter_type || meter.committed_unit || meter.committed_rate || meter.committed_burst ||
        meter.peak_unit || meter.peak_rate || meter.peak_burst) {
        text.add(" meter=");
        put(text, meter);
    }
    text.add("}");
}

void put(Text &text, const pipe_meter_spec &meter)
{
    const auto part = [&](const char *name, u32 unit, u64 rate, u64 burst) {
        text.add(" %s=%u:%#llx:%#llx", name, unit, static_cast<unsigned long long>(rate),
                 static_cast<unsigned long long>(burst));
    };
    text.add("{type=%#x", meter.meter_type);
    part("committed", meter.committed_unit, meter.committed_rate, meter.committed_burst);
    part("peak", meter.peak_unit, meter.peak_rate, meter.peak_burst);
    text.add("}");
}

void put(Text &text, const pipe_stat_data &counts)
{
    text.add("{%#llx %#llx}", static_cast<unsigned long long>(counts.second_count),
             static_cast<unsigned long long>(counts.first_count));
}

void put(Text &text, const pipe_stful_value &value)
{
    text.add_bytes(value.bytes, sizeof value.bytes);
}

void put(Text &text, const pipe_hash_calc_input_field_attribute &attribute)
{
    text.add("{%#x %#x %#x %#x %#x %#llx}", attribute.input_field, attribute.reserved_1, attribute.reserved_2,
             attribute.position, attribute.attr_type, static_cast<unsigned long long>(attribute.attr_value));
}

std::string hex(std::span<const u8> bytes)
{
    return bytes.empty() ? "" : text_of(Bytes(bytes.begin(), bytes.end()));
}

// ---- Keeping ----------------------------------------------------------------------------------------------

namespace {

std::array<char, 1 << 20> kept; // one line after the other, each with its NUL
std::size_t kept_size;
std::size_t kept_lines;
std::array<void *, 4> blocks; // null where there is none

// Writes a line with `put_arguments(text)` behind the last one.
template <typename PutArguments>
void keep(const char *operation, const PutArguments &put_arguments)
{
    char *const start = kept.data() + kept_size;
    Text text{std::span(kept).subspan(kept_size)};
    text.begin(operation);
    put_arguments(text);
    text.finish();
    kept_size += std::strlen(start) + 1;
    ++kept_lines;
    if (announce)
        std::fprintf(stderr, "%s\n", start);
}

pd_status answer_status()
{
    return kept_lines == failing_call ? failing_status : status;
}

void *&block(void *memory)
{
    void **const found = std::find(blocks.begin(), blocks.end(), memory);
    if (found == blocks.end())
        std::abort(); // no room, or not one of ours
    return *found;
}

} // namespace

Lines lines()
{
    Lines all;
    for (std::size_t at = 0; at < kept_size; at += all.back().size() + 1)
        all.emplace_back(&kept[at]);
    return all;
}

std::string last()
{
    return kept_lines ? lines().back() : "";
}

u32 calls()
{
    return static_cast<u32>(kept_lines);
}

u32 live_blocks()
{
    return static_cast<u32>(std::ranges::count_if(blocks, [](void *block) { return block; }));
}

void forget()
{
    kept_size = kept_lines = 0;
    log.clear();
}

void reset()
{
    forget();
    callbacks = {};
    restore = nullptr;
    answer = {};
    placement = nullptr;
    status = failing_status = 0;
    failing_call = 0;
    next_state = 1;
    client_handle = 0x77;
    debug_mode = announce = false;
    std::ranges::for_each(blocks, std::free);
    blocks = {};
}

// ---- Kinds of arguments -----------------------------------------------------------------------------------
//
// A kind has the type of an argument, puts what comes in into the line and gives what goes out. It sees the
// words of all arguments, for where one tells the size of another.

namespace {

using Words = std::array<pd_word, 12>;

template <typename T>
pd_word word_of(T argument)
{
    if constexpr (std::is_integral_v<T>)
        return argument;
    else
        return 0;
}

// Goes in as it is.
template <typename T>
struct Value {
    using Type = T;
    static void put(Text &text, T argument, const Words &)
    {
        text.separate();
        recorder::put(text, argument);
    }
    static void give(T, const Words &) {}
};
using Word = Value<u32>;
using Byte = Value<u8>;
using Wide = Value<pd_word>;
using Target = Value<pd_dev_target>;
using Name = Value<const char *>;
using Session = Word;
using Device = Word;
using Table = Word;
using Handle = Word;
using Action = Word;
using Index = Word;
using Count = Word;
using Flags = Word;

// A callback, or a place that is handed on.
template <typename T>
struct Pointer : Value<T> {
    static void put(Text &text, T argument, const Words &)
    {
        text.separate();
        recorder::put(text, u64{reinterpret_cast<pd_word>(argument)});
    }
};

// Shows in no line.
template <typename T>
struct Hidden {
    using Type = T;
    static void put(Text &, T, const Words &) {}
    static void give(T, const Words &) {}
};

// A record or word by address.
template <typename T>
struct In : Hidden<T *> {
    static void put(Text &text, T *argument, const Words &)
    {
        text.separate();
        if (argument)
            recorder::put(text, *argument);
        else
            text.add("null");
    }
};
using Match = In<pipe_match_spec>;
using Spec = In<pipe_action_spec>;
using Indices = In<u32>;
using Counts = In<pipe_stat_data>;
using Meter = In<pipe_meter_spec>;
using Wred = In<pipe_wred_spec>;
using Element = In<pipe_stful_value>;

const Answer &chip()
{
    return answer;
}

const Answer &placed()
{
    return placement ? *placement : answer;
}

// Gets a member of the answer.
template <auto member, auto from = chip>
struct Out : Hidden<std::remove_cvref_t<decltype(answer.*member)> *> {
    using Type = std::remove_cvref_t<decltype(answer.*member)> *;
    static void give(Type to, const Words &)
    {
        if (to)
            *to = from().*member;
    }
};
using NewHandle = Out<&Answer::entry>;
using ActionOut = Out<&Answer::action>;
using PlacedAction = Out<&Answer::action, placed>;
using EntryCounts = Out<&Answer::counts>;

template <std::size_t index>
struct NumberOut : Hidden<u32 *> {
    static void give(u32 *to, const Words &) { *to = answer.numbers[index]; }
};

// What it held before is in the line.
template <typename Given>
struct Shown : Given {
    using Type = typename Given::Type;
    static void put(Text &text, Type to, const Words &words)
    {
        In<std::remove_pointer_t<Type>>::put(text, to, words);
    }
};
template <std::size_t index>
using NumberInOut = Shown<NumberOut<index>>;
using MeterInOut = Shown<Out<&Answer::meter>>;
using IdleInOut = Shown<Out<&Answer::idle>>;

// The buffers are as long as what the driver will write.
template <auto from = chip>
struct MatchOut : Hidden<pipe_match_spec *> {
    static void put(Text &text, pipe_match_spec *match, const Words &)
    {
        text.separate();
        put_match(text, *match, from().value.size());
    }
    static void give(pipe_match_spec *match, const Words &)
    {
        const Answer &given = from();
        std::ranges::copy(given.value, match->match_value);
        std::ranges::copy(given.mask, match->match_mask);
        if (given.null_value)
            match->match_value = nullptr;
        match->num_bytes = given.num_bytes;
        match->partition_index = given.partition_index;
        match->priority = given.priority;
    }
};

template <auto from = chip>
struct DataOut : Hidden<pipe_action_data *> {
    static void put(Text &text, pipe_action_data *data, const Words &)
    {
        text.separate();
        put_data(text, *data, answer.data.size());
    }
    static void give(pipe_action_data *data, const Words &)
    {
        if (data->data)
            std::ranges::copy(from().data, data->data);
    }
};

template <auto from = chip>
struct SpecOut : Hidden<pipe_action_spec *> {
    static void put(Text &text, pipe_action_spec *spec, const Words &)
    {
        text.separate();
        put_spec(text, *spec, answer.data.size());
    }
    static void give(pipe_action_spec *spec, const Words &words)
    {
        const Answer &given = from();
        DataOut<from>::give(&spec->action_data, words);
        spec->member_hdl = given.member;
        spec->group_hdl = given.group;
        spec->action_kind = given.action_kind;
        spec->resource_count = given.resource_count;
        std::ranges::copy(given.resources, spec->resources);
    }
};

// As many elements as the argument with this number, from 0, tells.
template <typename T, std::size_t count>
struct List : Hidden<T *> {
    static void put(Text &text, T *list, const Words &words)
    {
        text.separate();
        if (!list)
            return text.add("null");
        for (std::size_t i = 0; i < words[count]; ++i) {
            text.add(i ? " " : "[");
            recorder::put(text, list[i]);
        }
        text.add("]");
    }
};

template <std::size_t count>
using Handles = List<u32, count>;
template <std::size_t count>
using Resources = List<pipe_res_spec, count>;
template <std::size_t count>
using Attributes = List<pipe_hash_calc_input_field_attribute, count>;

template <std::size_t count>
struct Stream : Hidden<u8 *> {
    static void put(Text &text, u8 *bytes, const Words &words)
    {
        text.separate();
        text.add_bytes(bytes, words[count]);
    }
};
struct Trigger : Hidden<u8 *> {
    static void put(Text &text, u8 *bytes, const Words &)
    {
        text.separate();
        text.add_bytes(bytes, sizeof(pd_snapshot_phv));
    }
};

// Handles of a walk, or the members of a group with their states.
template <std::size_t count>
struct HandlesOut : Hidden<u32 *> {
    static void give(u32 *to, const Words &words)
    {
        std::copy_n(answer.numbers.begin(), std::min<std::size_t>(words[count], 4), to);
    }
};
template <std::size_t count>
struct MembersOut : Hidden<u32 *> {
    static void give(u32 *to, const Words &words)
    {
        for (u32 i = 0; i < words[count]; ++i)
            to[i] = 101 + i;
    }
};
template <std::size_t count>
struct StatesOut : Hidden<u8 *> {
    static void give(u8 *to, const Words &words) { std::fill_n(to, words[count], u8{1}); }
};

struct CountsOut : Hidden<pipe_stat_data **> {
    static void put(Text &text, pipe_stat_data **list, const Words &words)
    {
        In<pipe_stat_data>::put(text, *list, words);
    }
    static void give(pipe_stat_data **list, const Words &) { **list = answer.counts; }
};

// Words of the store that a reader must take no notice of.
struct StoreWord : Hidden<pd_word *> {
    static void give(pd_word *to, const Words &) { *to = ~pd_word{0}; }
};

// "4@0": the room of a query, and at which element behind the first query's it lies.
template <std::size_t count>
struct Queries : Hidden<pipe_stful_query *> {
    static void put(Text &text, pipe_stful_query *queries, const Words &words)
    {
        text.separate();
        for (std::size_t i = 0; i < words[count]; ++i)
            text.add("%s%u@%d", i ? " " : "", queries[i].count,
                     static_cast<int>(queries[i].elements - queries[0].elements));
    }
    static void give(pipe_stful_query *queries, const Words &words)
    {
        for (std::size_t i = 0; i < std::min<std::size_t>(words[count], answer.flags.size()); ++i)
            give_one(queries[i], answer.flags[i]);
    }
    // No more than there is room for.
    static void give_one(pipe_stful_query &query, const Bytes &flags)
    {
        query.count = std::min(query.count, static_cast<u32>(flags.size()));
        for (u32 i = 0; i < query.count; ++i) {
            std::fill_n(query.elements[i].bytes, sizeof query.elements[i].bytes, u8{0xee});
            query.elements[i].bytes[0] = flags[i];
        }
    }
};
struct Query : Hidden<pipe_stful_query *> {
    static constexpr Words one{1};
    static void put(Text &text, pipe_stful_query *query, const Words &) { Queries<0>::put(text, query, one); }
    static void give(pipe_stful_query *query, const Words &) { Queries<0>::give(query, one); }
};
struct IndicesRead : Hidden<u32 *> {
    static void give(u32 *to, const Words &) { *to = static_cast<u32>(answer.flags.size()); }
};

template <std::size_t capacity>
struct AttributesOut : Hidden<pipe_hash_calc_input_field_attribute *> {
    static u32 count(const Words &words)
    {
        return static_cast<u32>(std::min<std::size_t>(words[capacity], answer.attributes.size()));
    }
    static void give(pipe_hash_calc_input_field_attribute *to, const Words &words)
    {
        std::copy_n(answer.attributes.begin(), count(words), to);
    }
};
template <std::size_t capacity>
struct AttributeCount : In<u32> {
    static void give(u32 *to, const Words &words) { *to = AttributesOut<capacity>::count(words); }
};

struct Stages : Hidden<void *> {
    static void give(void *to, const Words &) { std::ranges::copy(answer.stages, static_cast<u8 *>(to)); }
};

// The element of a document that a call is about; a log gets a number besides.
struct Document : Hidden<cJSON *> {
    static void put(Text &text, cJSON *document, const Words &)
    {
        text.separate();
        text.add("%s", cJSON_GetObjectItem(document, "name")->valuestring);
    }
};
struct Log : Document {
    static void give(cJSON *document, const Words &words)
    {
        cJSON_AddNumberToObject(document, "state", static_cast<double>(words[1]));
    }
};

// Kept for the test.
struct ClientCallbacks : Hidden<pd_drv_client_callbacks *> {
    static void give(pd_drv_client_callbacks *from, const Words &) { callbacks = *from; }
};
struct RestoreCallback : Hidden<pipe_restore_state_cb> {
    static void give(pipe_restore_state_cb from, const Words &) { restore = from; }
};
struct ClientHandle : Hidden<u32 *> {
    static void give(u32 *to, const Words &) { *to = client_handle; }
};

template <typename... Kinds>
pd_status call(const char *operation, typename Kinds::Type... arguments)
{
    const Words words{word_of(arguments)...};
    keep(operation, [&](Text &text) { (Kinds::put(text, arguments, words), ...); });
    (Kinds::give(arguments, words), ...);
    return answer_status();
}

} // namespace

} // namespace recorder

// ---- Operations: name, and the kind of each argument ------------------------------------------------------

// Goes over a list with a parameter of a new name for each element.
#define PARENS ()
#define EXPAND(...) EXPAND_2(EXPAND_2(EXPAND_2(__VA_ARGS__)))
#define EXPAND_2(...) EXPAND_1(EXPAND_1(EXPAND_1(__VA_ARGS__)))
#define EXPAND_1(...) __VA_ARGS__
#define PARAMETERS(name, kind, ...)                                                                          \
    kind::Type name __VA_OPT__(, AGAIN_PARAMETERS PARENS(name##a, __VA_ARGS__))
#define AGAIN_PARAMETERS() PARAMETERS
#define ARGUMENTS(name, kind, ...) , name __VA_OPT__(AGAIN_ARGUMENTS PARENS(name##a, __VA_ARGS__))
#define AGAIN_ARGUMENTS() ARGUMENTS

#define OPERATION(name, ...)                                                                                 \
    pd_status name(__VA_OPT__(EXPAND(PARAMETERS(a, __VA_ARGS__))))                                           \
    {                                                                                                        \
        return recorder::call<__VA_ARGS__>(#name __VA_OPT__(EXPAND(ARGUMENTS(a, __VA_ARGS__))));             \
    }

using namespace recorder;

#include "recorder_operations.h"

// ---- What has no status -----------------------------------------------------------------------------------

pd_word p4_pd_ms_init_state()
{
    keep(__func__, [](Text &) {});
    return next_state++;
}

int bf_sys_dbg_mode()
{
    return debug_mode;
}

int bf_sys_log_and_trace(int module, int level, const char *format, ...)
{
    char text[512];
    va_list arguments;
    va_start(arguments, format);
    std::vsnprintf(text, sizeof text, format, arguments);
    va_end(arguments);
    if (announce)
        std::fprintf(stderr, "log %d %d [%s] %s\n", module, level, format, text);
    recorder::log.push_back({module, level, format, text});
    return -1; // a log that fails changes nothing
}

void *bf_sys_calloc(std::size_t count, std::size_t size)
{
    keep(__func__, [&](Text &text) {
        Value<u64>::put(text, count, {});
        Value<u64>::put(text, size, {});
    });
    return answer_status() != 0 && kept_lines == failing_call ? nullptr
                                                              : block(nullptr) = std::calloc(count, size);
}

void bf_sys_free(void *memory)
{
    if (!memory)
        std::abort();
    std::free(std::exchange(block(memory), nullptr));
}

// ---- Counting allocations ---------------------------------------------------------------------------------

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)

// A sanitizer has an allocator of its own, and hooks to count with. GCC comes without their header.
extern "C" int __sanitizer_install_malloc_and_free_hooks(void (*)(const volatile void *, std::size_t),
                                                         void (*)(const volatile void *));
namespace {
[[maybe_unused]] const int hooks = __sanitizer_install_malloc_and_free_hooks(
    [](const volatile void *, std::size_t) { ++allocations; }, [](const volatile void *) {});
} // namespace

#else

// In place of the C library's. operator new comes through malloc too.
extern "C" {

void *__libc_malloc(std::size_t);
void *__libc_calloc(std::size_t, std::size_t);
void *__libc_realloc(void *, std::size_t);

void *malloc(std::size_t size)
{
    ++allocations;
    return __libc_malloc(size);
}

void *calloc(std::size_t count, std::size_t size)
{
    ++allocations;
    return __libc_calloc(count, size);
}

void *realloc(void *memory, std::size_t size)
{
    ++allocations;
    return __libc_realloc(memory, size);
}
}

#endif
