#include "names.h"

#include <cctype>
#include <iomanip>
#include <sstream>

namespace pdgen {

std::string key_type(const Catalogue &catalogue, const std::string &table)
{
    return catalogue.prefix + "_" + table + "_match_spec_t";
}

std::string action_type(const Catalogue &catalogue, const std::string &action)
{
    return catalogue.prefix + "_" + action + "_action_spec_t";
}

std::string member_type(unsigned width)
{
    if (width <= 8 || width == 128)
        return "u8";
    return width <= 16 ? "u16" : "u32";
}

std::string member_array(unsigned width)
{
    return width == 128 ? "[16]" : "";
}

std::string parameter_member(const std::string &parameter)
{
    return "action_" + parameter;
}

std::string mask_member(const std::string &field)
{
    return field + "_mask";
}

std::string prefix_length_member(const std::string &field)
{
    return field + "_prefix_length";
}

std::string width_name(const std::string &field)
{
    constexpr std::string_view validity = "_valid";
    return field.ends_with(validity) ? field.substr(0, field.size() - validity.size()) : field;
}

std::string upper(const std::string &name)
{
    std::string text;
    for (const unsigned char c : name)
        text += std::isalnum(c) ? static_cast<char>(std::toupper(c)) : '_';
    return text;
}

std::string hex(std::uint64_t value)
{
    std::ostringstream text;
    text << "0x" << std::hex << value;
    return text.str();
}

std::string hex(const Mask128 &mask)
{
    if (mask.high == 0)
        return hex(mask.low);
    std::ostringstream text;
    text << "0x" << std::hex << mask.high << std::setw(16) << std::setfill('0') << mask.low;
    return text.str();
}

} // namespace pdgen
