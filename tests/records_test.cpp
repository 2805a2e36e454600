// Record layouts against the kernel's own netfilter records, and the
// exported name buffers.
#include <gtest/gtest.h>

#include <linux/netfilter/xt_tcpudp.h>
#include <linux/netfilter_ipv4/ip_tables.h>

#include <ipacl/ipacl.h>

#define SAME_OFFSET(ours, field, theirs, kfield) \
    EXPECT_EQ(offsetof(ours, field), offsetof(theirs, kfield)) << #field

TEST(Records, IptEntryMatchesTheKernelEntryHeader) {
    // The kernel's entry ends in its match/target area; ours stops before it.
    EXPECT_EQ(sizeof(ipacl_ipt_entry), offsetof(struct ipt_entry, elems));
    SAME_OFFSET(ipacl_ipt_entry, src, struct ipt_entry, ip.src);
    SAME_OFFSET(ipacl_ipt_entry, dst, struct ipt_entry, ip.dst);
    SAME_OFFSET(ipacl_ipt_entry, src_mask, struct ipt_entry, ip.smsk);
    SAME_OFFSET(ipacl_ipt_entry, dst_mask, struct ipt_entry, ip.dmsk);
    SAME_OFFSET(ipacl_ipt_entry, in_if, struct ipt_entry, ip.iniface);
    SAME_OFFSET(ipacl_ipt_entry, out_if, struct ipt_entry, ip.outiface);
    SAME_OFFSET(ipacl_ipt_entry, in_if_mask, struct ipt_entry, ip.iniface_mask);
    SAME_OFFSET(ipacl_ipt_entry, out_if_mask, struct ipt_entry, ip.outiface_mask);
    SAME_OFFSET(ipacl_ipt_entry, proto, struct ipt_entry, ip.proto);
    SAME_OFFSET(ipacl_ipt_entry, flags, struct ipt_entry, ip.flags);
    SAME_OFFSET(ipacl_ipt_entry, inv_flags, struct ipt_entry, ip.invflags);
    SAME_OFFSET(ipacl_ipt_entry, nfcache, struct ipt_entry, nfcache);
    SAME_OFFSET(ipacl_ipt_entry, target_offset, struct ipt_entry, target_offset);
    SAME_OFFSET(ipacl_ipt_entry, next_offset, struct ipt_entry, next_offset);
    SAME_OFFSET(ipacl_ipt_entry, comefrom, struct ipt_entry, comefrom);
    SAME_OFFSET(ipacl_ipt_entry, packets, struct ipt_entry, counters.pcnt);
    SAME_OFFSET(ipacl_ipt_entry, bytes, struct ipt_entry, counters.bcnt);
}

TEST(Records, MatchInfosMatchTheKernelMatches) {
    EXPECT_EQ(sizeof(ipacl_ipt_tcp), sizeof(struct xt_tcp));
    SAME_OFFSET(ipacl_ipt_tcp, src_port_low, struct xt_tcp, spts);
    SAME_OFFSET(ipacl_ipt_tcp, dst_port_low, struct xt_tcp, dpts);
    SAME_OFFSET(ipacl_ipt_tcp, option, struct xt_tcp, option);
    SAME_OFFSET(ipacl_ipt_tcp, flag_mask, struct xt_tcp, flg_mask);
    SAME_OFFSET(ipacl_ipt_tcp, flag_cmp, struct xt_tcp, flg_cmp);
    SAME_OFFSET(ipacl_ipt_tcp, inv_flags, struct xt_tcp, invflags);

    EXPECT_EQ(sizeof(ipacl_ipt_udp), sizeof(struct xt_udp));
    SAME_OFFSET(ipacl_ipt_udp, src_port_low, struct xt_udp, spts);
    SAME_OFFSET(ipacl_ipt_udp, dst_port_low, struct xt_udp, dpts);
    SAME_OFFSET(ipacl_ipt_udp, inv_flags, struct xt_udp, invflags);

    EXPECT_EQ(sizeof(ipacl_ipt_icmp), sizeof(struct ipt_icmp));
    SAME_OFFSET(ipacl_ipt_icmp, icmp_type, struct ipt_icmp, type);
    SAME_OFFSET(ipacl_ipt_icmp, code_low, struct ipt_icmp, code);
    SAME_OFFSET(ipacl_ipt_icmp, inv_flags, struct ipt_icmp, invflags);
}

TEST(Records, NameBuffersAreZeroAtLoadAndWritable) {
    const char *buffers[] = {ipacl_chain_in,      ipacl_chain_out,   ipacl_chain_fwd,
                             ipacl_target_accept, ipacl_target_drop, ipacl_target_queue,
                             ipacl_target_return};
    for (const char *b : buffers) EXPECT_EQ(b[0], '\0');
    EXPECT_EQ(sizeof ipacl_chain_in, 32u);
    EXPECT_EQ(sizeof ipacl_target_return, 30u);
    for (char c : ipacl_chain_fwd) EXPECT_EQ(c, '\0');
    strcpy(ipacl_chain_in, "INPUT");
    EXPECT_STREQ(ipacl_chain_in, "INPUT");
}

TEST(Records, StrZeroClearsOnlyTheFirstByte) {
    char buf[4] = {'a', 'b', 'c', '\0'};
    ipacl_str_zero(buf);
    EXPECT_EQ(buf[0], '\0');
    EXPECT_EQ(buf[1], 'b');
    ipacl_str_zero(nullptr);  // no effect, no crash
}
