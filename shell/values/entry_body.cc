#include "entry_body.h"

#include "driver.h"
#include "entry_reader.h"
#include "profiles.h"

namespace shell {

namespace {

// The parameters behind a member or group: there are none.
constexpr pd::Action no_parameters[] = {{"member", 0, {}, 0}, {"group", 0, {}, 0}};

} // namespace

void take_colon(Words &words, std::string_view what)
{
    if (words.empty())
        throw BadLine{words.rest(),
                      "missing ':' and " + std::string{what} + ", with blanks around the colon"};
    if (words.peek() != ":")
        throw BadLine{words.peek(), "expected ':' before the" + std::string{what.substr(what.find(' '))} +
                                        " instead of " + quoted(words.peek())};
    words.take();
}

std::vector<Texts> entry_bodies()
{
    return {{"ACTION", "PARAMETERS"}, {"member", "M"}, {"group", "G"}};
}

EntryBody::EntryBody(Session &session, Words &words, const reflection::TableFunctions &table, ActionOf use,
                     Options &options)
{
    if (table.indirect) {
        take_colon(words, "a member or group");
        take_reference(session, words, *table.indirect, options);
    } else {
        take_colon(words, "an action");
        action_ = &take_action(words, table, use);
        parameters_.emplace(*action_->row->action);
        take_assignments(words, *parameters_, action_->row->action->name, options);
    }
    words.expect_end();
}

void EntryBody::take_reference(Session &session, Words &words, const reflection::IndirectFunctions &functions,
                               Options &options)
{
    const Kind kind = take_kind(words);
    reference_ = kind == Kind::member ? &functions.member : &functions.group;
    to_ = {kind, take_object(words, *functions.profile, session.names(*functions.profile).of(kind))};
    const pd::Action &nothing = no_parameters[kind == Kind::member ? 0 : 1];
    Record none{nothing};
    take_assignments(words, none, nothing.name, options);
}

reflection::EntryArguments EntryBody::arguments(const Record *key, const Options &options) const
{
    reflection::EntryArguments result;
    result.key = key ? key->data() : nullptr;
    result.action = parameters_ ? parameters_->data() : nullptr;
    result.priority = options.priority.value_or(0);
    result.ttl = options.ttl.value_or(0);
    result.meter = options.meter ? &*options.meter : nullptr;
    return result;
}

pd_entry_hdl EntryBody::add(const Record &key, const Options &options) const
{
    const reflection::EntryArguments given = arguments(&key, options);
    pd_entry_hdl entry = 0;
    expect_success(reference_ ? reference_->add(driver_session, device, given, to_.handle, &entry)
                              : action_->add(driver_session, device, given, &entry));
    return entry;
}

void EntryBody::modify(pd_entry_hdl entry, const Options &options) const
{
    expect_success(
        reference_ ? reference_->modify(driver_session, device.device_id, entry, to_.handle)
                   : action_->modify(driver_session, device.device_id, entry, arguments(nullptr, options)));
}

void EntryBody::modify(const Record &key, const Options &options) const
{
    const reflection::EntryArguments given = arguments(&key, options);
    expect_success(reference_ ? reference_->modify_by_match_spec(driver_session, device, given, to_.handle)
                              : action_->modify_by_match_spec(driver_session, device, given));
}

void EntryBody::set_default(const Options &options) const
{
    pd_entry_hdl entry = 0;
    expect_success(reference_ ? reference_->set_default_entry(driver_session, device, to_.handle, &entry)
                              : action_->set_default_action(driver_session, device,
                                                            arguments(nullptr, options), &entry));
}

bool EntryBody::is_of(const EntryReader &entry) const
{
    if (reference_)
        return entry.reference() == to_;
    return action_->row->action == &entry.action().row() &&
           parameters_->has_values_of(entry.action().parameters());
}

reflection::EntryArguments key_arguments(const Record &key, const Options &options)
{
    reflection::EntryArguments result;
    result.key = key.data();
    result.priority = options.priority.value_or(0);
    return result;
}

} // namespace shell
