#include "entry_reader.h"

#include "driver.h"
#include "model.h"
#include "profiles.h"
#include "shown_reference.h"
#include "tables.h"

namespace shell {

namespace {

// Whether the driver knew the entry. BadLine when it refused for another reason.
bool is_there(pd_status status)
{
    if (status != TS_MODEL_UNKNOWN_OBJECT)
        expect_success(status);
    return status == TS_MODEL_OK;
}

} // namespace

EntryReader::EntryReader(const reflection::TableFunctions &table, bool from_hardware,
                         const ProfileNames *names)
    : functions_(table), from_hardware_(from_hardware), names_(names), key_fields_(shown_fields(*table.row)),
      key_(table.row->record_size / sizeof(u64) + 1), action_(table.row->actions)
{
}

// Where an entry is read to.
reflection::EntryResults EntryReader::results()
{
    is_default_ = table().key.empty(); // which a keyless table does not say
    reflection::EntryResults results;
    results.key = key_.data();
    results.priority = &priority_;
    results.is_default = &is_default_;
    results.action = &action_.out().parameters;
    results.action_number = &action_.out().action_number;
    return results;
}

pd_status EntryReader::try_read(pd_entry_hdl entry)
{
    reference_ = {};
    handle_ = entry;
    return functions_.indirect
               ? functions_.indirect->get_entry(driver_session, device.device_id, entry, from_hardware_,
                                                results(), reference_)
               : functions_.get_entry(driver_session, device.device_id, entry, from_hardware_, results());
}

void EntryReader::read(pd_entry_hdl entry)
{
    expect_success(try_read(entry));
}

bool EntryReader::read_if_there(pd_entry_hdl entry)
{
    return is_there(try_read(entry));
}

void EntryReader::read_placement(pd_entry_hdl entry, void *plcmt_data)
{
    reference_ = {};
    expect_success(functions_.indirect
                       ? functions_.indirect->get_entry_from_plcmt_data(plcmt_data, results(), reference_)
                       : functions_.get_entry_from_plcmt_data(plcmt_data, results(), &action_.out()));
    handle_ = entry;
}

void EntryReader::read_default()
{
    is_default_ = 1;
    if (!functions_.indirect)
        return expect_success(
            functions_.get_default_entry(driver_session, device, from_hardware_, &action_.out()));
    reference_ = {};
    const pd_status status =
        functions_.indirect->get_default_entry(driver_session, device, from_hardware_, reference_);
    if (status != PD_STATUS_UNREADABLE)
        expect_success(status);
}

void EntryReader::walk_entries(const std::function<void(pd_entry_hdl)> &visit) const
{
    shell::walk_entries(functions_, visit);
}

void EntryReader::walk(const std::function<void()> &visit)
{
    walk_entries([&](pd_entry_hdl entry) {
        read(entry);
        visit();
    });
}

void EntryReader::walk(const std::function<void()> &visit, const std::function<void()> &lacks)
{
    walk_entries([&](pd_entry_hdl entry) { read_if_there(entry) ? visit() : lacks(); });
}

Object EntryReader::reference() const
{
    if (reference_.has_group)
        return {Kind::group, reference_.group};
    return {Kind::member, reference_.has_member ? reference_.member : 0};
}

void EntryReader::tell(Result &to) const
{
    to.text("table", table().name);
    if (!is_default()) {
        to.number("entry", handle_);
        tell_key(to);
    }
    if (names_)
        shell::tell(to, *names_, reference());
    else
        action_.tell(to);
}

std::string EntryReader::command() const
{
    std::string key;
    if (!is_default())
        append_key(key);
    std::string text = std::string{is_default() ? "default " : "add "} + table().name;
    text.append(key.empty() ? "" : " ").append(key).append(" : ");
    append_body(text);
    return text;
}

void EntryReader::append_key(std::string &to) const
{
    to += assignments(key_fields_, key());
    if (pd::has_priority(table()))
        to.append(to.empty() ? "priority=" : " priority=").append(std::to_string(priority_));
}

void EntryReader::tell_key(Result &to) const
{
    to.fields("key", key_fields_, key());
    if (pd::has_priority(table()))
        to.number("priority", priority_, "key");
}

void EntryReader::append_body(std::string &to) const
{
    if (names_)
        to += names_->text_of(reference());
    else
        action_.append_text(to);
}

std::string EntryReader::body_text() const
{
    std::string text;
    append_body(text);
    return text;
}

} // namespace shell
