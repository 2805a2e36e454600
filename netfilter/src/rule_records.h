// What the record side and the kernel side share about a planned rule: the
// flag values of the kernel's entries and the match slots of the records.
#pragma once

#include "rule_plan.h"

#include <ipacl/records.h>

#include <cstdint>

namespace ipacl_nf {

constexpr uint8_t kIpv4FragmentFlag = 0x01;  // IPT_F_FRAG
constexpr uint8_t kIpv6ProtoFlag = 0x01;     // IP6T_F_PROTO
// Invert flags of the tcp and udp matches (XT_TCP_INV_*, XT_UDP_INV_*).
constexpr uint8_t kInvertSourcePort = 0x01, kInvertDestPort = 0x02, kInvertTcpFlags = 0x04;

inline uint8_t udp_invert_flags(const rule_plan &plan) {
    return static_cast<uint8_t>((plan.sport.invert ? kInvertSourcePort : 0) |
                                (plan.dport.invert ? kInvertDestPort : 0));
}
// "ACK or RST set" is "not (flags & (ACK|RST)) == 0".
inline uint8_t tcp_invert_flags(const rule_plan &plan) {
    return static_cast<uint8_t>(udp_invert_flags(plan) | (plan.established ? kInvertTcpFlags : 0));
}

// The match slots of a rule record (at most IPACL_RULE_MATCHES): the
// layer-4 match, the tos match, the log parameters; returns their count.
uint32_t plan_matches(const rule_plan &plan, ipacl_match *matches);

}  // namespace ipacl_nf
