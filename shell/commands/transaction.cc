// The commands around what is done as one: begin, commit, rollback.
#include "commands.h"
#include "verb_arguments.h"

namespace shell {

namespace {

void begin(Session &session)
{
    session.begin();
}

void commit(Session &session)
{
    session.commit();
}

void roll_back(Session &session)
{
    session.roll_back();
}

constexpr std::string_view text =
    R"(  Until commit or rollback only commands that can be taken back are carried out. A session that ends before
  takes all back. 'load --atomic' does so with a file.
)";

constexpr Verb begin_verb[] = {
    verb<begin>("begin", "keeps how to take back what the commands from here on change").reads()};
constexpr Verb commit_verb[] = {verb<commit>("commit", "leaves what was changed since begin").reads()};
constexpr Verb rollback_verb[] = {
    verb<roll_back>("rollback", "takes back what was changed since begin, the last change first").reads()};

} // namespace

const Command begin_command{begin_verb, text};
const Command commit_command{commit_verb};
const Command rollback_command{rollback_verb};

} // namespace shell
