// Real packets between two private network namespaces: the manager enforces
// filters on its end of a veth pair through the library, the peer sends;
// each packet passes or is dropped as its filter says, and the counters
// read back through the library's query equal the packets sent.
#include "netns_pair.h"
#include "probes.h"
#include "xtables_reach.h"

#include "parse/filter_parse.h"

#include <ipacl/enums.h>
#include <ipacl/netfilter.h>

#include <gtest/gtest.h>

#include <cstring>
#include <utility>
#include <vector>

namespace ipacl_testbed {
namespace {

using counts = std::vector<uint64_t>;

class Packets : public ::testing::Test {
  protected:
    void SetUp() override {
        netns_pair_result made = netns_pair::create();
        if (made.pair && !xtables_reachable(*made.pair, made.pair->manager(), made.why))
            made.refused = true;
        if (made.refused) GTEST_SKIP() << "kernel refused: " << made.why;
        ASSERT_TRUE(made.pair) << made.why;
        pair_ = std::move(made.pair);
    }

    const netns_pair &pair() const { return *pair_; }
    const netns_side &manager() const { return pair_->manager(); }
    const netns_side &peer() const { return pair_->peer(); }

    // Filters of the language of `ipacl check`, all of the family of the
    // first, as the ACL of `dir` on the manager's interface; "" on success,
    // else the parser's or the library's message.
    std::string enforce(std::initializer_list<const char *> lines, uint32_t dir) {
        std::vector<ipacl_filter> records;
        ipacl_tool::parse_options options;
        for (const char *line : lines) {
            options.index = static_cast<uint32_t>(records.size() + 1);
            ipacl_tool::parse_result parsed = ipacl_tool::parse_filter(line, options);
            if (!parsed.ok) return std::string(line) + ": " + parsed.error.message;
            records.push_back(parsed.filter);
        }
        netns_scope inside(manager().ns_fd, pair().home_fd());
        char err[IPACL_NF_ERR_TEXT_SIZE] = {};
        uint32_t rc = ipacl_nf_apply(records.front().addr_type, dir, manager().ifname.c_str(),
                                     records.data(), static_cast<uint32_t>(records.size()), err);
        return rc == IPACL_OK ? "" : err;
    }

    // The packet counters of the IPv4 ACL chain of `dir` from the live
    // table, rule by rule, the implicit deny last.
    counts counters(uint32_t dir) const {
        char chain[IPACL_CHAIN_NAME_SIZE] = {}, err[IPACL_NF_ERR_TEXT_SIZE];
        ipacl_nf_chain_name(dir, chain, err);
        netns_scope inside(manager().ns_fd, pair().home_fd());
        counts packets;
        std::vector<uint8_t> buffer(1 << 16);
        auto *rsp = reinterpret_cast<ipacl_ipt_rsp *>(buffer.data());
        if (ipacl_nf_query(IPACL_IPT_OP_ALL_RULES, chain, 0, rsp, 1 << 16, err) != IPACL_OK)
            return packets;
        for (uint32_t i = 0; i < rsp->count; ++i) {
            ipacl_rule_info rule;
            std::memcpy(&rule, rsp->records + i * sizeof rule, sizeof rule);
            packets.push_back(rule.entry.packets);
        }
        return packets;
    }

    // `count` datagrams from the peer to the manager's port.
    int udp(uint16_t port, int count = 1, const char *source = nullptr, uint16_t src_port = 0) {
        return udp_probe(pair(), peer(), manager(),
                         {.port = port, .count = count, .source = source, .source_port = src_port});
    }

    std::unique_ptr<netns_pair> pair_;
};

// Ports, a source port range, an ICMP type; 0.0.255.0 ignores the third
// octet and nothing else (a contiguous reading would let 10.201.0.12 in
// too); inbound, "established" lets in the answers to what the manager
// opened (one SYN-ACK each) and nothing the peer opens; the rest meets the
// implicit deny.
TEST_F(Packets, EachPacketPassesOrDropsAsItsFilterSays) {
    ASSERT_EQ(
        enforce({"permit udp any host 10.201.0.1 eq 5001", "deny udp any host 10.201.0.1 eq 5002",
                 "permit tcp any host 10.201.0.1 eq 5003",
                 "permit udp any range 40000 40010 host 10.201.0.1 eq 5006",
                 "permit icmp any host 10.201.0.1 echo", "deny icmp any host 10.201.0.1",
                 "permit udp 10.201.0.2 0.0.255.0 host 10.201.0.1 eq 5000",
                 "permit tcp any host 10.201.0.1 established"},
                IPACL_DIR_IN),
        "");
    EXPECT_EQ(udp(5001, 3), 3);
    EXPECT_EQ(udp(5002, 2), 0);
    EXPECT_TRUE(tcp_probe(pair(), peer(), manager(), 5003));  // SYN, ACK, RST: three packets
    EXPECT_EQ(udp(5006, 1, nullptr, 40010), 1);
    EXPECT_EQ(udp(5006, 1, nullptr, 40011), 0);  // source port outside the range
    EXPECT_EQ(icmp_probe(pair(), peer(), manager(), 8, 3), 3);
    EXPECT_EQ(icmp_probe(pair(), peer(), manager(), 13, 2), 0);  // timestamp
    EXPECT_EQ(udp(5000, 1, "10.201.5.2"), 1);
    EXPECT_EQ(udp(5000, 1, "10.201.0.12"), 0);
    EXPECT_TRUE(tcp_probe(pair(), manager(), peer(), 6000));
    EXPECT_TRUE(tcp_probe(pair(), manager(), peer(), 6000));
    EXPECT_FALSE(tcp_probe(pair(), peer(), manager(), 6001));
    EXPECT_EQ(udp(5005, 2), 0);
    // The manager's own traffic goes over lo, which the ACL does not hold.
    EXPECT_EQ(udp_probe(pair(), manager(), manager(), {.port = 5002}), 1);
    EXPECT_EQ(counters(IPACL_DIR_IN), (counts{3, 2, 3, 1, 3, 2, 1, 2, 5}));
}

// IPv6 through ip6_tables, with the neighbours fixed so that no neighbour
// discovery meets the implicit deny.
TEST_F(Packets, Ipv6) {
    ASSERT_EQ(enforce({"permit udp any host fd00:201::1 eq 5000"}, IPACL_DIR_IN), "");
    udp_send permitted{.port = 5000, .count = 2, .family = ip_family::v6};
    EXPECT_EQ(udp_probe(pair(), peer(), manager(), permitted), 2);
    EXPECT_EQ(udp_probe(pair(), peer(), manager(), {.port = 5001, .family = ip_family::v6}), 0);
}

}  // namespace
}  // namespace ipacl_testbed
