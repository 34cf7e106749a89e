#include "entry_filter.h"

#include <algorithm>

#include "images.h"
#include "tables.h"

namespace shell {

namespace {

// Where the value and the mask of a field stand in the record that a filter is read to.
constexpr std::size_t value_bytes = 2 * sizeof(u64);

// The fields as those of a ternary key, whatever they are matched by.
std::vector<pd::Field> filter_fields(const pd::Table &table)
{
    std::vector<pd::Field> fields{table.key.begin(), table.key.end()};
    for (std::size_t i = 0; i < fields.size(); ++i) {
        fields[i].match = pd::Match::ternary;
        fields[i].offset = static_cast<u16>(2 * i * value_bytes);
        fields[i].twin_offset = static_cast<u16>(fields[i].offset + value_bytes);
    }
    return fields;
}

void expect_action(const reflection::TableFunctions &table, std::string_view name)
{
    const std::vector<std::string_view> names = action_names(table, ActionOf::entry);
    if (std::ranges::find(names, name) == names.end())
        refuse(name, {"action", table.row->name}, names);
}

} // namespace

EntryFilter::EntryFilter(Words &words, const reflection::TableFunctions &functions) : table_(*functions.row)
{
    const std::vector<pd::Field> fields = filter_fields(table_);
    pd::Table row = table_;
    row.key = fields;
    row.record_size = static_cast<u16>(fields.size() * 2 * value_bytes);
    Record record{row, KeyOf::entry};
    options_.takes_action = functions.indirect == nullptr;
    options_.takes_priority = pd::has_priority(table_);
    take_assignments(words, record, table_.name, options_);
    const auto *bytes = static_cast<const std::byte *>(record.data());
    for (const pd::Field &field : fields)
        wanted_.push_back(
            {load(field.width, bytes + field.offset), load(field.width, bytes + field.twin_offset)});
    if (options_.action)
        expect_action(functions, *options_.action);
}

bool EntryFilter::wants(const EntryReader &entry) const
{
    if (options_.action && *options_.action != entry.action().name())
        return false;
    if (options_.priority && *options_.priority != entry.priority())
        return false;
    for (std::size_t i = 0; i < table_.key.size(); ++i)
        if (!agrees(table_.key[i], wanted_[i], static_cast<const std::byte *>(entry.key())))
            return false;
    return true;
}

bool EntryFilter::agrees(const pd::Field &field, const Bits &wanted, const std::byte *key)
{
    return (mask_of(field, key) & wanted.mask) == wanted.mask &&
           (load(field.width, key + field.offset) & wanted.mask) == (wanted.value & wanted.mask);
}

} // namespace shell
