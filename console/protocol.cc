#include "protocol.h"

namespace console {

namespace {

constexpr std::size_t number_bytes = 4;

void append_number(std::string &to, u32 number)
{
    for (std::size_t i = 0; i < number_bytes; ++i)
        to += static_cast<char>(number >> 8 * i);
}

u32 number_in(std::string_view bytes)
{
    u32 number = 0;
    for (std::size_t i = 0; i < number_bytes; ++i)
        number |= static_cast<u32>(static_cast<u8>(bytes[i])) << 8 * i;
    return number;
}

} // namespace

void append_frame(std::string &to, Kind kind, std::string_view body)
{
    to += static_cast<char>(kind);
    append_number(to, static_cast<u32>(body.size()));
    to += body;
}

std::optional<Frame> first_frame(std::string_view bytes)
{
    if (bytes.size() < frame_head_bytes)
        return std::nullopt;
    const std::string_view rest = bytes.substr(frame_head_bytes);
    const u32 size = number_in(bytes.substr(1));
    if (rest.size() < size)
        return std::nullopt;
    return Frame{static_cast<Kind>(bytes[0]), rest.substr(0, size)};
}

bool is_too_long(std::string_view bytes, std::size_t bound)
{
    return bytes.size() >= frame_head_bytes && number_in(bytes.substr(1)) > bound;
}

std::string body_of(const Request &request)
{
    std::string body{static_cast<char>(request.form)};
    append_number(body, request.lines_before);
    body += request.name;
    body += '\n';
    body += request.command;
    return body;
}

std::optional<Request> request_of(std::string_view body)
{
    constexpr std::size_t name_at = 1 + number_bytes;
    const std::size_t name_end = body.find('\n', name_at);
    if (body.size() < name_at || name_end == std::string_view::npos)
        return std::nullopt;
    return Request{static_cast<u8>(body[0]), number_in(body.substr(1)),
                   body.substr(name_at, name_end - name_at), body.substr(name_end + 1)};
}

} // namespace console
