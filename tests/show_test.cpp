// Record displays, block and table style, golden texts compared whole.  The
// profile, binding and filter blocks are checked inside the records that
// carry them.
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

TEST_F(Show, AccessGroupInterfaceDataAndManager) {
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

    ipacl_intf i{};
    i.if_index = 3;
    i.creation_time = kCreated;
    i.rule_id = 7;
    strcpy(i.kernel_if, "eth1");
    i.marker = 0xab;
    i.this_intf = 0x40;
    EXPECT_EQ(output_of([&] { ipacl_show_access_intf(&i); }), R"(
Creation Time           Fri Jan  1 13:05:09 1971
Rule #                  7
Interface               if3
Kernel Interface        eth1
Marker                  00ab
This Access Interface   0x40
Next Access Interface   (nil)
)");

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
    ipacl_group_key gk{5, IPACL_DIR_IN, kCreated, IPACL_ENTRY_ID_NONE};
    EXPECT_EQ(output_of([&] { ipacl_show_group_key(1, &gk); }), R"(
Rule    Interface           Direction    Creation time
----    ----------------    ---------    -------------
none    if5                 in           Fri Jan  1 13:05:09 1971
)");

    ipacl_group_info gi{binding(), kCreated, 12};
    EXPECT_EQ(output_of([&] { ipacl_show_group_info(1, &gi); }), R"(
Rule  Kernel Interface  Direction  Protocol Profile  Creation time
----  ----------------  ---------  ----------------  -------------
12    if26            (0x1a)  out        web               Fri Jan  1 13:05:09 1971
)");

    ipacl_data_key dk{};
    strcpy(dk.filter_key.prof_name, "acl1");
    dk.creation_time = kCreated;
    dk.rule_id = IPACL_RULE_ID_NONE;
    EXPECT_EQ(output_of([&] { ipacl_show_data_key(1, &dk); }), R"(
Rule    Protocol Profile    Filter Index    Creation time
----    ----------------    ------------    -------------
none    acl1                no-index        Fri Jan  1 13:05:09 1971
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
    });
    EXPECT_EQ(text, "");
}
