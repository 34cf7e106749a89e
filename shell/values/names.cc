#include "names.h"

#include <algorithm>

namespace shell {

const char *kind_name(Kind kind)
{
    return kind == Kind::member ? "member" : "group";
}

u32 Names::find(std::string_view name) const
{
    const auto found = handles_.find(name);
    return found == handles_.end() ? 0 : found->second;
}

const std::string *Names::name_of(u32 handle) const
{
    const auto found = names_.find(handle);
    return found == names_.end() ? nullptr : &found->second;
}

std::string Names::label(u32 handle) const
{
    const std::string *name = name_of(handle);
    return name ? *name : std::to_string(handle);
}

std::vector<std::string_view> Names::all() const
{
    std::vector<std::string_view> names;
    for (const auto &[name, handle] : handles_)
        names.push_back(name);
    return names;
}

std::size_t Names::longest() const
{
    std::size_t longest = 0;
    for (const auto &[name, handle] : handles_)
        longest = std::max(longest, name.size());
    return longest;
}

void Names::give(u32 handle, std::string_view name)
{
    if (name.empty())
        return;
    handles_.emplace(name, handle);
    names_.emplace(handle, name);
}

void Names::drop(u32 handle)
{
    if (const std::string *name = name_of(handle)) {
        handles_.erase(*name);
        names_.erase(handle);
    }
}

std::string Names::free_name(u32 handle) const
{
    std::string name = kind_name(kind_)[0] + std::to_string(handle);
    while (find(name) != 0)
        name += '_';
    return name;
}

std::string ProfileNames::text_of(const Object &object) const
{
    if (object.handle == 0)
        return "nothing";
    return std::string{kind_name(object.kind)} + ' ' + of(object.kind).label(object.handle);
}

} // namespace shell
