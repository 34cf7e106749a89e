// What a session does as one, and how it takes back what was changed.
#include <vector>

#include "commands.h"
#include "replacement.h"
#include "result.h"
#include "session_script.h"

namespace shell {

namespace {

void expect_revocable(const Verb &verb, std::string_view where)
{
    if (!verb.revocable)
        throw BadLine{where, quoted(verb.name) + " cannot be taken back"};
}

} // namespace

void Session::expect_changes_allowed() const
{
    if (options_.read_only)
        throw BadLine{{}, "this console only reads"};
    if (changes_)
        expect_revocable(*verb_, {});
}

// All lines, or none: of those before a bad one each is taken back.
void Session::run_atomically(LineSource &source, const std::string &name)
{
    const std::string text = text_of(source); // to be gone over twice
    TextLines tried{text};
    if (Script trial{tried, name, false, {}, {}}; !are_revocable(trial))
        return;
    TextLines lines{text, options_.terminal};
    const u64 bad_before = bad_lines_;
    begin();
    all_or_none_ = true;
    Script script{lines, name, false, {}, {}};
    run_script(script);
    all_or_none_ = false;
    if (bad_lines_ == bad_before && !interrupted_)
        return commit();
    stopping_ = !options_.keep_going || interrupted_;
    tell_taken_back(name, take_back());
}

// Brings about the state that the lines tell, or shows what that would change. A bad line leaves all as it
// is.
void Session::replace(LineSource &source, const std::string &name, bool only_shown)
{
    const std::string text = text_of(source);
    begin_plan(only_shown);
    bool well = go_over(text, name);
    if (well && !only_shown) {
        carry_out_plan();
        well = go_over(text, name);
    }
    well ? end_plan() : drop_plan();
}

// Whether all was well.
bool Session::go_over(const std::string &text, const std::string &name)
{
    const u64 bad_before = bad_lines_;
    TextLines lines{text, options_.terminal};
    Script script{lines, name, false, {}, {}};
    run_script(script);
    return bad_lines_ == bad_before && !interrupted_;
}

void Session::begin_plan(bool only_shown)
{
    if (replacement_ || changes_)
        throw BadLine{{}, "what is kept since begin, or planned, ends first"};
    replacement_ = std::make_unique<Replacement>(*this, only_shown);
}

void Session::expect_plan() const
{
    if (!replacement_)
        throw BadLine{{}, "nothing is planned"};
}

void Session::carry_out_plan()
{
    expect_plan();
    expect_changes_allowed();
    replacement_->begin_changes();
}

void Session::end_plan()
{
    expect_plan();
    if (replacement_->is_planning() && !replacement_->is_only_shown())
        throw BadLine{{}, "plan carry-out comes first"};
    if (replacement_->is_planning())
        replacement_->begin_changes();
    replacement_->finish_changes();
    drop_plan();
}

void Session::drop_plan()
{
    replacement_.reset();
}

// Tells of each line that cannot be taken back, before any is carried out.
bool Session::are_revocable(Script &script)
{
    const u64 bad_before = bad_lines_;
    while (script.read_command()) {
        Words words{script.command};
        const std::string_view name = words.empty() ? std::string_view{} : words.take();
        const Command *const command = command_named(name);
        if (!command)
            continue; // which is told when it is its turn
        try {
            const Verb &verb = take_verb(*command, words);
            if (verb.effect == Effect::changes)
                expect_revocable(verb, name);
        } catch (const BadLine &error) {
            ++bad_lines_;
            report(script, error);
        }
    }
    stopping_ = bad_lines_ != bad_before && !options_.keep_going;
    return bad_lines_ == bad_before;
}

void Session::begin()
{
    if (changes_)
        throw BadLine{{}, "what is kept since begin ends first: commit or rollback"};
    changes_.emplace();
}

void Session::expect_open() const
{
    if (!changes_)
        throw BadLine{{}, "nothing is kept: begin comes first"};
}

void Session::commit()
{
    expect_open();
    changes_.reset();
}

void Session::roll_back()
{
    expect_open();
    Result result{json()};
    result.number("taken_back", take_back());
    print(result.line("taken back: {taken_back}"));
}

// The last change first; what the driver refuses is told, and the others are taken back all the same.
std::size_t Session::take_back()
{
    const std::vector<std::string> changes = std::move(*changes_);
    changes_.reset();
    for (auto change = changes.rbegin(); change != changes.rend(); ++change) {
        try {
            std::string line = *change;
            line_ = &line;
            carry_out(Words{line});
        } catch (const BadLine &error) {
            ++bad_lines_;
            Result result{options_.json};
            result.text("error", error.what).text("taken_back_by", *change);
            complain(result.line("cannot be taken back: {taken_back_by}: {error}"));
        }
    }
    line_ = nullptr;
    return changes.size();
}

void Session::tell_taken_back(const std::string &name, std::size_t changes)
{
    Result result{options_.json};
    result.text("file", name).number("taken_back", changes);
    complain(result.line("{file}: taken back: {taken_back}"));
}

} // namespace shell
