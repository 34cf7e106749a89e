// An entry as it is read: its key, what it does and what hangs on it. The default entry has no key.
#pragma once

#include <optional>
#include <span>
#include <vector>

#include "model.h"
#include "pipe_mgr_records.h"

namespace model {

// The memory is somebody else's.
struct EntryView {
    std::span<const u8> value = {}; // empty, like the mask, for the default entry
    std::span<const u8> mask = {};
    u32 partition = 0;
    u32 priority = 0;
    u32 ttl = 0;
    u32 action = 0;
    u8 action_kind = PIPE_ACTION_NONE;
    u32 member_or_group = 0;
    std::span<const u8> data = {};
    const pipe_res_spec *resource = nullptr; // null for none
};

ts_model_entry public_form(const EntryView &entry);

// An entry with memory of its own.
class EntryCopy {
public:
    EntryCopy() = default;
    explicit EntryCopy(const EntryView &entry);

    EntryView view() const;

    void set_key(std::span<const u8> value, std::span<const u8> mask);
    void set_action(u32 action, std::span<const u8> data);
    void set_reference(u32 action, u8 kind, u32 member_or_group);
    void set_resource(const pipe_res_spec &resource) { resource_ = resource; }
    void write_action(u32 action, const pipe_action_spec &spec);

private:
    EntryView plain_; // but for what the next four hold
    std::vector<u8> value_;
    std::vector<u8> mask_;
    std::vector<u8> data_;
    std::optional<pipe_res_spec> resource_;
};

// What an action record tells of the entry that it is written to.
u32 member_or_group(const pipe_action_spec &spec); // 0 for neither
std::span<const u8> data_of(const pipe_action_spec &spec);
bool brings_resource(const pipe_action_spec &spec, bool has_resource); // in place of the one it has

} // namespace model
