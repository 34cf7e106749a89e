// Who has registered for the updates of a table, and what a call has for them.
#pragma once

#include <vector>

#include "entry_copy.h"

namespace model {

struct Listener {
    pd_sess_hdl sess;
    pd_mat_update_cb callback;
    pd_word cookie;
};

class Listeners {
public:
    // A null callback takes back all of the session's.
    void set(const Listener &listener);
    const std::vector<Listener> &all() const { return all_; }

private:
    std::vector<Listener> all_; // in the order of their registration
};

// The update that one call makes, if it makes one: taken under the device's lock, told outside of it to those
// who were registered at that moment.
class News {
public:
    void take(const Listeners &listeners, u32 kind, u32 table, pd_entry_hdl entry, const EntryView &contents);
    void tell(u32 device_id) const;

private:
    std::vector<Listener> listeners_;
    u32 kind_ = 0;
    u32 table_ = 0;
    pd_entry_hdl entry_ = 0;
    EntryCopy contents_;
};

} // namespace model
