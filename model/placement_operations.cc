// The driver operations on the placement data of match tables, and what frees placement data of any kind.
#include "answer.h"
#include "pipe_mgr_match.h"
#include "placement.h"
#include "table_operation.h"

using namespace model;

namespace model {

pd_status pipe_mgr_plcmt_mat_data_get(pd_word first, pd_word second, u32 table)
{
    ts_model_plcmt_request *const request = request_of(first, second);
    const auto get = [&](Table &found) {
        const auto contents = found.software(request->entry);
        if (!contents)
            return unknown_object;
        request->data = new Placement{EntryPlacement{found.program(), request->entry, EntryCopy{*contents}}};
        return ok;
    };
    return answer_request(request, [&] { return with_table(request->device_id, table, get); });
}

pd_status pipe_mgr_plcmt_mat_data_get_entry(void *plcmt_data, pipe_match_spec *match, pipe_action_spec *spec,
                                            u32 *action)
{
    const auto *const placement = placement_of<EntryPlacement>(plcmt_data);
    if (placement == nullptr)
        return bad_argument;
    const EntryView entry = placement->contents.view();
    if (!has_buffers(*match, entry) || !has_buffers(*spec, entry))
        return bad_argument;
    answer_match(placement->table, entry, *match);
    answer_action(placement->table, entry, *spec, *action);
    return ok;
}

} // namespace model

extern "C" {

void ts_model_free_plcmt_data(void *data)
{
    delete static_cast<Placement *>(data);
}

} // extern "C"
