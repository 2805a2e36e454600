// The iptables records: the kernel's entry header, chain rows, rules with
// their matches, and the query messages.
#pragma once

#include <ipacl/enums.h>

#include "wire/layout.h"

namespace ipacl::wire {

// Addresses, masks and interface names stay as they are; the kernel's
// numbers are reversed, its counters as 64-bit numbers.
IPACL_WIRE_PLAIN(ipt_entry, copy(0, 80), s16(80), copy(82, 2), s32(84), s16(88, 2), s32(92),
                 s64(96, 2));
IPACL_WIRE_PLAIN(ipt_chain, s32(0), str(4, 32), str(36, 30), s64(66));
IPACL_WIRE_PLAIN(rule_info, str(116, 30), rec<Rec::ipt_entry>(4), s32(0));

// ---- match infos ----
IPACL_WIRE_PLAIN(ipt_tcp, s16(0, 4), copy(8, 4));
IPACL_WIRE_PLAIN(ipt_udp, s16(0, 4), copy(8, 1), none(9, 1));
IPACL_WIRE_PLAIN(ipt_icmp, copy(0, 4));
IPACL_WIRE_PLAIN(ipt_tos, copy(0, 2));
IPACL_WIRE_PLAIN(ipt_log, copy(0, 2), str(2, 30));

// A match's type word selects its info.  Type codes of 11 and above, and
// the unlisted ones below, leave the info alone.
template <>
struct Layout<Rec::match> {
    using type = ipacl_match;
    static constexpr uint16_t tag_at = 0;
    static constexpr Pick pick = Pick::equal;
    static constexpr Variant variants[] = {
        variant<Rec::ipt_tcp>(IPACL_MATCH_TCP), variant<Rec::ipt_udp>(IPACL_MATCH_UDP),
        variant<Rec::ipt_icmp>(IPACL_MATCH_ICMP), variant<Rec::ipt_tos>(IPACL_MATCH_TOS),
        variant<Rec::ipt_log>(IPACL_MATCH_LOG)};
    static constexpr uint16_t elems_at = 4;
};

// match_count is trusted as it stands, even beyond the three slots.
template <>
struct Layout<Rec::ipt_rule> {
    using type = ipacl_ipt_rule;
    static constexpr Field fields[] = {str(0, 32), str(148, 30), rec<Rec::ipt_entry>(36), s32(32)};
    static constexpr uint16_t count_at = 178;
    static constexpr uint16_t elems_at = 182;
    static constexpr Rec elem = Rec::match;
};

IPACL_WIRE_PLAIN(ipt_req, s32(0, 2), str(8, 32), s32(40, 2));

// The operation word is read as content flags, first match wins: chain rows
// for either chain query, else full rules, else rule summaries.
template <>
struct Layout<Rec::ipt_rsp> {
    using type = ipacl_ipt_rsp;
    static constexpr Field fields[] = {s32(8)};
    static constexpr uint16_t count_at = 0;
    static constexpr uint16_t tag_at = 4;
    static constexpr Pick pick = Pick::any_bit;
    static constexpr Variant variants[] = {
        variant<Rec::ipt_chain>(IPACL_IPT_OP_ALL_CHAINS | IPACL_IPT_OP_MATCHED_CHAIN),
        variant<Rec::ipt_rule>(IPACL_IPT_OP_MATCHED_RULE),
        variant<Rec::rule_info>(IPACL_IPT_OP_ALL_RULES)};
    static constexpr uint16_t elems_at = 12;
};

}  // namespace ipacl::wire
