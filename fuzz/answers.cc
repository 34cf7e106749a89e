#include "answers.h"

#include <utility>
#include <vector>

#include "bf_sys.h"
#include "pd_ms.h"
#include "pipe_mgr.h"

namespace {

fuzz::Answer current{{nullptr, 0}, 0, {}};
std::vector<void *> blocks; // given out since

u32 take_action(fuzz::Bytes &in, std::span<const pd::Binding> actions)
{
    const bool known = in.take() % 8 != 0;
    return known && !actions.empty() ? in.pick(actions).handle : in.take<u32>();
}

void answer_key(fuzz::Bytes &in, std::size_t key_bytes, pipe_match_spec &match)
{
    if (match.match_value) {
        in.take_into(match.match_value, key_bytes);
        in.take_into(match.match_mask, key_bytes);
    }
    match.partition_index = in.take<u32>();
    match.priority = in.take<u32>();
    match.num_valid_bits = in.take<u16>();
    match.num_bytes = in.take<u16>();
    if (in.take() % 8 == 0)
        match.match_value = nullptr; // the default entry
}

void answer_data(fuzz::Bytes &in, pipe_action_data &data)
{
    data.num_valid_bits = in.take<u16>();
    data.num_bytes = in.take<u16>();
    if (data.data)
        in.take_into(data.data, 28);
}

void answer_spec(fuzz::Bytes &in, pipe_action_spec &spec)
{
    spec.action_kind = in.take() % 8;
    spec.resource_count = in.take();
    for (pipe_res_spec &resource : spec.resources) {
        in.take_into(&resource.res_handle, sizeof resource.res_handle);
        in.take_into(&resource.res_index, sizeof resource.res_index);
        resource.res_tag = in.take() % 4;
    }
    spec.member_hdl = in.take<u32>();
    spec.group_hdl = in.take<u32>();
    answer_data(in, spec.action_data);
}

pd_status answer_entry(const fuzz::Answer &answer, pipe_match_spec *match, pipe_action_spec &spec,
                       u32 &action)
{
    fuzz::Bytes in = answer.bytes;
    const u8 status = in.take();
    if (status % 16 == 15)
        return status;
    action = take_action(in, answer.actions);
    answer_spec(in, spec);
    if (match)
        answer_key(in, answer.key_bytes, *match);
    return 0;
}

pd_status answer_member(const fuzz::Answer &answer, pipe_action_data &data, u32 &action)
{
    fuzz::Bytes in = answer.bytes;
    const u8 status = in.take();
    action = take_action(in, answer.actions);
    answer_data(in, data);
    return status % 16 == 15 ? status : 0;
}

} // namespace

void fuzz::set_answer(const Answer &answer)
{
    current = answer;
}

void fuzz::forget_answer()
{
    for (void *block : std::exchange(blocks, {}))
        std::free(block);
}

extern "C" {

pd_status pipe_mgr_get_entry(pd_sess_hdl, u32, pd_dev_target, pd_entry_hdl, pipe_match_spec *match,
                             pipe_action_spec *spec, u32 *action, u8, u32, u32)
{
    return answer_entry(current, match, *spec, *action);
}

pd_status pipe_mgr_table_get_default_entry(pd_sess_hdl, pd_dev_target, u32, pipe_action_spec *spec,
                                           u32 *action, u8, u32, u32)
{
    return answer_entry(current, nullptr, *spec, *action);
}

pd_status pipe_mgr_plcmt_mat_data_get_entry(void *data, pipe_match_spec *match, pipe_action_spec *spec,
                                            u32 *action)
{
    return answer_entry(*static_cast<fuzz::Answer *>(data), match, *spec, *action);
}

pd_status pipe_mgr_get_action_data_entry(u32, pd_dev_target, pd_mbr_hdl, pipe_action_data *data, u32 *action,
                                         u8)
{
    return answer_member(current, *data, *action);
}

pd_status pipe_mgr_plcmt_adt_data_get_entry(void *data, pipe_action_data *spec, u32 *action)
{
    return answer_member(*static_cast<fuzz::Answer *>(data), *spec, *action);
}

pd_status p4_pd_ms_mbr_get_res(pd_word, u32, pd_mbr_hdl, pd_word *, pd_word *)
{
    return 1;
}

pd_status p4_pd_ms_grp_update_res(u32, pd_grp_hdl, pd_word)
{
    return 0;
}

int bf_sys_dbg_mode(void)
{
    return 0;
}

int bf_sys_log_and_trace(int, int, const char *, ...)
{
    return 0;
}

// A default entry that cannot be read keeps its list, as the library's contract has it: no leak to be told.
void *bf_sys_calloc(size_t count, size_t size)
{
    return blocks.emplace_back(std::calloc(count, size));
}

void bf_sys_free(void *memory)
{
    std::erase(blocks, memory);
    std::free(memory);
}
}
