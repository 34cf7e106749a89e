// tessel-shell explain: what a record of the tap tells, as commands.
#pragma once

namespace shell {

// argv[0] is the word "explain". Returns the exit status.
int run_explain(int argc, char **argv);

} // namespace shell
