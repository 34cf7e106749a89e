// Sample tables. Generated from the catalogue: edit its rows, not this file.
#pragma once

#include "pd_ports.h"
#include "rows_actions.h"

namespace pd::tables {

inline constexpr Field stationCheck_key[] = {
    {"port", "inPort", "port_mask", offsetof(p4_pd_sample_stationCheck_match_spec_t, port),
     offsetof(p4_pd_sample_stationCheck_match_spec_t, port_mask), 9, Match::ternary, Format::port,
     { 0x0, 0x7f }, false},
    {"smacOui", "oui", "smacOui_mask", offsetof(p4_pd_sample_stationCheck_match_spec_t, smacOui),
     offsetof(p4_pd_sample_stationCheck_match_spec_t, smacOui_mask), 24, Match::ternary, Format::mac,
     { 0x0, 0xffffff }, false},
};
inline constexpr Binding stationCheck_with_NoAction{&actions::NoAction, 0x20000001, true, true};
inline constexpr Binding stationCheck_with_setDomain{&actions::setDomain, 0x20000002, true, false};
inline constexpr Binding stationCheck_actions[] = {
    stationCheck_with_NoAction,
    stationCheck_with_setDomain,
};
inline constexpr Table stationCheck{
    .name = "stationCheck",
    .brief = "Sorts stations by port and address, and polices them.",
    .handle = 0x1000001,
    .key = stationCheck_key,
    .record_size = sizeof(p4_pd_sample_stationCheck_match_spec_t),
    .actions = stationCheck_actions,
    .direct_counter = 0,
    .direct_meter = 0x5000001,
    .missing_meter = "stationMeter_spec && \"direct resource has no spec\"",
    .indexed_resource = 0,
    .idle_time = true,
    .ttl_on_add = true,
    .profile = nullptr,
};

inline constexpr Field route_key[] = {
    {"partition", "part", nullptr, offsetof(p4_pd_sample_route_match_spec_t, partition), 0, 16, Match::exact,
     Format::dec, { 0x0, 0xffff }, true},
    {"dip", "dip", "dip_prefix_length", offsetof(p4_pd_sample_route_match_spec_t, dip),
     offsetof(p4_pd_sample_route_match_spec_t, dip_prefix_length), 128, Match::lpm, Format::v6addr,
     { 0xffffffffffffffff, 0xffffffffffffffff }, false},
};
inline constexpr Binding route_with_meterRoute{&actions::meterRoute, 0x20000003, true, false};
inline constexpr Binding route_actions[] = {
    route_with_meterRoute,
};
inline constexpr Table route{
    .name = "route",
    .brief = "Routes IPv6 inside a partition, each route with a cell of the route meter.",
    .handle = 0x1000002,
    .key = route_key,
    .record_size = sizeof(p4_pd_sample_route_match_spec_t),
    .actions = route_actions,
    .direct_counter = 0,
    .direct_meter = 0,
    .missing_meter = nullptr,
    .indexed_resource = 0x5000002,
    .idle_time = false,
    .ttl_on_add = false,
    .profile = nullptr,
};

inline constexpr Field spread_key[] = {
    {"flow", "flow", nullptr, offsetof(p4_pd_sample_spread_match_spec_t, flow), 0, 20, Match::exact,
     Format::none, { 0x0, 0xfffff }, false},
};
inline constexpr Table spread{
    .name = "spread",
    .brief = "Spreads flows over the members of a group.",
    .handle = 0x1000003,
    .key = spread_key,
    .record_size = sizeof(p4_pd_sample_spread_match_spec_t),
    .actions = {},
    .direct_counter = 0,
    .direct_meter = 0,
    .missing_meter = nullptr,
    .indexed_resource = 0,
    .idle_time = false,
    .ttl_on_add = false,
    .profile = "spreadProfile",
};

inline constexpr Binding always_with_NoAction{&actions::NoAction, 0x20000004, false, true};
inline constexpr Binding always_actions[] = {
    always_with_NoAction,
};
inline constexpr Table always{
    .name = "always",
    .brief = "Counts every packet.",
    .handle = 0x1000004,
    .key = {},
    .record_size = 0,
    .actions = always_actions,
    .direct_counter = 0x4000001,
    .direct_meter = 0,
    .missing_meter = nullptr,
    .indexed_resource = 0,
    .idle_time = false,
    .ttl_on_add = false,
    .profile = nullptr,
};

} // namespace pd::tables
