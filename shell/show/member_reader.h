// Reads the members of an action profile back through the library, one at a time.
#pragma once

#include "reflection.h"
#include "shown_action.h"

namespace shell {

class MemberReader {
public:
    MemberReader(const reflection::ProfileFunctions &profile, bool from_hardware)
        : profile_(profile), from_hardware_(from_hardware), action_(profile.row->actions)
    {
    }

    // Throws BadLine when the driver refuses.
    void read(pd_mbr_hdl member);
    // Of the member that was read last.
    const ShownAction &action() const { return action_; }

private:
    const reflection::ProfileFunctions &profile_;
    const u8 from_hardware_;
    ShownAction action_;
};

} // namespace shell
