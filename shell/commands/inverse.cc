#include "inverse.h"

#include "driver.h"
#include "entry_reader.h"
#include "meters.h"
#include "tables.h"

namespace shell {

namespace {

using reflection::TableFunctions;

std::string body_of(const EntryReader &reader, const TableFunctions &table, pd_entry_hdl entry)
{
    std::string text = reader.body_text();
    if (!table.row->direct_meter)
        return text;
    const std::string meter = meter_option(table, entry);
    return meter.empty() ? text : text + ' ' + meter;
}

} // namespace

std::string modify_back(Session &session, const TableFunctions &table, pd_entry_hdl entry)
{
    EntryReader reader{table, false, session.names(table)};
    reader.read(entry);
    return std::string{"modify "} + table.row->name + ' ' + std::to_string(entry) + " : " +
           body_of(reader, table, entry);
}

std::string default_back(Session &session, const TableFunctions &table)
{
    EntryReader reader{table, false, session.names(table)};
    reader.read_default();
    if (reader.names() && reader.reference().handle == 0)
        return std::string{"reset "} + table.row->name;
    return std::string{"default "} + table.row->name + " : " +
           body_of(reader, table, default_entry_of(table));
}

} // namespace shell
