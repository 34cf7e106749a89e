// Addresses as people write them, into a caller's buffer, behind a label.
#include <arpa/inet.h>

#include <algorithm>
#include <bit>
#include <cstdio>
#include <cstring>

#include "pd_inspection.h"

namespace {

struct V4Octets {
    u32 first, second, third, fourth;
};

V4Octets octets(u32 address)
{
    return {address >> 24, address >> 16 & 0xff, address >> 8 & 0xff, address & 0xff};
}

class V6Text {
public:
    explicit V6Text(const u8 *address) { inet_ntop(AF_INET6, address, text, sizeof text); }
    const char *get() const { return text; }

private:
    char text[INET6_ADDRSTRLEN] = "Decode error";
};

// One half of a MAC address, as its three bytes.
struct MacHalf {
    u32 first, second, third;
};

MacHalf half(u32 word)
{
    return {word >> 16 & 0xff, word >> 8 & 0xff, word & 0xff};
}

u32 print_v4addr_with_length(char *buf, const char *label, u32 address, u32 length)
{
    const V4Octets at = octets(address);
    return static_cast<u32>(
        std::sprintf(buf, "%s %u.%u.%u.%u/%u ", label, at.first, at.second, at.third, at.fourth, length));
}

} // namespace

u32 p4_pd_tessel_switch__print_v4addr_exact(char *buf, const char *label, u32 address)
{
    const V4Octets at = octets(address);
    return static_cast<u32>(
        std::sprintf(buf, "%s %u.%u.%u.%u ", label, at.first, at.second, at.third, at.fourth));
}

u32 p4_pd_tessel_switch__print_v4addr_lpm(char *buf, const char *label, u32 address, u16 prefix_length)
{
    return print_v4addr_with_length(buf, label, address, prefix_length);
}

u32 p4_pd_tessel_switch__print_v4addr_ternary(char *buf, const char *label, u32 address, u32 mask)
{
    if (mask == 0)
        return 0;
    return print_v4addr_with_length(buf, label, address, static_cast<u32>(std::countl_one(mask)));
}

// The only one without a blank at its end: deliberate.
u32 p4_pd_tessel_switch__print_v6addr_exact(char *buf, const char *label, const u8 *address)
{
    return static_cast<u32>(std::sprintf(buf, "%s %s", label, V6Text(address).get()));
}

u32 p4_pd_tessel_switch__print_v6addr_lpm(char *buf, const char *label, const u8 *address, u16 prefix_length)
{
    return static_cast<u32>(std::sprintf(buf, "%s %s/%u ", label, V6Text(address).get(), prefix_length));
}

u32 p4_pd_tessel_switch__print_v6addr_ternary(char *buf, const char *label, const u8 *address, const u8 *mask)
{
    if (std::all_of(mask, mask + 16, [](u8 byte) { return byte == 0; }))
        return 0;
    return static_cast<u32>(std::sprintf(buf, "%s %s/%s ", label, V6Text(address).get(), V6Text(mask).get()));
}

u32 p4_pd_tessel_switch__print_mac_exact(char *buf, const char *label, u32 upper, u32 lower)
{
    const MacHalf a = half(upper), b = half(lower);
    return static_cast<u32>(std::sprintf(buf, "%s %02x%02x.%02x%02x.%02x%02x ", label, a.first, a.second,
                                         a.third, b.first, b.second, b.third));
}

u32 p4_pd_tessel_switch__print_mac_ternary(char *buf, const char *label, u32 upper, u32 upper_mask, u32 lower,
                                           u32 lower_mask)
{
    constexpr u32 all = 0xffffff;
    if ((upper_mask & all) == all && (lower_mask & all) == all)
        return p4_pd_tessel_switch__print_mac_exact(buf, label, upper, lower);
    if ((upper_mask & all) == 0 && (lower_mask & all) == 0)
        return 0;
    const MacHalf a = half(upper), b = half(lower), c = half(upper_mask), d = half(lower_mask);
    return static_cast<u32>(std::sprintf(buf, "%s %02x%02x.%02x%02x.%02x%02x/%02x%02x.%02x%02x.%02x%02x ",
                                         label, a.first, a.second, a.third, b.first, b.second, b.third,
                                         c.first, c.second, c.third, d.first, d.second, d.third));
}
