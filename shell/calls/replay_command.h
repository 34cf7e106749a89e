// tessel-shell replay: a record of the tap played again.
#pragma once

namespace shell {

// argv[0] is the word "replay". Returns the exit status.
int run_replay(int argc, char **argv);

} // namespace shell
