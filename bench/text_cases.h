// The seven tables of the write benchmark with one of their actions, as text: the library's functions, and
// the texts written by hand.
#pragma once

#include "hand_written_texts.h"
#include "write_cases.h"

namespace bench {

template <typename Record>
[[gnu::always_inline]] inline u32 write_text(u32 (*function)(const Record *, char *), std::size_t index,
                                             char *buf)
{
    return function(&samples<Record>[index], buf);
}

// Of an action without parameters.
[[gnu::always_inline]] inline u32 write_text(u32 (*function)(char *), std::size_t, char *buf)
{
    return function(buf);
}

// Records with the same bytes as the samples, at another place.
template <typename Record>
inline const std::array<Record, sample_count> twins = make_samples<Record>();

template <typename Record>
using AreEqual = u32 (*)(const Record *, const Record *, char *);

template <typename Record>
[[gnu::always_inline]] inline bool are_equal(AreEqual<Record> function, std::size_t index)
{
    char difference[128];
    return function(&samples<Record>[index], &twins<Record>[index], difference);
}

// The compiler is not to know the size: it would put a comparison of its own in place of a short memcmp.
template <typename Record>
[[gnu::always_inline]] inline bool have_same_bytes(AreEqual<Record>, std::size_t index)
{
    std::size_t size = sizeof(Record);
    __asm__("" : "+r"(size));
    return std::memcmp(&samples<Record>[index], &twins<Record>[index], size) == 0;
}

// An action without parameters has nothing to compare.
[[gnu::always_inline]] inline bool are_equal(std::nullptr_t, std::size_t)
{
    return true;
}

[[gnu::always_inline]] inline bool have_same_bytes(std::nullptr_t, std::size_t)
{
    return true;
}

// The texts of a key and an action, one behind the other.
template <auto key, auto action>
struct Texts {
    // Returns the length of both.
    [[gnu::always_inline]] static u32 write(std::size_t index, char *buf)
    {
        const u32 length = write_text(key, index, buf);
        return length + write_text(action, index, buf + length);
    }
};

// Calls visitor.operator()<library's Texts, hand-written Texts, key equality, action equality>(table, what it
// stands for) for each case.
void for_each_text_case(auto visitor)
{
    using namespace hand_written;
    visitor.template operator()<Texts<p4_pd_tessel_switch_l2ForwardParams_match_spec_value,
                                      p4_pd_tessel_switch_l2ForwardParamsSet_value>,
                                Texts<l2_forward_params_text, l2_forward_params_set_text>,
                                p4_pd_tessel_switch_l2ForwardParams_match_specs_are_equal,
                                p4_pd_tessel_switch_l2ForwardParamsSet_action_specs_are_equal>(
        "l2ForwardParams", "smallest exact");
    visitor.template operator()<Texts<p4_pd_tessel_switch_haloRow1Stage2_match_spec_value,
                                      p4_pd_tessel_switch_haloSetBestResultRow1_value>,
                                Texts<halo_row1_stage2_text, halo_set_best_result_row1_text>,
                                p4_pd_tessel_switch_haloRow1Stage2_match_specs_are_equal,
                                p4_pd_tessel_switch_haloSetBestResultRow1_action_specs_are_equal>(
        "haloRow1Stage2", "widest exact");
    visitor.template
    operator()<Texts<p4_pd_tessel_switch_trapToCpu_match_spec_value, p4_pd_tessel_switch_copyPacket_value>,
               Texts<trap_to_cpu_text, copy_packet_text>, p4_pd_tessel_switch_trapToCpu_match_specs_are_equal,
               p4_pd_tessel_switch_copyPacket_action_specs_are_equal>("trapToCpu", "ternary, 20 fields");
    visitor.template operator()<
        Texts<p4_pd_tessel_switch_ipv4ShortMaskLpm_match_spec_value, p4_pd_tessel_switch_setNextHop_value>,
        Texts<ipv4_short_mask_lpm_text, set_next_hop_text>,
        p4_pd_tessel_switch_ipv4ShortMaskLpm_match_specs_are_equal,
        p4_pd_tessel_switch_setNextHop_action_specs_are_equal>("ipv4ShortMaskLpm", "LPM of 32 bits");
    visitor.template operator()<
        Texts<p4_pd_tessel_switch_ipv6ShortMaskLpm_match_spec_value, p4_pd_tessel_switch_setNextHop_value>,
        Texts<ipv6_short_mask_lpm_text, set_next_hop_text>,
        p4_pd_tessel_switch_ipv6ShortMaskLpm_match_specs_are_equal,
        p4_pd_tessel_switch_setNextHop_action_specs_are_equal>("ipv6ShortMaskLpm", "LPM of 128 bits");
    visitor.template
    operator()<Texts<p4_pd_tessel_switch_l2DmacClassify_match_spec_value, p4_pd_tessel_switch_setUcast_value>,
               Texts<l2_dmac_classify_text, set_ucast_text>,
               p4_pd_tessel_switch_l2DmacClassify_match_specs_are_equal, nullptr>("l2DmacClassify",
                                                                                  "direct counter");
    visitor.template operator()<
        Texts<p4_pd_tessel_switch_pdpClassify_match_spec_value, p4_pd_tessel_switch_meterPdpClass_value>,
        Texts<pdp_classify_text, meter_pdp_class_text>, p4_pd_tessel_switch_pdpClassify_match_specs_are_equal,
        p4_pd_tessel_switch_meterPdpClass_action_specs_are_equal>("pdpClassify", "indexed resource");
}

} // namespace bench
