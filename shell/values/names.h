// The names that a session gives to the members and groups of action profiles, so that scripts need no
// handles.
#pragma once

#include <map>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "pd_types.h"

namespace shell {

// What a profile holds, and what the entries of its table point at.
enum class Kind { member, group };

const char *kind_name(Kind kind);

struct Object {
    Kind kind;
    u32 handle; // 0 for none

    bool operator==(const Object &) const = default;
};

// The names of one profile's members, or of its groups.
class Names {
public:
    explicit Names(Kind kind) : kind_(kind) {}

    Kind kind() const { return kind_; }
    // 0 when nothing is called so.
    u32 find(std::string_view name) const;
    // Null for an object without a name.
    const std::string *name_of(u32 handle) const;
    // What a command can call the object: its name, or else its handle.
    std::string label(u32 handle) const;
    std::vector<std::string_view> all() const;
    std::size_t longest() const;

    // An empty name is none.
    void give(u32 handle, std::string_view name);
    void drop(u32 handle);
    // A name that is still free, such as "m7" for member 7.
    std::string free_name(u32 handle) const;

private:
    Kind kind_;
    std::map<std::string, u32, std::less<>> handles_;
    std::unordered_map<u32, std::string> names_;
};

// All that a session knows of a profile and nobody can read back.
struct ProfileNames {
    Names members{Kind::member};
    Names groups{Kind::group};
    std::unordered_map<pd_grp_hdl, u32> group_sizes; // that groups were created with

    Names &of(Kind kind) { return kind == Kind::member ? members : groups; }
    const Names &of(Kind kind) const { return kind == Kind::member ? members : groups; }
    // "group web"; "nothing" for handle 0.
    std::string text_of(const Object &object) const;
};

} // namespace shell
