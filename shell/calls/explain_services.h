// Recorded calls about value sets and hash calculations as the commands that make them.
#pragma once

#include <map>
#include <string>
#include <utility>

#include "arguments.h"
#include "services.h"

namespace shell {

// Goes over the calls of one record in their order, those that succeeded. Entries of value sets are named by
// the handles that they get where the commands are carried out: they count up from 1 in each set.
class ServiceExplainer {
public:
    // Empty for a call that no command makes.
    std::string command(std::string_view operation, const tap::Arguments &call);

private:
    using Call = tap::Arguments;
    using ValueSet = reflection::ValueSetFunctions;
    using Hash = reflection::HashFunctions;

    std::string add(const ValueSet &set, const Call &call);
    std::string modify(const ValueSet &set, const Call &call);
    std::string remove(const ValueSet &set, const Call &call);
    std::string set_property(const ValueSet &set, const Call &call);
    std::string set_input(const Hash &hash, const Call &call);
    std::string set_algorithm(const Hash &hash, const Call &call);
    std::string set_seed(const Hash &hash, const Call &call);
    std::string set_attributes(const Hash &hash, const Call &call);

    std::string entry(const Call &call) const;

    std::map<std::pair<u32, u32>, u32> entries_; // set and recorded handle; 0 where no command adds it
    std::map<u32, u32> added_;                   // to a set
};

} // namespace shell
