// The driver operations on placement data: the software's copy of one entry, handed out as a blob.
#include "answer.h"
#include "pipe_mgr_match.h"
#include "table_operation.h"

using namespace model;

namespace {

struct Placement {
    const ProgramTable &table;
    pd_entry_hdl entry;
    EntryCopy contents;
};

// Null unless the words have the model's own meaning.
ts_model_plcmt_request *request_of(pd_word first, pd_word second)
{
    return second == 0 ? reinterpret_cast<ts_model_plcmt_request *>(first) : nullptr;
}

std::string request_text(const ts_model_plcmt_request *request)
{
    if (request == nullptr)
        return "null";
    return "{dev=" + decimal(request->device_id) + " entry=" + decimal(request->entry) + "}";
}

} // namespace

extern "C" {

pd_status pipe_mgr_plcmt_mat_data_get(pd_word first, pd_word second, u32 table)
{
    ts_model_plcmt_request *const request = request_of(first, second);
    const auto get = [&](Table &found) {
        const auto contents = found.software(request->entry);
        if (!contents)
            return unknown_object;
        request->data = new Placement{found.program(), request->entry, EntryCopy{*contents}};
        return ok;
    };
    return run(
        "pipe_mgr_plcmt_mat_data_get",
        [&] { return request != nullptr ? with_table(request->device_id, table, get) : bad_argument; },
        [&](Line &line) {
            line.words("request", request_text(request)).number("second", second).table(table);
        });
}

pd_status pipe_mgr_plcmt_mat_data_get_entry(void *plcmt_data, pipe_match_spec *match, pipe_action_spec *spec,
                                            u32 *action)
{
    const auto *const placement = static_cast<const Placement *>(plcmt_data);
    const auto decode = [&] {
        if (placement == nullptr)
            return bad_argument;
        const EntryView entry = placement->contents.view();
        if (!has_buffers(match, entry) || !has_buffers(spec, entry) || action == nullptr)
            return bad_argument;
        answer_match(placement->table, entry, *match);
        answer_action(placement->table, entry, *spec, *action);
        return ok;
    };
    return run(
        "pipe_mgr_plcmt_mat_data_get_entry", decode,
        [&](Line &line) {
            if (placement == nullptr)
                line.words("plcmt_data", "null");
            else
                line.table(placement->table.handle).number("entry", placement->entry);
        },
        [&](Line &line) {
            line.words("match", match_text(match));
            action_of_table(line, placement->table.handle, *action);
            line.words("spec", action_text(spec));
        });
}

void ts_model_free_plcmt_data(void *data)
{
    delete static_cast<Placement *>(data);
}

} // extern "C"
