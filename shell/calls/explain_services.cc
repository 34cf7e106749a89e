#include "explain_services.h"

#include <algorithm>

namespace shell {

namespace {

// " key=VALUE&MASK"; empty for a value that has bits beside its mask, since no command takes it.
std::string key_text(const tap::Arguments &call)
{
    const u32 key = call.word("key"), mask = call.word("key_mask");
    return key & ~mask ? std::string{} : " key=" + std::to_string(key) + '&' + std::to_string(mask);
}

template <typename Functions>
const Functions *find(std::span<const Functions> all, u32 handle)
{
    const auto found = std::ranges::find(all, handle, [](const Functions &one) { return one.row->handle; });
    return found != all.end() ? &*found : nullptr;
}

// "hash seed NAME REST"
template <typename Functions>
std::string text_of(const char *command, const Functions &functions, const std::string &rest)
{
    return std::string{command} + ' ' + functions.row->name + ' ' + rest;
}

} // namespace

// ---- Value sets -------------------------------------------------------------------------------------------

// Empty for an entry that no command has added.
std::string ServiceExplainer::entry(const Call &call) const
{
    const auto known = entries_.find({call.word("set"), call.word("entry")});
    if (known == entries_.end())
        return std::to_string(call.number("entry"));
    return known->second != 0 ? std::to_string(known->second) : std::string{};
}

std::string ServiceExplainer::add(const ValueSet &set, const Call &call)
{
    const std::string key = key_text(call);
    entries_[{call.word("set"), call.word("entry")}] = key.empty() ? 0 : ++added_[call.word("set")];
    if (key.empty())
        return {};
    std::string scope;
    for (const char *part : {"scope_a", "scope_b", "scope_c"})
        scope += (scope.empty() ? " scope=" : ",") + std::to_string(call.number(part));
    return text_of("pvs add", set, key.substr(1) + scope);
}

std::string ServiceExplainer::modify(const ValueSet &set, const Call &call)
{
    const std::string entry = this->entry(call), key = key_text(call);
    return entry.empty() || key.empty() ? std::string{} : text_of("pvs modify", set, entry + key);
}

std::string ServiceExplainer::remove(const ValueSet &set, const Call &call)
{
    const std::string entry = this->entry(call);
    entries_.erase({call.word("set"), call.word("entry")});
    return entry.empty() ? entry : text_of("pvs delete", set, entry);
}

std::string ServiceExplainer::set_property(const ValueSet &set, const Call &call)
{
    return text_of("pvs property", set,
                   std::to_string(call.number("property")) + ' ' + std::to_string(call.property.value) +
                       " argument=" + std::to_string(call.property_args.argument));
}

// ---- Hash calculations ------------------------------------------------------------------------------------

std::string ServiceExplainer::set_input(const Hash &hash, const Call &call)
{
    return call.number("input") == hash.row->input ? text_of("hash input", hash, "0") : std::string{};
}

std::string ServiceExplainer::set_algorithm(const Hash &hash, const Call &call)
{
    return call.number("algorithm") == hash.row->algorithm ? text_of("hash algorithm", hash, "0")
                                                           : std::string{};
}

std::string ServiceExplainer::set_seed(const Hash &hash, const Call &call)
{
    const u64 first = call.number("first"), second = call.number("second");
    return (first | second) >> 32
               ? std::string{}
               : text_of("hash seed", hash, std::to_string(first) + ' ' + std::to_string(second));
}

std::string ServiceExplainer::set_attributes(const Hash &hash, const Call &call)
{
    if (call.number("input") != hash.row->input)
        return {};
    std::string list;
    for (const pipe_hash_calc_input_field_attribute &attribute : call.attributes) {
        if (u64{attribute.attr_value} >> 32)
            return {};
        for (const u64 number : {attribute.input_field, attribute.attr_type})
            list += std::to_string(number) + ',';
        list += std::to_string(attribute.attr_value) + ' ';
    }
    return text_of("hash attributes", hash, list.substr(0, list.size() - !list.empty()));
}

// ---- Operations -------------------------------------------------------------------------------------------

std::string ServiceExplainer::command(std::string_view operation, const tap::Arguments &call)
{
    static constexpr std::pair<std::string_view,
                               std::string (ServiceExplainer::*)(const ValueSet &, const Call &)>
        of_sets[] = {{"pipe_mgr_pvs_entry_add", &ServiceExplainer::add},
                     {"pipe_mgr_pvs_entry_modify", &ServiceExplainer::modify},
                     {"pipe_mgr_pvs_entry_delete", &ServiceExplainer::remove},
                     {"pipe_mgr_pvs_set_property", &ServiceExplainer::set_property}};
    static constexpr std::pair<std::string_view,
                               std::string (ServiceExplainer::*)(const Hash &, const Call &)>
        of_hashes[] = {{"pipe_mgr_hash_calc_input_set", &ServiceExplainer::set_input},
                       {"pipe_mgr_hash_calc_algorithm_set", &ServiceExplainer::set_algorithm},
                       {"pipe_mgr_hash_calc_seed_set", &ServiceExplainer::set_seed},
                       {"pipe_mgr_hash_calc_input_field_attribute_set", &ServiceExplainer::set_attributes}};
    const ValueSet *const set = find(reflection::value_sets(), call.word("set"));
    const Hash *const hash = find(reflection::hashes(), call.word("calculation"));
    for (const auto &[name, make] : of_sets)
        if (set && name == operation)
            return (this->*make)(*set, call);
    for (const auto &[name, make] : of_hashes)
        if (hash && name == operation)
            return (this->*make)(*hash, call);
    return {};
}

} // namespace shell
