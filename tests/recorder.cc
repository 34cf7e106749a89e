#include "recorder.h"

#include <algorithm>
#include <cjson/cJSON.h>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <utility>

#include "any_driver.h"

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
    debug_mode = announce = false;
    std::ranges::for_each(blocks, std::free);
    blocks = {};
}

// ---- Arguments --------------------------------------------------------------------------------------------

namespace {

using tap::ArgumentRow, tap::Direction, tap::Kind, tap::OperationRow, tap::Value;

// A call: its row, its arguments, and the answer that is meant.
struct Call {
    const OperationRow &row;
    const Value *values;
    const Answer &given;

    template <typename T>
    T get(std::size_t at) const
    {
        return values[at].as<T>();
    }
    // Of a list, the elements that there are or may be.
    std::size_t count(const ArgumentRow &list) const
    {
        return list.count >= 0 ? values[list.count].number() : list.size;
    }
};

// The library's own callback: it has no cookie behind it.
bool is_restore(const Call &call, std::size_t at)
{
    return call.row.arguments[at].kind == Kind::callback && at + 1 == call.row.arguments.size();
}

// The library's own buffer for the stages of a snapshot.
bool is_capture(const Call &call, std::size_t at)
{
    return call.row.arguments[at].kind == Kind::opaque &&
           std::string_view{call.row.name}.starts_with("bf_snapshot");
}

template <typename T>
void put_list(Text &text, const T *list, std::size_t count)
{
    if (list)
        put(text, std::span{list, count});
    else
        text.add("null");
}

template <typename T>
void put_at(Text &text, const void *record)
{
    if (record)
        put(text, *static_cast<const T *>(record));
    else
        text.add("null");
}

constexpr std::pair<Kind, void (*)(Text &, const void *)> records[] = {
    {Kind::target, put_at<pd_dev_target>},
    {Kind::idle_params, put_at<pipe_idle_params>},
    {Kind::property_value, put_at<pipe_pvs_property_value>},
    {Kind::property_args, put_at<pipe_pvs_property_args>},
    {Kind::match, put_at<pipe_match_spec>},
    {Kind::action_spec, put_at<pipe_action_spec>},
    {Kind::meter_spec, put_at<pipe_meter_spec>},
    {Kind::wred_spec, put_at<pipe_wred_spec>},
    {Kind::register_value, put_at<pipe_stful_value>},
    {Kind::counts, put_at<pipe_stat_data>},
};

// Puts the record that the argument points at; false for what is no record.
bool put_record(Text &text, const Call &call, std::size_t at)
{
    const Kind kind = call.row.arguments[at].kind;
    if (kind == Kind::counts_list)
        put_at<pipe_stat_data>(text, *call.get<pipe_stat_data **>(at));
    else if (kind == Kind::document) // an element, which has a name
        put(text, cJSON_GetObjectItem(call.get<cJSON *>(at), "name")->valuestring);
    else if (const auto found = std::ranges::find(records, kind, [](const auto &row) { return row.first; });
             found != std::end(records))
        found->second(text, call.get<void *>(at));
    else
        return false;
    return true;
}

// "4@0": the room of each query, and at which element behind the first query's it lies.
void put_queries(Text &text, const pipe_stful_query *queries, std::size_t count)
{
    for (std::size_t i = 0; i < count; ++i)
        text.add("%s%u@%d", i ? " " : "", queries[i].count,
                 static_cast<int>(queries[i].elements - queries[0].elements));
}

// What a place holds before the driver writes to it shows where the library has to fill it. Buffers are as
// long as what the driver will write.
bool put_out(Text &text, const Call &call, std::size_t at)
{
    const ArgumentRow &row = call.row.arguments[at];
    switch (row.kind) {
    case Kind::match:
        put_match(text, *call.get<pipe_match_spec *>(at), call.given.value.size());
        return true;
    case Kind::action_spec:
        put_spec(text, *call.get<pipe_action_spec *>(at), call.given.data.size());
        return true;
    case Kind::action_data:
        put_data(text, *call.get<pipe_action_data *>(at), call.given.data.size());
        return true;
    case Kind::meter_spec:
    case Kind::idle_params:
    case Kind::counts_list:
    case Kind::document:
        return put_record(text, call, at);
    case Kind::query:
        put_queries(text, call.get<pipe_stful_query *>(at), 1);
        return true;
    case Kind::queries:
        put_queries(text, call.get<pipe_stful_query *>(at), call.count(row));
        return true;
    default: { // of a place nothing shows, but where there is none, or where it is the caller's own
        const bool shown = call.values[at].number() == 0 || (row.kind == Kind::bytes && row.written < 0);
        if (shown)
            put(text, call.values[at].number());
        return shown;
    }
    }
}

void put_in(Text &text, const Call &call, std::size_t at)
{
    const ArgumentRow &row = call.row.arguments[at];
    const std::size_t count = call.count(row);
    if (put_record(text, call, at))
        return;
    switch (row.kind) {
    case Kind::text:
        return put(text, call.get<const char *>(at));
    case Kind::numbers:
    case Kind::members:
        return put_list(text, call.get<u32 *>(at), count);
    case Kind::resources:
        return put_list(text, call.get<pipe_res_spec *>(at), count);
    case Kind::attributes:
        return put_list(text, call.get<pipe_hash_calc_input_field_attribute *>(at), count);
    case Kind::bytes:
        return text.add_bytes(call.get<u8 *>(at), count);
    case Kind::client:
        return put(text, "client");
    default:
        if (is_restore(call, at) || is_capture(call, at))
            return put(text, "own");
        return put(text, call.values[at].number());
    }
}

void put_arguments(Text &text, const Call &call)
{
    for (std::size_t at = 0; at < call.row.arguments.size(); ++at) {
        Text before = text;
        text.separate();
        if (call.row.arguments[at].direction == Direction::in)
            put_in(text, call, at);
        else if (!put_out(text, call, at))
            text = before;
    }
}

// ---- Answers ----------------------------------------------------------------------------------------------

void give_match(pipe_match_spec &to, const Answer &given)
{
    std::ranges::copy(given.value, to.match_value);
    std::ranges::copy(given.mask, to.match_mask);
    if (given.null_value)
        to.match_value = nullptr;
    to.num_bytes = given.num_bytes;
    to.partition_index = given.partition_index;
    to.priority = given.priority;
}

void give_data(pipe_action_data &to, const Answer &given)
{
    if (to.data)
        std::ranges::copy(given.data, to.data);
}

void give_spec(pipe_action_spec &to, const Answer &given)
{
    give_data(to.action_data, given);
    to.member_hdl = given.member;
    to.group_hdl = given.group;
    to.action_kind = given.action_kind;
    to.resource_count = given.resource_count;
    std::ranges::copy(given.resources, to.resources);
}

// No more than there is room for.
void give_queries(pipe_stful_query *queries, std::size_t count, const Answer &given)
{
    for (std::size_t i = 0; i < std::min(count, given.flags.size()); ++i) {
        pipe_stful_query &query = queries[i];
        query.count = std::min(query.count, static_cast<u32>(given.flags[i].size()));
        for (u32 element = 0; element < query.count; ++element) {
            std::fill_n(query.elements[element].bytes, sizeof query.elements[element].bytes, u8{0xee});
            query.elements[element].bytes[0] = given.flags[i][element];
        }
    }
}

// The list whose number of elements goes to this place; null for any other number.
const ArgumentRow *list_counted_by(const Call &call, std::size_t place)
{
    for (const ArgumentRow &row : call.row.arguments)
        if (row.written >= 0 && static_cast<std::size_t>(row.written) == place)
            return &row;
    return nullptr;
}

// How many elements the list got.
u32 written(const Call &call, const ArgumentRow &list)
{
    switch (list.kind) {
    case Kind::attributes:
        return static_cast<u32>(std::min(call.count(list), call.given.attributes.size()));
    case Kind::queries:
        return static_cast<u32>(call.given.flags.size());
    default: // the members of a group
        return call.given.numbers[1];
    }
}

void give(const Call &call, std::size_t at, std::size_t &numbers)
{
    const ArgumentRow &row = call.row.arguments[at];
    const Answer &given = call.given;
    const std::size_t count = call.count(row);
    switch (row.kind) {
    case Kind::action:
        *call.get<u32 *>(at) = given.action;
        break;
    case Kind::match:
        give_match(*call.get<pipe_match_spec *>(at), given);
        break;
    case Kind::action_data:
        give_data(*call.get<pipe_action_data *>(at), given);
        break;
    case Kind::action_spec:
        give_spec(*call.get<pipe_action_spec *>(at), given);
        break;
    case Kind::numbers: // of a walk
        std::copy_n(given.numbers.begin(), std::min(count, given.numbers.size()), call.get<u32 *>(at));
        break;
    case Kind::members: // likewise, or those of a group
        for (std::size_t i = 0; i < count && (row.written >= 0 || i < given.numbers.size()); ++i)
            call.get<u32 *>(at)[i] = row.written >= 0 ? static_cast<u32>(101 + i) : given.numbers[i];
        break;
    case Kind::bytes:
        if (row.written >= 0) // the states of these members
            std::fill_n(call.get<u8 *>(at), count, u8{1});
        break;
    case Kind::counts:
        *call.get<pipe_stat_data *>(at) = given.counts;
        break;
    case Kind::counts_list:
        **call.get<pipe_stat_data **>(at) = given.counts;
        break;
    case Kind::meter_spec:
        *call.get<pipe_meter_spec *>(at) = given.meter;
        break;
    case Kind::idle_params:
        *call.get<pipe_idle_params *>(at) = given.idle;
        break;
    case Kind::query:
    case Kind::queries:
        give_queries(call.get<pipe_stful_query *>(at), row.kind == Kind::query ? 1 : count, given);
        break;
    case Kind::attributes:
        std::copy_n(given.attributes.begin(), std::min(count, given.attributes.size()),
                    call.get<pipe_hash_calc_input_field_attribute *>(at));
        break;
    case Kind::word: // of the store, where a reader must take no notice of it
        *call.get<pd_word *>(at) = ~pd_word{0};
        break;
    case Kind::document: // a log
        cJSON_AddNumberToObject(call.get<cJSON *>(at), "state", static_cast<double>(call.values[1].number()));
        break;
    default: {
        const ArgumentRow *const list = list_counted_by(call, at);
        *call.get<u32 *>(at) = list ? written(call, *list) : given.numbers[numbers++];
    }
    }
}

void give_all(const Call &call)
{
    std::size_t numbers = 0;
    for (std::size_t at = 0; at < call.row.arguments.size(); ++at) {
        const ArgumentRow &row = call.row.arguments[at];
        if (row.direction == Direction::out && call.values[at].number() != 0)
            give(call, at, numbers);
        else if (row.kind == Kind::client)
            callbacks = *call.get<pd_drv_client_callbacks *>(at);
        else if (is_restore(call, at))
            restore = call.get<pipe_restore_state_cb>(at);
        else if (is_capture(call, at))
            std::ranges::copy(call.given.stages, call.get<u8 *>(at));
    }
}

// ---- Operations that give no status -----------------------------------------------------------------------

int write_log(const Value *values)
{
    const auto module = values[0].as<int>(), level = values[1].as<int>();
    const auto *text = values[2].as<const char *>();
    if (announce)
        std::fprintf(stderr, "log %d %d %s\n", module, level, text);
    log.push_back({module, level, text});
    return -1; // a log that fails changes nothing
}

void *allocate(const Call &call)
{
    keep(call.row.name, [&](Text &text) { put_arguments(text, call); });
    if (answer_status() != 0 && kept_lines == failing_call)
        return nullptr;
    return block(nullptr) = std::calloc(call.values[0].number(), call.values[1].number());
}

void release(void *memory)
{
    if (!memory)
        std::abort();
    std::free(std::exchange(block(memory), nullptr));
}

} // namespace

} // namespace recorder

u64 tap::any_operation(unsigned operation, std::initializer_list<Value> values)
{
    using namespace recorder;
    const tap::OperationRow &row = tap::operations()[operation];
    const bool placed = placement && row.arguments.size() > 1 && row.arguments[0].kind == tap::Kind::opaque;
    const Call call{row, values.begin(), placed ? *placement : answer};
    switch (row.returns) {
    case tap::Returns::nothing:
        release(call.get<void *>(0));
        return 0;
    case tap::Returns::memory:
        return reinterpret_cast<uintptr_t>(allocate(call));
    case tap::Returns::integer:
        return static_cast<u64>(values.size() == 0 ? debug_mode : write_log(call.values));
    default:
        keep(row.name, [&](Text &text) { put_arguments(text, call); });
        give_all(call);
        return row.returns == tap::Returns::selection ? next_state++ : answer_status();
    }
}

// ---- Counting allocations ---------------------------------------------------------------------------------

#ifdef TS_SANITIZED

// A sanitizer has an allocator of its own, and hooks to count with. GCC comes without their header.
extern "C" int __sanitizer_install_malloc_and_free_hooks(void (*)(const volatile void *, std::size_t),
                                                         void (*)(const volatile void *));
namespace {
[[maybe_unused]] const int hooks = __sanitizer_install_malloc_and_free_hooks(
    [](const volatile void *, std::size_t) { ++recorder::allocations; }, [](const volatile void *) {});
} // namespace

#else

// In place of the C library's. operator new comes through malloc too.
using recorder::allocations;

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
