// The seven tables of the write benchmark, each with the library's get function and its hand-written twin.
#pragma once

#include <cstring>
#include <type_traits>

#include "hand_written_reads.h"
#include "keeping_driver.h"
#include "write_cases.h"

namespace bench {

// Where the entries of one table are read to.
template <typename Key>
struct Results {
    Key key;
    u32 priority;
    char name[64];
    u32 parameters[7]; // room for every action
    u32 number;
    u8 is_default;

    Results() { std::memset(static_cast<void *>(this), 0xa5, sizeof *this); }
};

template <typename Key>
using GetEntry = pd_status (*)(pd_sess_hdl, u32, pd_entry_hdl, u8, Key *, char *, void *, u32 *, u8 *);

template <typename Key>
using GetTernaryEntry = pd_status (*)(pd_sess_hdl, u32, pd_entry_hdl, u8, Key *, u32 *, char *, void *, u32 *,
                                      u8 *);

template <typename Key>
Key key_of(GetEntry<Key>);
template <typename Key>
Key key_of(GetTernaryEntry<Key>);

template <auto function>
using ResultsOf = Results<decltype(key_of(function))>;

template <typename Key>
[[gnu::always_inline]] inline pd_status get(GetEntry<Key> function, pd_entry_hdl entry, Results<Key> &to)
{
    return function(session, target.device_id, entry, 0, &to.key, to.name, to.parameters, &to.number,
                    &to.is_default);
}

template <typename Key>
[[gnu::always_inline]] inline pd_status get(GetTernaryEntry<Key> function, pd_entry_hdl entry,
                                            Results<Key> &to)
{
    return function(session, target.device_id, entry, 0, &to.key, &to.priority, to.name, to.parameters,
                    &to.number, &to.is_default);
}

// Lets the driver keep the samples of one table, and nothing else.
template <auto add>
void keep_samples()
{
    entries.clear();
    for (std::size_t index = 0; index < sample_count; index++)
        call(add, index);
}

template <auto add, auto library, auto hand_written>
void visit_read(auto visitor, const char *table, const char *subject)
{
    static_assert(std::is_same_v<decltype(library), decltype(hand_written)>);
    visitor.template operator()<add, library, hand_written>(table, subject);
}

// Calls visitor.operator()<add function, library function, hand-written function>(table, what it stands for)
// for each case.
void for_each_read_case(auto visitor)
{
    using namespace hand_written;
    visit_read<p4_pd_tessel_switch_l2ForwardParams_table_add_with_l2ForwardParamsSet,
               p4_pd_tessel_switch_l2ForwardParams_get_entry, get_l2_forward_params>(
        visitor, "l2ForwardParams", "smallest exact");
    visit_read<p4_pd_tessel_switch_haloRow1Stage2_table_add_with_haloSetBestResultRow1,
               p4_pd_tessel_switch_haloRow1Stage2_get_entry, get_halo_row1_stage2>(visitor, "haloRow1Stage2",
                                                                                   "widest exact");
    visit_read<p4_pd_tessel_switch_trapToCpu_table_add_with_copyPacket,
               p4_pd_tessel_switch_trapToCpu_get_entry, get_trap_to_cpu>(visitor, "trapToCpu",
                                                                         "ternary, 20 fields");
    visit_read<p4_pd_tessel_switch_ipv4ShortMaskLpm_table_add_with_setNextHop,
               p4_pd_tessel_switch_ipv4ShortMaskLpm_get_entry, get_ipv4_short_mask_lpm>(
        visitor, "ipv4ShortMaskLpm", "LPM of 32 bits");
    visit_read<p4_pd_tessel_switch_ipv6ShortMaskLpm_table_add_with_setNextHop,
               p4_pd_tessel_switch_ipv6ShortMaskLpm_get_entry, get_ipv6_short_mask_lpm>(
        visitor, "ipv6ShortMaskLpm", "LPM of 128 bits");
    visit_read<p4_pd_tessel_switch_l2DmacClassify_table_add_with_setUcast,
               p4_pd_tessel_switch_l2DmacClassify_get_entry, get_l2_dmac_classify>(visitor, "l2DmacClassify",
                                                                                   "direct counter");
    visit_read<p4_pd_tessel_switch_pdpClassify_table_add_with_meterPdpClass,
               p4_pd_tessel_switch_pdpClassify_get_entry, get_pdp_classify>(visitor, "pdpClassify",
                                                                            "indexed resource");
}

} // namespace bench
