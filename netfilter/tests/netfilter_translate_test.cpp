// Filters as rules, without a kernel: the mapping for IPv4 and IPv6 (the
// latter through the text form of IPv6 rules), the names and their
// defaults, and each refusal with its message.
#include "nf_test_support.h"

#include <ipacl/codes.h>
#include <ipacl/enums.h>

#include <gtest/gtest.h>

#include <cstring>
#include <string>

namespace {

using nf_test::describe;
using nf_test::filter_of;

constexpr uint32_t kIn = IPACL_DIR_IN, kOut = IPACL_DIR_OUT;

struct rule_case {
    const char *line;
    const char *rule;
    uint32_t dir = kIn;
    const char *ifname = "mgmt0";
    uint32_t index = 1;
};

// A refusal's code and message.
std::string refusal(uint32_t rc, const char *err) {
    char code[16];
    std::snprintf(code, sizeof code, "%08x ", rc);
    return code + std::string(err);
}

// The IPv4 rule of a filter line, or the refusal.
std::string rule4(const rule_case &c) {
    ipacl_filter f = filter_of(c.line, false, c.index);
    ipacl_ipt_rule rule;
    char err[IPACL_NF_ERR_TEXT_SIZE] = "stale";
    uint32_t rc = ipacl_nf_translate(&f, c.dir, c.ifname, &rule, err);
    return rc ? refusal(rc, err) : err[0] ? "message on success" : describe(rule);
}

// The IPv6 rule as the library's text without its zero counters, or the
// refusal.
std::string text6(const ipacl_nf_rule6 &rule) {
    char text[256], err[IPACL_NF_ERR_TEXT_SIZE];
    if (uint32_t rc = ipacl_nf_str_rule6(&rule, text, sizeof text, err)) return refusal(rc, err);
    std::string line = text, counters = " packets 0 bytes 0";
    return line.ends_with(counters) ? line.substr(0, line.size() - counters.size()) : line;
}
std::string rule6(const rule_case &c) {
    ipacl_filter f = filter_of(c.line, true);
    ipacl_nf_rule6 rule;
    char err[IPACL_NF_ERR_TEXT_SIZE] = "stale";
    uint32_t rc = ipacl_nf_translate6(&f, c.dir, c.ifname, &rule, err);
    return rc ? refusal(rc, err) : err[0] ? "message on success" : text6(rule);
}

TEST(Translate, EveryFieldOfAFilter) {
    const rule_case ipv4[] = {
        {"deny ip any any", "ipacl-in -i mgmt0/6 -j DROP"},
        {"permit ip any any", "ipacl-in -i mgmt0/6 -j ACCEPT", IPACL_DIR_IN2},
        {"permit ip any any", "ipacl-out -o mgmt0/6 -j ACCEPT", IPACL_DIR_OUT2},
        {"permit ip any any", "ipacl-in -j ACCEPT", kIn, nullptr},
        {"permit ip any any", "ipacl-in -i eth+/3 -j ACCEPT", kIn, "eth+"},
        {"permit 47 any any", "ipacl-in -i mgmt0/6 -p 47 -j ACCEPT"},
        {"permit udp any any", "ipacl-in -i mgmt0/6 -p 17 -j ACCEPT"},
        {"permit ip 10.1.0.0 0.0.255.255 host 192.168.1.1",
         "ipacl-in -s 10.1.0.0/255.255.0.0 -d 192.168.1.1/255.255.255.255 -i mgmt0/6 -j ACCEPT"},
        {"permit ip any 10.9.3.7 0.255.0.255",
         "ipacl-in -d 10.0.3.0/255.0.255.0 -i mgmt0/6 -j ACCEPT"},
        {"permit tcp any neq 1000 any eq 22",
         "ipacl-in -i mgmt0/6 -p 6 tcp 1000:1000 22:22 flags 00/00 inv 01 -j ACCEPT"},
        {"permit tcp any lt 1024 any gt 1023",
         "ipacl-in -i mgmt0/6 -p 6 tcp 0:1023 1024:65535 flags 00/00 inv 00 -j ACCEPT"},
        {"permit udp any range 5000 5010 any neq 53",
         "ipacl-in -i mgmt0/6 -p 17 udp 5000:5010 53:53 inv 02 -j ACCEPT"},
        // established: ACK or RST set
        {"permit tcp any any neq 80 established",
         "ipacl-in -i mgmt0/6 -p 6 tcp 0:65535 80:80 flags 14/00 inv 06 -j ACCEPT"},
        {"permit icmp any any echo", "ipacl-in -i mgmt0/6 -p 1 icmp 8 0:255 -j ACCEPT"},
        {"permit icmp any any 3 4", "ipacl-in -i mgmt0/6 -p 1 icmp 3 4:4 -j ACCEPT"},
        {"permit ip any any precedence flash", "ipacl-in -i mgmt0/6 tos 60 -j ACCEPT"},
        {"permit ip any any tos delay", "ipacl-in -i mgmt0/6 tos 10 -j ACCEPT"},
        {"permit ip 10.0.0.0/8 any fragments",
         "ipacl-in -s 10.0.0.0/255.0.0.0 -i mgmt0/6 -f -j ACCEPT"},
        // the log slot rides on the DROP rule, its prefix names chain and index
        {"deny tcp any any eq 23 precedence critical log-deny",
         "ipacl-out -o mgmt0/6 -p 6 tcp 0:65535 23:23 flags 00/00 inv 00 tos a0 "
         "log 4 0 'ipacl-out 4242 deny: ' -j DROP",
         kOut, "mgmt0", 4242},
    };
    for (const rule_case &c : ipv4) EXPECT_EQ(rule4(c), c.rule) << c.line;

    const rule_case ipv6[] = {
        {"permit tcp 2001:db8::/32 any eq 22 established",
         "ipacl-in 0 ACCEPT tcp 2001:db8::/32 any in mgmt0 dport eq 22 established"},
        {"deny udp any range 1 9 host 2001:db8::1 neq 53 log-deny",
         "ipacl-out 0 DROP udp any 2001:db8::1/128 out mgmt0 sport range 1 9 dport not eq 53 "
         "log \"ipacl-out 1 deny: \"",
         kOut},
        {"permit ipv6 2001:db8:ff::/41 any", "ipacl-in 0 ACCEPT ip 2001:db8:80::/41 any in mgmt0"},
        {"permit icmp6 any any 1 3", "ipacl-in 0 ACCEPT icmp6 any any in mgmt0 icmp6 1 3"},
        {"permit icmp6 any any 128", "ipacl-in 0 ACCEPT icmp6 any any in mgmt0 icmp6 128"},
    };
    for (const rule_case &c : ipv6) EXPECT_EQ(rule6(c), c.rule) << c.line;
    // The language keeps tos to IPv4; the record may hold it for IPv6 too.
    ipacl_filter f = filter_of("permit udp any any", true);
    f.tos = IPACL_TOS_RELIABILITY;
    ipacl_nf_rule6 rule;
    ASSERT_EQ(ipacl_nf_translate6(&f, kIn, "", &rule, nullptr), IPACL_OK);
    EXPECT_EQ(text6(rule), "ipacl-in 0 ACCEPT udp any any tos 0x04");

    // A mask that is no prefix, as a kernel table may hold it; counters; a
    // short buffer.
    rule = {};
    std::strcpy(rule.chain, "c");
    std::strcpy(rule.target, "DROP");
    rule.src[0] = 0x20;
    rule.src_mask[0] = 0xf0;
    rule.src_mask[15] = 0x01;
    rule.packets = 3;
    rule.bytes = 180;
    EXPECT_EQ(text6(rule), "c 0 DROP ip 2000::/f000::1 any packets 3 bytes 180");
    char text[32], err[IPACL_NF_ERR_TEXT_SIZE];
    EXPECT_EQ(ipacl_nf_str_rule6(&rule, text, 10, err), IPACL_NF_E_SHORT_BUFFER);
    EXPECT_STREQ(err, "text needs 51 bytes, buffer holds 10");
    EXPECT_STREQ(text, "");
}

TEST(Translate, WhatCannotBeSaidExactlyIsRefused) {
    const rule_case refusals[] = {
        {"permit tcp any any eq 22 fragments", "407f0101 fragments cannot be combined with ports"},
        {"permit tcp any any established fragments",
         "407f0101 fragments cannot be combined with established"},
        {"permit icmp any any echo fragments",
         "407f0101 fragments cannot be combined with icmp type"},
        {"permit 58 any any 128", "407f0101 icmp type needs protocol icmp on IPv4 filters"},
        {"permit tcp any lt 0 any", "407f0101 source port lt 0 matches no port"},
        {"permit udp any any gt 65535", "407f0101 dest port gt 65535 matches no port"},
        {"permit ip any any", "407f0101 interface name 'mgmt0123456789ab' is too long", kIn,
         "mgmt0123456789ab"},
        {"permit ip any any", "407f000a bad interface direction in+out", IPACL_DIR_IN_OUT},
        {"permit ip any any", "407f000a no chain for direction no-dir", IPACL_DIR_NONE},
        {"permit 300 any any", "407f0016 bad protocol 300"},  // the library's checks first
    };
    for (const rule_case &c : refusals) EXPECT_EQ(rule4(c), c.rule) << c.line;
    EXPECT_EQ(rule6({"permit ipv6 any any fragments", ""}),
              "407f0101 fragments cannot be matched on IPv6 filters");
    EXPECT_EQ(rule6({"permit icmp any any 128", ""}),
              "407f0101 icmp type needs protocol icmp6 on IPv6 filters");

    char err[IPACL_NF_ERR_TEXT_SIZE];
    ipacl_filter v6 = filter_of("permit ipv6 any any", true), v4 = filter_of("permit ip any any");
    ipacl_ipt_rule rule;
    ipacl_nf_rule6 rule6;
    EXPECT_EQ(ipacl_nf_translate(&v6, kIn, "", &rule, err), IPACL_E_BAD_ADDR_TYPE);
    EXPECT_STREQ(err, "translate: not an IPv4 filter");
    EXPECT_EQ(ipacl_nf_translate6(&v4, kIn, "", &rule6, err), IPACL_E_BAD_ADDR_TYPE);
    EXPECT_STREQ(err, "translate: not an IPv6 filter");
    v6.protocol = IPACL_PROTO_IP;
    EXPECT_EQ(ipacl_nf_translate6(&v6, kIn, "", &rule6, err), IPACL_NF_E_UNSUPPORTED);
    EXPECT_STREQ(err, "protocol ip is not allowed for IPv6 filters (ipv6 is any)");
    v6.protocol = IPACL_PROTO_IPV6;  // the IPv6 any, as the record may hold it
    ASSERT_EQ(ipacl_nf_translate6(&v6, kIn, "", &rule6, err), IPACL_OK);
    EXPECT_EQ(text6(rule6), "ipacl-in 0 ACCEPT ip any any");
    v6.src_addr.prefix_len = 129;
    EXPECT_EQ(ipacl_nf_translate6(&v6, kIn, "", &rule6, err), IPACL_NF_E_UNSUPPORTED);
    EXPECT_STREQ(err, "bad IPv6 prefix length 129");
    v4.fragments = 2;
    EXPECT_EQ(ipacl_nf_translate(&v4, kIn, "", &rule, err), IPACL_NF_E_UNSUPPORTED);
    EXPECT_STREQ(err, "bad fragments 2");
    // Without a message buffer: the same codes (the library lends one to
    // the address-type check of the filter chain).
    v4.fragments = 0;
    v4.addr_type = 7;
    EXPECT_EQ(ipacl_nf_translate(&v4, kIn, "", &rule, nullptr), IPACL_E_BAD_ADDR_TYPE);
    EXPECT_EQ(ipacl_nf_translate(nullptr, kIn, "", &rule, err), IPACL_E_BAD_ARG);
    EXPECT_EQ(ipacl_nf_translate(&v4, kIn, "", nullptr, err), IPACL_E_BAD_ARG);
}

TEST(Translate, NamesComeFromTheExportedBuffersOrTheirDefaults) {
    char chain[IPACL_CHAIN_NAME_SIZE], err[IPACL_NF_ERR_TEXT_SIZE];
    EXPECT_EQ(ipacl_nf_chain_name(kOut, chain, err), IPACL_OK);
    EXPECT_STREQ(chain, "ipacl-out");

    std::strcpy(ipacl_chain_in, "mgmtin");
    std::strcpy(ipacl_target_accept, "mgmtok");
    std::strcpy(ipacl_target_drop, "REJECTED");
    EXPECT_EQ(rule4({"permit ip any any", ""}), "mgmtin -i mgmt0/6 -j mgmtok");
    EXPECT_EQ(rule4({"deny ip any any", ""}), "mgmtin -i mgmt0/6 -j REJECTED");
    std::strcpy(ipacl_chain_in, "INPUT");
    EXPECT_EQ(rule4({"permit ip any any", ""}), "407f0102 'INPUT' is a built-in chain");
    std::strcpy(ipacl_chain_in, "a23456789012345678901234567890");
    EXPECT_EQ(rule4({"permit ip any any", ""}),
              "407f0102 chain name 'a23456789012345678901234567890' must have 1 to 28 characters");

    // Apply refuses one chain for both directions before it asks the kernel.
    std::strcpy(ipacl_chain_in, "mgmt");
    std::strcpy(ipacl_chain_out, "mgmt");
    EXPECT_EQ(ipacl_nf_apply(IPACL_ADDR_TYPE_IPV4, kOut, "", nullptr, 0, err),
              IPACL_NF_E_BAD_CHAIN);
    EXPECT_STREQ(err, "chains in and out are both 'mgmt'");

    nf_test::clear_names();
    std::strcpy(ipacl_chain_out, "keep");
    ipacl_nf_fill_names();
    EXPECT_EQ(std::string(ipacl_chain_in) + " " + ipacl_chain_out + " " + ipacl_chain_fwd + " " +
                  ipacl_target_accept + " " + ipacl_target_drop + " " + ipacl_target_queue + " " +
                  ipacl_target_return,
              "ipacl-in keep ipacl-fwd ACCEPT DROP QUEUE RETURN");
    nf_test::clear_names();
}

TEST(QueryRecords, ResponseSizeFollowsTheRecordOfTheOperation) {
    EXPECT_EQ(ipacl_nf_rsp_size(IPACL_IPT_OP_MATCHED_CHAIN, 2), 12u + 2 * 74);
    EXPECT_EQ(ipacl_nf_rsp_size(IPACL_IPT_OP_MATCHED_RULE, 3), 12u + 3 * 290);
    EXPECT_EQ(ipacl_nf_rsp_size(IPACL_IPT_OP_ALL_RULES, 3), 12u + 3 * 146);
    EXPECT_EQ(ipacl_nf_rsp_size(IPACL_IPT_OP_CLEAR_RULE_COUNTERS, 5), 12u);
}

}  // namespace
