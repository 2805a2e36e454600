// Record, iptables, high-availability and parameter-list displays, block and
// table style, golden texts compared whole.  The profile, binding and filter
// blocks are checked inside the records that carry them; the tables share one
// engine, so one table per kind of column.
#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <string>

#include <ipacl/ipacl.h>

#include "capture_stdout.h"
#include "platform_double.h"
#include "sample_records.h"

namespace {

// "Fri Jan  1 13:05:09 1971" in UTC.
constexpr uint32_t kCreated = 31583109;

using ipacl_double::output_of;

using ipacl_sample::binding;
using ipacl_sample::profile;

const char *const kProfBlock = R"(----------------------  
Protocol Profile        acl1
Profile Type            extended
Last Filter Index       7
SNMP Status             active
----------------------  
)";
const char *const kIfProfBlock = R"(----------------------  
Interface               if26(0x1a)
Direction               out
Protocol Profile        web
SNMP Status             active
----------------------  
)";
const char *const kFilterBlock = R"(----------------------  
Protocol Profile        acl1
Filter Index            10
Order Position (N/A)    2
Action                  permit
Address Type            ipV4
Protocol                tcp
Source Address          10.1.0.0/16
Destination Address     any
Source Port Low         0
Source Port High        65535
Destination Port Low    www
Destination Port High   www
ICMP Type               any-icmp
ICMP Code               any-code
Precedence              any-prec
TOS                     any-tos
Established             False
Log Deny                True
Fragments               False
SNMP Status             active
----------------------  
Source Port Operation   any-port-op
Dest Port Operation     eq
Number Packets          4294967298
Number Bytes            4567
----------------------  
)";

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

class Show : public ::testing::Test {
  protected:
    void SetUp() override {
        ipacl_double::reset();
        setenv("TZ", "UTC", 1);
        tzset();
    }
};

}  // namespace

TEST_F(Show, AccessListWithBitmapAndEntryTable) {
    ipacl_list list{};
    list.prof = profile();
    list.creation_time = kCreated;
    list.list_type = IPACL_LIST_TYPE_ACTIVE;
    strcpy(list.chain, "acl_in");
    list.data_count = 2;
    list.group_count = 1;
    list.filter_bitmap[0] = 0x05;
    list.filter_bitmap[31] = 0x80;
    list.filter_index_by_entry[0] = 10;
    list.filter_index_by_entry[2] = 20;
    list.filter_index_by_entry[255] = 4000000000u;
    list.max_filter_index = 20;
    list.access_data = 0x1000;
    list.this_list = 0xdeadbeef;
    EXPECT_EQ(output_of([&] { ipacl_show_access_list(&list); }),
              R"(
Creation Time           Fri Jan  1 13:05:09 1971
Type                    active
Chain                   acl_in
# Data                  2
# Groups                1
Max Filter Index        20
Access Data             0x1000
Access Group            (nil)
This Access List        0xdeadbeef
Next Access List        (nil)
)" + std::string(kProfBlock) +
                  R"(Filter Bitmap           05 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 
                        00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 80 
Entry      Filter Index
-----      ------------
0          10
2          20
255        4000000000
)");

    // No entry in use: the table's two header lines only.  An unknown list
    // type leaves its value empty.
    memset(list.filter_index_by_entry, 0, sizeof list.filter_index_by_entry);
    list.list_type = 3;
    const std::string text = output_of([&] { ipacl_show_access_list(&list); });
    EXPECT_NE(text.find("\nType                    \n"), std::string::npos) << text;
    EXPECT_TRUE(text.ends_with("Entry      Filter Index\n-----      ------------\n")) << text;
}

TEST_F(Show, AccessGroupDataAndManager) {
    ipacl_group g{};
    g.binding = binding();
    g.creation_time = kCreated;
    strcpy(g.chain, "chain_x");
    g.rule_id = IPACL_ENTRY_ID_NONE;
    strcpy(g.kernel_if, "eth0");
    g.access_list = 0x10;
    g.access_intf = 0x20;
    g.this_group = 0x30;
    g.next_global_group = 0xffffffff;
    EXPECT_EQ(output_of([&] { ipacl_show_access_group(&g); }), R"(
Creation Time           Fri Jan  1 13:05:09 1971
Chain                   chain_x
Rule #                  none
Kernel Interface        eth0
Access List             0x10
Access Interface        0x20
This Access Group       0x30
Next Access Group       (nil)
Next Global Group       0xffffffff
)" + std::string(kIfProfBlock));

    // A flag of 2 is not "True" (only exactly 1 is).
    ipacl_data d{};
    d.filter = ipacl_sample::filter();
    d.filter.established = 2;
    d.filter.log_deny = 1;
    d.filter.packets = 0x100000002ull;
    d.filter.bytes = 4567;
    d.creation_time = kCreated;
    strcpy(d.chain, "acl_in");
    d.rule_id = IPACL_RULE_ID_NONE;
    d.access_list = 0x1000;
    d.this_data = 0x2000;
    EXPECT_EQ(output_of([&] { ipacl_show_access_data(&d); }), std::string(R"(
Creation Time           Fri Jan  1 13:05:09 1971
Chain                   acl_in
Rule #                  none
Access List             0x1000
This Access Data        0x2000
Next Access Data        (nil)
)") + kFilterBlock);

    ipacl_mgmt m{kCreated, 3, 4, 5, 0x100, 0, 0x300, -2};
    EXPECT_EQ(output_of([&] { ipacl_show_access_mgmt(&m); }), R"(
Creation Time           Fri Jan  1 13:05:09 1971
# Lists                 3
# Interfaces            4
# Groups                5
Access List             0x100
Access Interface        (nil)
Access Group            0x300
IPv6 references         -2
)");
}

TEST_F(Show, ListTables) {
    ipacl_list_use use{};
    strcpy(use.name, "acl1");
    use.filter_count = 3;
    use.if_count = 12345678;  // wider than its column: printed whole
    use.snmp_status = IPACL_SNMP_STATUS_NOT_IN_SERVICE;
    use.creation_time = kCreated;
    const std::string use_text = R"(                              #       #
Access List Name/Number       Filters IF      Status    Creation Time
----------------------------- ------- ------- --------- -------------
acl1                          3       12345678 not-in-sr Fri Jan  1 13:05:09 1971
)";
    EXPECT_EQ(output_of([&] { ipacl_show_list_use(1, &use); }), use_text);
    const std::string use_row = use_text.substr(use_text.rfind('\n', use_text.size() - 2) + 1);
    EXPECT_EQ(output_of([&] { ipacl_show_list_use(2, &use); }), use_row);

    ipacl_list_key key{};
    strcpy(key.name, "a_very_long_profile_name");
    key.creation_time = kCreated;
    key.list_type = IPACL_LIST_TYPE_WAITING;
    ipacl_list_key other{};
    strcpy(other.name, "x");
    other.creation_time = kCreated;
    other.list_type = 3;  // no text: an empty column
    EXPECT_EQ(output_of([&] {
                  ipacl_show_list_key(1, &key);
                  ipacl_show_list_key(0, &other);
              }),
              R"(Protocol Profile    Type       Creation time
----------------    -------    -------------
a_very_long_prof    waiting    Fri Jan  1 13:05:09 1971
x                              Fri Jan  1 13:05:09 1971
)");
}

TEST_F(Show, GroupDataAndInterfaceTables) {
    ipacl_group_info gi{binding(), kCreated, 12};
    EXPECT_EQ(output_of([&] { ipacl_show_group_info(1, &gi); }), R"(
Rule  Kernel Interface  Direction  Protocol Profile  Creation time
----  ----------------  ---------  ----------------  -------------
12    if26            (0x1a)  out        web               Fri Jan  1 13:05:09 1971
)");

    ipacl_data_info di{};
    strcpy(di.prof_name, "acl1");
    di.filter_index = 7;
    di.order = 0;
    di.src_family = 1;
    memcpy(di.src_addr, "\x0a\x01\x00\x00", 4);
    di.src_prefix_len = 16;
    di.dst_family = 2;
    memcpy(di.dst_addr, "\x20\x01\x0d\xb8\x12\x34\x56\x78", 8);
    di.dst_prefix_len = 64;
    di.protocol = 58;
    di.packets = 0x100000002ull;
    di.rule_id = 12345;  // cut to its 4 columns
    EXPECT_EQ(output_of([&] { ipacl_show_data_info(1, &di); }), R"(
Rule Order Index Proto Source IP          Dest IP            # Packets
---- ----- ----- ----- ------------------ ------------------ ---------
1234 no-or 7     icmp6 10.1.0.0/16        2001:db8:1234:5678 4294967298
)");

    ipacl_intf_info ii{};
    ii.if_index = 3;
    strcpy(ii.kernel_if, "eth+");
    ii.marker = 0xab;
    ii.creation_time = kCreated;
    ii.rule_id = IPACL_ENTRY_ID_NONE;
    EXPECT_EQ(output_of([&] { ipacl_show_intf_info(1, &ii); }), R"(
Rule  Interface         Kernel Interface  Mark  Creation Time
----  ----------------  ----------------  ----  -------------
none  if3               eth+              00ab  Fri Jan  1 13:05:09 1971
)");
}

TEST_F(Show, IptEntryMarksInversionsAndWildcards) {
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
    other.flags = 0;
    EXPECT_NE(
        output_of([&] { ipacl_show_ipt_entry(&other); }).find("\nFragment                -\n"),
        std::string::npos);
}

TEST_F(Show, IptTcpFlagsInFixedOrder) {
    EXPECT_EQ(output_of([] { ipacl_show_tcp_flags("X ", 0x12, 0); }), "X ACK SYN \n");
    EXPECT_EQ(output_of([] { ipacl_show_tcp_flags("", 0xFF, 2); }),
              "!URG !ACK !PSH !RST !SYN !FIN \n");
    EXPECT_EQ(output_of([] { ipacl_show_tcp_flags(nullptr, 0xC1, 0); }), "FIN \n");
    // A label longer than the line is cut, never overrun.
    const std::string label(300, 'L');
    EXPECT_EQ(output_of([&] { ipacl_show_tcp_flags(label.c_str(), 0x3F, 1); }),
              std::string(255, 'L') + "\n");
}

TEST_F(Show, IptRuleShowsKnownMatchesInSlotOrder) {
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

TEST_F(Show, IptRuleSummaryAndChainTables) {
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

TEST_F(Show, IptHighAvailabilityUses23Columns) {
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

TEST_F(Show, IptParameterList) {
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
    const ipacl_param_list empty{0, nullptr};
    EXPECT_TRUE(output_of([&] { ipacl_show_p(&empty); }).ends_with("----\n"));
}

TEST_F(Show, NullRecordsPrintNothing) {
    const std::string text = output_of([] {
        ipacl_show_prof(nullptr);
        ipacl_show_if_prof(nullptr);
        ipacl_show_filter(nullptr);
        ipacl_show_access_list(nullptr);
        ipacl_show_access_group(nullptr);
        ipacl_show_access_intf(nullptr);
        ipacl_show_access_data(nullptr);
        ipacl_show_access_mgmt(nullptr);
        ipacl_show_list_use(1, nullptr);
        ipacl_show_list_key(1, nullptr);
        ipacl_show_group_key(1, nullptr);
        ipacl_show_group_info(1, nullptr);
        ipacl_show_data_key(1, nullptr);
        ipacl_show_data_info(1, nullptr);
        ipacl_show_intf_info(1, nullptr);
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
