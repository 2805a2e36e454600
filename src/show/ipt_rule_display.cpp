// Block display of an iptables rule: its chain, number and target, its
// entry, then each of its matches by type.
#include <ipacl/show.h>

#include "show/block.h"

namespace {

using namespace ipacl::show;

constexpr Row kRule[] = {
    kBlankLine,
    field("Chain", offsetof(ipacl_ipt_rule, chain), chars<IPACL_CHAIN_NAME_SIZE>),
    field("Rule #", offsetof(ipacl_ipt_rule, rule_num), number<uint32_t>),
    field("Target", offsetof(ipacl_ipt_rule, target), chars<IPACL_TARGET_NAME_SIZE>),
};

using MatchDisplay = void (*)(const ipacl_match_info &info);

struct MatchKind {
    uint32_t type;
    MatchDisplay display;
};

constexpr MatchKind kMatchKinds[] = {
    {IPACL_MATCH_TCP, [](const ipacl_match_info &m) { ipacl_show_ipt_tcp(&m.tcp); }},
    {IPACL_MATCH_UDP, [](const ipacl_match_info &m) { ipacl_show_ipt_udp(&m.udp); }},
    {IPACL_MATCH_ICMP, [](const ipacl_match_info &m) { ipacl_show_ipt_icmp(&m.icmp); }},
    {IPACL_MATCH_TOS, [](const ipacl_match_info &m) { ipacl_show_ipt_tos(&m.tos); }},
    {IPACL_MATCH_LOG, [](const ipacl_match_info &m) { ipacl_show_ipt_log(&m.log); }},
};

// Matches of a type this display does not know are skipped silently.
void show_match(const ipacl_match &match) {
    for (const MatchKind &kind : kMatchKinds)
        if (kind.type == match.type) kind.display(match.info);
}

}  // namespace

extern "C" {

void ipacl_show_ipt_rule(const ipacl_ipt_rule *rule) {
    if (rule == nullptr) return;
    print_block(rule, kRule);
    ipacl_show_ipt_entry(&rule->entry);
    // The count comes from the kernel's answer; the record has room for
    // IPACL_RULE_MATCHES matches and no more are read.
    const uint32_t count =
        rule->match_count < IPACL_RULE_MATCHES ? rule->match_count : IPACL_RULE_MATCHES;
    for (uint32_t i = 0; i < count; ++i) show_match(rule->matches[i]);
}

}  // extern "C"
