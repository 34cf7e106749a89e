// The driver operations on dynamic hash calculations.
#include "pipe_mgr_hash.h"

#include <algorithm>

#include "device.h"

using namespace model;

namespace {

// Runs `use` on a calculation of a device under the device's lock.
template <typename Use>
pd_status with_calculation(u32 device_id, u32 calculation, Use use)
{
    return with_device(device_id, [&](Device &device) {
        const ProgramHash *known = find_object(program.hashes, calculation);
        return known != nullptr ? use(device.hashes.try_emplace(calculation, *known).first->second)
                                : unknown_object;
    });
}

// Likewise, if `input` is the calculation's.
template <typename Use>
pd_status with_input(u32 device_id, u32 calculation, u32 input, Use use)
{
    return with_calculation(device_id, calculation, [&](HashCalculation &found) {
        return found.input() == input ? use(found) : unknown_object;
    });
}

} // namespace

namespace model {

// ---- Input, algorithm, seed -----------------------------------------------------------------------------

pd_status pipe_mgr_hash_calc_input_set(pd_sess_hdl, u32 device_id, u32 calculation, u32 input)
{
    const auto set = [](const HashCalculation &) { return ok; };
    return with_input(device_id, calculation, input, set);
}

pd_status pipe_mgr_hash_calc_input_get(pd_sess_hdl, u32 device_id, u32 calculation, u32 *input)
{
    const auto get = [&](const HashCalculation &found) {
        *input = found.input();
        return ok;
    };
    return with_calculation(device_id, calculation, get);
}

pd_status pipe_mgr_hash_calc_algorithm_set(pd_sess_hdl, u32 device_id, u32 calculation, u32 algorithm,
                                           pd_word, pd_word, pd_word)
{
    const auto set = [&](HashCalculation &found) { return found.set_algorithm(algorithm); };
    return with_calculation(device_id, calculation, set);
}

pd_status pipe_mgr_hash_calc_algorithm_get(pd_sess_hdl, u32 device_id, u32 calculation, u32 *algorithm,
                                           pd_word, pd_word)
{
    const auto get = [&](const HashCalculation &found) {
        *algorithm = found.algorithm();
        return ok;
    };
    return with_calculation(device_id, calculation, get);
}

pd_status pipe_mgr_hash_calc_seed_set(pd_sess_hdl, u32 device_id, u32 calculation, pd_word first,
                                      pd_word second)
{
    const auto set = [&](HashCalculation &found) {
        found.seed = {first, second};
        return ok;
    };
    return with_calculation(device_id, calculation, set);
}

pd_status pipe_mgr_hash_calc_seed_get(pd_sess_hdl, u32 device_id, u32 calculation, void *seed)
{
    auto *out = static_cast<ts_model_hash_seed *>(seed);
    const auto get = [&](const HashCalculation &found) {
        *out = found.seed;
        return ok;
    };
    return with_calculation(device_id, calculation, get);
}

// ---- Attributes of input fields -------------------------------------------------------------------------

pd_status pipe_mgr_hash_calc_input_field_attribute_set(pd_sess_hdl, u32 device_id, u32 calculation, u32 input,
                                                       u32 count,
                                                       pipe_hash_calc_input_field_attribute *attributes)
{
    const auto set = [&](HashCalculation &found) {
        found.attributes.assign(attributes, attributes + count);
        return ok;
    };
    return with_input(device_id, calculation, input, set);
}

pd_status pipe_mgr_hash_calc_input_field_attribute_count_get(pd_sess_hdl, u32 device_id, u32 calculation,
                                                             u32 input, u32 *count)
{
    const auto get = [&](const HashCalculation &found) {
        *count = static_cast<u32>(found.attributes.size());
        return ok;
    };
    return with_input(device_id, calculation, input, get);
}

pd_status pipe_mgr_hash_calc_input_field_attribute_get(pd_sess_hdl, u32 device_id, u32 calculation, u32 input,
                                                       u32 capacity,
                                                       pipe_hash_calc_input_field_attribute *attributes,
                                                       u32 *count)
{
    const auto get = [&](const HashCalculation &found) {
        *count = std::min(capacity, static_cast<u32>(found.attributes.size()));
        std::copy_n(found.attributes.begin(), *count, attributes);
        return ok;
    };
    return with_input(device_id, calculation, input, get);
}

// ---- The hash -------------------------------------------------------------------------------------------

pd_status pipe_mgr_hash_calc_calculate_hash_value(pd_sess_hdl, u32 device_id, u32 calculation, u8 *stream,
                                                  u32 stream_bytes, u8 *hash, u32 hash_size)
{
    const auto calculate = [&](const HashCalculation &found) {
        found.hash({stream, stream_bytes}, {hash, hash_size});
        return ok;
    };
    return with_calculation(device_id, calculation, calculate);
}

} // namespace model
