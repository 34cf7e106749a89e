#include <algorithm>
#include <cctype>

#include "checker.h"
#include "names.h"

namespace pdgen {

namespace {

// Texts that name an object have room for this many characters, with what stands around the name.
constexpr std::size_t max_name = 64;

bool is_identifier(const std::string &name)
{
    const auto word = [](unsigned char c) { return std::isalnum(c) || c == '_'; };
    return !std::isdigit(static_cast<unsigned char>(name[0])) && std::all_of(name.begin(), name.end(), word);
}

// Keywords of C and C++, then what the public headers and the rows call their own.
constexpr std::string_view reserved_words =
    " alignas alignof and and_eq asm auto bitand bitor bool break case catch char char16_t char32_t"
    " char8_t class co_await co_return co_yield compl concept const const_cast consteval constexpr"
    " constinit continue decltype default delete do double dynamic_cast else enum explicit export"
    " extern false float for friend goto if inline int long mutable namespace new noexcept not not_eq"
    " nullptr operator or or_eq private protected public register reinterpret_cast requires restrict"
    " return short signed sizeof static static_assert static_cast struct switch template this"
    " thread_local throw true try typedef typeid typename typeof typeof_unqual union unsigned using"
    " virtual void volatile wchar_t while xor xor_eq _Alignas _Alignof _Atomic _Bool _Complex _Generic"
    " _Imaginary _Noreturn _Static_assert _Thread_local"
    " linux unix i386 NULL u8 u16 u32 u64 pd all actions Action Binding Counter Digest DigestField"
    " Field Format Hash Mask Match Meter Parameter Profile Resource SnapshotLayout Table"
    " ";

bool is_reserved(const std::string &name)
{
    return reserved_words.find(" " + name + " ") != std::string_view::npos;
}

// Width in bits that a format asks for; 0 for any.
unsigned width_of(Format format)
{
    switch (format) {
    case Format::v4addr:
        return 32;
    case Format::v6addr:
        return 128;
    case Format::mac:
        return 24;
    default:
        return 0;
    }
}

} // namespace

bool is_plain(const std::string &text)
{
    const auto special = [](unsigned char c) { return c == '"' || c == '\\' || std::iscntrl(c); };
    return std::none_of(text.begin(), text.end(), special) && text.find("*/") == std::string::npos;
}

bool Checker::check_identifier(const Place &place, const std::string &subject, const std::string &name,
                               bool reserved)
{
    if (name.empty())
        return true; // reported where it was read
    if (!is_identifier(name))
        wrong(place, subject, "must be an identifier");
    else if (reserved && is_reserved(name))
        wrong(place, subject, "\"", name, "\" is a word of C, of C++ or of the code that is written");
    else if (name.size() > max_name)
        wrong(place, subject, "a name has at most ", max_name, " characters, not ", name.size());
    else
        return true;
    return false;
}

void Checker::check_name(const char *kind, const std::string &name, const Place &place)
{
    if (name.empty() || !check_identifier(place, name + ".name", name))
        return;
    const auto [first, fresh] = names.emplace(std::string(kind) + " " + name, place);
    if (!fresh)
        wrong(place, name + ".name", "this ", kind, " stands in ", at(first->second), " already");
}

void Checker::check_handle(const HandleRange &range, const std::string &subject, std::uint32_t handle,
                           const Place &place, bool unique)
{
    if (handle < range.first || handle > range.last)
        wrong(place, subject, hex(handle), " is no ", range.kind, " handle: those lie from ",
              hex(range.first), " to ", hex(range.last));
    if (!unique)
        return;
    const auto [first, fresh] = handles.emplace(handle, place);
    if (!fresh)
        wrong(place, subject, hex(handle), " is the handle of ", at(first->second), " already");
}

void Checker::check_format(const std::string &subject, Format format, unsigned width, const Place &place)
{
    if (const unsigned needed = width_of(format); needed != 0 && needed != width)
        wrong(place, subject + ".format", "\"", name_of(format, format_names), "\" needs ", needed,
              " bits, not ", width);
}

} // namespace pdgen
