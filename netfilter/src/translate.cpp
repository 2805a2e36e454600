// The planned rule as the library's records: ipacl_ipt_rule for IPv4 (the
// query record a manager shows) and ipacl_nf_rule6 for IPv6.
#include "rule_plan.h"
#include "rule_records.h"
#include "nf_error.h"

#include <ipacl/enums.h>
#include <ipacl/netfilter.h>

#include <cstring>

namespace ipacl_nf {

uint32_t plan_matches(const rule_plan &plan, ipacl_match *matches) {
    uint32_t count = 0;
    if (plan.match == layer4::tcp) {
        ipacl_match &m = matches[count++];
        m.type = IPACL_MATCH_TCP;
        m.info.tcp = {plan.sport.low, plan.sport.high, plan.dport.low, plan.dport.high, 0, 0, 0, 0};
        if (plan.established) m.info.tcp.flag_mask = kTcpAck | kTcpRst;
        m.info.tcp.inv_flags = tcp_invert_flags(plan);
    } else if (plan.match == layer4::udp) {
        ipacl_match &m = matches[count++];
        m.type = IPACL_MATCH_UDP;
        m.info.udp = {plan.sport.low,  plan.sport.high,        plan.dport.low,
                      plan.dport.high, udp_invert_flags(plan), 0};
    } else if (plan.match == layer4::icmp) {
        ipacl_match &m = matches[count++];
        m.type = IPACL_MATCH_ICMP;
        m.info.icmp = {plan.icmp_type, plan.code_low, plan.code_high, 0};
    }
    if (plan.tos_present) {
        ipacl_match &m = matches[count++];
        m.type = IPACL_MATCH_TOS;
        m.info.tos = {plan.tos_value, 0};
    }
    if (plan.log) {
        ipacl_match &m = matches[count++];
        m.type = IPACL_MATCH_LOG;
        m.info.log.level = kLogLevel;
        m.info.log.log_flags = kLogFlags;
        std::memcpy(m.info.log.prefix, plan.log_prefix, sizeof m.info.log.prefix);
    }
    return count;
}

}  // namespace ipacl_nf

namespace {

using ipacl_nf::rule_plan;

// The interface fields of either entry, chosen by direction.
template <class Rule>
void fill_interface(const rule_plan &plan, Rule &r) {
    std::memcpy(plan.outgoing ? r.out_if : r.in_if, plan.iface, sizeof plan.iface);
    std::memcpy(plan.outgoing ? r.out_if_mask : r.in_if_mask, plan.iface_mask,
                sizeof plan.iface_mask);
}

void fill_rule(const rule_plan &plan, ipacl_ipt_rule &out) {
    std::memset(&out, 0, sizeof out);
    std::memcpy(out.chain, plan.chain, sizeof out.chain);
    ipacl_ipt_entry &e = out.entry;
    std::memcpy(&e.src, plan.src, 4);
    std::memcpy(&e.dst, plan.dst, 4);
    std::memcpy(&e.src_mask, plan.src_mask, 4);
    std::memcpy(&e.dst_mask, plan.dst_mask, 4);
    fill_interface(plan, e);
    e.proto = plan.proto;
    e.flags = plan.fragments ? ipacl_nf::kIpv4FragmentFlag : 0;
    std::memcpy(out.target, plan.target, sizeof out.target);
    out.match_count = ipacl_nf::plan_matches(plan, out.matches);
}

void fill_rule6(const rule_plan &plan, ipacl_nf_rule6 &out) {
    std::memset(&out, 0, sizeof out);
    std::memcpy(out.chain, plan.chain, sizeof out.chain);
    std::memcpy(out.src, plan.src, 16);
    std::memcpy(out.dst, plan.dst, 16);
    std::memcpy(out.src_mask, plan.src_mask, 16);
    std::memcpy(out.dst_mask, plan.dst_mask, 16);
    fill_interface(plan, out);
    out.proto = plan.proto;
    out.flags = plan.proto ? ipacl_nf::kIpv6ProtoFlag : 0;
    std::memcpy(out.target, plan.target, sizeof out.target);
    out.match_count = ipacl_nf::plan_matches(plan, out.matches);
}

// Plans the rule of one family and writes it into *out.
template <class Rule>
uint32_t translate_into(const ipacl_filter *f, uint32_t family, uint32_t dir, const char *ifname,
                        Rule *out, void (*fill)(const rule_plan &, Rule &), char *err) {
    if (!out) return ipacl_nf::fail(err, IPACL_E_BAD_ARG, "bad rule");
    rule_plan plan;
    uint32_t rc = ipacl_nf::plan_rule(f, family, dir, ifname, plan, err);
    if (rc == 0) fill(plan, *out);
    return rc;
}

}  // namespace

extern "C" {

IPACL_NF_API uint32_t ipacl_nf_translate(const ipacl_filter *f, uint32_t dir, const char *ifname,
                                         ipacl_ipt_rule *out, char *err) {
    return translate_into(f, IPACL_ADDR_TYPE_IPV4, dir, ifname, out, fill_rule, err);
}

IPACL_NF_API uint32_t ipacl_nf_translate6(const ipacl_filter *f, uint32_t dir, const char *ifname,
                                          ipacl_nf_rule6 *out, char *err) {
    return translate_into(f, IPACL_ADDR_TYPE_IPV6, dir, ifname, out, fill_rule6, err);
}
}
