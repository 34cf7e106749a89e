// The action of an entry or member as the library reads it back: for people, and as JSON.
#pragma once

#include <span>
#include <string>
#include <vector>

#include "result.h"
#include "rows.h"

namespace shell {

class ShownAction {
public:
    // `actions`: those of the table or profile.
    explicit ShownAction(std::span<const pd::Binding> actions);

    // Where the library writes the action.
    pd_action_out &out() { return out_; }

    const pd::Action &row() const { return *actions_[used()].action; }
    const char *name() const { return row().name; }
    const std::vector<ShownField> &fields() const { return fields_[used()]; }
    const void *parameters() const { return &out_.parameters; }

    // "setNextHop nextHop=7"
    void append_text(std::string &to) const;
    // As "action" and "parameters".
    void tell(Result &to) const;

private:
    std::size_t used() const;

    std::span<const pd::Binding> actions_;
    std::vector<std::vector<ShownField>> fields_; // by action
    pd_action_out out_{};
};

} // namespace shell
