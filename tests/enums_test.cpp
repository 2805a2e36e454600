// Enumeration texts: named values, fallbacks and the deliberate oddities.
#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include <ipacl/ipacl.h>

namespace {

// Runs one text function and returns its text; the result goes to *ret.
template <typename Fn, typename V>
std::string text(Fn fn, V value, uint32_t *ret = nullptr) {
    char buf[64];
    memset(buf, 'X', sizeof buf);
    uint32_t r = fn(value, buf);
    if (ret) *ret = r;
    return buf;
}

}  // namespace

TEST(Enums, FallbackFormsDifferPerEnumeration) {
    EXPECT_EQ(text(ipacl_str_dir, 3u), "in");
    EXPECT_EQ(text(ipacl_str_dir, 4u), "out");
    EXPECT_EQ(text(ipacl_str_dir, 6u), "6h[dir]");
    EXPECT_EQ(text(ipacl_str_dir, 0x10u), "10h[dir]");
    EXPECT_EQ(text(ipacl_str_prof_type, 0xFFFFFFFFu), "any-prof-type");
    EXPECT_EQ(text(ipacl_str_prof_type, 0xFFFFFFFEu), "-2h[prof-type]");
    EXPECT_EQ(text(ipacl_str_prof_type, 0u), "0h[prof-type]");
    EXPECT_EQ(text(ipacl_str_snmp_status, 0u), "0h[rs]");
    EXPECT_EQ(text(ipacl_str_action, 0u), "0h[action]");
    EXPECT_EQ(text(ipacl_str_addr_type, 0u), "0h[addr-type]");
    EXPECT_EQ(text(ipacl_str_quen_msg, 0xFFFFFFFFu), "ffffffffh[quen]");
    EXPECT_EQ(text(ipacl_str_dalve_type, 9u), "9h[dalve]");
    EXPECT_EQ(text(ipacl_str_tos, 3u), "3");
    EXPECT_EQ(text(ipacl_str_tos, 0xFFFFFFFFu), "any-tos");
    EXPECT_EQ(text(ipacl_str_prec, 8u), "8");
    EXPECT_EQ(text(ipacl_str_icmp_type, 4u), "4");
    EXPECT_EQ(text(ipacl_str_icmp_type, 0xFFFFFFFFu), "any-icmp");
    EXPECT_EQ(text(ipacl_str_pm_phy_layer, uint8_t{7}), "7(phy-layer)");
    EXPECT_EQ(text(ipacl_str_vni_event, 0u), "created");
    EXPECT_EQ(text(ipacl_str_vni_event, 2u), "2(vni-event)");
    EXPECT_EQ(text(ipacl_str_avm_event, 0u), "0(avm-event)");
    EXPECT_EQ(text(ipacl_str_avm_event, 2u), "removed");
    EXPECT_EQ(text(ipacl_str_sync_op, 3u), "delete-all");
    EXPECT_EQ(text(ipacl_str_conf_op, 3u), "clear");
    EXPECT_EQ(text(ipacl_str_conf_op, 4u), "delete-all");
    EXPECT_EQ(text(ipacl_str_addr_type, 1u), "ipV4");
    EXPECT_EQ(text(ipacl_str_mem_type, 11u), "sync intf");
    EXPECT_EQ(text(ipacl_str_ip_proto, 3u), "3h[ip-proto]");
    EXPECT_EQ(text(ipacl_str_ipt_op, 3u), "3h[ipt-op]");
}

TEST(Enums, ResultIsTheCharacterCount) {
    uint32_t ret = 0;
    EXPECT_EQ(text(ipacl_str_access_type, 11u, &ret), "access-mgmt");
    EXPECT_EQ(ret, 11u);
    EXPECT_EQ(text(ipacl_str_kest_type, 0xABCu, &ret), "abch[kest-type]");
    EXPECT_EQ(ret, 15u);
}

TEST(Enums, AccessOpNamesSingleOperationsOnly) {
    EXPECT_EQ(text(ipacl_str_access_op, 0x10u), "10h[access-op]");
    EXPECT_EQ(text(ipacl_str_access_op, 0x80u), "80h[access-op]");
    EXPECT_EQ(text(ipacl_str_access_op, 0x40000u), "40000h[access-op]");
    EXPECT_EQ(text(ipacl_str_access_op, 0x3u), "3h[access-op]");
    EXPECT_EQ(text(ipacl_str_access_op, 0x10000000u), "delete list");
}

TEST(Enums, ListTypeLeavesTheBufferForUnknownValues) {
    char buf[8] = "keep";
    ipacl_str_list_type(3, buf);
    EXPECT_STREQ(buf, "keep");
    ipacl_str_list_type(2, buf);
    EXPECT_STREQ(buf, "waiting");
}

TEST(Enums, ProtocolTextsReturnTheNumberPlusOne) {
    uint32_t ret = 0;
    EXPECT_EQ(text(ipacl_str_proto, 58u, &ret), "icmp6");
    EXPECT_EQ(ret, 59u);
    EXPECT_EQ(text(ipacl_str_proto, 0xFFFFFFFFu, &ret), "ip");
    EXPECT_EQ(ret, 0u);
    EXPECT_EQ(text(ipacl_str_proto, 2u, &ret), "2");
    EXPECT_EQ(ret, 1u);
    EXPECT_EQ(text(ipacl_str_proto, 41u), "ipv6");
    EXPECT_EQ(text(ipacl_str_ipv6_proto, 0xFFFFFFFFu), "ipv6");
    EXPECT_EQ(text(ipacl_str_ipv6_proto, 6u, &ret), "tcp");
    EXPECT_EQ(ret, 7u);
    EXPECT_EQ(text(ipacl_str_ipv6_proto, 300u, &ret), "300");
    EXPECT_EQ(ret, 3u);
}

TEST(Enums, PortNames) {
    EXPECT_EQ(text(ipacl_str_port_num, 143u), "http");
    EXPECT_EQ(text(ipacl_str_port_num, 80u), "www");
    EXPECT_EQ(text(ipacl_str_port_num, 443u), "443");
    EXPECT_EQ(text(ipacl_str_dst_port_num, 20u), "dst_ftp-data");
    EXPECT_EQ(text(ipacl_str_dst_port_num, 5989u), "dst_wbem-https");
    EXPECT_EQ(text(ipacl_str_dst_port_num, 443u), "443");
}

TEST(Enums, LogFlags) {
    auto flags = [](uint8_t v) {
        char buf[64] = "junk";
        ipacl_str_log_flag(v, buf);
        return std::string(buf);
    };
    EXPECT_EQ(flags(0x00), "none");
    EXPECT_EQ(flags(0x08), "");
    EXPECT_EQ(flags(0x20), "");
    EXPECT_EQ(flags(0x11), "11h[log-flag]");
    EXPECT_EQ(flags(0x80), "80h[log-flag]");
    EXPECT_EQ(flags(0x03), "tcp-seq-no tcp-options ");
    EXPECT_EQ(flags(0x07), "tcp-seq-no tcp-options ip-options ");
    EXPECT_EQ(flags(0x0C), "ip-options ");
}
