#include "entry_writer.h"

#include "entry_format.h"
#include "rule_records.h"

#include <ipacl/enums.h>

#include <linux/netfilter/x_tables.h>
#include <linux/netfilter/xt_LOG.h>
#include <linux/netfilter/xt_dscp.h>
#include <linux/netfilter/xt_tcpudp.h>
#include <linux/netfilter_ipv4/ip_tables.h>
#include <linux/netfilter_ipv6/ip6_tables.h>

#include <cstdio>
#include <cstring>

namespace ipacl_nf {
namespace {

// The tos match's second revision takes a mask, so precedence and tos are
// each tested exactly.
constexpr uint8_t kTosRevision = 1;

template <class Ip>
void fill_interfaces(const rule_plan &plan, Ip &ip) {
    std::memcpy(plan.outgoing ? ip.outiface : ip.iniface, plan.iface, IFNAMSIZ);
    std::memcpy(plan.outgoing ? ip.outiface_mask : ip.iniface_mask, plan.iface_mask, IFNAMSIZ);
}

void fill_ipv4(const rule_plan &plan, uint8_t *entry) {
    auto *e = reinterpret_cast<ipt_entry *>(entry);
    std::memcpy(&e->ip.src, plan.src, 4);
    std::memcpy(&e->ip.dst, plan.dst, 4);
    std::memcpy(&e->ip.smsk, plan.src_mask, 4);
    std::memcpy(&e->ip.dmsk, plan.dst_mask, 4);
    fill_interfaces(plan, e->ip);
    e->ip.proto = plan.proto;
    e->ip.flags = plan.fragments ? IPT_F_FRAG : 0;
}

void fill_ipv6(const rule_plan &plan, uint8_t *entry) {
    auto *e = reinterpret_cast<ip6t_entry *>(entry);
    std::memcpy(&e->ipv6.src, plan.src, 16);
    std::memcpy(&e->ipv6.dst, plan.dst, 16);
    std::memcpy(&e->ipv6.smsk, plan.src_mask, 16);
    std::memcpy(&e->ipv6.dmsk, plan.dst_mask, 16);
    fill_interfaces(plan, e->ipv6);
    e->ipv6.proto = plan.proto;
    e->ipv6.flags = plan.proto ? IP6T_F_PROTO : 0;
}

// Appends a match (or target: same header layout) with `data` and returns
// false without memory.
bool append_extension(byte_buffer &arena, const char *name, uint8_t revision, const void *data,
                      uint32_t data_size) {
    uint32_t size = sizeof(xt_entry_match) + XT_ALIGN(data_size);
    uint8_t *at = arena.append(size);
    if (!at) return false;
    auto *header = reinterpret_cast<xt_entry_match *>(at);
    header->u.user.match_size = static_cast<uint16_t>(size);
    std::snprintf(header->u.user.name, sizeof header->u.user.name, "%s", name);
    header->u.user.revision = revision;
    std::memcpy(at + sizeof(xt_entry_match), data, data_size);
    return true;
}

// Match data starts zeroed: padding bytes reach the kernel and come back.
template <class Data>
Data zeroed() {
    Data data;
    std::memset(&data, 0, sizeof data);
    return data;
}

bool append_layer4(byte_buffer &arena, const family_layout &layout, const rule_plan &plan) {
    if (plan.match == layer4::tcp) {
        auto tcp = zeroed<xt_tcp>();
        tcp.spts[0] = plan.sport.low, tcp.spts[1] = plan.sport.high;
        tcp.dpts[0] = plan.dport.low, tcp.dpts[1] = plan.dport.high;
        if (plan.established) tcp.flg_mask = kTcpAck | kTcpRst;
        tcp.invflags = tcp_invert_flags(plan);
        return append_extension(arena, "tcp", 0, &tcp, sizeof tcp);
    }
    if (plan.match == layer4::udp) {
        auto udp = zeroed<xt_udp>();
        udp.spts[0] = plan.sport.low, udp.spts[1] = plan.sport.high;
        udp.dpts[0] = plan.dport.low, udp.dpts[1] = plan.dport.high;
        udp.invflags = udp_invert_flags(plan);
        return append_extension(arena, "udp", 0, &udp, sizeof udp);
    }
    if (plan.match == layer4::icmp) {
        auto icmp = zeroed<ipt_icmp>();
        icmp.type = plan.icmp_type;
        icmp.code[0] = plan.code_low, icmp.code[1] = plan.code_high;
        static_assert(sizeof(ipt_icmp) == sizeof(ip6t_icmp));
        bool ipv4 = layout.family == IPACL_ADDR_TYPE_IPV4;
        return append_extension(arena, ipv4 ? "icmp" : "icmp6", 0, &icmp, sizeof icmp);
    }
    return true;
}

bool append_matches(byte_buffer &arena, const family_layout &layout, const rule_plan &plan) {
    if (!append_layer4(arena, layout, plan)) return false;
    if (!plan.tos_present) return true;
    auto tos = zeroed<xt_tos_match_info>();
    tos.tos_mask = plan.tos_mask;
    tos.tos_value = plan.tos_value;
    return append_extension(arena, "tos", kTosRevision, &tos, sizeof tos);
}

bool append_target(byte_buffer &arena, const target_desc &target) {
    switch (target.kind) {
        case target_kind::verdict:
        case target_kind::jump: {
            int32_t verdict = target.kind == target_kind::verdict ? target.verdict : 0;
            return append_extension(arena, XT_STANDARD_TARGET, 0, &verdict, sizeof verdict);
        }
        case target_kind::log: {
            auto log = zeroed<xt_log_info>();
            log.level = kLogLevel;
            log.logflags = kLogFlags;
            std::snprintf(log.prefix, sizeof log.prefix, "%s", target.log_prefix);
            return append_extension(arena, "LOG", 0, &log, sizeof log);
        }
        case target_kind::error: {
            char name[XT_FUNCTION_MAXNAMELEN] = {};
            std::snprintf(name, sizeof name, "%s", target.name);
            return append_extension(arena, XT_ERROR_TARGET, 0, name, sizeof name);
        }
    }
    return false;
}

void write_u16(uint8_t *entry, uint32_t at, uint32_t value) {
    uint16_t narrow = static_cast<uint16_t>(value);
    std::memcpy(entry + at, &narrow, sizeof narrow);
}

}  // namespace

uint32_t append_entry(byte_buffer &arena, const family_layout &layout, const rule_plan *plan,
                      const target_desc &target) {
    uint32_t start = arena.size();
    if (!arena.append(layout.entry_size)) return kNoEntry;
    if (plan) {
        uint8_t *entry = arena.data() + start;
        layout.family == IPACL_ADDR_TYPE_IPV4 ? fill_ipv4(*plan, entry) : fill_ipv6(*plan, entry);
        if (!append_matches(arena, layout, *plan)) return kNoEntry;
    }
    uint32_t target_at = arena.size() - start;
    if (!append_target(arena, target)) return kNoEntry;
    uint8_t *entry = arena.data() + start;  // the arena may have moved
    write_u16(entry, layout.target_offset_at, target_at);
    write_u16(entry, layout.next_offset_at, arena.size() - start);
    return start;
}

uint32_t verdict_at(const family_layout &layout, const uint8_t *entry) {
    return target_offset(layout, entry) + sizeof(xt_entry_target);
}

}  // namespace ipacl_nf
