// A program in C++ with short types of its own. Its calls reach the model through the tap.
#include <cstdio>
#include <cstring>
#include <pd.h>

#include <model.h>
#include <tap.h>

struct u64 {
    unsigned calls;
};

static_assert(PD_VERSION_NUMBER >= PD_VERSION_MAKE(0, 1, 0), "an older header was found");

static void count(const char *, void *cookie)
{
    ++static_cast<u64 *>(cookie)->calls;
}

int main()
{
    u64 seen{0};
    ts_tap_trace(count, &seen);
    p4_pd_tessel_switch_init();
    seen.calls = 0;

    p4_pd_tessel_switch_ingressPortMapping_match_spec_t key{};
    p4_pd_tessel_switch_setPhase0_action_spec_t names{};
    key.ig_intr_md_ingress_port = 7;
    pd_entry_hdl entry = 0;
    const pd_status status = p4_pd_tessel_switch_ingressPortMapping_table_add_with_setPhase0(
        1, pd_dev_target{0, 0xffff}, &key, &names, &entry);
    std::printf("status %u, entry %u, %u calls\n", status, entry, seen.calls);

    if (std::strcmp(ts_model_version(), PD_VERSION) != 0 || std::strcmp(ts_tap_version(), PD_VERSION) != 0)
        std::printf("headers of %s, model %s, tap %s\n", PD_VERSION, ts_model_version(), ts_tap_version());
    return 0;
}
