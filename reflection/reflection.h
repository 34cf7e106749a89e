// Every table with its functions, for generic callers: shells, sweeps, loaders. One generated table holds the
// rows of the catalogue and, beside each, adapters of one signature around the exported functions. It needs
// the library and its rows; the library knows nothing of it.
#pragma once

#include <span>
#include <string_view>

#include "entry_arguments.h"
#include "pd_types.h"
#include "rows.h"

namespace reflection {

using EntryArguments = pd::EntryArguments;

// One action of one table. A function that does not exist is null.
struct ActionFunctions {
    const pd::Binding *row;
    pd_status (*add)(pd_sess_hdl, pd_dev_target, const EntryArguments &, pd_entry_hdl *);
    pd_status (*modify)(pd_sess_hdl, u32 device_id, pd_entry_hdl, const EntryArguments &);
    pd_status (*modify_by_match_spec)(pd_sess_hdl, pd_dev_target, const EntryArguments &);
};

struct TableFunctions {
    const pd::Table *row;
    std::span<const ActionFunctions> actions; // as row->actions
    pd_status (*table_delete)(pd_sess_hdl, u32 device_id, pd_entry_hdl);
    pd_status (*table_delete_by_match_spec)(pd_sess_hdl, pd_dev_target, const EntryArguments &);
    pd_status (*match_spec_to_entry_hdl)(pd_sess_hdl, pd_dev_target, const EntryArguments &, pd_entry_hdl *);
};

// All 158 tables, by handle.
std::span<const TableFunctions *const> tables();

// All 298 actions, by number.
std::span<const pd::Action *const> actions();

// Null when there is no such table, or no such action of it.
const TableFunctions *find_table(std::string_view name);
const ActionFunctions *find_action(const TableFunctions &table, std::string_view name);

} // namespace reflection
