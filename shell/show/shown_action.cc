#include "shown_action.h"

#include <algorithm>

namespace shell {

ShownAction::ShownAction(std::span<const pd::Binding> actions) : actions_(actions)
{
    for (const pd::Binding &binding : actions)
        fields_.push_back(shown_fields(*binding.action));
}

std::size_t ShownAction::used() const
{
    const auto found = std::ranges::find(actions_, out_.action_number,
                                         [](const pd::Binding &binding) { return binding.action->number; });
    return static_cast<std::size_t>(found - actions_.begin());
}

void ShownAction::append_text(std::string &to) const
{
    to += name();
    append_assignments(to, fields(), parameters());
}

void ShownAction::tell(Result &to) const
{
    to.text("action", name()).fields("parameters", fields(), parameters());
}

} // namespace shell
