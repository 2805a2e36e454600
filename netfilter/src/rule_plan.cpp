#include "rule_plan.h"

#include "names.h"
#include "nf_error.h"

#include <ipacl/chk.h>
#include <ipacl/enums.h>
#include <ipacl/netfilter.h>

#include <cstdio>
#include <cstring>

namespace ipacl_nf {
namespace {

constexpr uint32_t kNotSet = 0xFFFFFFFFu;
constexpr uint32_t kIcmp6 = 58;
constexpr uint8_t kPrecedenceMask = 0xe0, kTosMask = 0x1e;

uint32_t unsupported(char *err, const char *message) {
    return fail(err, IPACL_NF_E_UNSUPPORTED, "%s", message);
}

// The interface test: the name and its terminating zero, or, for a name
// ending in "+", the characters before the "+".
uint32_t plan_interface(const char *ifname, uint32_t dir, rule_plan &plan, char *err) {
    plan.outgoing = is_outgoing(dir);
    if (!ifname || !ifname[0]) return 0;
    std::size_t length = std::strlen(ifname);
    if (length >= sizeof plan.iface)
        return fail(err, IPACL_NF_E_UNSUPPORTED, "interface name '%s' is too long", ifname);
    std::memcpy(plan.iface, ifname, length);
    bool prefix_only = ifname[length - 1] == '+';
    std::memset(plan.iface_mask, 0xff, prefix_only ? length - 1 : length + 1);
    return 0;
}

// IPv4: the complement of the wildcard word; the address masked by it.
void plan_ipv4_address(const ipacl_inet_addr &prefix, uint32_t wildcard, uint8_t *addr,
                       uint8_t *mask) {
    uint32_t keep = ~wildcard;
    for (int i = 0; i < 4; ++i) {
        mask[i] = static_cast<uint8_t>(keep >> (24 - 8 * i));
        addr[i] = prefix.addr[i] & mask[i];
    }
}

// IPv6: prefix_len leading ones.
uint32_t plan_ipv6_address(const ipacl_inet_addr &prefix, uint8_t *addr, uint8_t *mask, char *err) {
    if (prefix.prefix_len > 128)
        return fail(err, IPACL_NF_E_UNSUPPORTED, "bad IPv6 prefix length %u", prefix.prefix_len);
    for (uint32_t i = 0; i < 16; ++i) {
        uint32_t bits = prefix.prefix_len > 8 * i ? prefix.prefix_len - 8 * i : 0;
        mask[i] = bits >= 8 ? 0xff : static_cast<uint8_t>(0xff00 >> bits);
        addr[i] = prefix.addr[i] & mask[i];
    }
    return 0;
}

uint32_t plan_addresses(const ipacl_filter &f, rule_plan &plan, char *err) {
    if (plan.family == IPACL_ADDR_TYPE_IPV4) {
        plan_ipv4_address(f.src_addr, f.src_wildcard, plan.src, plan.src_mask);
        plan_ipv4_address(f.dst_addr, f.dst_wildcard, plan.dst, plan.dst_mask);
        return 0;
    }
    if (uint32_t rc = plan_ipv6_address(f.src_addr, plan.src, plan.src_mask, err)) return rc;
    return plan_ipv6_address(f.dst_addr, plan.dst, plan.dst_mask, err);
}

constexpr uint32_t kPortMax = 65535;

// Operator 0 leaves the condition to the bounds, as the library's filter
// text reads them: 0..0 and 0..65535 any, low == high eq, 0..P lt P,
// P..65535 gt P, else range.
uint32_t effective_op(uint32_t op, uint32_t low, uint32_t high) {
    if (op != IPACL_PORT_OP_ANY) return op;
    if (low == 0 && (high == 0 || high == kPortMax)) return IPACL_PORT_OP_ANY;
    if (low == high) return IPACL_PORT_OP_EQ;
    if (low == 0) return IPACL_PORT_OP_LT;
    if (high == kPortMax) return IPACL_PORT_OP_GT;
    return IPACL_PORT_OP_RANGE;
}

// One port condition as an inclusive range, inverted for neq: eq and neq
// P..P, lt P 0..P-1, gt P P+1..65535, range low..high.
uint32_t plan_port(uint32_t op, uint32_t low, uint32_t high, const char *label, port_test &test,
                   char *err) {
    op = effective_op(op, low, high);
    if (op == IPACL_PORT_OP_ANY) return 0;
    if (op == IPACL_PORT_OP_LT && high == 0)
        return fail(err, IPACL_NF_E_UNSUPPORTED, "%s lt 0 matches no port", label);
    if (op == IPACL_PORT_OP_GT && low == kPortMax)
        return fail(err, IPACL_NF_E_UNSUPPORTED, "%s gt 65535 matches no port", label);
    test.present = true;
    test.invert = op == IPACL_PORT_OP_NEQ;
    test.low = static_cast<uint16_t>(op == IPACL_PORT_OP_GT ? low + 1 : low);
    test.high = static_cast<uint16_t>(op == IPACL_PORT_OP_LT      ? high - 1
                                      : op == IPACL_PORT_OP_GT    ? kPortMax
                                      : op == IPACL_PORT_OP_RANGE ? high
                                                                  : low);
    return 0;
}

uint32_t plan_icmp(const ipacl_filter &f, rule_plan &plan, char *err) {
    if (f.icmp_type == kNotSet) return 0;
    bool ipv4 = plan.family == IPACL_ADDR_TYPE_IPV4;
    if (ipv4 && f.protocol == kIcmp6)
        return unsupported(err, "icmp type needs protocol icmp on IPv4 filters");
    if (!ipv4 && f.protocol == IPACL_PROTO_ICMP)
        return unsupported(err, "icmp type needs protocol icmp6 on IPv6 filters");
    plan.match = layer4::icmp;
    plan.icmp_type = static_cast<uint8_t>(f.icmp_type);
    if (f.icmp_code != kNotSet) plan.code_low = plan.code_high = static_cast<uint8_t>(f.icmp_code);
    return 0;
}

uint32_t plan_layer4(const ipacl_filter &f, rule_plan &plan, char *err) {
    // The any protocol of each family, as the library's comparisons read it.
    bool ipv4 = plan.family == IPACL_ADDR_TYPE_IPV4;
    if (!ipv4 && f.protocol == IPACL_PROTO_IP)
        return unsupported(err, "protocol ip is not allowed for IPv6 filters (ipv6 is any)");
    bool any = f.protocol == kNotSet || f.protocol == (ipv4 ? IPACL_PROTO_IP : IPACL_PROTO_IPV6);
    plan.proto = any ? 0 : static_cast<uint16_t>(f.protocol);
    if (f.protocol != IPACL_PROTO_TCP && f.protocol != IPACL_PROTO_UDP)
        return plan_icmp(f, plan, err);
    if (uint32_t rc = plan_port(f.src_port_op, f.src_port_low, f.src_port_high, "source port",
                                plan.sport, err))
        return rc;
    if (uint32_t rc =
            plan_port(f.dst_port_op, f.dst_port_low, f.dst_port_high, "dest port", plan.dport, err))
        return rc;
    plan.established = f.protocol == IPACL_PROTO_TCP && f.established == 1;
    if (plan.sport.present || plan.dport.present || plan.established)
        plan.match = f.protocol == IPACL_PROTO_TCP ? layer4::tcp : layer4::udp;
    return 0;
}

void plan_tos(const ipacl_filter &f, rule_plan &plan) {
    if (f.precedence != kNotSet) {
        plan.tos_present = true;
        plan.tos_mask = kPrecedenceMask;
        plan.tos_value = static_cast<uint8_t>(f.precedence << 5);
    } else if (f.tos != kNotSet) {
        plan.tos_present = true;
        plan.tos_mask = kTosMask;
        plan.tos_value = static_cast<uint8_t>(f.tos << 1);
    }
}

// Non-first fragments carry no layer-4 header: a fragment rule with a port,
// flag or icmp test could never match.
uint32_t plan_fragments(const ipacl_filter &f, rule_plan &plan, char *err) {
    if (f.fragments == 0) return 0;
    if (f.fragments != 1) return fail(err, IPACL_NF_E_UNSUPPORTED, "bad fragments %u", f.fragments);
    if (plan.family != IPACL_ADDR_TYPE_IPV4)
        return unsupported(err, "fragments cannot be matched on IPv6 filters");
    if (plan.sport.present || plan.dport.present)
        return unsupported(err, "fragments cannot be combined with ports");
    if (plan.established) return unsupported(err, "fragments cannot be combined with established");
    if (plan.match == layer4::icmp)
        return unsupported(err, "fragments cannot be combined with icmp type");
    plan.fragments = true;
    return 0;
}

void plan_action(const ipacl_filter &f, rule_plan &plan) {
    bool permit = f.action == IPACL_ACTION_PERMIT;
    std::snprintf(plan.target, sizeof plan.target, "%s", permit ? accept_target() : drop_target());
    plan.log = !permit && f.log_deny == 1;
    if (plan.log)
        std::snprintf(plan.log_prefix, sizeof plan.log_prefix, "%.20s %u deny: ", plan.chain,
                      f.filter_index);
}

// The manager's check chain; its address-type step needs a buffer.
uint32_t check_filter(const ipacl_filter &f, char *err) {
    char local[IPACL_NF_ERR_TEXT_SIZE];
    return ipacl_chk_filter(&f, err ? err : local);
}

uint32_t plan_place(uint32_t dir, const char *ifname, rule_plan &plan, char *err) {
    if (uint32_t rc = ipacl_chk_dir(dir, err)) return rc;
    const char *chain = acl_chain_of(dir);
    if (!chain) return ipacl_nf_chain_name(dir, plan.chain, err);
    if (uint32_t rc = check_acl_chain(chain, err)) return rc;
    std::snprintf(plan.chain, sizeof plan.chain, "%s", chain);
    return plan_interface(ifname, dir, plan, err);
}

}  // namespace

uint32_t plan_rule(const ipacl_filter *filter, uint32_t family, uint32_t dir, const char *ifname,
                   rule_plan &plan, char *err) {
    if (!filter) return fail(err, IPACL_E_BAD_ARG, "bad filter");
    const ipacl_filter &f = *filter;
    if (uint32_t rc = check_filter(f, err)) return rc;
    if (f.addr_type != family)
        return fail(err, IPACL_E_BAD_ADDR_TYPE, "translate: not an %s filter",
                    family == IPACL_ADDR_TYPE_IPV4 ? "IPv4" : "IPv6");
    plan = rule_plan{};
    plan.family = family;
    if (uint32_t rc = plan_place(dir, ifname, plan, err)) return rc;
    if (uint32_t rc = plan_addresses(f, plan, err)) return rc;
    if (uint32_t rc = plan_layer4(f, plan, err)) return rc;
    plan_tos(f, plan);
    if (uint32_t rc = plan_fragments(f, plan, err)) return rc;
    plan_action(f, plan);
    return succeed(err);
}

uint32_t plan_implicit_deny(uint32_t family, uint32_t dir, const char *ifname, rule_plan &plan,
                            char *err) {
    plan = rule_plan{};
    plan.family = family;
    if (uint32_t rc = plan_place(dir, ifname, plan, err)) return rc;
    std::snprintf(plan.target, sizeof plan.target, "%s", drop_target());
    return succeed(err);
}

}  // namespace ipacl_nf
