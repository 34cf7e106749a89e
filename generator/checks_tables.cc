#include <algorithm>

#include "checker.h"

namespace pdgen {

constexpr HandleRange table_handles{"table", first_table_handle, last_table_handle};

void Checker::check_table_order(const Group &group)
{
    for (std::size_t i = 1; i < group.tables.size(); ++i)
        if (group.tables[i].handle < group.tables[i - 1].handle)
            wrong(group.tables[i].place, group.tables[i].name + ".handle",
                  "tables of a file stand by handle, and ", group.tables[i - 1].name, " has a higher one");
}

void Checker::check_table(const Table &table)
{
    check_name("table", table.name, table.place);
    check_handle(table_handles, table.name + ".handle", table.handle, table.place);
    if (!is_plain(table.brief))
        wrong(table.place, table.name + ".brief", not_plain);
    check_key(table);
    check_record_order(table);
    check_bindings(table.name, table.actions);
    check_action_source(table);
    check_table_resources(table);
    if (table.ttl_on_add && !table.idle_time)
        wrong(table.place, table.name + ".ttl_on_add", "the table has no idle time");
}

// A table has actions of its own, or those of its profile. A keyless table has nothing but its default.
void Checker::check_action_source(const Table &table)
{
    const bool indirect = catalogue.profile_of(table);
    if (indirect && !table.actions.empty())
        wrong(table.place, table.name + ".actions",
              "the table has a profile and can have no actions of its own");
    if (!indirect && table.actions.empty())
        wrong(table.place, table.name + ".actions", "the table has neither actions nor a profile");
    if (!table.key.empty())
        return;
    const auto is_default = [](const Binding &binding) { return binding.default_action; };
    if (indirect)
        wrong(table.place, table.name + ".key", "is missing: a table that a profile serves has one");
    else if (!std::all_of(table.actions.begin(), table.actions.end(), is_default))
        wrong(table.place, table.name + ".actions", "a keyless table runs its default action only");
}

void Checker::check_table_resources(const Table &table)
{
    const int count = !table.counter.empty() + !table.meter.empty() + !table.indexed_resource.empty();
    if (count > 1)
        wrong(table.place, table.name, "has more than one resource");
    check_use(table, "counter", table.counter, "counter ");
    check_use(table, "meter", table.meter, "meter ");
    check_use(table, "indexed_resource", table.indexed_resource, nullptr);
    if (table.indexed_resource.empty())
        return;
    for (const Binding &binding : table.actions)
        if (const auto user = index_users.find(table.indexed_resource);
            user != index_users.end() && user->second == binding.name)
            return;
    wrong(table.place, table.name + ".indexed_resource", "no action of the table indexes ",
          table.indexed_resource);
}

void Checker::check_use(const Table &table, const char *column, const std::string &resource, const char *kind)
{
    if (resource.empty())
        return;
    if (kind ? !names.contains(kind + resource) : !catalogue.find_resource(resource)) {
        wrong(table.place, table.name + "." + column, "there is no ", kind ? kind : "counter or meter ", "\"",
              resource, "\"");
        return;
    }
    const auto [first, fresh] = users.emplace(resource, table.name);
    if (!fresh)
        wrong(table.place, table.name + "." + column, resource, " belongs to ", first->second, " already");
}

} // namespace pdgen
