#include "arguments.h"

#include <algorithm>

#include "decoding.h"

namespace tap {

namespace {

template <typename Record>
bool take_record(Cursor &from, Record &record)
{
    const bool there = get_presence(from);
    if (there)
        get_record(from, record);
    return there;
}

// Empty for a null list.
template <typename Record>
bool take_list(Cursor &from, std::vector<Record> &list)
{
    const bool there = get_presence(from);
    for (u32 left = there ? from.count() : 0; left > 0; --left)
        get_record(from, list.emplace_back());
    return there;
}

} // namespace

Arguments::Arguments(const RecordedCall &call)
{
    Cursor from{call.body};
    std::vector<const ArgumentRow *> places; // of results
    for (const ArgumentRow &row : call.operation().arguments) {
        u32 room;
        if (row.direction == Direction::in)
            take(from, row);
        else if (get_room(from, row.kind, room))
            places.push_back(&row);
        if (!ok_)
            return;
    }
    for (const ArgumentRow *row : places)
        if (call.has_results() && ok_)
            take(from, *row);
    ok_ = ok_ && from.ok();
}

u64 Arguments::number(std::string_view name) const
{
    const auto found = std::ranges::find(numbers_, name, &std::pair<std::string_view, u64>::first);
    return found != numbers_.end() ? found->second : 0;
}

void Arguments::take(Cursor &from, const ArgumentRow &row)
{
    switch (row.kind) {
    case Kind::target:
        return get_record(from, target);
    case Kind::idle_params:
        return get_record(from, idle);
    case Kind::match:
        ok_ = take_record(from, match);
        return;
    case Kind::action_spec:
        ok_ = take_record(from, action);
        return;
    case Kind::meter_spec:
        ok_ = take_record(from, meter);
        return;
    case Kind::counts:
        ok_ = take_record(from, counts);
        return;
    case Kind::register_value:
        has_value = take_record(from, value);
        return;
    case Kind::resources:
        ok_ = take_list(from, resources);
        return;
    case Kind::attributes:
        take_list(from, attributes);
        return;
    case Kind::property_value:
        return get_record(from, property);
    case Kind::property_args:
        return get_record(from, property_args);
    case Kind::action_data:
    case Kind::wred_spec:
    case Kind::query:
    case Kind::client:
    case Kind::document:
    case Kind::numbers:
    case Kind::members:
    case Kind::bytes:
    case Kind::queries:
    case Kind::counts_list:
    case Kind::text:
    case Kind::format:
        ok_ = false;
        return;
    default:
        numbers_.emplace_back(row.name, from.number());
    }
}

} // namespace tap
