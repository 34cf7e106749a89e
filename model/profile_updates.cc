#include "profile_updates.h"

namespace model {

void ProfileNews::take(std::initializer_list<const Listeners *> listeners, u32 table,
                       const ts_model_profile_update &update)
{
    for (const Listeners *some : listeners)
        listeners_.insert(listeners_.end(), some->all().begin(), some->all().end());
    if (listeners_.empty())
        return; // spares the copy
    table_ = table;
    update_ = update;
    data_.assign(update.data, update.data + update.data_bytes);
    update_.data = data_.data();
}

void ProfileNews::tell(u32 device_id) const
{
    for (const Listener &listener : listeners_)
        listener.callback(device_id, table_, &update_, listener.cookie);
}

} // namespace model
