/* A first program: brings the library up and programs one port and one route. */
#include <stdio.h>

#include "pd.h"

int main(void)
{
    const pd_sess_hdl session = 1;
    const pd_dev_target all_pipes = {.device_id = 0, .pipe_id = 0xffff};
    pd_entry_hdl port = 0, route = 0;
    pd_status status;

    p4_pd_tessel_switch_init(); /* once, before anything else */

    /* A table has a record for its key, an action one for its parameters: plain numbers, host byte order. */
    p4_pd_tessel_switch_ingressPortMapping_match_spec_t key = {.ig_intr_md_ingress_port = 7};
    p4_pd_tessel_switch_setPhase0_action_spec_t names = {.action_ingVPort = 107, .action_nativeAintf = 7};
    status = p4_pd_tessel_switch_ingressPortMapping_table_add_with_setPhase0(session, all_pipes, &key, &names,
                                                                             &port);
    printf("port 7: status %u, entry %u\n", status, port); /* status 0 is success; `port` names the entry */

    /* 10.20.0.0/16 in VRF 1 goes to next hop 5. */
    p4_pd_tessel_switch_ipv4ShortMaskLpm_match_spec_t prefix = {
        .l3Info_vrfId = 1, .ingIpv4_dip = 0x0a140000, .ingIpv4_dip_prefix_length = 16};
    p4_pd_tessel_switch_setNextHop_action_spec_t next_hop = {.action_nextHop = 5};
    status = p4_pd_tessel_switch_ipv4ShortMaskLpm_table_add_with_setNextHop(session, all_pipes, &prefix,
                                                                            &next_hop, &route);
    printf("route: status %u, entry %u\n", status, route);

    return p4_pd_tessel_switch_cleanup() != 0;
}
