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

template <bool only_shown>
void plan(Session &session)
{
    session.begin_plan(only_shown);
}

void carry_out(Session &session)
{
    session.carry_out_plan();
}

void end(Session &session)
{
    session.end_plan();
}

void drop(Session &session)
{
    session.drop_plan();
}

constexpr std::string_view plan_text =
    R"(  This is how 'load --replace FILE' and 'diff FILE' go about it: what stands between 'plan begin' and 'plan carry-out'
  tells the state, and is said once more before 'plan end'. A plan that is shown ends without that.
)";

constexpr Verb plan_verbs[] = {
    verb<plan<false>>("plan begin", "from here on commands tell what state there shall be").reads(),
    verb<plan<true>>("plan show", "likewise, and what would change is printed").reads(),
    verb<carry_out>("plan carry-out", "what is in the way goes; the commands come again, and are carried out")
        .tells_state(state<carry_out>),
    verb<end>("plan end", "what no command has told goes; prints how much was changed")
        .may_change()
        .tells_state(state<end>),
    verb<drop>("plan drop", "forgets the plan").reads().tells_state(state<drop>),
};

} // namespace

const Command begin_command{begin_verb, text};
const Command commit_command{commit_verb};
const Command rollback_command{rollback_verb};
const Command plan_command{plan_verbs, plan_text, json_option, "brings about a state that commands tell"};

} // namespace shell
