#include "entry_copy.h"

namespace model {

ts_model_entry public_form(const EntryView &entry)
{
    const pipe_res_spec resource = entry.resource != nullptr ? *entry.resource : pipe_res_spec{};
    return {.value = entry.value.data(),
            .mask = entry.mask.data(),
            .key_bytes = static_cast<u32>(entry.value.size()),
            .partition_index = entry.partition,
            .priority = entry.priority,
            .action = entry.action,
            .action_kind = entry.action_kind,
            .data = entry.data.data(),
            .data_bytes = static_cast<u32>(entry.data.size()),
            .handle_of_member_or_group = entry.member_or_group,
            .res_count = entry.resource != nullptr,
            .res_handle = resource.res_handle,
            .res_index = resource.res_index,
            .res_tag = resource.res_tag,
            .ttl = entry.ttl};
}

EntryCopy::EntryCopy(const EntryView &entry)
    : plain_{entry}, value_(entry.value.begin(), entry.value.end()),
      mask_(entry.mask.begin(), entry.mask.end()), data_(entry.data.begin(), entry.data.end())
{
    if (entry.resource != nullptr)
        resource_ = *entry.resource;
}

EntryView EntryCopy::view() const
{
    EntryView entry = plain_;
    entry.value = value_;
    entry.mask = mask_;
    entry.data = data_;
    entry.resource = resource_ ? &*resource_ : nullptr;
    return entry;
}

void EntryCopy::set_key(std::span<const u8> value, std::span<const u8> mask)
{
    value_.assign(value.begin(), value.end());
    mask_.assign(mask.begin(), mask.end());
}

void EntryCopy::set_action(u32 action, std::span<const u8> data)
{
    plain_.action = action;
    data_.assign(data.begin(), data.end());
}

void EntryCopy::set_reference(u32 action, u8 kind, u32 member_or_group)
{
    plain_.action = action;
    plain_.action_kind = kind;
    plain_.member_or_group = member_or_group;
}

void EntryCopy::write_action(u32 action, const pipe_action_spec &spec)
{
    set_action(action, data_of(spec));
    plain_.action_kind = spec.action_kind;
    plain_.member_or_group = member_or_group(spec);
    if (brings_resource(spec, resource_.has_value()))
        resource_ = spec.resources[0];
}

u32 member_or_group(const pipe_action_spec &spec)
{
    switch (spec.action_kind) {
    case PIPE_ACTION_MEMBER:
        return spec.member_hdl;
    case PIPE_ACTION_GROUP:
        return spec.group_hdl;
    default:
        return 0;
    }
}

std::span<const u8> data_of(const pipe_action_spec &spec)
{
    if (spec.action_kind != PIPE_ACTION_DATA)
        return {};
    return {spec.action_data.data, spec.action_data.num_bytes};
}

bool brings_resource(const pipe_action_spec &spec, bool has_resource)
{
    return spec.resource_count != 0 && (!has_resource || spec.resources[0].res_tag != PIPE_RES_KEEP);
}

} // namespace model
