#include "replay_values.h"

#include <algorithm>

#include "decoding.h"

namespace shell {

namespace {

using tap::Direction;
using tap::Kind;
using tap::Value;

constexpr u32 most_elements = 1 << 20; // of a list; a call that has more is damaged
constexpr u32 most_pipes = 16;         // that an index of a register has a value for

} // namespace

ReplayValues::ReplayValues(const tap::RecordedCall &call, ReplayHandles &handles)
    : rows_{call.operation().arguments}, handles_{handles}, from_{call.body}, ok_{!call.operation().local},
      values_(rows_.size()), sizes_(rows_.size())
{
    for (std::size_t at = 0; at < rows_.size() && ok_; ++at)
        if (rows_[at].direction == Direction::in)
            values_[at] = argument(at);
        else if (tap::get_room(from_, rows_[at].kind, sizes_[at]))
            places_.push_back(at);
    for (std::size_t at = 0; at < rows_.size() && ok_; ++at)
        check_length(at);
    for (const std::size_t at : places_)
        if (ok_)
            values_[at] = place(at);
    ok_ = ok_ && from_.ok();
}

void ReplayValues::learn()
{
    for (const std::size_t at : places_) {
        if (!ReplayHandles::has(rows_[at].kind))
            return; // no operation has a handle behind another result
        handles_.learn(rows_[at].kind, table_, from_.word(), *values_[at].as<const u32 *>());
    }
}

// ---- Memory -----------------------------------------------------------------------------------------------

// Zeroed, and aligned for every record.
template <typename T>
T *ReplayValues::make(std::size_t count)
{
    return reinterpret_cast<T *>(memory_.emplace_back(sizeof(T) * count / sizeof(u64) + 1).data());
}

template <typename Record>
Record *ReplayValues::take()
{
    auto *record = make<Record>();
    get_record(from_, *record);
    return record;
}

template <typename Record>
Value ReplayValues::by_value()
{
    return Value::of(*take<Record>());
}

template <typename Record>
Value ReplayValues::by_pointer()
{
    return tap::get_presence(from_) ? Value::of(take<Record>()) : Value{};
}

template <typename T, typename Take>
Value ReplayValues::list(std::size_t at, Take take)
{
    if (!tap::get_presence(from_))
        return Value{};
    sizes_[at] = from_.count();
    auto *elements = make<T>(sizes_[at]);
    std::for_each_n(elements, sizes_[at], take);
    return Value::of(elements);
}

template <typename Record>
Value ReplayValues::records(std::size_t at)
{
    return list<Record>(at, [this](Record &record) { get_record(from_, record); });
}

// ---- What goes in -----------------------------------------------------------------------------------------

u32 ReplayValues::mapped(Kind kind, u64 handle) const
{
    return handles_.find(kind, table_, static_cast<u32>(handle));
}

Value ReplayValues::number(Kind kind)
{
    const u64 number = from_.number();
    if (kind == Kind::table || kind == Kind::value_set)
        table_ = static_cast<u32>(number);
    return Value{ReplayHandles::has(kind) ? mapped(kind, number) : number};
}

Value ReplayValues::action_spec()
{
    const Value value = by_pointer<pipe_action_spec>();
    if (auto *spec = value.as<pipe_action_spec *>()) {
        ok_ = spec->resource_count <= std::size(spec->resources);
        spec->member_hdl = mapped(Kind::member, spec->member_hdl);
        spec->group_hdl = mapped(Kind::group, spec->group_hdl);
    }
    return value;
}

Value ReplayValues::argument(std::size_t at)
{
    switch (rows_[at].kind) {
    case Kind::target:
        return by_value<pd_dev_target>();
    case Kind::idle_params:
        return by_value<pipe_idle_params>();
    case Kind::property_value:
        return by_value<pipe_pvs_property_value>();
    case Kind::property_args:
        return by_value<pipe_pvs_property_args>();
    case Kind::match:
        return by_pointer<pipe_match_spec>();
    case Kind::action_spec:
        return action_spec();
    case Kind::meter_spec:
        return by_pointer<pipe_meter_spec>();
    case Kind::wred_spec:
        return by_pointer<pipe_wred_spec>();
    case Kind::register_value:
        return by_pointer<pipe_stful_value>();
    case Kind::counts:
        return by_pointer<pipe_stat_data>();
    case Kind::numbers:
        return list<u32>(at, [this](u32 &element) { element = from_.word(); });
    case Kind::members:
        return list<u32>(at, [this](u32 &element) { element = mapped(Kind::member, from_.number()); });
    case Kind::bytes:
        return list<u8>(at, [this](u8 &element) { std::ranges::copy(from_.bytes(1), &element); });
    case Kind::resources:
        return records<pipe_res_spec>(at);
    case Kind::attributes:
        return records<pipe_hash_calc_input_field_attribute>(at);
    case Kind::action_data:
    case Kind::query:
    case Kind::queries:
    case Kind::counts_list: // these only come out
    case Kind::client:
    case Kind::document:
    case Kind::selection:
    case Kind::text:
    case Kind::format:
    case Kind::opaque:
    case Kind::callback:
        ok_ = false;
        return Value{};
    default:
        return number(rows_[at].kind);
    }
}

// A list has as many elements as the argument beside it says.
void ReplayValues::check_length(std::size_t at)
{
    const signed char count = rows_[at].count;
    if (count < 0)
        return;
    const u64 said = values_[count].number();
    if (rows_[at].direction == Direction::out)
        sizes_[at] = static_cast<u32>(said);
    ok_ = said <= most_elements && (values_[at].number() == 0 || sizes_[at] == said);
}

// ---- What goes out ----------------------------------------------------------------------------------------

Value ReplayValues::queries(u32 count, u32 elements)
{
    auto *queries = make<pipe_stful_query>(count);
    for (u32 at = 0; at < count; ++at)
        queries[at] = {elements, make<pipe_stful_value>(elements)};
    return Value::of(queries);
}

Value ReplayValues::cells(u32 count)
{
    auto **cells = reinterpret_cast<pipe_stat_data **>(make<u64>(count)); // room enough for pointers
    for (u32 at = 0; at < count; ++at)
        cells[at] = make<pipe_stat_data>();
    return Value::of(cells);
}

Value ReplayValues::place(std::size_t at)
{
    const u32 size = sizes_[at];
    switch (rows_[at].kind) {
    case Kind::match: {
        auto *match = make<pipe_match_spec>();
        match->num_bytes = static_cast<u16>(size);
        match->match_value = make<u8>(match->num_bytes);
        match->match_mask = make<u8>(match->num_bytes);
        return Value::of(match);
    }
    case Kind::action_spec: {
        auto *spec = make<pipe_action_spec>();
        spec->action_data = {0, static_cast<u16>(size), make<u8>(static_cast<u16>(size))};
        return Value::of(spec);
    }
    case Kind::action_data: {
        auto *data = make<pipe_action_data>();
        *data = {0, static_cast<u16>(size), make<u8>(static_cast<u16>(size))};
        return Value::of(data);
    }
    case Kind::query:
        ok_ = size <= most_elements;
        return queries(1, ok_ ? size : 0);
    case Kind::queries:
        return queries(size, most_pipes);
    case Kind::counts_list:
        return cells(size);
    case Kind::numbers:
    case Kind::members:
        return Value::of(make<u32>(size));
    case Kind::bytes:
        return Value::of(make<u8>(size));
    case Kind::attributes:
        return Value::of(make<pipe_hash_calc_input_field_attribute>(size));
    default: // a number, or a record of numbers
        return Value::of(make<u64>(8));
    }
}

} // namespace shell
