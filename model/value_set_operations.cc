// The driver operations on parser value sets.
#include "pipe_mgr_pvs.h"

#include "device.h"

using namespace model;

namespace {

// Runs `use` on the value set of a device under the device's lock.
template <typename Use>
pd_status with_set(u32 device_id, u32 set, Use use)
{
    return with_device(device_id, [&](Device &device) {
        return find_object(program.value_sets, set) != nullptr ? use(device.value_sets[set]) : unknown_object;
    });
}

template <typename Value>
void tell(Value *out, Value value)
{
    if (out != nullptr)
        *out = value;
}

} // namespace

namespace model {

// ---- Properties -----------------------------------------------------------------------------------------

pd_status pipe_mgr_pvs_set_property(pd_sess_hdl, u32 device_id, u32 set, u32 property,
                                    pipe_pvs_property_value value, pipe_pvs_property_args args)
{
    const auto write = [&](ValueSet &found) {
        found.properties[{property, args.argument}] = value.value;
        return ok;
    };
    return with_set(device_id, set, write);
}

pd_status pipe_mgr_pvs_get_property(pd_sess_hdl, u32 device_id, u32 set, u32 property, u32 *value,
                                    pipe_pvs_property_args args)
{
    const auto read = [&](const ValueSet &found) {
        const auto known = found.properties.find({property, args.argument});
        if (known == found.properties.end())
            return unknown_object;
        *value = known->second;
        return ok;
    };
    return with_set(device_id, set, read);
}

// ---- Entries --------------------------------------------------------------------------------------------

pd_status pipe_mgr_pvs_entry_add(pd_sess_hdl, u32 device_id, u32 set, u32 scope_a, u32 scope_b, u8 scope_c,
                                 u32 key, u32 key_mask, u32 *entry)
{
    const ValueSetScope scope{scope_a, scope_b, scope_c};
    const auto add = [&](ValueSet &found) { return found.add(scope, {key, key_mask}, *entry); };
    return with_set(device_id, set, add);
}

pd_status pipe_mgr_pvs_entry_modify(pd_sess_hdl, u32 device_id, u32 set, u32 entry, u32 key, u32 key_mask)
{
    const auto modify = [&](ValueSet &found) { return found.modify(entry, {key, key_mask}); };
    return with_set(device_id, set, modify);
}

pd_status pipe_mgr_pvs_entry_delete(pd_sess_hdl, u32 device_id, u32 set, u32 entry)
{
    const auto remove = [&](ValueSet &found) { return found.remove(entry); };
    return with_set(device_id, set, remove);
}

pd_status pipe_mgr_pvs_entry_get(pd_sess_hdl, u32 device_id, u32 set, u32 entry, u32 *key, u32 *key_mask,
                                 u32 *scope_a, u32 *scope_b, u8 *scope_c)
{
    const auto read = [&](const ValueSet &found) {
        const ValueSet::Entry *known = found.get(entry);
        if (known == nullptr)
            return unknown_object;
        *key = known->key.value;
        *key_mask = known->key.mask;
        tell(scope_a, known->scope.a);
        tell(scope_b, known->scope.b);
        tell(scope_c, known->scope.c);
        return ok;
    };
    return with_set(device_id, set, read);
}

pd_status pipe_mgr_pvs_entry_handle_get(pd_sess_hdl, u32 device_id, u32 set, u32 scope_a, u32 scope_b,
                                        u8 scope_c, u32 key, u32 key_mask, u32 *entry)
{
    const ValueSetScope scope{scope_a, scope_b, scope_c};
    const auto find = [&](const ValueSet &found) {
        const u32 known = found.find(scope, {key, key_mask});
        if (known == 0)
            return unknown_object;
        *entry = known;
        return ok;
    };
    return with_set(device_id, set, find);
}

// ---- Walks ----------------------------------------------------------------------------------------------

pd_status pipe_mgr_pvs_entry_get_first(pd_sess_hdl, u32 device_id, u32 set, u32 scope_a, u32 scope_b,
                                       u8 scope_c, u32 *first)
{
    const ValueSetScope scope{scope_a, scope_b, scope_c};
    const auto read = [&](const ValueSet &found) {
        *first = found.next(scope, 0);
        return ok;
    };
    return with_set(device_id, set, read);
}

pd_status pipe_mgr_pvs_entry_get_next(pd_sess_hdl, u32 device_id, u32 set, u32 scope_a, u32 scope_b,
                                      u8 scope_c, u32 after, u32 count, u32 *next)
{
    const ValueSetScope scope{scope_a, scope_b, scope_c};
    const auto read = [&](const ValueSet &found) {
        u32 entry = found.next(scope, after);
        for (u32 at = 0; at < count; ++at) {
            next[at] = entry;
            entry = entry != 0 ? found.next(scope, entry) : 0;
        }
        return ok;
    };
    return with_set(device_id, set, read);
}

pd_status pipe_mgr_pvs_entry_get_count(pd_sess_hdl, u32 device_id, u32 set, u32 scope_a, u32 scope_b,
                                       u8 scope_c, u8, u32 *count)
{
    const ValueSetScope scope{scope_a, scope_b, scope_c};
    const auto read = [&](const ValueSet &found) {
        *count = found.count(scope);
        return ok;
    };
    return with_set(device_id, set, read);
}

} // namespace model
