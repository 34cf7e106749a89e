#include "capture_driver.h"

#include <algorithm>
#include <cstdio>
#include <cstring>

namespace capture {

Call last;
u32 calls;
pd_status status;
pd_entry_hdl entry;

namespace {

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

pd_status answer(const Call &call, const pipe_match_spec *match, const pipe_action_spec *spec,
                 pd_entry_hdl *result)
{
    ++calls;
    last = call;
    last.result = result;
    if (match)
        keep(*match);
    if (spec)
        keep(*spec);
    if (result)
        *result = entry;
    return status;
}

Call at(std::string_view operation, pd_sess_hdl sess, pd_dev_target target, u32 table)
{
    return {.operation = operation,
            .sess = sess,
            .device_id = target.device_id,
            .pipe_id = target.pipe_id,
            .table = table};
}

} // namespace

void reset()
{
    last = {};
    calls = 0;
    status = 0;
    entry = 0;
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
         << call.action << " ttl " << call.ttl << " flags " << call.flags << " result " << call.result;
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

using capture::answer;
using capture::at;

pd_status pipe_mgr_mat_ent_add(pd_sess_hdl sess, pd_dev_target target, u32 table, pipe_match_spec *match,
                               u32 action, pipe_action_spec *spec, u32 ttl, u32 flags, pd_entry_hdl *entry)
{
    capture::Call call = at(__func__, sess, target, table);
    call.action = action;
    call.ttl = ttl;
    call.flags = flags;
    return answer(call, match, spec, entry);
}

pd_status pipe_mgr_mat_ent_set_action(pd_sess_hdl sess, u32 device_id, u32 table, pd_entry_hdl entry,
                                      u32 action, pipe_action_spec *spec, u32 flags)
{
    capture::Call call = at(__func__, sess, {device_id, 0}, table);
    call.entry = entry;
    call.action = action;
    call.flags = flags;
    return answer(call, nullptr, spec, nullptr);
}

pd_status pipe_mgr_mat_ent_set_action_by_match_spec(pd_sess_hdl sess, pd_dev_target target, u32 table,
                                                    pipe_match_spec *match, u32 action,
                                                    pipe_action_spec *spec, u32 flags)
{
    capture::Call call = at(__func__, sess, target, table);
    call.action = action;
    call.flags = flags;
    return answer(call, match, spec, nullptr);
}

pd_status pipe_mgr_mat_ent_del(pd_sess_hdl sess, u32 device_id, u32 table, pd_entry_hdl entry, u32 flags)
{
    capture::Call call = at(__func__, sess, {device_id, 0}, table);
    call.entry = entry;
    call.flags = flags;
    return answer(call, nullptr, nullptr, nullptr);
}

pd_status pipe_mgr_mat_ent_del_by_match_spec(pd_sess_hdl sess, pd_dev_target target, u32 table,
                                             pipe_match_spec *match, u32 flags)
{
    capture::Call call = at(__func__, sess, target, table);
    call.flags = flags;
    return answer(call, match, nullptr, nullptr);
}

pd_status pipe_mgr_match_spec_to_ent_hdl(pd_sess_hdl sess, pd_dev_target target, u32 table,
                                         pipe_match_spec *match, pd_entry_hdl *entry, u32 flags)
{
    capture::Call call = at(__func__, sess, target, table);
    call.flags = flags;
    return answer(call, match, nullptr, entry);
}
