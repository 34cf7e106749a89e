#include "updates.h"

namespace model {

void Listeners::set(const Listener &listener)
{
    if (listener.callback != nullptr)
        all_.push_back(listener);
    else
        std::erase_if(all_, [&](const Listener &other) { return other.sess == listener.sess; });
}

void News::take(const Listeners &listeners, u32 kind, u32 table, pd_entry_hdl entry,
                const EntryView &contents)
{
    if (listeners.all().empty())
        return; // spares the copy
    listeners_ = listeners.all();
    kind_ = kind;
    table_ = table;
    entry_ = entry;
    contents_ = EntryCopy{contents};
}

void News::tell(u32 device_id) const
{
    if (listeners_.empty())
        return;
    const ts_model_entry contents = public_form(contents_.view());
    const ts_model_update update{kind_, entry_, contents.action, contents};
    for (const Listener &listener : listeners_)
        listener.callback(device_id, table_, &update, listener.cookie);
}

} // namespace model
