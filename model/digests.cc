#include "digests.h"

#include <algorithm>

namespace model {

pd_status Digests::add_listener(u32 digest, const DigestListener &listener)
{
    const auto [known, added] = listeners_.try_emplace(digest, listener);
    if (!added && known->second.sess != listener.sess)
        return already_exists;
    known->second = listener;
    return ok;
}

pd_status Digests::remove_listener(u32 digest, pd_sess_hdl sess)
{
    const DigestListener *known = listener(digest);
    if (known == nullptr || known->sess != sess)
        return unknown_object;
    listeners_.erase(digest);
    return ok;
}

const DigestListener *Digests::listener(u32 digest) const
{
    const auto known = listeners_.find(digest);
    return known != listeners_.end() ? &known->second : nullptr;
}

ts_model_digest_message *Digests::add_message(u32 device_id, const ProgramDigest &digest, const u8 *entries,
                                              u32 count)
{
    auto message = std::make_unique<Message>();
    message->sess = listener(digest.handle)->sess;
    message->entries.assign(entries, entries + std::size_t{digest.entry_bytes} * count);
    message->record = {device_id, digest.handle, count, digest.entry_bytes, message->entries.data()};
    ts_model_digest_message *record = &message->record;
    messages_[reinterpret_cast<pd_word>(record)] = std::move(message);
    return record;
}

pd_status Digests::acknowledge(pd_sess_hdl sess, u32 digest, pd_word message)
{
    const auto known = messages_.find(message);
    if (known == messages_.end() || known->second->sess != sess || known->second->record.digest != digest)
        return unknown_object;
    messages_.erase(known);
    return ok;
}

u32 Digests::pending(u32 digest) const
{
    return static_cast<u32>(std::ranges::count_if(
        messages_, [&](const auto &message) { return message.second->record.digest == digest; }));
}

} // namespace model
