// iptables, high-availability and parameter-list displays, golden texts
// compared whole.
#include <gtest/gtest.h>

#include <cstdio>
#include <cstring>
#include <string>

#include <ipacl/ipacl.h>

#include "capture_stdout.h"
#include "platform_double.h"

namespace {

using ipacl_double::output_of;

void set4(void *field, uint8_t a, uint8_t b, uint8_t c, uint8_t d) {
    const uint8_t bytes[4] = {a, b, c, d};
    memcpy(field, bytes, sizeof bytes);
}

// Inverted destination, ingress interface, protocol and fragment test; the
// ingress interface is a wildcard "et+".
ipacl_ipt_entry entry() {
    ipacl_ipt_entry e{};
    set4(&e.src, 10, 0, 0, 1);
    set4(&e.src_mask, 255, 255, 255, 255);
    set4(&e.dst, 192, 168, 1, 0);
    set4(&e.dst_mask, 255, 255, 255, 0);
    strcpy(e.in_if, "eth");
    e.in_if_mask[0] = 0xff;
    e.in_if_mask[1] = 0xff;
    e.proto = 6;
    e.flags = 0x01;
    e.inv_flags = 0x01 | 0x10 | 0x20 | 0x40;
    e.packets = 5;
    e.bytes = 300;
    return e;
}

const char *const kEntryBlock = R"(Source Address          10.0.0.1 255.255.255.255
Destination Address     not 192.168.1.0 255.255.255.0
Ingress Interface       not et+
Egress Interface        -
Protocol                not tcp
Fragment                false
# Packets               5
# Bytes                 300
)";
const char *const kTcpBlock = R"(TCP Source Port Low     1024
TCP Source Port High    65535
TCP Dest Port Low       22
TCP Dest Port High      22
TCP flag mask           ACK RST SYN FIN 
TCP flag compare        !SYN 
)";
const char *const kUdpBlock = R"(UDP Source Port Low     53
UDP Source Port High    53
UDP Dest Port Low       1
UDP Dest Port High      65535
)";
const char *const kIcmpBlock = R"(ICMP Type               echo
ICMP Low Code           0
ICMP High Code          255
)";
const char *const kTosBlock = R"(Precedence              flash
TOS                     throughput
)";
const char *const kLogBlock = R"(Log Level               LOG_WARNING
Log Flags               tcp-seq-no tcp-options 
Prefix                  DROP: 
)";

ipacl_match match(uint32_t type) {
    ipacl_match m{};
    m.type = type;
    switch (type) {
        case IPACL_MATCH_TCP:
            m.info.tcp = {1024, 65535, 22, 22, 0, 0x17, 0x02, 1};
            break;
        case IPACL_MATCH_UDP:
            m.info.udp = {53, 53, 1, 65535, 0, 0};
            break;
        case IPACL_MATCH_ICMP:
            m.info.icmp = {8, 0, 255, 0};
            break;
        case IPACL_MATCH_TOS:
            m.info.tos = {(3 << 5) | (4 << 1), 0};
            break;
        case IPACL_MATCH_LOG:
            m.info.log.level = 4;
            m.info.log.log_flags = 0x03;
            strcpy(m.info.log.prefix, "DROP: ");
            break;
        default:
            memset(m.info.raw, 0xEE, sizeof m.info.raw);
            break;
    }
    return m;
}

ipacl_ipt_rule rule() {
    ipacl_ipt_rule r{};
    strcpy(r.chain, "INPUT");
    r.rule_num = 4;
    r.entry = entry();
    strcpy(r.target, "ACCEPT");
    return r;
}

class ShowIpt : public ::testing::Test {
  protected:
    void SetUp() override { ipacl_double::reset(); }
};

}  // namespace

TEST_F(ShowIpt, EntryMarksInversionsAndWildcards) {
    const ipacl_ipt_entry e = entry();
    EXPECT_EQ(output_of([&] { ipacl_show_ipt_entry(&e); }), kEntryBlock);

    // Zero bytes inside a name are skipped, not taken as its end; a fragment
    // test that is not inverted reads "true"; unknown protocols print their
    // fallback.
    ipacl_ipt_entry other = entry();
    memset(other.in_if, 0, sizeof other.in_if);
    memcpy(other.in_if, "e\0t\0h", 5);
    memset(other.in_if_mask, 0xff, 4);
    strcpy(other.out_if, "lo");
    other.out_if_mask[0] = other.out_if_mask[1] = 0xff;
    other.inv_flags = 0;
    other.proto = 3;
    const std::string text = output_of([&] { ipacl_show_ipt_entry(&other); });
    for (const char *line : {"Ingress Interface       et+", "Egress Interface        lo",
                             "Protocol                3h[ip-proto]", "Fragment                true",
                             "Destination Address     192.168.1.0 255.255.255.0"})
        EXPECT_NE(text.find("\n" + std::string(line) + "\n"), std::string::npos) << line;
}

TEST_F(ShowIpt, TcpFlagsInFixedOrder) {
    EXPECT_EQ(output_of([] { ipacl_show_tcp_flags("X ", 0x12, 0); }), "X ACK SYN \n");
    EXPECT_EQ(output_of([] { ipacl_show_tcp_flags("", 0xFF, 2); }),
              "!URG !ACK !PSH !RST !SYN !FIN \n");
    EXPECT_EQ(output_of([] { ipacl_show_tcp_flags(nullptr, 0xC1, 0); }), "FIN \n");
    // A label longer than the line is cut, never overrun.
    const std::string label(300, 'L');
    EXPECT_EQ(output_of([&] { ipacl_show_tcp_flags(label.c_str(), 0x3F, 1); }),
              std::string(255, 'L') + "\n");
}

TEST_F(ShowIpt, RuleShowsKnownMatchesInSlotOrder) {
    ipacl_ipt_rule r = rule();
    r.match_count = 3;
    r.matches[0] = match(4);  // unknown: skipped
    r.matches[1] = match(IPACL_MATCH_TCP);
    r.matches[2] = match(IPACL_MATCH_UDP);
    const std::string head = R"(
Chain                   INPUT
Rule #                  4
Target                  ACCEPT
)";
    EXPECT_EQ(output_of([&] { ipacl_show_ipt_rule(&r); }),
              head + kEntryBlock + kTcpBlock + kUdpBlock);

    // A count beyond the record's slots reads the slots it has.
    r.match_count = 0xFFFFFFFF;
    r.matches[0] = match(IPACL_MATCH_ICMP);
    r.matches[1] = match(IPACL_MATCH_TOS);
    r.matches[2] = match(IPACL_MATCH_LOG);
    EXPECT_EQ(output_of([&] { ipacl_show_ipt_rule(&r); }),
              head + kEntryBlock + kIcmpBlock + kTosBlock + kLogBlock);
}

TEST_F(ShowIpt, RuleSummaryAndChainTables) {
    ipacl_rule_info info{};
    info.rule_num = 4;
    set4(&info.entry.src, 10, 0, 0, 1);
    memcpy(info.entry.in_if, "verylonginterfac", 16);  // fills the field, no terminator
    strcpy(info.entry.out_if, "lo");
    info.entry.proto = 6;
    info.entry.packets = 77;
    strcpy(info.target, "ACCEPT");
    EXPECT_EQ(output_of([&] { ipacl_show_rule_info(1, &info); }), R"(
Rule Pro Source IP       Dest IP         In       Out      Target   # Packets
--- ---- --------------- --------------- -------- -------- -------- ---------
4   tcp  10.0.0.1        any             verylong lo       ACCEPT   77
)");

    ipacl_ipt_chain builtin{};
    builtin.entry = 1;
    strcpy(builtin.chain, "INPUT");
    strcpy(builtin.policy, "ACCEPT");
    builtin.packets = 1234;
    ipacl_ipt_chain user{};
    user.entry = 7;
    strcpy(user.chain, "mychain");
    EXPECT_EQ(output_of([&] {
                  ipacl_show_ipt_chain(1, &builtin);
                  ipacl_show_ipt_chain(0, &user);
              }),
              R"(
Entry    Chain Name                       Policy    # Packets
-----    -----------------------------    ------    ---------
1        INPUT                            ACCEPT    1234
7        mychain                      
)");
}

TEST_F(ShowIpt, HighAvailabilityUses23Columns) {
    const ipacl_ha ha{IPACL_SUP_STATE_ACTIVE, 1, 2, 0, 1, 1};
    const char *expected = R"(
Sup State              active
Switching Over         T
Started Stateful       F
Started Stateless      F
Standby Sup Existed    T
Just Sent Heartbeat    T
)";
    EXPECT_EQ(output_of([&] { ipacl_show_ha(7, &ha); }), expected);
}

TEST_F(ShowIpt, ParameterList) {
    const uint32_t word = 0xbeef;
    ipacl_param with_value{7, 0x1a, &word};
    ipacl_param without_value{12345, 0xff, nullptr};
    ipacl_param *entries[] = {&with_value, &without_value, nullptr};
    const ipacl_param_list list{3, entries};

    auto pointer = [](const void *p) {
        char text[64];
        snprintf(text, sizeof text, "%p", p);
        std::string s(text);
        s.resize(10, ' ');
        return s;
    };
    const std::string expected =
        "\n# Parameters = 3  (All fields in hex except Token)\n\n"
        "Pointer       Token    Type    Value\n"
        "----------    -----    ----    -----\n" +
        pointer(&with_value) + "    7        1a      0000beef \n" + pointer(&without_value) +
        "    12345    ff      \n" + pointer(nullptr) + "\n";
    EXPECT_EQ(output_of([&] { ipacl_show_p(&list); }), expected);
}

TEST_F(ShowIpt, NullRecordsPrintNothing) {
    const std::string text = output_of([] {
        ipacl_show_ipt_rule(nullptr);
        ipacl_show_ipt_entry(nullptr);
        ipacl_show_ipt_tcp(nullptr);
        ipacl_show_ipt_udp(nullptr);
        ipacl_show_ipt_icmp(nullptr);
        ipacl_show_ipt_tos(nullptr);
        ipacl_show_ipt_log(nullptr);
        ipacl_show_rule_info(1, nullptr);
        ipacl_show_ipt_chain(1, nullptr);
        ipacl_show_ha(1, nullptr);
        ipacl_show_p(nullptr);
    });
    EXPECT_EQ(text, "");
}
