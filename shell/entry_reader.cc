#include "entry_reader.h"

#include <algorithm>

#include "driver.h"

namespace shell {

EntryReader::EntryReader(const reflection::TableFunctions &table, bool from_hardware)
    : functions_(table), from_hardware_(from_hardware), key_fields_(shown_fields(*table.row)),
      key_(table.row->record_size / sizeof(u64) + 1)
{
    for (const pd::Binding &binding : table.row->actions)
        parameter_fields_.push_back(shown_fields(*binding.action));
}

void EntryReader::read(pd_entry_hdl entry)
{
    reflection::EntryResults results;
    results.key = key_.data();
    results.priority = &priority_;
    results.is_default = &is_default_;
    results.action = &action_.parameters;
    results.action_number = &action_.action_number;
    expect_success(functions_.get_entry(driver_session, device.device_id, entry, from_hardware_, results));
    handle_ = entry;
}

void EntryReader::read_default()
{
    expect_success(functions_.get_default_entry(driver_session, device, from_hardware_, &action_));
    is_default_ = 1;
}

void EntryReader::walk(const std::function<void()> &visit)
{
    std::array<pd_entry_hdl, 256> handles{};
    expect_success(functions_.get_first_entry_handle(driver_session, device, handles.data()));
    std::size_t count = 1; // of them, a 0 among them ends the table
    for (;;) {
        for (std::size_t i = 0; i < count; ++i) {
            if (handles[i] == 0)
                return;
            read(handles[i]);
            visit();
        }
        const pd_entry_hdl last = handles[count - 1];
        count = handles.size();
        handles.fill(0);
        expect_success(functions_.get_next_entry_handles(driver_session, device, last,
                                                         static_cast<u32>(count), handles.data()));
    }
}

const std::vector<ShownField> &EntryReader::parameter_fields() const
{
    const auto &actions = table().actions;
    const auto used = std::ranges::find(actions, action_.action_number,
                                        [](const pd::Binding &binding) { return binding.action->number; });
    return parameter_fields_[static_cast<std::size_t>(used - actions.begin())];
}

void EntryReader::append_json(std::string &to) const
{
    Json json{to};
    json.open_object().key("table").text(table().name);
    if (!is_default()) {
        json.key("entry").number(handle_).key("key");
        shell::append_json(json, key_fields_, key());
        if (pd::has_priority(table()))
            json.key("priority").number(priority_);
    }
    json.key("action").text(action().name).key("parameters");
    shell::append_json(json, parameter_fields(), parameters());
    json.close_object();
}

void EntryReader::append_action(std::string &to) const
{
    to += action().name;
    append_assignments(to, parameter_fields(), parameters());
}

} // namespace shell
