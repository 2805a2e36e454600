// The netfilter library: filters as rules, names and refusals without a
// kernel; then, each in a fresh private network namespace, apply, remove,
// atomic replace with counters, the query and the capabilities against the
// kernel (skipped with the reason where it refuses: no namespaces, no
// x_tables, an emulator).  Filters are in the tool's filter language.
#include "tools/ipacl/parse/filter_parse.h"

#include <ipacl/codes.h>
#include <ipacl/enums.h>
#include <ipacl/netfilter.h>
#include <ipacl/wire.h>

#include <arpa/inet.h>
#include <gtest/gtest.h>
#include <linux/capability.h>
#include <sched.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

namespace {

std::string address(const void *bytes) {
    char text[INET_ADDRSTRLEN];
    return inet_ntop(AF_INET, bytes, text, sizeof text);
}

uint32_t mask_bytes(const uint8_t *mask) {
    uint32_t count = 0;
    for (int i = 0; i < 16; ++i) count += mask[i] != 0;
    return count;
}

std::string interface_part(const char *flag, const char *name, const uint8_t *mask) {
    if (!name[0] && mask_bytes(mask) == 0) return "";
    return std::string(" ") + flag + " " + std::string(name, strnlen(name, 16)) + "/" +
           std::to_string(mask_bytes(mask));
}

std::string match_part(const ipacl_match &m) {
    char text[128];
    const auto &t = m.info.tcp;
    const auto &u = m.info.udp;
    if (m.type == IPACL_MATCH_TCP)
        std::snprintf(text, sizeof text, " tcp %u:%u %u:%u flags %02x/%02x inv %02x",
                      t.src_port_low, t.src_port_high, t.dst_port_low, t.dst_port_high, t.flag_mask,
                      t.flag_cmp, t.inv_flags);
    else if (m.type == IPACL_MATCH_UDP)
        std::snprintf(text, sizeof text, " udp %u:%u %u:%u inv %02x", u.src_port_low,
                      u.src_port_high, u.dst_port_low, u.dst_port_high, u.inv_flags);
    else if (m.type == IPACL_MATCH_ICMP)
        std::snprintf(text, sizeof text, " icmp %u %u:%u", m.info.icmp.icmp_type,
                      m.info.icmp.code_low, m.info.icmp.code_high);
    else if (m.type == IPACL_MATCH_TOS)
        std::snprintf(text, sizeof text, " tos %02x", m.info.tos.tos);
    else
        std::snprintf(text, sizeof text, " log %u %u '%.30s'", m.info.log.level,
                      m.info.log.log_flags, m.info.log.prefix);
    return text;
}

// The filter a line of the filter language gives (IPv4 unless `ipv6`); a
// line that does not parse fails the test.
ipacl_filter filter_of(const std::string &line, bool ipv6 = false, uint32_t index = 1) {
    ipacl_tool::parse_options options;
    options.family = ipv6 ? ipacl_tool::family_choice::ipv6 : ipacl_tool::family_choice::ipv4;
    options.index = index;
    ipacl_tool::parse_result parsed = ipacl_tool::parse_filter(line, options);
    EXPECT_TRUE(parsed.ok) << line << ": " << parsed.error.message;
    return parsed.filter;
}

// An IPv4 rule as one line, like iptables -S (-i NAME/N: N mask bytes set).
std::string describe(const ipacl_ipt_rule &rule) {
    const ipacl_ipt_entry &e = rule.entry;
    std::string text = rule.chain;
    if (e.src_mask) text += " -s " + address(&e.src) + "/" + address(&e.src_mask);
    if (e.dst_mask) text += " -d " + address(&e.dst) + "/" + address(&e.dst_mask);
    text +=
        interface_part("-i", e.in_if, e.in_if_mask) + interface_part("-o", e.out_if, e.out_if_mask);
    if (e.proto) text += " -p " + std::to_string(e.proto);
    if (e.flags & 1) text += " -f";
    for (uint32_t i = 0; i < rule.match_count && i < IPACL_RULE_MATCHES; ++i)
        text += match_part(rule.matches[i]);
    return text + " -j " + rule.target;
}

// Output of a shell command (stdout and stderr), without trailing blanks.
std::string run(const std::string &command) {
    std::string output;
    FILE *pipe = popen((command + " 2>&1").c_str(), "r");
    if (!pipe) return "popen failed";
    char buffer[4096];
    for (std::size_t n; (n = std::fread(buffer, 1, sizeof buffer, pipe)) > 0;)
        output.append(buffer, n);
    pclose(pipe);
    while (!output.empty() && (output.back() == '\n' || output.back() == ' ')) output.pop_back();
    return output;
}

// Moves the process into a new network namespace with its loopback up;
// "" on success, else why not.
std::string enter_private_netns() {
    if (unshare(CLONE_NEWNET) != 0)
        return std::string("cannot create a network namespace: ") + std::strerror(errno);
    std::string failed = run("ip link set lo up");
    return failed.empty() ? "" : "cannot bring up the loopback: " + failed;
}

// Empties the exported name buffers, as the program starts.
void clear_names() {
    for (char *name : {ipacl_chain_in, ipacl_chain_out, ipacl_chain_fwd})
        std::memset(name, 0, IPACL_CHAIN_NAME_SIZE);
    for (char *name :
         {ipacl_target_accept, ipacl_target_drop, ipacl_target_queue, ipacl_target_return})
        std::memset(name, 0, IPACL_TARGET_NAME_SIZE);
}

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

// The IPv6 rule as the library's text without zero counters, or the refusal.
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

    clear_names();
    std::strcpy(ipacl_chain_out, "keep");
    ipacl_nf_fill_names();
    EXPECT_EQ(std::string(ipacl_chain_in) + " " + ipacl_chain_out + " " + ipacl_chain_fwd + " " +
                  ipacl_target_accept + " " + ipacl_target_drop + " " + ipacl_target_queue + " " +
                  ipacl_target_return,
              "ipacl-in keep ipacl-fwd ACCEPT DROP QUEUE RETURN");
    clear_names();
}

TEST(QueryRecords, ResponseSizeFollowsTheRecordOfTheOperation) {
    EXPECT_EQ(ipacl_nf_rsp_size(IPACL_IPT_OP_MATCHED_CHAIN, 2), 12u + 2 * 74);
    EXPECT_EQ(ipacl_nf_rsp_size(IPACL_IPT_OP_MATCHED_RULE, 3), 12u + 3 * 290);
    EXPECT_EQ(ipacl_nf_rsp_size(IPACL_IPT_OP_ALL_RULES, 3), 12u + 3 * 146);
    EXPECT_EQ(ipacl_nf_rsp_size(IPACL_IPT_OP_CLEAR_RULE_COUNTERS, 5), 12u);
}

constexpr uint32_t kIpv4 = IPACL_ADDR_TYPE_IPV4, kIpv6 = IPACL_ADDR_TYPE_IPV6;
const std::string kPolicies = "-P INPUT ACCEPT\n-P FORWARD ACCEPT\n-P OUTPUT ACCEPT\n";

std::vector<ipacl_filter> profile(const std::vector<std::string> &lines, bool ipv6 = false) {
    std::vector<ipacl_filter> filters;
    for (std::size_t i = 0; i < lines.size(); ++i)
        filters.push_back(filter_of(lines[i], ipv6, static_cast<uint32_t>(i + 1)));
    return filters;
}

// The filter table with its counters, its lines filtered by `also`.
std::string saved_table(const std::string &also = "") {
    return run("iptables-legacy-save -c -t filter | grep -v '^#'" + also);
}

// Datagrams from 127.0.0.1:port to itself: none draws a port-unreachable.
void send_udp(uint16_t port, int count) {
    int fd = socket(AF_INET, SOCK_DGRAM, 0);
    sockaddr_in at{AF_INET, htons(port), {htonl(INADDR_LOOPBACK)}, {}};
    EXPECT_EQ(bind(fd, reinterpret_cast<sockaddr *>(&at), sizeof at), 0);
    for (int i = 0; i < count; ++i)
        sendto(fd, "ipacl", 5, 0, reinterpret_cast<sockaddr *>(&at), sizeof at);
    close(fd);
}

// A query's answer in a buffer large enough for the table at hand.
struct answer {
    std::vector<uint8_t> bytes = std::vector<uint8_t>(1 << 20);
    uint32_t rc = 0;
    char err[IPACL_NF_ERR_TEXT_SIZE] = {};
    ipacl_ipt_rsp *rsp() { return reinterpret_cast<ipacl_ipt_rsp *>(bytes.data()); }
    template <class Record>
    const Record &at(uint32_t i) {
        return *reinterpret_cast<const Record *>(rsp()->records + i * sizeof(Record));
    }
};

answer query(uint32_t op, const char *chain = nullptr, uint32_t rule = 0) {
    answer a;
    a.rc = ipacl_nf_query(op, chain, rule, a.rsp(), static_cast<uint32_t>(a.bytes.size()), a.err);
    return a;
}

// Record `i` of a query's answer as one line.
std::string record_text(uint32_t op, answer &a, uint32_t i) {
    if (op == IPACL_IPT_OP_MATCHED_RULE) {
        const auto &r = a.at<ipacl_ipt_rule>(i);
        return describe(r) + " #" + std::to_string(r.rule_num) + " " +
               std::to_string(r.entry.packets) + "/" + std::to_string(r.entry.bytes);
    }
    if (op == IPACL_IPT_OP_ALL_RULES) {
        const auto &r = a.at<ipacl_rule_info>(i);
        return "#" + std::to_string(r.rule_num) + " " + r.target + " " +
               std::to_string(r.entry.packets);
    }
    const auto &c = a.at<ipacl_ipt_chain>(i);
    return std::to_string(c.entry) + " " + c.chain + " '" + c.policy + "' " +
           std::to_string(c.packets);
}

std::vector<uint64_t> rule_packets(const char *chain) {
    answer a = query(IPACL_IPT_OP_ALL_RULES, chain);
    std::vector<uint64_t> packets;
    for (uint32_t i = 0; i < a.rsp()->count; ++i)
        packets.push_back(a.at<ipacl_rule_info>(i).entry.packets);
    return packets;
}

// What a query answers in a child process that keeps only the capabilities
// in `keep` (a mask of CAP_* bits): "code message".
std::string query_with_capabilities(uint32_t keep) {
    int channel[2];
    if (pipe(channel) != 0) return "pipe failed";
    if (fork() == 0) {
        __user_cap_header_struct header{_LINUX_CAPABILITY_VERSION_3, 0};
        __user_cap_data_struct data[2] = {{keep, keep, 0}, {}};
        char text[IPACL_NF_ERR_TEXT_SIZE + 16] = "capset failed";
        if (syscall(SYS_capset, &header, data) == 0) {
            answer a = query(IPACL_IPT_OP_ALL_CHAINS);
            std::snprintf(text, sizeof text, "%08x %s", a.rc, a.err);
        }
        _exit(write(channel[1], text, std::strlen(text)) > 0 ? 0 : 1);
    }
    close(channel[1]);
    char text[IPACL_NF_ERR_TEXT_SIZE + 16] = {};
    ssize_t length = read(channel[0], text, sizeof text - 1);
    close(channel[0]);
    wait(nullptr);
    return length > 0 ? text : "no answer";
}

class KernelTable : public testing::Test {
  protected:
    void SetUp() override {
        clear_names();
        std::string reason = enter_private_netns();
        if (!reason.empty()) GTEST_SKIP() << reason;
        answer probe = query(IPACL_IPT_OP_ALL_CHAINS);
        if (probe.rc == IPACL_NF_E_UNAVAILABLE || probe.rc == IPACL_NF_E_PERMISSION)
            GTEST_SKIP() << probe.err;
        ASSERT_EQ(probe.rc, IPACL_OK) << probe.err;
    }
    void TearDown() override { clear_names(); }

    void need_iptables() {
        if (run("command -v iptables-legacy-save").empty())
            GTEST_SKIP() << "iptables-legacy is not installed (Debian package iptables)";
    }
    void apply(uint32_t family, uint32_t dir, const char *ifname,
               const std::vector<ipacl_filter> &filters) {
        char err[IPACL_NF_ERR_TEXT_SIZE];
        ASSERT_EQ(ipacl_nf_apply(family, dir, ifname, filters.data(),
                                 static_cast<uint32_t>(filters.size()), err),
                  IPACL_OK)
            << err;
        EXPECT_STREQ(err, "");
    }
};

TEST_F(KernelTable, IptablesReadsBackExactlyTheRulesApplied) {
    need_iptables();
    apply(kIpv4, kIn, "veth0",
          profile({"permit udp 10.1.0.0 0.0.255.255 any neq 53 precedence flash",
                   "deny tcp any lt 1024 any gt 1023 established log-deny",
                   "permit icmp 10.9.3.7 0.255.0.255 host 192.168.1.1 echo 0",
                   "permit ip 10.0.0.0/8 any fragments tos delay"}));
    EXPECT_EQ(run("iptables-legacy -S"),
              kPolicies +
                  "-N ipacl-in\n"
                  "-A INPUT -j ipacl-in\n"
                  "-A ipacl-in -s 10.1.0.0/16 -i veth0 -p udp -m udp ! --dport 53 -m tos --tos "
                  "0x60/0xe0 -j ACCEPT\n"
                  "-A ipacl-in -i veth0 -p tcp -m tcp --sport 0:1023 --dport 1024:65535 ! "
                  "--tcp-flags RST,ACK NONE -j LOG --log-prefix \"ipacl-in 2 deny: \"\n"
                  "-A ipacl-in -i veth0 -p tcp -m tcp --sport 0:1023 --dport 1024:65535 ! "
                  "--tcp-flags RST,ACK NONE -j DROP\n"
                  "-A ipacl-in -s 10.0.3.0/255.0.255.0 -d 192.168.1.1/32 -i veth0 -p icmp -m icmp "
                  "--icmp-type 8/0 -j ACCEPT\n"
                  "-A ipacl-in -s 10.0.0.0/8 -i veth0 -f -m tos --tos 0x10/0x1e -j ACCEPT\n"
                  "-A ipacl-in -i veth0 -j DROP");

    // A second apply replaces the rules and keeps the one jump; the other
    // direction gets its own chain; remove takes a chain and its jump away.
    apply(kIpv4, kIn, "veth0", profile({"deny udp any any eq 161"}));
    apply(kIpv4, kOut, "veth0+", profile({"permit tcp any eq 22 any"}));
    const std::string out_rules =
        "-A ipacl-out -o veth0+ -p tcp -m tcp --sport 22 -j ACCEPT\n-A ipacl-out -o veth0+ -j DROP";
    EXPECT_EQ(run("iptables-legacy -S"),
              kPolicies +
                  "-N ipacl-in\n-N ipacl-out\n-A INPUT -j ipacl-in\n-A OUTPUT -j ipacl-out\n"
                  "-A ipacl-in -i veth0 -p udp -m udp --dport 161 -j DROP\n"
                  "-A ipacl-in -i veth0 -j DROP\n" +
                  out_rules);
    char err[IPACL_NF_ERR_TEXT_SIZE];
    ASSERT_EQ(ipacl_nf_remove(kIpv4, kIn, err), IPACL_OK) << err;
    ASSERT_EQ(ipacl_nf_remove(kIpv4, kIn, err), IPACL_OK) << err;  // nothing left to remove
    EXPECT_EQ(run("iptables-legacy -S"),
              kPolicies + "-N ipacl-out\n-A OUTPUT -j ipacl-out\n" + out_rules);
}

TEST_F(KernelTable, Ipv6RulesReadBackThroughTheLibrary) {
    ipacl_nf_rule6 rules[8];
    uint32_t room = 0;
    char err[IPACL_NF_ERR_TEXT_SIZE];
    if (ipacl_nf_rules6(nullptr, rules, &room, err) == IPACL_NF_E_UNAVAILABLE) GTEST_SKIP() << err;
    apply(kIpv6, kIn, "veth0",
          profile({"permit tcp 2001:db8::/32 any eq 22", "permit icmp6 any any 128",
                   "deny udp any host 2001:db8::1 range 1 9 log-deny"},
                  true));
    room = 8;
    ASSERT_EQ(ipacl_nf_rules6("ipacl-in", rules, &room, err), IPACL_OK) << err;
    ASSERT_EQ(room, 5u);
    std::string listing;
    for (uint32_t i = 0; i < room; ++i) {
        char line[256];
        ASSERT_EQ(ipacl_nf_str_rule6(&rules[i], line, sizeof line, err), IPACL_OK) << err;
        listing += std::string(line) + "\n";
    }
    EXPECT_EQ(listing,
              "ipacl-in 1 ACCEPT tcp 2001:db8::/32 any in veth0 dport eq 22 packets 0 bytes 0\n"
              "ipacl-in 2 ACCEPT icmp6 any any in veth0 icmp6 128 packets 0 bytes 0\n"
              "ipacl-in 3 LOG udp any 2001:db8::1/128 in veth0 dport range 1 9 log \"ipacl-in 3 "
              "deny: \" packets 0 bytes 0\n"
              "ipacl-in 4 DROP udp any 2001:db8::1/128 in veth0 dport range 1 9 packets 0 bytes 0\n"
              "ipacl-in 5 DROP ip any any in veth0 packets 0 bytes 0\n");
    room = 2;
    EXPECT_EQ(ipacl_nf_rules6(nullptr, rules, &room, err), IPACL_NF_E_SHORT_BUFFER);
    EXPECT_EQ(room, 6u);  // the jump in INPUT and the five rules
    EXPECT_EQ(ipacl_nf_rules6("nosuch", rules, &room, err), IPACL_NF_E_BAD_CHAIN);
    EXPECT_STREQ(err, "no chain 'nosuch'");
}

// An apply that fails, before or inside the kernel, leaves 1,000 rules and
// their counters exactly as they were; one that succeeds replaces the ACL
// chain's own rules and keeps every other chain and counter.
TEST_F(KernelTable, ApplyReplacesTheAclRulesOnlyOrNothing) {
    need_iptables();
    run("iptables-legacy -N other && iptables-legacy -A other -p udp -j RETURN && "
        "iptables-legacy -A INPUT -p udp -j other");
    std::vector<ipacl_filter> filters;
    for (uint32_t i = 0; i < 1000; ++i)
        filters.push_back(
            filter_of("permit udp any any eq " + std::to_string(10000 + i), false, i + 1));
    apply(kIpv4, kIn, "lo", filters);
    send_udp(10000, 1);
    send_udp(10499, 2);
    send_udp(10999, 3);
    const std::string but_acl_rules = " | grep -v -- '-A ipacl-in '";
    const std::string table = saved_table(), others = saved_table(but_acl_rules);
    // The jump and the rules have counted: keeping the counts means something.
    EXPECT_EQ(others.find("[0:0] -A INPUT -j ipacl-in"), std::string::npos) << others;
    EXPECT_EQ(rule_packets("ipacl-in").at(999), 3u);

    char err[IPACL_NF_ERR_TEXT_SIZE];
    std::vector<ipacl_filter> untranslatable = filters;
    untranslatable[499] = filter_of("permit udp any any eq 1 fragments", false, 500);
    EXPECT_EQ(ipacl_nf_apply(kIpv4, kIn, "lo", untranslatable.data(), 1000, err),
              IPACL_NF_E_UNSUPPORTED);
    EXPECT_STREQ(err, "filter 500: fragments cannot be combined with ports");
    EXPECT_EQ(saved_table(), table);
    // A permit that jumps into the ACL chain itself: the kernel finds the
    // loop and refuses the whole table.
    std::strcpy(ipacl_target_accept, "ipacl-in");
    EXPECT_EQ(ipacl_nf_apply(kIpv4, kIn, "lo", filters.data(), 1000, err), IPACL_NF_E_KERNEL);
    EXPECT_STREQ(err, "replace table: kernel refused: the rules would jump in a loop");
    EXPECT_EQ(saved_table(), table);
    std::strcpy(ipacl_target_accept, "nosuch");
    EXPECT_EQ(ipacl_nf_apply(kIpv4, kIn, "lo", filters.data(), 1000, err), IPACL_NF_E_BAD_CHAIN);
    EXPECT_STREQ(err, "target 'nosuch': no such chain");
    EXPECT_EQ(saved_table(), table);

    clear_names();
    apply(kIpv4, kIn, "lo", profile({"permit udp any any eq 9"}));
    EXPECT_EQ(saved_table(but_acl_rules), others);
}

// The live table as records, the same through the wire and back; the
// refusals; the counter clears, by rule and by chain.
TEST_F(KernelTable, QueryAnswersAndClearsTheLiveTable) {
    apply(kIpv4, kIn, "lo",
          profile({"permit udp any any eq 5001", "deny icmp any any echo log-deny"}));
    send_udp(5001, 2);
    std::string seen;
    for (uint32_t op : {IPACL_IPT_OP_ALL_CHAINS, IPACL_IPT_OP_MATCHED_CHAIN, IPACL_IPT_OP_ALL_RULES,
                        IPACL_IPT_OP_MATCHED_RULE}) {
        answer a = query(op, op == IPACL_IPT_OP_ALL_CHAINS ? nullptr : "ipacl-in");
        ASSERT_EQ(a.rc, IPACL_OK) << a.err;
        uint32_t size = ipacl_nf_rsp_size(op, a.rsp()->count);
        std::vector<uint8_t> wire(size), back(size);
        ipacl_hton_ipt_rsp(a.rsp(), reinterpret_cast<ipacl_ipt_rsp *>(wire.data()));
        ipacl_ntoh_ipt_rsp(reinterpret_cast<ipacl_ipt_rsp *>(wire.data()),
                           reinterpret_cast<ipacl_ipt_rsp *>(back.data()));
        EXPECT_TRUE(std::equal(back.begin(), back.end(), a.bytes.begin())) << "operation " << op;
        for (uint32_t i = 0; i < a.rsp()->count; ++i) seen += record_text(op, a, i) + "\n";
    }
    EXPECT_EQ(seen,
              "1 INPUT 'ACCEPT' 0\n2 FORWARD 'ACCEPT' 0\n3 OUTPUT 'ACCEPT' 2\n4 ipacl-in '' 0\n"
              "4 ipacl-in '' 0\n"
              "#1 ACCEPT 2\n#2 LOG 0\n#3 DROP 0\n#4 DROP 0\n"
              "ipacl-in -i lo/3 -p 17 udp 0:65535 5001:5001 inv 00 -j ACCEPT #1 2/66\n"
              "ipacl-in -i lo/3 -p 1 icmp 8 0:255 log 4 0 'ipacl-in 2 deny: ' -j LOG #2 0/0\n"
              "ipacl-in -i lo/3 -p 1 icmp 8 0:255 -j DROP #3 0/0\n"
              "ipacl-in -i lo/3 -j DROP #4 0/0\n");

    EXPECT_EQ(query(IPACL_IPT_OP_ALL_RULES, "nosuch").err, std::string("no chain 'nosuch'"));
    answer a = query(IPACL_IPT_OP_MATCHED_RULE, "ipacl-in", 5);
    EXPECT_EQ(a.rc, IPACL_NF_E_BAD_CHAIN);
    EXPECT_STREQ(a.err, "no rule 5 in chain 'ipacl-in'");
    a = query(3);
    EXPECT_EQ(a.rc, IPACL_E_BAD_ARG);
    EXPECT_STREQ(a.err, "bad operation 3");
    EXPECT_EQ(ipacl_nf_query(IPACL_IPT_OP_ALL_CHAINS, nullptr, 0, a.rsp(), 96, a.err),
              IPACL_NF_E_SHORT_BUFFER);
    EXPECT_STREQ(a.err, "1 of 4 records fit in 96 bytes");
    EXPECT_EQ(a.rsp()->count, 1u);
    EXPECT_EQ(a.rsp()->word8, 4u);
    EXPECT_EQ(ipacl_nf_query(IPACL_IPT_OP_ALL_CHAINS, nullptr, 0, a.rsp(), 11, a.err),
              IPACL_E_BAD_ARG);

    send_udp(5002, 1);
    ASSERT_EQ(rule_packets("ipacl-in"), (std::vector<uint64_t>{2, 0, 0, 1}));
    a = query(IPACL_IPT_OP_CLEAR_RULE_COUNTERS, "ipacl-in", 1);
    ASSERT_EQ(a.rc, IPACL_OK) << a.err;
    EXPECT_EQ(a.rsp()->count, 0u);
    EXPECT_EQ(a.rsp()->flags, IPACL_IPT_OP_CLEAR_RULE_COUNTERS);
    EXPECT_EQ(rule_packets("ipacl-in"), (std::vector<uint64_t>{0, 0, 0, 1}));
    EXPECT_EQ(query(IPACL_IPT_OP_MATCHED_CHAIN, "OUTPUT").at<ipacl_ipt_chain>(0).packets, 3u);
    ASSERT_EQ(query(IPACL_IPT_OP_CLEAR_CHAIN_COUNTERS).rc, IPACL_OK);
    EXPECT_EQ(query(IPACL_IPT_OP_MATCHED_CHAIN, "OUTPUT").at<ipacl_ipt_chain>(0).packets, 0u);
    EXPECT_EQ(rule_packets("ipacl-in"), (std::vector<uint64_t>{0, 0, 0, 1}));  // rules untouched
    ASSERT_EQ(query(IPACL_IPT_OP_CLEAR_RULE_COUNTERS).rc, IPACL_OK);
    EXPECT_EQ(rule_packets("ipacl-in"), (std::vector<uint64_t>{0, 0, 0, 0}));
    send_udp(5001, 1);
    EXPECT_EQ(rule_packets("ipacl-in"), (std::vector<uint64_t>{1, 0, 0, 0}));  // counting goes on
}

TEST_F(KernelTable, WithoutTheCapabilitiesTheCallsSayWhichIsMissing) {
    EXPECT_EQ(query_with_capabilities(0),
              "407f0103 open socket: permission denied (needs CAP_NET_RAW)");
    EXPECT_EQ(query_with_capabilities(1u << CAP_NET_RAW),
              "407f0103 read table: permission denied (needs CAP_NET_ADMIN)");
}

}  // namespace
