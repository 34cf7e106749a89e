// The functions that the library exports, for who calls them from C.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace shell {

struct Function {
    std::string_view name;
    std::string_view family;
    std::string_view object; // the table, action, profile or resource; the program
    std::string_view result;
    std::string_view parameters;
    std::string_view brief;
};

// All of them, in the order of the headers.
std::span<const Function> functions();

// Those that are about the object or the action of this name; without such a thing, those in whose name,
// family or brief the text stands.
std::vector<const Function *> find_functions(std::string_view text);

// The one function of the object with all of these words in its name, the shortest if there are more. Null
// when there is none.
const Function *find_function(std::string_view object, std::span<const std::string_view> words);

std::string prototype(const Function &function);

// A C function that makes the call, with all records filled in.
std::string call_in_c(const Function &function);

// tessel-shell api WORD...: argv[0] is the word "api". Returns the exit status.
int run_api(int argc, char **argv);

} // namespace shell
