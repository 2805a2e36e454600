// The iptables records: the kernel's entry header, chain rows, rules with
// their matches, and the query messages.
#pragma once

#include <ipacl/enums.h>

#include "wire/layout.h"

namespace ipacl::wire {

// Members of the record each table describes; named so only while the
// tables are written.
#define at(member) IPACL_WIRE_AT(member)
#define through(first, last) IPACL_WIRE_THROUGH(first, last)

// Addresses, masks and interface names stay as they are; the kernel's
// numbers are reversed, its counters as 64-bit numbers.
IPACL_WIRE_PLAIN(ipt_entry, copy(through(src, out_if_mask)), s16(at(proto)),
                 copy(through(flags, inv_flags)), s32(at(nfcache)), s16(at(target_offset), 2),
                 s32(at(comefrom)), s64(at(packets), 2));
IPACL_WIRE_PLAIN(ipt_chain, s32(at(entry)), str(at(chain)), str(at(policy)), s64(at(packets)));
IPACL_WIRE_PLAIN(rule_info, str(at(target)), rec<Rec::ipt_entry>(at(entry)), s32(at(rule_num)));

// ---- match infos ----
IPACL_WIRE_PLAIN(ipt_tcp, s16(at(src_port_low), 4), copy(through(option, inv_flags)));
IPACL_WIRE_PLAIN(ipt_udp, s16(at(src_port_low), 4), copy(at(inv_flags)), none(at(pad)));
IPACL_WIRE_PLAIN(ipt_icmp, copy(through(icmp_type, inv_flags)));
IPACL_WIRE_PLAIN(ipt_tos, copy(through(tos, invert)));
IPACL_WIRE_PLAIN(ipt_log, copy(through(level, log_flags)), str(at(prefix)));

// A match's type word selects its info.  Type codes of 11 and above, and
// the unlisted ones below, leave the info alone.
template <>
struct Layout<Rec::match> {
    using type = ipacl_match;
    static constexpr uint16_t tag_at = at(type);
    static constexpr Pick pick = Pick::equal;
    static constexpr Variant variants[] = {
        variant<Rec::ipt_tcp>(IPACL_MATCH_TCP), variant<Rec::ipt_udp>(IPACL_MATCH_UDP),
        variant<Rec::ipt_icmp>(IPACL_MATCH_ICMP), variant<Rec::ipt_tos>(IPACL_MATCH_TOS),
        variant<Rec::ipt_log>(IPACL_MATCH_LOG)};
    static constexpr uint16_t elems_at = at(info);
};

// match_count is trusted as it stands, even beyond the three slots.
template <>
struct Layout<Rec::ipt_rule> {
    using type = ipacl_ipt_rule;
    static constexpr Field fields[] = {str(at(chain)), str(at(target)),
                                       rec<Rec::ipt_entry>(at(entry)), s32(at(rule_num))};
    static constexpr uint16_t count_at = at(match_count);
    static constexpr uint16_t elems_at = at(matches);
    static constexpr Rec elem = Rec::match;
};

IPACL_WIRE_PLAIN(ipt_req, s32(at(word0), 2), str(at(chain)), s32(at(word40), 2));

// The operation word is read as content flags, first match wins: chain rows
// for either chain query, else full rules, else rule summaries.
template <>
struct Layout<Rec::ipt_rsp> {
    using type = ipacl_ipt_rsp;
    static constexpr Field fields[] = {s32(at(word8))};
    static constexpr uint16_t count_at = at(count);
    static constexpr uint16_t tag_at = at(flags);
    static constexpr Pick pick = Pick::any_bit;
    static constexpr Variant variants[] = {
        variant<Rec::ipt_chain>(IPACL_IPT_OP_ALL_CHAINS | IPACL_IPT_OP_MATCHED_CHAIN),
        variant<Rec::ipt_rule>(IPACL_IPT_OP_MATCHED_RULE),
        variant<Rec::rule_info>(IPACL_IPT_OP_ALL_RULES)};
    static constexpr uint16_t elems_at = at(records);
};

#undef at
#undef through

}  // namespace ipacl::wire
