#include "trace.h"

#include <cinttypes>
#include <cstdio>

#include "objects.h"

namespace model {

void Trace::set(ts_model_trace_fn sink, void *cookie)
{
    const std::lock_guard lock{mutex_};
    sink_ = sink;
    cookie_ = cookie;
    on_ = sink != nullptr;
}

void Trace::send(const std::string &line)
{
    const std::lock_guard lock{mutex_};
    if (sink_ != nullptr)
        sink_(line.c_str(), cookie_);
}

Trace &trace()
{
    static Trace instance;
    return instance;
}

void Line::begin(const char *name)
{
    if (!first_)
        text_ += ", ";
    first_ = false;
    text_ += name;
    text_ += '=';
}

Line &Line::words(const char *name, std::string_view value)
{
    begin(name);
    text_ += value;
    return *this;
}

Line &Line::number(const char *name, u64 value)
{
    return words(name, decimal(value));
}

Line &Line::hex(const char *name, u64 value)
{
    return words(name, hexadecimal(value));
}

Line &Line::string(const char *name, const char *value)
{
    if (value == nullptr)
        return words(name, "null");
    return words(name, std::string{"\""} + value + "\"");
}

Line &Line::target(pd_dev_target target)
{
    return number("dev", target.device_id).hex("pipe", target.pipe_id);
}

namespace {

// The tables of a profile's members and groups go by the profile's name. Null for an unknown table.
const char *table_name(u32 handle)
{
    if (const ProgramTable *table = find_table(handle))
        return table->name;
    if (const ProgramProfile *of_members = find_profile_by_members(handle))
        return of_members->name;
    const ProgramProfile *of_groups = find_profile_by_groups(handle);
    return of_groups != nullptr ? of_groups->name : nullptr;
}

} // namespace

Line &Line::table(u32 handle)
{
    return object("table", handle, table_name(handle));
}

Line &Line::object(const char *name, u32 handle, const char *object_name)
{
    hex(name, handle);
    if (object_name != nullptr)
        text_ += std::string{" "} + object_name;
    return *this;
}

void Line::status(pd_status status)
{
    text_ += ") = " + decimal(status);
    first_ = false;
}

std::string decimal(u64 value)
{
    return std::to_string(value);
}

std::string hexadecimal(u64 value)
{
    char digits[20];
    std::snprintf(digits, sizeof digits, "%#" PRIx64, value);
    return digits;
}

void append(std::string &list, const char *separator, std::string_view element)
{
    if (!list.empty())
        list += separator;
    list += element;
}

std::string list_text(const u32 *numbers, u32 count)
{
    if (numbers == nullptr)
        return "null";
    std::string text;
    for (u32 at = 0; at < count; ++at)
        append(text, " ", decimal(numbers[at]));
    return "[" + text + "]";
}

std::string image(const u8 *bytes, u32 count)
{
    if (bytes == nullptr)
        return "null";
    if (count == 0)
        return "-";
    constexpr char digits[] = "0123456789abcdef";
    std::string text;
    for (u32 at = 0; at < count; ++at) {
        text += digits[bytes[at] >> 4];
        text += digits[bytes[at] & 15];
    }
    return text;
}

} // namespace model
