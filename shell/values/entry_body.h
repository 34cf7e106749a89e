// What stands behind the colon of a command and an entry is to have: an action with its parameters, or, in a
// table of an action profile, the member or group that it points at.
#pragma once

#include <optional>

#include "entry_arguments.h"
#include "names.h"
#include "options.h"
#include "records.h"
#include "reflection.h"
#include "session.h"
#include "tables.h"

namespace shell {

// Takes the colon before `what`, which begins with an article: "an action".
void take_colon(Words &words, std::string_view what);

// What it can be, for help and completion.
std::vector<Texts> entry_bodies();

class EntryReader;

class EntryBody {
public:
    // Takes the rest of the command.
    EntryBody(Session &session, Words &words, const reflection::TableFunctions &table, ActionOf use,
              Options &options);

    // Each throws BadLine when the driver refuses.
    pd_entry_hdl add(const Record &key, const Options &options) const;
    void modify(pd_entry_hdl entry, const Options &options) const;
    void modify(const Record &key, const Options &options) const;
    void set_default(const Options &options) const;
    // Whether the entry that was read last does just this.
    bool is_of(const EntryReader &entry) const;

private:
    void take_reference(Session &session, Words &words, const reflection::IndirectFunctions &functions,
                        Options &options);
    reflection::EntryArguments arguments(const Record *key, const Options &options) const;

    // Either of the two:
    const reflection::ActionFunctions *action_ = nullptr;
    std::optional<Record> parameters_;
    const reflection::ReferenceFunctions *reference_ = nullptr;
    Object to_{};
};

// The arguments of functions that take a key alone.
reflection::EntryArguments key_arguments(const Record &key, const Options &options);

} // namespace shell
