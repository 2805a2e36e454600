#include "entry_reader.h"

#include "entry_format.h"
#include "names.h"

#include <linux/netfilter/xt_LOG.h>
#include <linux/netfilter/xt_dscp.h>
#include <linux/netfilter/xt_tcpudp.h>
#include <linux/netfilter_ipv4/ip_tables.h>
#include <linux/netfilter_ipv6/ip6_tables.h>

#include <cstddef>
#include <cstdio>
#include <cstring>

namespace ipacl_nf {
namespace {

static_assert(sizeof(ipacl_ipt_tcp) == sizeof(xt_tcp));
static_assert(sizeof(ipacl_ipt_udp) == sizeof(xt_udp));
static_assert(sizeof(ipacl_ipt_icmp) == sizeof(ipt_icmp));
static_assert(sizeof(ipacl_ipt_log) == sizeof(xt_log_info));
// The record's entry begins with the kernel's ipt_ip, byte for byte.
static_assert(offsetof(ipacl_ipt_entry, nfcache) == sizeof(ipt_ip));

struct match_kind {
    const char *name;
    uint32_t type;
    uint32_t size;  // bytes copied into the slot
};

constexpr match_kind kMatchKinds[] = {
    {"tcp", IPACL_MATCH_TCP, sizeof(xt_tcp)},
    {"udp", IPACL_MATCH_UDP, offsetof(xt_udp, invflags) + 1},  // not the padding
    {"icmp", IPACL_MATCH_ICMP, sizeof(ipt_icmp)},
    {"icmp6", IPACL_MATCH_ICMP, sizeof(ip6t_icmp)},
};

// The tos match keeps mask and value; the record keeps the value.
void read_tos(const xt_entry_match &match, ipacl_match &slot) {
    slot.type = IPACL_MATCH_TOS;
    if (match.u.user.revision == 0) {
        std::memcpy(slot.info.raw, match.data, sizeof slot.info.tos);
        return;
    }
    xt_tos_match_info tos;
    std::memcpy(&tos, match.data, sizeof tos);
    slot.info.tos = {tos.tos_value, tos.invert};
}

void read_match(const xt_entry_match &match, ipacl_match &slot) {
    std::memset(&slot, 0, sizeof slot);
    if (std::strcmp(match.u.user.name, "tos") == 0) return read_tos(match, slot);
    for (const match_kind &kind : kMatchKinds)
        if (std::strcmp(match.u.user.name, kind.name) == 0) {
            slot.type = kind.type;
            std::memcpy(slot.info.raw, match.data, kind.size);
        }
}

}  // namespace

void read_target_name(const table_image &image, uint32_t index, char *name) {
    const xt_entry_target *target = target_of(image.layout(), image.entry(index));
    int32_t verdict = 0;
    const char *text = target->u.user.name;
    if (standard_verdict(image.layout(), image.entry(index), &verdict)) {
        uint32_t chain = image.jump_target(index);
        text = chain != kNoIndex ? image.chain(chain).name : name_of_verdict(verdict);
        if (!text) text = "?";
    }
    std::snprintf(name, IPACL_TARGET_NAME_SIZE, "%.29s", text);
}

uint32_t read_matches(const table_image &image, uint32_t index, ipacl_match *slots) {
    uint32_t count = 0;
    for_each_match(image.layout(), image.entry(index), [&](const xt_entry_match &match) {
        if (count < IPACL_RULE_MATCHES) read_match(match, slots[count++]);
    });
    const xt_entry_target *target = target_of(image.layout(), image.entry(index));
    if (count < IPACL_RULE_MATCHES && std::strcmp(target->u.user.name, "LOG") == 0) {
        ipacl_match &slot = slots[count++];
        std::memset(&slot, 0, sizeof slot);
        slot.type = IPACL_MATCH_LOG;
        std::memcpy(slot.info.raw, target->data, sizeof slot.info.log);
    }
    return count;
}

void read_ipv4_entry(const table_image &image, uint32_t index, ipacl_ipt_entry &out) {
    const auto *e = reinterpret_cast<const ipt_entry *>(image.entry(index));
    std::memcpy(&out, &e->ip, sizeof e->ip);
    out.nfcache = e->nfcache;
    out.target_offset = e->target_offset;
    out.next_offset = e->next_offset;
    out.comefrom = e->comefrom;
    out.packets = e->counters.pcnt;
    out.bytes = e->counters.bcnt;
}

void read_ipv4_rule(const table_image &image, uint32_t index, ipacl_ipt_rule &out) {
    std::memset(&out, 0, sizeof out);
    uint32_t chain = image.chain_of_entry(index);
    std::snprintf(out.chain, sizeof out.chain, "%s", image.chain(chain).name);
    out.rule_num = image.rule_number(index);
    read_ipv4_entry(image, index, out.entry);
    read_target_name(image, index, out.target);
    ipacl_match slots[IPACL_RULE_MATCHES] = {};
    out.match_count = read_matches(image, index, slots);
    std::memcpy(out.matches, slots, sizeof slots);
}

void read_ipv6_rule(const table_image &image, uint32_t index, ipacl_nf_rule6 &out) {
    std::memset(&out, 0, sizeof out);
    const auto *e = reinterpret_cast<const ip6t_entry *>(image.entry(index));
    uint32_t chain = image.chain_of_entry(index);
    std::snprintf(out.chain, sizeof out.chain, "%s", image.chain(chain).name);
    out.rule_num = image.rule_number(index);
    std::memcpy(out.src, &e->ipv6.src, 16);
    std::memcpy(out.dst, &e->ipv6.dst, 16);
    std::memcpy(out.src_mask, &e->ipv6.smsk, 16);
    std::memcpy(out.dst_mask, &e->ipv6.dmsk, 16);
    std::memcpy(out.in_if, e->ipv6.iniface, 16);
    std::memcpy(out.out_if, e->ipv6.outiface, 16);
    std::memcpy(out.in_if_mask, e->ipv6.iniface_mask, 16);
    std::memcpy(out.out_if_mask, e->ipv6.outiface_mask, 16);
    out.proto = e->ipv6.proto;
    out.flags = e->ipv6.flags;
    out.inv_flags = e->ipv6.invflags;
    read_target_name(image, index, out.target);
    out.match_count = read_matches(image, index, out.matches);
    out.packets = e->counters.pcnt;
    out.bytes = e->counters.bcnt;
}

}  // namespace ipacl_nf
