// Enumeration texts: named values, fallbacks and the deliberate oddities.
#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include <ipacl/ipacl.h>

namespace {

constexpr uint64_t kAnyRet = ~uint64_t{0};

struct TextCase {
    uint32_t (*fn)(uint32_t, char *);
    uint32_t value;
    const char *text;
    uint64_t ret = kAnyRet;  // checked where it is not the character count
};

// Fallback forms differ per enumeration; protocol texts return the number
// plus one; access-op names single operations only.
const TextCase kTexts[] = {{ipacl_str_dir, 3, "in"},
                           {ipacl_str_dir, 0x10, "10h[dir]"},
                           {ipacl_str_prof_type, 0xFFFFFFFF, "any-prof-type"},
                           {ipacl_str_prof_type, 0xFFFFFFFE, "-2h[prof-type]"},
                           {ipacl_str_addr_type, 1, "ipV4"},
                           {ipacl_str_quen_msg, 0xFFFFFFFF, "ffffffffh[quen]"},
                           {ipacl_str_tos, 3, "3"},
                           {ipacl_str_icmp_type, 0xFFFFFFFF, "any-icmp"},
                           {ipacl_str_vni_event, 2, "2(vni-event)"},
                           {ipacl_str_avm_event, 0, "0(avm-event)"},
                           {ipacl_str_avm_event, 2, "removed"},
                           {ipacl_str_conf_op, 3, "clear"},
                           {ipacl_str_conf_op, 4, "delete-all"},
                           {ipacl_str_mem_type, 11, "sync intf"},
                           {ipacl_str_access_type, 11, "access-mgmt", 11},
                           {ipacl_str_kest_type, 0xABC, "abch[kest-type]", 15},
                           {ipacl_str_access_op, 0x80, "80h[access-op]"},
                           {ipacl_str_access_op, 0x3, "3h[access-op]"},
                           {ipacl_str_access_op, 0x10000000, "delete list"},
                           {ipacl_str_proto, 58, "icmp6", 59},
                           {ipacl_str_proto, 0xFFFFFFFF, "ip", 0},
                           {ipacl_str_proto, 2, "2", 1},
                           {ipacl_str_ipv6_proto, 0xFFFFFFFF, "ipv6"},
                           {ipacl_str_ipv6_proto, 300, "300", 3},
                           {ipacl_str_port_num, 143, "http"},
                           {ipacl_str_port_num, 443, "443"},
                           {ipacl_str_dst_port_num, 5989, "dst_wbem-https"}};

}  // namespace

TEST(Enums, TextsFallbacksAndResults) {
    for (const TextCase &c : kTexts) {
        char buf[64];
        memset(buf, 'X', sizeof buf);
        const uint32_t ret = c.fn(c.value, buf);
        EXPECT_STREQ(buf, c.text) << c.value;
        if (c.ret != kAnyRet) {
            EXPECT_EQ(ret, c.ret) << c.text;
        }
    }
    char buf[16] = "keep";
    ipacl_str_list_type(3, buf);  // unknown: the buffer stays as it was
    EXPECT_STREQ(buf, "keep");
    ipacl_str_pm_phy_layer(7, buf);
    EXPECT_STREQ(buf, "7(phy-layer)");
}

TEST(Enums, LogFlags) {
    const struct {
        uint8_t flags;
        const char *text;
    } cases[] = {{0x00, "none"},
                 {0x08, ""},
                 {0x11, "11h[log-flag]"},
                 {0x07, "tcp-seq-no tcp-options ip-options "},
                 {0x0C, "ip-options "}};
    for (const auto &c : cases) {
        char buf[64] = "junk";
        ipacl_str_log_flag(c.flags, buf);
        EXPECT_STREQ(buf, c.text) << int{c.flags};
    }
}
