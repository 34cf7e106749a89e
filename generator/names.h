// How types and members of records are called. Names of functions follow from the patterns of their families.
#pragma once

#include <cstdint>
#include <string>

#include "catalogue.h"

namespace pdgen {

// The record of a table's key: <prefix>_<table>_match_spec_t.
std::string key_type(const Catalogue &catalogue, const std::string &table);

// The record of an action's parameters: <prefix>_<action>_action_spec_t.
std::string action_type(const Catalogue &catalogue, const std::string &action);

// The smallest unsigned type of `width` bits; a field of 128 bits is an array of bytes.
std::string member_type(unsigned width);
std::string member_array(unsigned width); // "[16]" or nothing

std::string parameter_member(const std::string &parameter); // action_<name>
std::string mask_member(const std::string &field);          // <field>_mask
std::string prefix_length_member(const std::string &field); // <field>_prefix_length

// What a field is called in the name of its width function: a validity bit goes by its header.
std::string width_name(const std::string &field);

// In capitals, what can stand in no name as a low line.
std::string upper(const std::string &name);

std::string hex(std::uint64_t value);
std::string hex(const Mask128 &mask);

} // namespace pdgen
