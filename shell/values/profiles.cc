#include "profiles.h"

#include <algorithm>
#include <cctype>

#include "driver.h"
#include "model.h"
#include "tables.h"
#include "values.h"

namespace shell {

using reflection::ProfileFunctions;

namespace {

bool is_letter(char c)
{
    return std::isalpha(static_cast<unsigned char>(c)) || c == '_';
}

bool is_digit(char c)
{
    return std::isdigit(static_cast<unsigned char>(c));
}

// A name cannot be taken for a handle, an option or the word for no member.
bool is_name(std::string_view word)
{
    const auto allowed = [](char c) {
        return is_letter(c) || is_digit(c) || std::string_view{"-./"}.find(c) != std::string_view::npos;
    };
    return is_letter(word.front()) && std::ranges::all_of(word, allowed) && word != "none";
}

u32 counted(pd_status (*count)(pd_sess_hdl, pd_dev_target, u32 *))
{
    u32 number = 0;
    expect_success(count(driver_session, device, &number));
    return number;
}

} // namespace

std::vector<std::string_view> profile_names()
{
    std::vector<std::string_view> names;
    for (const ProfileFunctions *profile : reflection::profiles())
        names.push_back(profile->row->name);
    return names;
}

const reflection::TableFunctions &table_of(const ProfileFunctions &profile)
{
    return **std::ranges::find_if(reflection::tables(), [&](const reflection::TableFunctions *table) {
        return table->indirect && table->indirect->profile == &profile;
    });
}

const ProfileFunctions *profile_by_table(u32 handle)
{
    if (const reflection::TableFunctions *table = reflection::find_table(handle))
        return table->indirect ? table->indirect->profile : nullptr;
    const auto found = std::ranges::find_if(reflection::profiles(), [&](const ProfileFunctions *profile) {
        return profile->row->action_table == handle || profile->row->selector == handle;
    });
    return found != reflection::profiles().end() ? *found : nullptr;
}

// ---- Words ----------------------------------------------------------------------------------------------

const ProfileFunctions &take_profile(Words &words)
{
    const std::string_view name = words.take();
    const ProfileFunctions *profile = reflection::find_profile(name);
    if (!profile)
        refuse(name, {"action profile"}, profile_names());
    return *profile;
}

const ProfileFunctions *take_profile_if_named(Words &words)
{
    const ProfileFunctions *profile = reflection::find_profile(words.peek());
    if (profile)
        words.take();
    return profile;
}

const ProfileFunctions *take_profile_unless_table(Words &words)
{
    const std::string_view name = words.peek();
    if (reflection::find_table(name))
        return nullptr;
    if (const ProfileFunctions *profile = take_profile_if_named(words))
        return profile;
    std::vector<std::string_view> names = profile_names();
    const std::vector<std::string_view> tables = table_names();
    names.insert(names.end(), tables.begin(), tables.end());
    refuse(name, {"table or action profile", {}, "tables"}, names);
}

const reflection::MemberFunctions &take_action(Words &words, const ProfileFunctions &profile)
{
    const std::string_view name = words.peek();
    const reflection::MemberFunctions *action = reflection::find_action(profile, name);
    if (!action) {
        std::vector<std::string_view> names;
        for (const pd::Binding &binding : profile.row->actions)
            names.push_back(binding.action->name);
        refuse(name, {"action", profile.row->name}, names);
    }
    words.take();
    return *action;
}

Kind take_kind(Words &words, std::initializer_list<std::string_view> others)
{
    const std::string_view word = words.peek();
    std::vector<std::string_view> names;
    for (const Kind kind : {Kind::member, Kind::group}) {
        names.push_back(kind_name(kind));
        if (word == names.back()) {
            words.take();
            return kind;
        }
    }
    names.insert(names.end(), others);
    refuse(word, {"word"}, names);
}

u32 take_object(Words &words, const ProfileFunctions &profile, const Names &names)
{
    const std::string kind = kind_name(names.kind());
    const std::string_view word = words.take(kind + ": its handle or name");
    if (is_digit(word.front()))
        return parse_u32(word, ~u32{0}, kind + " handle");
    const u32 handle = names.find(word);
    if (handle == 0)
        refuse(word, {kind + " name", profile.row->name}, names.all()); // others have handles only
    return handle;
}

std::string_view take_name(Words &words)
{
    const std::string_view word = words.peek();
    if (word.empty() || word == ":" || word.find('=') != std::string_view::npos)
        return {};
    if (!is_name(word))
        throw BadLine{word,
                      quoted(word) + " is no name: give a letter, then letters, digits and any of _-./"};
    return words.take();
}

std::string_view take_new_name(Words &words, const Names &names)
{
    const std::string_view word = take_name(words);
    if (const u32 handle = names.find(word))
        throw BadLine{word, quoted(word) + " already names " + kind_name(names.kind()) + ' ' +
                                std::to_string(handle)};
    return word;
}

// ---- Walks and counts -----------------------------------------------------------------------------------

void walk_members(const ProfileFunctions &profile, const Visit &visit)
{
    walk_handles([&](u32 *to) { return profile.get_first_member(driver_session, device, to); },
                 [&](u32 after, u32 count, u32 *to) {
                     return profile.get_next_members(driver_session, device, after, count, to);
                 },
                 visit);
}

void walk_groups(const ProfileFunctions &profile, const Visit &visit)
{
    walk_handles([&](u32 *to) { return profile.get_first_group(driver_session, device, to); },
                 [&](u32 after, u32 count, u32 *to) {
                     return profile.get_next_groups(driver_session, device, after, count, to);
                 },
                 visit);
}

void walk_group(const ProfileFunctions &profile, pd_grp_hdl group, const Visit &visit)
{
    const u32 device_id = device.device_id;
    walk_handles(
        [&](u32 *to) { return profile.get_first_group_member(driver_session, device_id, group, to); },
        [&](u32 after, u32 count, u32 *to) {
            return profile.get_next_group_members(driver_session, device_id, group, after, count, to);
        },
        visit);
}

u32 count_members(const ProfileFunctions &profile)
{
    return counted(profile.get_act_prof_entry_count);
}

u32 count_groups(const ProfileFunctions &profile)
{
    return counted(profile.get_selector_group_count);
}

bool is_active(const ProfileFunctions &profile, pd_grp_hdl group, pd_mbr_hdl member)
{
    u32 state = P4_PD_GRP_MBR_STATE_INACTIVE;
    expect_success(profile.group_member_state_get(driver_session, device.device_id, group, member, &state));
    return state == P4_PD_GRP_MBR_STATE_ACTIVE;
}

pd_mbr_hdl fallback_of(const ProfileFunctions &profile)
{
    return !has_model() ? 0 : ts_model_fallback_member(device.device_id, profile.row->selector);
}

} // namespace shell
