// The kernel side, each test in a fresh private network namespace: apply
// and remove read back by iptables-legacy and by the library, other chains
// and counters kept, atomicity with 1,000 rules, the query and the counter
// clears, the missing capabilities.  Where the kernel refuses (no
// namespaces, no x_tables, an emulator), the tests skip with the reason.
#include "nf_test_support.h"

#include <ipacl/codes.h>
#include <ipacl/enums.h>
#include <ipacl/wire.h>

#include <gtest/gtest.h>
#include <linux/capability.h>
#include <netinet/in.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstring>
#include <string>
#include <vector>

namespace {

using nf_test::filter_of;
using nf_test::run;

constexpr uint32_t kIpv4 = IPACL_ADDR_TYPE_IPV4, kIpv6 = IPACL_ADDR_TYPE_IPV6;
constexpr uint32_t kIn = IPACL_DIR_IN, kOut = IPACL_DIR_OUT;
const std::string kPolicies = "-P INPUT ACCEPT\n-P FORWARD ACCEPT\n-P OUTPUT ACCEPT\n";

std::vector<ipacl_filter> profile(const std::vector<std::string> &lines, bool ipv6 = false) {
    std::vector<ipacl_filter> filters;
    for (std::size_t i = 0; i < lines.size(); ++i)
        filters.push_back(filter_of(lines[i], ipv6, static_cast<uint32_t>(i + 1)));
    return filters;
}

// The filter table as iptables-legacy-save prints it with its counters,
// its lines filtered further by `also`.
std::string saved_table(const std::string &also = "") {
    return run("iptables-legacy-save -c -t filter | grep -v '^#'" + also);
}

sockaddr_in loopback(uint16_t port) {
    return sockaddr_in{AF_INET, htons(port), {htonl(INADDR_LOOPBACK)}, {}};
}

// A UDP socket bound to 127.0.0.1:port.
int udp_listener(uint16_t port) {
    int fd = socket(AF_INET, SOCK_DGRAM | SOCK_NONBLOCK, 0);
    sockaddr_in at = loopback(port);
    EXPECT_EQ(bind(fd, reinterpret_cast<sockaddr *>(&at), sizeof at), 0);
    return fd;
}

void send_udp(uint16_t port, int count) {
    int fd = socket(AF_INET, SOCK_DGRAM, 0);
    sockaddr_in to = loopback(port);
    for (int i = 0; i < count; ++i)
        sendto(fd, "ipacl", 5, 0, reinterpret_cast<sockaddr *>(&to), sizeof to);
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
        return nf_test::describe(r) + " #" + std::to_string(r.rule_num) + " " +
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
        nf_test::clear_names();
        std::string reason = nf_test::enter_private_netns();
        if (!reason.empty()) GTEST_SKIP() << reason;
        answer probe = query(IPACL_IPT_OP_ALL_CHAINS);
        if (probe.rc == IPACL_NF_E_UNAVAILABLE || probe.rc == IPACL_NF_E_PERMISSION)
            GTEST_SKIP() << probe.err;
        ASSERT_EQ(probe.rc, IPACL_OK) << probe.err;
    }
    void TearDown() override { nf_test::clear_names(); }

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
    EXPECT_EQ(run("iptables-legacy -S"),
              kPolicies +
                  "-N ipacl-in\n"
                  "-N ipacl-out\n"
                  "-A INPUT -j ipacl-in\n"
                  "-A OUTPUT -j ipacl-out\n"
                  "-A ipacl-in -i veth0 -p udp -m udp --dport 161 -j DROP\n"
                  "-A ipacl-in -i veth0 -j DROP\n"
                  "-A ipacl-out -o veth0+ -p tcp -m tcp --sport 22 -j ACCEPT\n"
                  "-A ipacl-out -o veth0+ -j DROP");
    char err[IPACL_NF_ERR_TEXT_SIZE];
    ASSERT_EQ(ipacl_nf_remove(kIpv4, kIn, err), IPACL_OK) << err;
    ASSERT_EQ(ipacl_nf_remove(kIpv4, kIn, err), IPACL_OK) << err;  // nothing left to remove
    EXPECT_EQ(run("iptables-legacy -S"),
              kPolicies +
                  "-N ipacl-out\n"
                  "-A OUTPUT -j ipacl-out\n"
                  "-A ipacl-out -o veth0+ -p tcp -m tcp --sport 22 -j ACCEPT\n"
                  "-A ipacl-out -o veth0+ -j DROP");
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
    // The jump has counted packets: keeping them below means something.
    EXPECT_EQ(others.find("[0:0] -A INPUT -j ipacl-in"), std::string::npos) << others;
    const std::vector<uint64_t> packets = rule_packets("ipacl-in");
    ASSERT_EQ(packets.size(), 1001u);
    EXPECT_EQ(packets[0], 1u);
    EXPECT_EQ(packets[999], 3u);

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
    EXPECT_EQ(rule_packets("ipacl-in"), packets);
    std::strcpy(ipacl_target_accept, "nosuch");
    EXPECT_EQ(ipacl_nf_apply(kIpv4, kIn, "lo", filters.data(), 1000, err), IPACL_NF_E_BAD_CHAIN);
    EXPECT_STREQ(err, "target 'nosuch': no such chain");
    EXPECT_EQ(saved_table(), table);

    nf_test::clear_names();
    apply(kIpv4, kIn, "lo", profile({"permit udp any any eq 9"}));
    EXPECT_EQ(saved_table(but_acl_rules), others);
}

// The live table as records, the same through the wire and back; the
// refusals; the counter clears, by rule and by chain.
TEST_F(KernelTable, QueryAnswersAndClearsTheLiveTable) {
    apply(kIpv4, kIn, "lo",
          profile({"permit udp any any eq 5001", "deny icmp any any echo log-deny"}));
    int listener = udp_listener(5001);  // no port-unreachable answers to count
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

    send_udp(5002, 1);  // dropped by the implicit deny, so no port-unreachable either
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
    close(listener);
}

TEST_F(KernelTable, WithoutTheCapabilitiesTheCallsSayWhichIsMissing) {
    EXPECT_EQ(query_with_capabilities(0),
              "407f0103 open socket: permission denied (needs CAP_NET_RAW)");
    EXPECT_EQ(query_with_capabilities(1u << CAP_NET_RAW),
              "407f0103 read table: permission denied (needs CAP_NET_ADMIN)");
}

}  // namespace
