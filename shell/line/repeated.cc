#include "repeated.h"

#include "values.h"

namespace shell {

Repeated take_repeated(Words &words)
{
    const u32 seconds = parse_u32(words.take("number of seconds"), 86400, "number of seconds");
    u64 times = *times_setting.usual;
    if (words.peek().starts_with("times="))
        times = parse_u32(take_assignment(words).value, ~u32{0}, times_setting.name);
    const std::string_view command = words.rest();
    if (command.empty())
        throw BadLine{command, "missing command"};
    words.take_letters(command.size());
    return {std::chrono::seconds{seconds}, times, Words{command}};
}

} // namespace shell
