// What a call has for those who have registered for changes of an action profile.
#pragma once

#include <initializer_list>

#include "updates.h"

namespace model {

// The update that one call makes, if it makes one: taken under the device's lock, told outside of it to those
// who were registered at that moment.
class ProfileNews {
public:
    void take(std::initializer_list<const Listeners *> listeners, u32 table,
              const ts_model_profile_update &update);
    void tell(u32 device_id) const;

private:
    std::vector<Listener> listeners_;
    u32 table_ = 0;
    ts_model_profile_update update_{};
    std::vector<u8> data_; // that the update points at
};

} // namespace model
