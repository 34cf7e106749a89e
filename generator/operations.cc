#include "operations.h"

#include <algorithm>
#include <iterator>

#include "row_reader.h"

namespace pdgen {

namespace {

constexpr const char *types = "pd_types.h";
constexpr const char *records = "pipe_mgr_records.h";
constexpr const char *callbacks = "callbacks.h";

constexpr Kind kinds[] = {
    {"session", "pd_sess_hdl", Form::value, types, "a session of the driver's"},
    {"target", "pd_dev_target", Form::value, types, "a device and one of its pipes, or all of them"},
    {"device", "u32", Form::value, types, "a device"},
    {"device_byte", "u8", Form::value, types, "a device, in a byte"},
    {"table", "u32", Form::value, types, "a table: of matches, of members or of groups"},
    {"action", "u32", Form::value, types, "an action of a table or profile"},
    {"counter", "u32", Form::value, types, "a counter table"},
    {"meter", "u32", Form::value, types, "a meter table"},
    {"register_table", "u32", Form::value, types, "a register table"},
    {"digest", "u32", Form::value, types, "a digest"},
    {"value_set", "u32", Form::value, types, "a parser value set"},
    {"calculation", "u32", Form::value, types, "a hash calculation"},
    {"handle", "u32", Form::value, types, "a word best read in hexadecimal"},
    {"entry", "pd_entry_hdl", Form::value, types, "an entry of a match table"},
    {"entry_word", "pd_word", Form::value, types, "an entry of a match table, in a word"},
    {"value_set_entry", "u32", Form::value, types, "an entry of a parser value set"},
    {"member", "pd_mbr_hdl", Form::value, types, "a member of an action profile"},
    {"group", "pd_grp_hdl", Form::value, types, "a group of an action profile"},
    {"selection", "pd_word", Form::value, types, "a state of the member-selection store"},
    {"number", "u32", Form::value, types, "a plain number"},
    {"byte", "u8", Form::value, types, "a plain number, in a byte"},
    {"word", "pd_word", Form::value, types, "a word that may carry a pointer"},
    {"integer", "int", Form::value, "", "a plain number with a sign"},
    {"size", "size_t", Form::value, "stddef.h", "a number of bytes or elements"},
    {"idle_params", "pipe_idle_params", Form::value, records, "how a table ages its entries"},
    {"property_value", "pipe_pvs_property_value", Form::value, records,
     "the value of a value set's property"},
    {"property_args", "pipe_pvs_property_args", Form::value, records, "what a value set's property is about"},
    {"match", "pipe_match_spec", Form::record, records,
     "a match record; read, it brings room for its images"},
    {"action_spec", "pipe_action_spec", Form::record, records, "an action record; read, it brings room"},
    {"action_data", "pipe_action_data", Form::record, records, "an action's image; read, it brings room"},
    {"meter_spec", "pipe_meter_spec", Form::record, records, "a meter record"},
    {"wred_spec", "pipe_wred_spec", Form::record, records, "a WRED record"},
    {"register_value", "pipe_stful_value", Form::record, records, "one element of a register"},
    {"query", "pipe_stful_query", Form::record, records, "the elements of one index; read, it brings room"},
    {"counts", "pipe_stat_data", Form::record, records, "the two counts of a cell"},
    {"client", "pd_drv_client_callbacks", Form::record, callbacks, "what a client wants to be called for"},
    {"document", "struct cJSON", Form::record, callbacks, "a cJSON document"},
    {"numbers", "u32", Form::list, types, "a list of numbers"},
    {"members", "pd_mbr_hdl", Form::list, types, "a list of members"},
    {"bytes", "u8", Form::list, types, "a byte buffer"},
    {"resources", "pipe_res_spec", Form::list, records, "the resources of an entry"},
    {"attributes", "pipe_hash_calc_input_field_attribute", Form::list, records, "attributes of input fields"},
    {"queries", "pipe_stful_query", Form::list, records, "the elements of one index after the other"},
    {"counts_list", "pipe_stat_data *", Form::list, records, "pointers to the counts of cells"},
    {"text", "const char *", Form::pointer, "", "a text that ends with a zero"},
    {"format", "const char *", Form::pointer, "", "a text of printf's, with what it asks for behind it"},
    {"opaque", "void *", Form::pointer, "", "a pointer that is handed on unread"},
    {"callback", "", Form::callback, callbacks, "a function to call; a cookie goes with it"},
};

struct Result {
    const char *name;
    const char *type;
};

constexpr Result results[] = {
    {"status", "pd_status"}, {"selection", "pd_word"}, {"integer", "int"},
    {"memory", "void *"},    {"nothing", "void"},
};

Argument read_argument(RowReader &row)
{
    Argument argument;
    argument.place = row.place();
    argument.name = row.text("name");
    argument.kind = row.text("kind");
    argument.direction = row.text_or("direction", "in");
    argument.type = row.text_or("type", "");
    argument.count = row.text_or("count", "");
    argument.written = row.text_or("written", "");
    argument.size = row.number_if_any("size");
    argument.optional = row.flag_or("optional", false);
    return argument;
}

Operation read_operation(RowReader &row)
{
    Operation operation;
    operation.place = row.place();
    operation.name = row.text("name");
    row.set_subject(operation.name);
    operation.section = row.text_or("section", "");
    operation.note = row.text_or("note", "");
    operation.brief = row.text("brief");
    operation.returns = row.text_or("returns", "status");
    operation.local = row.flag_or("local", false);
    row.rows("arguments", false, "arguments",
             [&](RowReader &argument) { operation.arguments.push_back(read_argument(argument)); });
    return operation;
}

} // namespace

const Kind *find_kind(const std::string &name)
{
    const auto found = std::ranges::find_if(kinds, [&](const Kind &kind) { return name == kind.name; });
    return found == std::end(kinds) ? nullptr : &*found;
}

bool is_pointer(const Argument &argument)
{
    return find_kind(argument.kind)->form != Form::value || argument.direction == "out";
}

const char *result_type(const std::string &returns)
{
    const auto found =
        std::ranges::find_if(results, [&](const Result &result) { return returns == result.name; });
    return found == std::end(results) ? nullptr : found->type;
}

std::optional<std::size_t> Operation::position(const std::string &argument) const
{
    const auto found =
        std::ranges::find_if(arguments, [&](const Argument &other) { return other.name == argument; });
    if (found == arguments.end())
        return std::nullopt;
    return found - arguments.begin();
}

DriverHeader read_driver_header(RowReader &row)
{
    DriverHeader header;
    header.place = row.place();
    header.name = row.text("name");
    row.set_subject(header.name);
    header.brief = row.text("brief");
    header.text = row.text_or("text", "");
    row.rows("operation", true, "operation",
             [&](RowReader &operation) { header.operations.push_back(read_operation(operation)); });
    return header;
}

} // namespace pdgen
