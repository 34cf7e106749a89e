// The seven tables that stand for all: each with the library's add function, its hand-written twins and
// the records that all are fed.
#pragma once

#include <array>
#include <cstddef>
#include <cstring>
#include <random>
#include <type_traits>

#include "best_hand.h"
#include "hand_written.h"

namespace bench {

inline constexpr pd_sess_hdl session = 7;
inline constexpr pd_dev_target target = {0, 0xffff};

// How many records a table is fed in turn: enough for every prefix length, few enough for the L1 cache.
inline constexpr std::size_t sample_count = 160;

// What a caller may not leave to chance.
template <typename Record>
void restrict_sample(Record &record, [[maybe_unused]] std::size_t index)
{
    if constexpr (requires { record.ingIpv4_dip_prefix_length; })
        record.ingIpv4_dip_prefix_length = index % 34; // 33 is longer than the address
    if constexpr (requires { record.ingIpv6_dip_prefix_length; })
        record.ingIpv6_dip_prefix_length = index % 130;
    if constexpr (requires { record.requested_meter_type; })
        record.requested_meter_type = index % 2;
}

// Records of random bytes, values too wide for their field included; the same in every run.
template <typename Record>
std::array<Record, sample_count> make_samples()
{
    std::minstd_rand random; // its default seed is fixed
    std::array<Record, sample_count> samples;
    for (std::size_t index = 0; index < sample_count; index++) {
        u8 bytes[sizeof(Record)];
        for (u8 &byte : bytes)
            byte = static_cast<u8>(random() >> 8);
        std::memcpy(&samples[index], bytes, sizeof bytes);
        restrict_sample(samples[index], index);
    }
    return samples;
}

template <typename Record>
inline const std::array<Record, sample_count> samples = make_samples<Record>();

inline pd_entry_hdl new_entry;

// The argument of this type in the call with the sample `index`.
template <typename Argument>
[[gnu::always_inline]] inline Argument argument(std::size_t index)
{
    if constexpr (std::is_same_v<Argument, u32>)
        return static_cast<u32>(index); // the priority
    else if constexpr (std::is_same_v<Argument, pd_entry_hdl *>)
        return &new_entry;
    else
        return &samples<std::remove_cvref_t<std::remove_pointer_t<Argument>>>[index];
}

template <typename... Arguments>
[[gnu::always_inline]] inline pd_status call(pd_status (*function)(pd_sess_hdl, pd_dev_target, Arguments...),
                                             std::size_t index)
{
    return function(session, target, argument<Arguments>(index)...);
}

// Calls visitor.operator()<library function, hand-written function, the best>(table, what it stands for) for
// each case.
void for_each_case(auto visitor)
{
    visitor.template operator()<p4_pd_tessel_switch_l2ForwardParams_table_add_with_l2ForwardParamsSet,
                                hand_written::add_l2_forward_params, best_hand::add_l2_forward_params>(
        "l2ForwardParams", "smallest exact");
    visitor.template operator()<p4_pd_tessel_switch_haloRow1Stage2_table_add_with_haloSetBestResultRow1,
                                hand_written::add_halo_row1_stage2, best_hand::add_halo_row1_stage2>(
        "haloRow1Stage2", "widest exact");
    visitor.template operator()<p4_pd_tessel_switch_trapToCpu_table_add_with_copyPacket,
                                hand_written::add_trap_to_cpu, best_hand::add_trap_to_cpu>(
        "trapToCpu", "ternary, 20 fields");
    visitor.template operator()<p4_pd_tessel_switch_ipv4ShortMaskLpm_table_add_with_setNextHop,
                                hand_written::add_ipv4_short_mask_lpm, best_hand::add_ipv4_short_mask_lpm>(
        "ipv4ShortMaskLpm", "LPM of 32 bits");
    visitor.template operator()<p4_pd_tessel_switch_ipv6ShortMaskLpm_table_add_with_setNextHop,
                                hand_written::add_ipv6_short_mask_lpm, best_hand::add_ipv6_short_mask_lpm>(
        "ipv6ShortMaskLpm", "LPM of 128 bits");
    visitor.template operator()<p4_pd_tessel_switch_l2DmacClassify_table_add_with_setUcast,
                                hand_written::add_l2_dmac_classify, best_hand::add_l2_dmac_classify>(
        "l2DmacClassify", "direct counter");
    visitor.template operator()<p4_pd_tessel_switch_pdpClassify_table_add_with_meterPdpClass,
                                hand_written::add_pdp_classify, best_hand::add_pdp_classify>(
        "pdpClassify", "indexed resource");
}

} // namespace bench
