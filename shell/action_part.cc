#include "action_part.h"

namespace shell {

ActionPart take_action_part(Words &words, const reflection::TableFunctions &table, ActionOf use,
                            Options &options)
{
    if (words.empty())
        throw BadLine{words.rest(), "missing ':' and an action, with blanks around the colon"};
    if (words.peek() != ":")
        throw BadLine{words.peek(), "expected ':' before the action instead of " + quoted(words.peek())};
    words.take();
    const reflection::ActionFunctions &functions = take_action(words, table, use);
    ActionPart part{&functions, Record{*functions.row->action}};
    take_assignments(words, part.parameters, functions.row->action->name, options);
    words.expect_end();
    return part;
}

reflection::EntryArguments arguments(const Record *key, const ActionPart *action, const Options &options)
{
    reflection::EntryArguments result;
    result.key = key ? key->data() : nullptr;
    result.action = action ? action->parameters.data() : nullptr;
    result.priority = options.priority.value_or(0);
    result.ttl = options.ttl.value_or(0);
    result.meter = options.meter ? &*options.meter : nullptr;
    return result;
}

} // namespace shell
