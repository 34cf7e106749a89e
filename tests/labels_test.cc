// Keys told in words: every item of the eight counted tables in each of its forms, alone where it has texts
// of its own.
#include "text_fixture.h"

namespace {

using reflection::TableFunctions;
using texts::Bytes;
using texts::text_of;

// All fields that have a mask match on 0x8085 in whole, then on 0x8086 without the mask's lowest bit; wide
// ones on 2001::1. Of a flag that leaves a set bit, then a clear one. Bits of the value beyond the field show
// where nothing takes them away.
struct Line {
    const char *table;
    u32 handle;
    const char *none; // nothing is matched on
    const char *whole;
    const char *part;
};

constexpr Line lines[] = {
    {"l2DmacClassify", 0x1000009, "Ingress Port 0x00 ", "Ingress Port 0x05 dmac 0080.8500.8085 ",
     "Ingress Port 0x06 dmac 0080.8600.8086/ffff.feff.fffe "},
    {"ingressPortDropCheck", 0x1000011, "Ingress Port 0x00 ",
     "Ingress Port 0x05 invalidTunnel illegalSmac illegalDmac outerHdrFlags 0x85 checksumErr ",
     "Ingress Port 0x06 !invalidTunnel !illegalSmac !illegalDmac outerHdrFlags & 0xe 0x86 !checksumErr "},
    {"trapToCpu", 0x1000040, "",
     "etherType 0x8085 bcast mcast l4Attr 0x85 srcPort 0x8085 dstPort 0x8085 ingVPort 0x0085 ingL3Aintf "
     "0x085 "
     "L3DmacValid Ttl 0x85 ARP opcode 0x8085 IGMP snoop dip 0.0.128.133/32 protocol 0x85 VXLAN flood "
     "decapType 0x85 "
     "dip 2001::1/ffff:: CPUinVLan cpuReasonCode 0x85 ",
     "etherType & 0xfffe 0x8086 !bcast !mcast l4Attr & 0x6 0x86 srcPort & 0xfffe 0x8086 dstPort & 0xfffe "
     "0x8086 "
     "ingVPort & 0x3ffe 0x0086 ingL3Aintf & 0xffe 0x086 !L3DmacValid Ttl & 0xfe 0x86 ARP opcode & 0xfffe "
     "0x8086 "
     "!IGMP snoop dip 0.0.128.134/31 protocol & 0xfe 0x86 !VXLAN flood decapType & 0x6 0x86 dip "
     "2001::1/fffe:: "
     "!CPUinVLan cpuReasonCode & 0xfe 0x86 "},
    {"haloCounters", 0x100006f, "bestResult 0x0000 ", "bestResult 0x0085 ", "bestResult 0x0086 "},
    {"finalDropControl", 0x1000075, "",
     "Ingress Port 0x05 bestResult & 0x38000 0x08000 Ingress Port Drop - See ingressPortDropCount  dropSmac "
     "dropDmac "
     "invalidEgressPort samePortBridging pdpDrop routedMartian mlagPrune Invalid IP Version 0x85 "
     "egrL2AintfUnresolved 0x08085 mcast_grp_a 0x8085 Routed Drop  trapToCpu Datalink SNatMeter stpBlocked "
     "invalidVlan dot1xDrop copy_to_cpu stormControlDrop bcast mcast ",
     "Ingress Port & 0x7e 0x06  !Ingress Port Drop - See ingressPortDropCount  !dropSmac "
     "!dropDmac !invalidEgressPort !samePortBridging !pdpDrop !routedMartian !mlagPrune Invalid IP Version & "
     "0x6 0x86 "
     "egrL2AintfUnresolved & 0xffffe 0x08086 mcast_grp_a & 0xfffe 0x8086 !Routed Drop  !trapToCpu !Datalink "
     "natMeterDrop & 0x2 0x2 !stpBlocked !invalidVlan !dot1xDrop !copy_to_cpu !stormControlDrop !bcast "
     "!mcast "},
    {"egressTcamV6RaclBank1", 0x1000092, "",
     "raclId 0x85 sip 2001::1/ffff:ffff:ffff:ffff:ffff:ffff:ffff:ffff dip "
     "2001::1/ffff:ffff:ffff:ffff:ffff:ffff:ffff:ffff nextHdr 0x85 srcPort 0x8085 dstPort 0x8085 flags 0x85 ",
     "raclId & 0xfe 0x86 sip 2001::1/fffe:ffff:ffff:ffff:ffff:ffff:ffff:ffff dip "
     "2001::1/fffe:ffff:ffff:ffff:ffff:ffff:ffff:ffff nextHdr & 0xfe 0x86 srcPort & 0xfffe 0x8086 "
     "dstPort & 0xfffe 0x8086 flags & 0xfe 0x86 "},
    {"egressTcamRaclBank1", 0x100009c, "",
     "raclId 0x85 sip 0.0.128.133/32 dip 0.0.128.133/32 protocol 0x85 srcPort 0x8085 dstPort 0x8085 flags "
     "0x85 isFrag ",
     "raclId & 0xfe 0x86 sip 0.0.128.134/31 dip 0.0.128.134/31 protocol & 0xfe 0x86 srcPort & 0xfffe 0x8086 "
     "dstPort & 0xfffe 0x8086 flags & 0xfe 0x86 !isFrag "},
    {"egressPortDropCheck", 0x100009e, "",
     "Egress Port 0x05 stpBlocked invalidVlan egrTcamRaclResult 0x85 NAT drop ttl 0x85 routed ",
     "Egress Port & 0x7e 0x06 !stpBlocked !invalidVlan egrTcamRaclResult & 0x6 0x86 !NAT drop ttl & 0xfe "
     "0x86 "
     "!routed "},
};

class Labels : public texts::Texts {
protected:
    static std::string told(const TableFunctions &table, const Bytes &key)
    {
        return text_of(
            [&](char *buf) { return table.text.match_spec_stringify_for_counter(key.data(), buf); });
    }

    static Bytes key_with(const TableFunctions &table, u32 value, bool whole)
    {
        Bytes key(table.row->record_size);
        for (const formatter::Slot &slot : formatter::slots_of(*table.row)) {
            const bool is_mask = slot.name.ends_with("_mask"), wide = slot.width == 128;
            u32 mask = wide ? static_cast<u32>(slot.mask.high >> 48) : static_cast<u32>(slot.mask.low);
            if (!whole && mask != 1)
                mask &= mask - 1;
            texts::set(key, slot, is_mask ? mask : wide ? 0x2001 : value);
            if (wide && !is_mask)
                key[slot.offset + 15] = 1;
            else if (wide && slot.mask.low)
                std::fill_n(&key[slot.offset + 2], 14, u8{0xff});
        }
        return key;
    }
};

TEST_F(Labels, EveryItemInEveryForm)
{
    for (const Line &line : lines) {
        SCOPED_TRACE(line.table);
        const auto &table = *reflection::find_table(line.table);
        EXPECT_EQ(told(table, Bytes(table.row->record_size)), line.none);
        EXPECT_EQ(told(table, key_with(table, 0x8085, true)), line.whole);
        EXPECT_EQ(told(table, key_with(table, 0x8086, false)), line.part);
    }
}

// Texts of one field, alone in a key that is zero besides.
struct Example {
    const char *table;
    const char *field;
    u32 value, mask;
    const char *text;
};

constexpr char trap[] = "trapToCpu", drop[] = "finalDropControl", egress[] = "egressPortDropCheck";
constexpr char halo[] = "haloResultRow1_bestResult", unresolved[] = "egrMd_egrL2AintfUnresolved";
constexpr char multicast[] = "ig_intr_md_for_tm_mcast_grp_a", nat_meter[] = "ingMd_natMeterDrop";

constexpr Example examples[] = {
    // Names, at any mask.
    {trap, "ingMd_etherType", 0x800, 0xffff, "IPv4 "},
    {trap, "ingMd_etherType", 0x8aa, 0xff00, "IPv4 "},
    {trap, "ingMd_etherType", 0x86dd, 0xffff, "IPv6 "},
    {trap, "ingMd_etherType", 0x86dd, 0xff00, "etherType & 0xff00 0x86dd "},
    {trap, "ingMd_protocol", 2, 0xff, "IGMP "},
    {trap, "ingMd_protocol", 6, 0xff, "TCP "},
    {trap, "ingMd_protocol", 7, 0xe, "TCP "},
    {trap, "ingMd_protocol", 17, 0xff, "UDP "},
    {trap, "ingMd_protocol", 58, 0xff, "ICMPv6 "},
    {trap, "ingMd_protocol", 89, 0xff, "OSPF "},
    {trap, "ingMd_protocol", 103, 0xff, "PIM "},
    {trap, "ingMd_protocol", 112, 0xff, "VRRP "},
    {trap, "ingMd_protocol", 0, 0xff, "protocol 0x00 "},
    {trap, "egrMd_decapType", 0, 7, "NoDecap "},
    {trap, "egrMd_decapType", 4, 3, "NoDecap "},
    {trap, "egrMd_decapType", 1, 7, "VxLanDecap "},
    {trap, "egrMd_decapType", 2, 7, "CPU-to-Port "},
    {trap, "egrMd_decapType", 3, 7, "CPU-to-VLAN "},
    {trap, "egrMd_decapType", 4, 7, "decapType 0x4 "},
    {trap, "egrMd_decapType", 1, 0xf8, "decapType & 0xf8 0x1 "}, // no mask that the names count under
    {trap, "egrMd_cpuReasonCode", 16, 0xff, "VxLan Arp "},
    {trap, "egrMd_cpuReasonCode", 18, 0xff, "ISIS "},
    {trap, "egrMd_cpuReasonCode", 17, 0xff, "cpuReasonCode 0x11 "},
    {trap, "egrMd_cpuReasonCode", 17, 0xfe, "VxLan Arp "},
    {egress, "egrMd_egrTcamRaclResult", 2, 7, "Egress TCAM ACL Drop "},
    {egress, "egrMd_egrTcamRaclResult", 0xfa, 0xff, "Egress TCAM ACL Drop "},
    {egress, "egrMd_egrTcamRaclResult", 0, 7, "egrTcamRaclResult 0x0 "},
    {egress, "egrMd_egrTcamRaclResult", 3, 1, "egrTcamRaclResult & 0x1 0x3 "},
    // A mask counts as it stands.
    {egress, "eg_intr_md_egress_port", 0x85, 0x1ff, "Egress Port & 0x1ff 0x05 "},
    {egress, "eg_intr_md_egress_port", 0x85, 0x80, "Egress Port & 0x80 0x05 "},
    {trap, "ingMd_bcast", 1, 0xfe, ""},
    {"l2DmacClassify", "outerEthHdr_dmacStation", 0x123456, 0xffff00,
     "Ingress Port 0x00 dmac 0000.0012.3456/0000.00ff.ff00 "},
    // Texts that depart from the rest.
    {drop, "ingMd_drop", 0, 1, "!Ingress Port Drop - See ingressPortDropCount  "},
    {drop, "egrMd_routed", 0, 1, "!Routed Drop  "},
    {drop, halo, 0x38000, 0x38000, "PACL/RACL Drop+/Log  "},
    {drop, halo, 0xffffffff, 0xffffffff, "PACL/RACL Drop+/Log  "},
    {drop, halo, 0x7fff, 0x38000, " "},
    {drop, halo, 0x30000, 0x8000, " "},
    {drop, halo, 0x18007, 0x38000, "bestResult & 0x38000 0x18000 "},
    {drop, halo, 0x38000, 0x8000, "bestResult & 0x8000 0x38000 "},
    {drop, halo, 0x38005, 7, "bestResult 0x38000 "},
    {drop, halo, 0x38005, 0x7fff, "bestResult & 0x7fff 0x38000 "},
    {drop, halo, 5, 5, "bestResult & 0x5 0x00000 "},
    {drop, halo, 0x38000, 0, ""},
    {drop, unresolved, 0, 0xfffff, " "},
    {drop, unresolved, 0x10000, 0xfffff, " "},
    {drop, unresolved, 0x10001, 0xffffe, " "},
    {drop, unresolved, 511, 0xfffff, "Invalid Port  "},
    {drop, unresolved, 0xfffff, 0x1ff, "Invalid Port  "},
    {drop, unresolved, 0x1234567, 0xfffff, "egrL2AintfUnresolved 0x34567 "},
    {drop, unresolved, 0x12, 0xff, "egrL2AintfUnresolved & 0xff 0x00012 "},
    {drop, unresolved, 0x12, 0x1fffff, "egrL2AintfUnresolved & 0x1fffff 0x00012 "},
    {drop, unresolved, 511, 0x100000, "egrL2AintfUnresolved & 0x100000 0x001ff "},
    {drop, unresolved, 511, 0, ""},
    {drop, multicast, 0, 0xffff, " "},
    {drop, multicast, 0x10, 0x1, " "},
    {drop, multicast, 0xabc, 0xffff, "mcast_grp_a 0x0abc "},
    {drop, multicast, 0xabc, 0xfff, "mcast_grp_a & 0xfff 0x0abc "},
    {drop, multicast, 0xabc, 0, ""},
    {drop, nat_meter, 0, 3, " "},
    {drop, nat_meter, 2, 1, " "},
    {drop, nat_meter, 1, 3, "SNatMeter "},
    {drop, nat_meter, 3, 1, "SNatMeter "},
    {drop, nat_meter, 2, 3, "natMeterDrop 0x2 "},
    {drop, nat_meter, 3, 2, "natMeterDrop & 0x2 0x3 "},
    {drop, nat_meter, 0xfe, 0xff, "natMeterDrop & 0xff 0x2 "},
    {drop, nat_meter, 1, 4, "natMeterDrop & 0x4 0x1 "},
    {drop, nat_meter, 1, 0, ""},
};

TEST_F(Labels, NamesAndDepartures)
{
    for (const Example &example : examples) {
        SCOPED_TRACE(testing::Message() << example.field << " " << example.value << " & " << example.mask);
        const auto &table = *reflection::find_table(example.table);
        Bytes key(table.row->record_size);
        texts::set(key, *table.row, example.field, example.value);
        texts::set(key, *table.row, example.field + std::string("_mask"), example.mask);
        EXPECT_EQ(told(table, key), example.text);
    }
}

// By entry: read from the chip, and told as its key is.
TEST_F(Labels, EntriesOfTheChip)
{
    each_table([&](const TableFunctions &table) {
        const u32 handle = table.row->handle;
        const auto by_handle = [&] {
            return text_of([&](char *buf) { return PD(stringify_counter_matchspec)(5, 6, handle, 7, buf); });
        };
        const auto by_entry = [&] {
            const std::string text =
                text_of([&](char *buf) { return table.text.stringify_counter_match_spec(5, 6, 7, buf); });
            texts::expect_read(recorder::last(), 5, 6, handle, 7, 1);
            EXPECT_EQ(by_handle(), text);
            return text;
        };
        const auto line = std::ranges::find(lines, handle, &Line::handle);
        ASSERT_EQ(!table.text.match_spec_stringify_for_counter, line == std::end(lines));
        ASSERT_EQ(!table.text.stringify_counter_match_spec, line == std::end(lines));
        recorder::reset();
        if (line == std::end(lines)) {
            EXPECT_EQ(by_handle(), "");
            EXPECT_EQ(recorder::calls(), 0u);
            return;
        }
        ASSERT_STREQ(table.row->name, line->table);
        const Bytes key = random.key(*table.row);
        encoder::answer_key(recorder::answer, *table.row, key.data());
        const pd::Binding &binding = table.row->actions[0];
        texts::answer_action(recorder::answer, binding, random.parameters(*binding.action));
        EXPECT_EQ(by_entry(), told(table, texts::key_back(*table.row, key)));
        recorder::answer.null_value = true; // a default entry
        EXPECT_EQ(by_entry(), line->none);
        recorder::status = 1;
        EXPECT_EQ(by_entry(), "");
    });
    for (const u32 handle : {0u, 0x100008du, 0x10000a0u, 0x200001du, 0xffffffffu})
        EXPECT_EQ(text_of([&](char *buf) { return PD(stringify_counter_matchspec)(5, 6, handle, 7, buf); }),
                  "");
}

} // namespace
