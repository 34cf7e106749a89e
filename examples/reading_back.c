/*
 * Reading back in C: entries are written, walked, read, counted and deleted; a group spreads what it gets
 * over its members. It uses the library alone, so it runs on a switch as well as against the model.
 */
#include <stdio.h>

#include "pd.h"

/* The names of the library are long: what they say is whose they are, which table is meant, and what is done.
 */
#define PD(name) p4_pd_tessel_switch_##name

static const pd_sess_hdl session = 1;
static const pd_dev_target all_pipes = {.device_id = 0, .pipe_id = 0xffff};
static int failures = 0;

static void expect(pd_status status, const char *what)
{
    if (status != PD_STATUS_SUCCESS) {
        printf("%s: status %u\n", what, status);
        ++failures;
    }
}

/* Frames to 01:80:c2:00:00:0x through one port, whatever the last four bits, and those of one group address.
 */
static void add_two_entries(pd_entry_hdl *bpdu, pd_entry_hdl *group_address)
{
    PD(l2DmacClassify_match_spec_t)
    key = {.ig_intr_md_ingress_port = 7,
           .outerEthHdr_dmacOui = 0x0180c2,
           .outerEthHdr_dmacOui_mask = 0xffffff,
           .outerEthHdr_dmacStation = 0,
           .outerEthHdr_dmacStation_mask = 0xfffff0};
    expect(PD(l2DmacClassify_table_add_with_setMcast)(session, all_pipes, &key, 10, bpdu), "add");
    key.outerEthHdr_dmacOui = 0x01005e;
    key.outerEthHdr_dmacStation = 0x000005;
    key.outerEthHdr_dmacStation_mask = 0xffffff;
    expect(PD(l2DmacClassify_table_add_with_setIpMcast)(session, all_pipes, &key, 20, group_address), "add");
}

static void print_entry(pd_entry_hdl entry)
{
    PD(l2DmacClassify_match_spec_t) key;
    pd_action_out action;
    char name[P4_PD_TESSEL_SWITCH_ACTION_NAME_BYTES];
    uint32_t priority = 0;
    uint8_t is_default = 0;
    pd_counter_value hits = {0, 0};
    const uint8_t from_hardware = 0;
    const pd_status status =
        PD(l2DmacClassify_get_entry)(session, all_pipes.device_id, entry, from_hardware, &key, &priority,
                                     name, action.parameters.bytes, &action.action_number, &is_default);
    expect(status, "read");
    if (status != PD_STATUS_SUCCESS)
        return;
    /* The counter is direct to the table: every entry has a cell, and the entry's handle names it. */
    expect(PD(counter_read_l2DmacClassifyCount)(session, all_pipes, entry, from_hardware, &hits), "counter");
    printf("entry %u: port %u dmac %06x%06x/%06x%06x priority %u: %s, count %llu\n", entry,
           key.ig_intr_md_ingress_port, key.outerEthHdr_dmacOui, key.outerEthHdr_dmacStation,
           key.outerEthHdr_dmacOui_mask, key.outerEthHdr_dmacStation_mask, priority, name,
           (unsigned long long)hits.first_count);
}

/* A walk: the first handle, then those behind the last one, as many at a time as there is room for. */
static void print_all_entries(void)
{
    enum { room = 16 };
    pd_entry_hdl entries[room] = {PD_END_OF_WALK};
    uint32_t count = 1;
    expect(PD(l2DmacClassify_get_first_entry_handle)(session, all_pipes, entries), "walk");
    while (entries[0] != PD_END_OF_WALK) {
        uint32_t at = 0;
        for (; at < count && entries[at] != PD_END_OF_WALK; ++at)
            print_entry(entries[at]);
        const pd_entry_hdl last = entries[at - 1];
        count = room;
        entries[0] = PD_END_OF_WALK; /* should the next call be refused */
        expect(PD(l2DmacClassify_get_next_entry_handles)(session, all_pipes, last, count, entries), "walk");
    }
}

/* A port channel: its ports are members of an action profile, joined to a group, and an entry points at that.
 */
static void make_port_channel(void)
{
    pd_mbr_hdl ports[2] = {0}, member = PD_END_OF_WALK;
    pd_grp_hdl channel = 0;
    pd_entry_hdl entry = 0;
    expect(PD(lagPortActionProfile_create_group)(session, all_pipes, 8, &channel), "group");
    for (uint32_t i = 0; i < 2; ++i) {
        const PD(setLagPort_action_spec_t) port = {.action_egrL2AintfPort = (uint16_t)(24 + i)};
        expect(PD(lagPortActionProfile_add_member_with_setLagPort)(session, all_pipes, &port, &ports[i]),
               "member");
        expect(PD(lagPortActionProfile_add_member_to_group)(session, all_pipes.device_id, channel, ports[i]),
               "join");
    }
    const PD(lagGroup_match_spec_t)
        key = {.egrMd_egrL2AintfUnresolved = 0x10001, .egrMd_egrL2AintfUnresolved_mask = 0xfffff};
    expect(PD(lagGroup_add_entry_with_selector)(session, all_pipes, &key, 10, channel, &entry), "entry");

    printf("group %u:", channel);
    expect(PD(lagPortActionProfile_get_first_group_member)(session, all_pipes.device_id, channel, &member),
           "walk");
    while (member != PD_END_OF_WALK) {
        const pd_mbr_hdl last = member;
        printf(" member %u", member);
        member = PD_END_OF_WALK;
        expect(PD(lagPortActionProfile_get_next_group_members)(session, all_pipes.device_id, channel, last, 1,
                                                               &member),
               "walk");
    }
    printf("; entry %u points at it\n", entry);
}

int main(void)
{
    pd_entry_hdl bpdu = 0, group_address = 0;
    PD(init)();
    add_two_entries(&bpdu, &group_address);
    const pd_counter_value hits = {.first_count = 3, .second_count = 192};
    expect(PD(counter_write_l2DmacClassifyCount)(session, all_pipes, bpdu, hits), "counter");
    print_all_entries();
    expect(PD(l2DmacClassify_table_delete)(session, all_pipes.device_id, bpdu), "delete");
    printf("one deleted\n");
    print_all_entries();
    make_port_channel();
    expect(PD(cleanup)(), "cleanup");
    return failures != 0;
}
