// Element sizes of the typed messages, the stored-record sizes and their
// check, and record layouts against the kernel's own netfilter records.
#include <gtest/gtest.h>

#include <linux/netfilter/xt_tcpudp.h>
#include <linux/netfilter_ipv4/ip_tables.h>

#include <cstring>

#include <ipacl/ipacl.h>

namespace {

TEST(WireSizes, TableEdgesAndIrregularities) {
    EXPECT_EQ(ipacl_sizeof_access(0), 0u);
    EXPECT_EQ(ipacl_sizeof_access(1), 290u);
    EXPECT_EQ(ipacl_sizeof_access(11), 32u);
    EXPECT_EQ(ipacl_sizeof_access(12), 0u);
    EXPECT_EQ(ipacl_sizeof_access(0xFFFFFFFF), 0u);
    EXPECT_EQ(ipacl_sizeof_in(2), 12u);
    EXPECT_EQ(ipacl_sizeof_in(3), 0u);
    // By the exact value, unlike the response converter's flag bits.
    EXPECT_EQ(ipacl_sizeof_ipt(32), 290u);
    EXPECT_EQ(ipacl_sizeof_ipt(48), 0u);
    // The log info is sized under 13, not 10.
    EXPECT_EQ(ipacl_sizeof_ipt_match(10), 0u);
    EXPECT_EQ(ipacl_sizeof_ipt_match(13), 32u);
    EXPECT_EQ(ipacl_sizeof_ipt_match(14), 0u);
    EXPECT_EQ(ipacl_sizeof_kest_key(3), 16u);
    EXPECT_EQ(ipacl_sizeof_kest_val(2), 258u);
    EXPECT_EQ(ipacl_sizeof_kest_val(4), 0u);

    char err[IPACL_ERR_TEXT_SIZE];
    struct Case {
        uint32_t type, size, rc;
        const char *msg;
    } cases[] = {
        {1, 99, IPACL_E_BAD_ARG, "type list bad size 99"},
        {1, 100, IPACL_OK, ""},
        {2, 196, IPACL_OK, ""},  // below the 258-byte value, and accepted
        {3, 103, IPACL_E_BAD_ARG, "type group bad size 103"},
        {4, 1000, IPACL_E_BAD_ARG, "bad type 4"},
        {0, 0, IPACL_E_BAD_ARG, "bad type 0"},
    };
    for (const Case &c : cases) {
        std::strcpy(err, "stale");
        EXPECT_EQ(ipacl_sizeof_kest_chk(c.type, c.size, err), c.rc) << c.type << " " << c.size;
        EXPECT_STREQ(err, c.msg);
        EXPECT_EQ(ipacl_sizeof_kest_chk(c.type, c.size, nullptr), c.rc);
    }
}

#define SAME_OFFSET(ours, field, theirs, kfield) \
    EXPECT_EQ(offsetof(ours, field), offsetof(theirs, kfield)) << #field

TEST(Records, IptablesRecordsMatchTheKernels) {
    // The kernel's entry ends in its match/target area; ours stops before it.
    EXPECT_EQ(sizeof(ipacl_ipt_entry), offsetof(struct ipt_entry, elems));
    SAME_OFFSET(ipacl_ipt_entry, dst, struct ipt_entry, ip.dst);
    SAME_OFFSET(ipacl_ipt_entry, src_mask, struct ipt_entry, ip.smsk);
    SAME_OFFSET(ipacl_ipt_entry, out_if, struct ipt_entry, ip.outiface);
    SAME_OFFSET(ipacl_ipt_entry, in_if_mask, struct ipt_entry, ip.iniface_mask);
    SAME_OFFSET(ipacl_ipt_entry, proto, struct ipt_entry, ip.proto);
    SAME_OFFSET(ipacl_ipt_entry, inv_flags, struct ipt_entry, ip.invflags);
    SAME_OFFSET(ipacl_ipt_entry, nfcache, struct ipt_entry, nfcache);
    SAME_OFFSET(ipacl_ipt_entry, next_offset, struct ipt_entry, next_offset);
    SAME_OFFSET(ipacl_ipt_entry, comefrom, struct ipt_entry, comefrom);
    SAME_OFFSET(ipacl_ipt_entry, bytes, struct ipt_entry, counters.bcnt);

    EXPECT_EQ(sizeof(ipacl_ipt_tcp), sizeof(struct xt_tcp));
    SAME_OFFSET(ipacl_ipt_tcp, dst_port_low, struct xt_tcp, dpts);
    SAME_OFFSET(ipacl_ipt_tcp, option, struct xt_tcp, option);
    SAME_OFFSET(ipacl_ipt_tcp, flag_cmp, struct xt_tcp, flg_cmp);
    SAME_OFFSET(ipacl_ipt_tcp, inv_flags, struct xt_tcp, invflags);
    EXPECT_EQ(sizeof(ipacl_ipt_udp), sizeof(struct xt_udp));
    SAME_OFFSET(ipacl_ipt_udp, dst_port_low, struct xt_udp, dpts);
    EXPECT_EQ(sizeof(ipacl_ipt_icmp), sizeof(struct ipt_icmp));
    SAME_OFFSET(ipacl_ipt_icmp, code_low, struct ipt_icmp, code);
}

TEST(Records, NameBuffersAreZeroAtLoadAndWritable) {
    for (const char *b : {ipacl_chain_in, ipacl_chain_out, ipacl_chain_fwd, ipacl_target_accept,
                          ipacl_target_drop, ipacl_target_queue, ipacl_target_return})
        EXPECT_EQ(b[0], '\0');
    EXPECT_EQ(sizeof ipacl_chain_in, 32u);
    EXPECT_EQ(sizeof ipacl_target_return, 30u);
    strcpy(ipacl_chain_in, "INPUT");
    EXPECT_STREQ(ipacl_chain_in, "INPUT");

    char buf[4] = {'a', 'b', 'c', '\0'};
    ipacl_str_zero(buf);  // clears only the first byte
    EXPECT_EQ(buf[0], '\0');
    EXPECT_EQ(buf[1], 'b');
    ipacl_str_zero(nullptr);
}

}  // namespace
