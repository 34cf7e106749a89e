#include "capture_driver.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <sstream>
#include <utility>

#include "bf_sys.h"
#include "capture_services.h"

namespace capture {

Call last;
u32 calls;
pd_status status;
pd_entry_hdl entry;
Answer answer;
const Answer *placement;
Allocation allocation;
bool out_of_memory;

namespace {

std::array<std::string_view, 8> step_names;
u32 step_count;

// Steps beyond the room are of no interest to anyone.
void step(std::string_view name)
{
    if (step_count < step_names.size())
        step_names[step_count++] = name;
}

Image copy(const u8 *bytes, u32 size)
{
    Image image{.size = size};
    if (bytes)
        std::copy_n(bytes, std::min<std::size_t>(size, image.bytes.size()), image.bytes.begin());
    return image;
}

void keep(const pipe_match_spec &match)
{
    last.has_match = true;
    last.value = copy(match.match_value, match.num_bytes);
    last.mask = copy(match.match_mask, match.num_bytes);
    last.partition_index = match.partition_index;
    last.priority = match.priority;
    last.packed = u32{match.num_bytes} << 16 | match.num_valid_bits;
    last.match_reserved = match.match_reserved;
}

void keep(const pipe_action_spec &spec)
{
    last.has_spec = true;
    last.data = copy(spec.action_data.data, spec.action_data.num_bytes);
    last.data_is_null = !spec.action_data.data;
    std::memcpy(last.spec.data(), &spec, sizeof spec);
    constexpr std::size_t pointer =
        offsetof(pipe_action_spec, action_data) + offsetof(pipe_action_data, data);
    std::fill_n(last.spec.begin() + pointer, sizeof(void *), u8{0});
}

pd_status finish(const Call &call, const pipe_match_spec *match, const pipe_action_spec *spec,
                 pd_entry_hdl *result)
{
    ++calls;
    step(call.operation);
    last = call;
    last.result = result;
    if (match)
        keep(*match);
    if (spec)
        keep(*spec);
    if (result)
        *result = entry;
    if (services::keep_calls)
        services::record(text(last));
    return services::answer(status);
}

Call at(std::string_view operation, pd_sess_hdl sess, pd_dev_target target, u32 table)
{
    return {.operation = operation,
            .sess = sess,
            .device_id = target.device_id,
            .pipe_id = target.pipe_id,
            .table = table};
}

// Keeps the buffers that the driver may write, which the sizes in the records need not tell.
void keep_buffers(const pipe_match_spec &match)
{
    last.value = copy(match.match_value, answer.value.size);
    last.mask = copy(match.match_mask, answer.mask.size);
}

void give(pipe_match_spec &match, const Answer &answer = capture::answer)
{
    if (answer.value.size)
        std::copy_n(answer.value.bytes.begin(), answer.value.size, match.match_value);
    if (answer.mask.size)
        std::copy_n(answer.mask.bytes.begin(), answer.mask.size, match.match_mask);
    if (answer.null_value)
        match.match_value = nullptr;
    match.num_bytes = answer.num_bytes;
    match.partition_index = answer.partition_index;
    match.priority = answer.priority;
}

void give(pipe_action_spec &spec, u32 &action, const Answer &answer = capture::answer)
{
    last.data = copy(spec.action_data.data, answer.data.size());
    if (spec.action_data.data)
        std::copy(answer.data.begin(), answer.data.end(), spec.action_data.data);
    spec.member_hdl = answer.member;
    spec.group_hdl = answer.group;
    spec.action_kind = answer.action_kind;
    spec.resource_count = answer.resource_count;
    std::copy(answer.resources.begin(), answer.resources.end(), spec.resources);
    action = answer.action;
}

std::array<void *, 4> blocks; // null where there is none

void *&block(void *memory)
{
    void **const found = std::find(blocks.begin(), blocks.end(), memory);
    if (found == blocks.end())
        std::abort(); // no room, or not one of ours
    return *found;
}

} // namespace

u32 live_allocations()
{
    return static_cast<u32>(std::count_if(blocks.begin(), blocks.end(), [](void *block) { return block; }));
}

void reset()
{
    last = {};
    calls = step_count = 0;
    status = 0;
    entry = 0;
    answer = {};
    placement = nullptr;
    std::for_each(blocks.begin(), blocks.end(), std::free);
    blocks = {};
    allocation = {};
    out_of_memory = false;
}

std::string text(const Call &call)
{
    std::ostringstream out;
    PrintTo(call, &out);
    return out.str();
}

std::string steps()
{
    std::string text;
    for (u32 i = 0; i < step_count; ++i)
        text.append(i ? " " : "").append(step_names[i]);
    return text;
}

pipe_action_spec spec_of(const Call &call)
{
    pipe_action_spec spec;
    std::memcpy(&spec, call.spec.data(), sizeof spec);
    return spec;
}

std::string hex(const u8 *bytes, std::size_t size)
{
    std::string text;
    for (std::size_t i = 0; i < size; ++i) {
        char digits[4];
        std::snprintf(digits, sizeof digits, i ? " %02x" : "%02x", bytes[i]);
        text += digits;
    }
    return text;
}

std::string hex(const Image &image)
{
    return hex(image.bytes.data(), std::min<std::size_t>(image.size, image.bytes.size()));
}

void PrintTo(const Call &call, std::ostream *out)
{
    *out << call.operation << std::hex << "\n  session " << call.sess << " device " << call.device_id
         << " pipe " << call.pipe_id << " table " << call.table << " entry " << call.entry << " action "
         << call.action << " ttl " << call.ttl << " flags " << call.flags << " result " << call.result
         << " words " << call.words[0] << " " << call.words[1] << " " << call.words[2];
    if (call.has_match)
        *out << "\n  value " << hex(call.value) << "\n  mask  " << hex(call.mask) << "\n  partition "
             << call.partition_index << " priority " << call.priority << " packed " << call.packed
             << " reserved " << call.match_reserved;
    if (call.has_spec)
        *out << "\n  data  " << hex(call.data) << (call.data_is_null ? " (null)" : "") << "\n  spec  "
             << hex(call.spec.data(), call.spec.size());
    *out << std::dec;
}

} // namespace capture

using capture::at;
using capture::finish;

pd_status pipe_mgr_mat_ent_add(pd_sess_hdl sess, pd_dev_target target, u32 table, pipe_match_spec *match,
                               u32 action, pipe_action_spec *spec, u32 ttl, u32 flags, pd_entry_hdl *entry)
{
    capture::Call call = at(__func__, sess, target, table);
    call.action = action;
    call.ttl = ttl;
    call.flags = flags;
    return finish(call, match, spec, entry);
}

pd_status pipe_mgr_mat_ent_set_action(pd_sess_hdl sess, u32 device_id, u32 table, pd_entry_hdl entry,
                                      u32 action, pipe_action_spec *spec, u32 flags)
{
    capture::Call call = at(__func__, sess, {device_id, 0}, table);
    call.entry = entry;
    call.action = action;
    call.flags = flags;
    return finish(call, nullptr, spec, nullptr);
}

pd_status pipe_mgr_mat_ent_set_action_by_match_spec(pd_sess_hdl sess, pd_dev_target target, u32 table,
                                                    pipe_match_spec *match, u32 action,
                                                    pipe_action_spec *spec, u32 flags)
{
    capture::Call call = at(__func__, sess, target, table);
    call.action = action;
    call.flags = flags;
    return finish(call, match, spec, nullptr);
}

pd_status pipe_mgr_mat_ent_del(pd_sess_hdl sess, u32 device_id, u32 table, pd_entry_hdl entry, u32 flags)
{
    capture::Call call = at(__func__, sess, {device_id, 0}, table);
    call.entry = entry;
    call.flags = flags;
    return finish(call, nullptr, nullptr, nullptr);
}

pd_status pipe_mgr_mat_ent_del_by_match_spec(pd_sess_hdl sess, pd_dev_target target, u32 table,
                                             pipe_match_spec *match, u32 flags)
{
    capture::Call call = at(__func__, sess, target, table);
    call.flags = flags;
    return finish(call, match, nullptr, nullptr);
}

pd_status pipe_mgr_match_spec_to_ent_hdl(pd_sess_hdl sess, pd_dev_target target, u32 table,
                                         pipe_match_spec *match, pd_entry_hdl *entry, u32 flags)
{
    capture::Call call = at(__func__, sess, target, table);
    call.flags = flags;
    return finish(call, match, nullptr, entry);
}

pd_status pipe_mgr_mat_default_entry_set(pd_sess_hdl sess, pd_dev_target target, u32 table, u32 action,
                                         pipe_action_spec *spec, u32 flags, pd_entry_hdl *entry)
{
    capture::Call call = at(__func__, sess, target, table);
    call.action = action;
    call.flags = flags;
    return finish(call, nullptr, spec, entry);
}

pd_status pipe_mgr_table_get_default_entry_handle(pd_sess_hdl sess, pd_dev_target target, u32 table,
                                                  pd_entry_hdl *entry)
{
    return finish(at(__func__, sess, target, table), nullptr, nullptr, entry);
}

pd_status pipe_mgr_table_get_default_entry(pd_sess_hdl sess, pd_dev_target target, u32 table,
                                           pipe_action_spec *spec, u32 *action, u8 from_hw, u32 resources,
                                           u32 flags)
{
    capture::Call call = at(__func__, sess, target, table);
    call.words = {from_hw, resources, flags};
    const pd_status status = finish(call, nullptr, spec, nullptr);
    capture::give(*spec, *action);
    return status;
}

pd_status pipe_mgr_mat_tbl_default_entry_reset(pd_sess_hdl sess, pd_dev_target target, u32 table, u32 flags)
{
    capture::Call call = at(__func__, sess, target, table);
    call.flags = flags;
    return finish(call, nullptr, nullptr, nullptr);
}

pd_status pipe_mgr_get_entry(pd_sess_hdl sess, u32 table, pd_dev_target target, pd_entry_hdl entry,
                             pipe_match_spec *match, pipe_action_spec *spec, u32 *action, u8 from_hw,
                             u32 resources, u32 flags)
{
    capture::Call call = at(__func__, sess, target, table);
    call.entry = entry;
    call.words = {from_hw, resources, flags};
    const pd_status status = finish(call, match, spec, nullptr);
    capture::keep_buffers(*match);
    capture::give(*match);
    capture::give(*spec, *action);
    return status;
}

pd_status pipe_mgr_plcmt_mat_data_get_entry(void *plcmt_data, pipe_match_spec *match, pipe_action_spec *spec,
                                            u32 *action)
{
    capture::Call call = at(__func__, 0, {}, 0);
    call.words = {reinterpret_cast<pd_word>(plcmt_data)};
    const pd_status status = finish(call, match, spec, nullptr);
    const capture::Answer &held = capture::placement ? *capture::placement : capture::answer;
    capture::keep_buffers(*match);
    capture::give(*match, held);
    capture::give(*spec, *action, held);
    return status;
}

pd_status pipe_mgr_plcmt_mat_data_get(pd_word first, pd_word second, u32 table)
{
    capture::Call call = at(__func__, 0, {}, table);
    call.words = {first, second};
    return finish(call, nullptr, nullptr, nullptr);
}

pd_status pipe_mgr_get_entry_count(pd_sess_hdl sess, pd_dev_target target, u32 table, u32 from_hw, u32 *count)
{
    capture::Call call = at(__func__, sess, target, table);
    call.words = {from_hw};
    return finish(call, nullptr, nullptr, count);
}

pd_status pipe_mgr_get_first_entry_handle(pd_sess_hdl sess, u32 table, pd_dev_target target, u32 *first)
{
    return finish(at(__func__, sess, target, table), nullptr, nullptr, first);
}

pd_status pipe_mgr_get_next_entry_handles(pd_sess_hdl sess, u32 table, pd_dev_target target, u32 after,
                                          u32 count, u32 *next)
{
    capture::Call call = at(__func__, sess, target, table);
    call.entry = after;
    call.words = {count};
    const pd_status status = finish(call, nullptr, nullptr, nullptr);
    capture::last.result = next;
    std::copy_n(capture::answer.numbers.begin(), std::min<std::size_t>(count, 4), next);
    return status;
}

pd_status pipe_mgr_tbl_set_property(pd_sess_hdl sess, u32 device_id, u32 table, u32 property, u32 value,
                                    u32 second_value, u32 flags)
{
    capture::Call call = at(__func__, sess, {device_id, 0}, table);
    call.words = {property, value, second_value};
    call.flags = flags;
    return finish(call, nullptr, nullptr, nullptr);
}

pd_status pipe_mgr_tbl_get_property(pd_sess_hdl sess, u32 device_id, u32 table, u32 property, u32 *value,
                                    u32 *second_value)
{
    capture::Call call = at(__func__, sess, {device_id, 0}, table);
    call.words = {property};
    *value = capture::answer.numbers[0];
    *second_value = capture::answer.numbers[1];
    return finish(call, nullptr, nullptr, nullptr);
}

pd_status pipe_register_mat_update_cb(pd_sess_hdl sess, u32 device_id, u32 table, pd_mat_update_cb callback,
                                      pd_word cookie)
{
    capture::Call call = at(__func__, sess, {device_id, 0}, table);
    call.words = {reinterpret_cast<pd_word>(callback), cookie};
    return finish(call, nullptr, nullptr, nullptr);
}

pd_status pipe_mgr_adt_ent_add(pd_sess_hdl sess, pd_dev_target target, u32 table, u32 action, u32 reserved,
                               pipe_action_spec *spec, pd_mbr_hdl *member, u32 flags)
{
    capture::Call call = at(__func__, sess, target, table);
    call.action = action;
    call.words = {reserved};
    call.flags = flags;
    return finish(call, nullptr, spec, member);
}

pd_status pipe_mgr_adt_ent_set(pd_sess_hdl sess, u32 device_id, u32 table, pd_mbr_hdl member, u32 action,
                               pipe_action_spec *spec, u32 flags)
{
    capture::Call call = at(__func__, sess, {device_id, 0}, table);
    call.entry = member;
    call.action = action;
    call.flags = flags;
    return finish(call, nullptr, spec, nullptr);
}

void *bf_sys_calloc(std::size_t count, std::size_t size)
{
    capture::step(__func__);
    if (services::keep_calls)
        services::record(services::line(__func__, count, size));
    const bool fails = capture::out_of_memory || services::answer(0) != 0;
    capture::allocation = {count, size};
    return fails ? nullptr : capture::block(nullptr) = std::calloc(count, size);
}

void bf_sys_free(void *memory)
{
    capture::step(__func__);
    if (!memory)
        std::abort();
    std::free(std::exchange(capture::block(memory), nullptr));
}
