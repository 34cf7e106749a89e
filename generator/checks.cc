#include "checker.h"

namespace pdgen {

void Checker::run()
{
    check_root();
    check_actions();
    check_resources();
    for (const Group &group : catalogue.groups) {
        if (!is_plain(group.title))
            wrong(group.place, "title", not_plain);
        check_table_order(group);
        for (const Table &table : group.tables)
            check_table(table);
    }
    check_profiles();
    check_uses();
    check_services();
    check_snapshots();
    check_schemas();
    check_labels();
    check_operations();
    check_functions();
}

// Names of functions and types begin with the prefix.
void Checker::check_root()
{
    check_identifier(catalogue.place, "program", catalogue.program, false);
    check_identifier(catalogue.place, "prefix", catalogue.prefix, false);
}

void Checker::check_uses()
{
    for (const Action &action : catalogue.actions)
        if (!action.name.empty() && !used_actions.contains(action.name))
            wrong(action.place, action.name, "no table or profile uses this action");
    for (const auto &[resource, action] : index_users)
        if (!users.contains(resource))
            wrong(catalogue.find_action(action)->place, action, "no table has the indexed resource ",
                  resource);
}

void check_catalogue(const Catalogue &catalogue, Diagnostics &diagnostics)
{
    Checker(catalogue, diagnostics).run();
}

} // namespace pdgen
