// A session with the switch program: it registers the library with the driver, carries out command lines one
// after the other, and tells about those that are bad.
#pragma once

#include <chrono>
#include <filesystem>
#include <map>
#include <memory>
#include <optional>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

#include "counter_rates.h"
#include "digest_watches.h"
#include "file_name.h"
#include "idle.h"
#include "lines.h"
#include "names.h"
#include "option_words.h"
#include "reflection.h"
#include "watches.h"
#include "words.h"

namespace shell {

struct Verb;
class Replacement;

struct SessionOptions {
    bool keep_going = false;          // a bad line does not end the session
    bool verbose = false;             // add tells the handle of the new entry
    bool json = false;                // each line of output, and each message, is a JSON document
    bool interactive = false;         // a person types: bad lines are no failure
    bool paged = false;               // and long output goes to a pager
    bool colour = false;              // in what is printed
    bool error_colour = false;        // in what is said of bad lines
    std::ostream *terminal = nullptr; // where the progress of long files is shown
    bool guest = false;               // the process has brought the library up, and takes it down
    bool read_only = false;           // what changes something is refused
    bool atomic = false;              // all lines, or none
    bool check = false;               // for what is said of bad lines alone: no file is written
};

// Whether the command that `line` belongs to goes on in the next line.
bool goes_on(std::string_view line);

class Session {
public:
    Session(std::ostream &out, std::ostream &err, const SessionOptions &options);
    ~Session();
    Session(const Session &) = delete;
    Session &operator=(const Session &) = delete;

    // Carries out the lines of `source`, which messages call `name`. Returns the exit status.
    int run(LineSource &source, const std::string &name);
    // Carries out the lines of `source`, before which `name` has had `lines_before`; an empty name stands for
    // a prompt. Returns whether all was well, and can be called again.
    bool run_some(LineSource &source, const std::string &name, u64 lines_before);
    void set_form(bool json, bool verbose);
    bool done() const { return done_; }

    // ---- For commands ----
    std::ostream &out();
    // Prints one line of output.
    void print(std::string_view line);
    // Prints text of any number of lines, as it is or as the JSON string of an object with this one key.
    void print_text(std::string_view key, std::string_view text);
    bool verbose() const { return options_.verbose || (options_.interactive && files_.size() == 1); }
    bool json() const { return options_.json || option_words_.json; }
    const OptionWords &option_words() const { return option_words_; } // of the command
    bool from_hardware() const { return option_words_.from_hardware; }
    // How many characters a line of a list may have; none where there is no end.
    std::optional<std::size_t> line_width() const;
    // Whether what is printed may have colours.
    bool colours() const { return options_.colour && !redirected_; }
    void set_trace(bool on);
    Watches &watches() { return watches_; }
    CounterRates &counter_rates() { return counter_rates_; }
    IdleWatches &idle_watches() { return idle_watches_; }
    DigestWatches &digest_watches() { return digest_watches_; }
    ProfileNames &names(const reflection::ProfileFunctions &profile) { return names_[&profile]; }
    // Of the table's action profile; null where entries carry their action.
    const ProfileNames *names(const reflection::TableFunctions &table);
    // Keeps a line for behind the command.
    void print_behind(std::string_view line);
    // What to do with the lines of a file: carry them out, all or none if the option word says so; bring
    // about the state that they tell; or show what that would change.
    enum class Loading { commands, state, difference };
    // BadLine when the file cannot be read or is being carried out.
    void load(const FileName &file, Loading loading);
    Replacement &replacement() { return *replacement_; } // the plan
    // The command at hand, without its option words.
    const std::string &command() const { return *line_; }
    // Carries out what is left of the line as a command of its own.
    void carry_out(const Words &words);
    // Likewise so many times, with so long between them.
    void repeat(const Words &words, std::chrono::seconds pause, u64 times);
    // BadLine where a change is refused.
    void expect_changes_allowed() const;
    // False where a file is to be left alone; BadLine where that is refused.
    bool may_write_files() const;
    // Between the first and one of the others changes are kept, each as the command that takes it back.
    void begin();
    void commit();
    void roll_back();
    // Between the first and one of the last two each command tells what state there shall be; it is planned,
    // and after the second, when the commands come again, carried out. A plan that is only shown ends
    // without.
    void begin_plan(bool only_shown);
    void carry_out_plan();
    void end_plan();
    void drop_plan();
    bool keeps_changes() const { return changes_.has_value(); }
    // `back` makes the command that takes back what was changed; only asked where changes are kept.
    template <typename Back>
    void keep_change(const Back &back)
    {
        if (changes_)
            changes_->push_back(back());
    }
    void quit() { done_ = true; }

private:
    struct Script;

    void run_script(Script &script);
    void run_file(const std::string &name, Loading loading, bool atomic);
    void replace(LineSource &source, const std::string &name, bool only_shown);
    bool go_over(const std::string &text, const std::string &name);
    void expect_plan() const;
    void run_atomically(LineSource &source, const std::string &name);
    bool are_revocable(Script &script);
    void expect_open() const;
    std::size_t take_back();
    void back_to_prompt();
    void execute(Script &script);
    void carry_out_into(std::ostream &out, bool redirected, const Words &words);
    void show_what_came_behind();
    void report(const Script &script, const BadLine &error);
    void report_interruption(const Script &script);
    void tell_taken_back(const std::string &name, std::size_t changes);
    void tell_bad_lines(const std::string &name);
    void complain(const std::string &line);

    std::ostream &out_;
    std::ostream *elsewhere_ = nullptr; // where the output of a command goes instead
    std::ostream &err_;
    SessionOptions options_;
    Watches watches_{*this};
    CounterRates counter_rates_;
    IdleWatches idle_watches_;
    DigestWatches digest_watches_{*this};
    std::map<const reflection::ProfileFunctions *, ProfileNames> names_;
    bool done_ = false;
    bool interrupted_ = false;
    bool stopping_ = false; // a bad line or Ctrl-C ends the files, down to the prompt if there is one
    u64 bad_lines_ = 0;
    OptionWords option_words_;
    bool redirected_ = false;                         // what the command prints
    bool all_or_none_ = false;                        // the first bad line ends the file
    std::unique_ptr<Replacement> replacement_;        // while there is a plan
    const Verb *verb_ = nullptr;                      // that is being carried out
    std::optional<std::vector<std::string>> changes_; // commands that take back what was changed
    std::string *line_ = nullptr;                     // that is being carried out
    LineSource *source_ = nullptr;                    // that is being read
    std::string behind_;                              // lines that came up while the command ran
    std::vector<std::filesystem::path> files_;        // that are being carried out, one by the other
};

} // namespace shell
