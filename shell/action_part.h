// The part of a command behind the colon: an action with its parameters and options.
#pragma once

#include "entry_arguments.h"
#include "options.h"
#include "records.h"
#include "reflection.h"
#include "tables.h"

namespace shell {

struct ActionPart {
    const reflection::ActionFunctions *functions;
    Record parameters;
};

// Takes the rest of the command.
ActionPart take_action_part(Words &words, const reflection::TableFunctions &table, ActionOf use,
                            Options &options);

// Key and action may be null.
reflection::EntryArguments arguments(const Record *key, const ActionPart *action, const Options &options);

} // namespace shell
