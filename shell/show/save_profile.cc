#include "save_profile.h"

#include "driver.h"
#include "member_reader.h"
#include "model.h"
#include "profiles.h"

namespace shell {

namespace {

using reflection::ProfileFunctions;

class ProfileFile {
public:
    ProfileFile(LineSink &file, const ProfileFunctions &profile, const ProfileNames &names)
        : file_(file), profile_(profile), names_(names)
    {
    }

    void save_members();
    void save_group(pd_grp_hdl group);
    void save_fallback();

private:
    void save_group_members(pd_grp_hdl group);
    void save_former_member(const std::string &group);

    // "group add PROFILE " and the rest.
    void write(const char *command, const std::string &rest)
    {
        file_.write_line(std::string{command} + ' ' + profile_.row->name + ' ' + rest);
    }

    LineSink &file_;
    const ProfileFunctions &profile_;
    const ProfileNames &names_;
};

void ProfileFile::save_members()
{
    MemberReader reader{profile_, false};
    walk_members(profile_, [&](pd_mbr_hdl member) {
        reader.read(member);
        std::string line = names_.members.label(member) + " : ";
        reader.action().append_text(line);
        write("member add", line);
    });
}

void ProfileFile::save_group(pd_grp_hdl group)
{
    std::string line = names_.groups.label(group);
    const auto size = names_.group_sizes.find(group);
    if (size != names_.group_sizes.end())
        line += " size=" + std::to_string(size->second);
    write("group create", line);
    save_group_members(group);
}

void ProfileFile::save_group_members(pd_grp_hdl group)
{
    const std::string name = names_.groups.label(group);
    std::string joined;
    std::vector<std::string> inactive;
    walk_group(profile_, group, [&](pd_mbr_hdl member) {
        const std::string label = names_.members.label(member);
        joined += ' ' + label;
        if (!is_active(profile_, group, member))
            inactive.push_back(label);
    });
    if (!joined.empty())
        write("group add", name + joined);
    else if (!has_model() || ts_model_references(device.device_id, profile_.row->selector, group) != 0)
        save_former_member(name);
    for (const std::string &label : inactive)
        write("group state", name + ' ' + label + " inactive");
}

// An entry can be pointed at an empty group only after a member has been in it.
void ProfileFile::save_former_member(const std::string &group)
{
    const std::string member = names_.members.free_name(0);
    ShownAction action{profile_.row->actions};
    action.out().action_number = profile_.row->actions.front().action->number;
    std::string line = member + " : ";
    action.append_text(line);
    write("member add", line);
    write("group add", group + ' ' + member);
    write("group remove", group + ' ' + member);
    write("member delete", member);
}

void ProfileFile::save_fallback()
{
    if (!has_model())
        return file_.write_line(std::string{"# Not known: the fallback of "} + profile_.row->name);
    const pd_mbr_hdl fallback = fallback_of(profile_);
    write("group fallback", fallback == 0 ? "none" : names_.members.label(fallback));
}

void name_it(Names &names, u32 handle)
{
    if (!names.name_of(handle))
        names.give(handle, names.free_name(handle));
}

} // namespace

ProfileNames named_throughout(const ProfileFunctions &profile, const ProfileNames &names)
{
    ProfileNames all = names;
    walk_members(profile, [&](pd_mbr_hdl member) { name_it(all.members, member); });
    walk_groups(profile, [&](pd_grp_hdl group) { name_it(all.groups, group); });
    return all;
}

void save_profile(LineSink &file, const ProfileFunctions &profile, const ProfileNames &names)
{
    ProfileFile to{file, profile, names};
    to.save_members();
    walk_groups(profile, [&](pd_grp_hdl group) { to.save_group(group); });
    to.save_fallback();
}

} // namespace shell
