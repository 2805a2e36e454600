// Real packets between two private network namespaces: the manager enforces
// filters on its end of a veth pair, the peer sends; each packet passes or
// is dropped as its filter says, and the counters read back through the
// library's query equal the packets sent.
#include "enforced_pair.h"
#include "probes.h"

#include <ipacl/enums.h>

#include <gtest/gtest.h>

#include <utility>
#include <vector>

namespace ipacl_testbed {
namespace {

using counts = std::vector<uint64_t>;

class Packets : public ::testing::Test {
  protected:
    void SetUp() override {
        std::string why;
        bool refused = false;
        net_ = enforced_pair::create(why, refused);
        if (refused) GTEST_SKIP() << "kernel refused: " << why;
        ASSERT_TRUE(net_) << why;
    }

    // `count` datagrams from the peer to the manager's port.
    int udp(uint16_t port, int count = 1, const char *source = nullptr, uint16_t src_port = 0) {
        return udp_probe(net_->pair(), net_->peer(), net_->manager(),
                         {.port = port, .count = count, .source = source, .source_port = src_port});
    }
    bool tcp_from_peer(uint16_t port) {
        return tcp_probe(net_->pair(), net_->peer(), net_->manager(), port);
    }

    std::unique_ptr<enforced_pair> net_;
};

// The counters of the inbound chain: one per filter, the implicit deny, and
// the chain's own (packets that returned from it: other interfaces).
TEST_F(Packets, PortsPassOrDropAsTheirFiltersSay) {
    ASSERT_EQ(net_->enforce(
                  {"permit udp any host 10.201.0.1 eq 5001", "deny udp any host 10.201.0.1 eq 5002",
                   "permit tcp any host 10.201.0.1 eq 5003", "deny tcp any host 10.201.0.1 eq 5004",
                   "permit udp any range 40000 40010 host 10.201.0.1 eq 5006"},
                  IPACL_DIR_IN),
              "");
    EXPECT_EQ(udp(5001, 3), 3);
    EXPECT_EQ(udp(5002, 2), 0);
    EXPECT_TRUE(tcp_from_peer(5003));  // SYN, ACK, RST: three packets
    EXPECT_FALSE(tcp_from_peer(5004));
    EXPECT_EQ(udp(5006, 1, nullptr, 40010), 1);
    EXPECT_EQ(udp(5006, 1, nullptr, 40011), 0);  // source port outside the range
    EXPECT_EQ(udp(5005, 2), 0);                  // no filter: the implicit deny
    // The manager's own traffic goes over lo, which the ACL does not hold.
    EXPECT_EQ(udp_probe(net_->pair(), net_->manager(), net_->manager(), {.port = 5002}), 1);
    EXPECT_EQ(net_->counters4(IPACL_DIR_IN), (counts{3, 2, 3, 1, 1, 3, 1}));
}

// Each operator with the ports on both sides of its bounds: lt and gt are
// strict, range includes both ends.
TEST_F(Packets, EveryPortOperatorKeepsItsBounds) {
    ASSERT_EQ(net_->enforce(
                  {"deny udp any host 10.201.0.1 lt 1000", "deny udp any host 10.201.0.1 gt 60000",
                   "deny udp any host 10.201.0.1 range 2000 2002",
                   "permit udp any host 10.201.0.1 neq 7000"},
                  IPACL_DIR_IN),
              "");
    // 7000 is not neq 7000: on to the implicit deny.
    const std::pair<uint16_t, int> arrivals[] = {{999, 0},   {1000, 1}, {60001, 0},
                                                 {60000, 1}, {2000, 0}, {2002, 0},
                                                 {1999, 1},  {2003, 1}, {7000, 0}};
    for (auto [port, arrived] : arrivals) EXPECT_EQ(udp(port), arrived) << port;
    EXPECT_EQ(net_->counters4(IPACL_DIR_IN), (counts{1, 1, 2, 4, 1, 0}));
}

TEST_F(Packets, IcmpByType) {
    ASSERT_EQ(
        net_->enforce({"permit icmp any host 10.201.0.1 echo", "deny icmp any host 10.201.0.1"},
                      IPACL_DIR_IN),
        "");
    EXPECT_EQ(icmp_probe(net_->pair(), net_->peer(), net_->manager(), 8, 3), 3);
    EXPECT_EQ(icmp_probe(net_->pair(), net_->peer(), net_->manager(), 13, 2), 0);  // timestamp
    EXPECT_EQ(net_->counters4(IPACL_DIR_IN), (counts{3, 2, 0, 0}));
}

// 0.0.255.0 ignores the third octet and nothing else: a contiguous reading
// of it would let 10.201.0.12 in as well.
TEST_F(Packets, SourceThroughNonContiguousWildcard) {
    ASSERT_EQ(
        net_->enforce({"permit udp 10.201.0.2 0.0.255.0 host 10.201.0.1 eq 5000"}, IPACL_DIR_IN),
        "");
    EXPECT_EQ(udp(5000, 2), 2);
    EXPECT_EQ(udp(5000, 1, "10.201.5.2"), 1);
    EXPECT_EQ(udp(5000, 1, "10.201.0.12"), 0);
    EXPECT_EQ(net_->counters4(IPACL_DIR_IN), (counts{3, 1, 0}));
}

// Inbound, "established" lets in the answers to what the manager opened
// (one SYN-ACK each) and nothing the peer opens.
TEST_F(Packets, EstablishedAnswersOnly) {
    ASSERT_EQ(net_->enforce({"permit tcp any host 10.201.0.1 established"}, IPACL_DIR_IN), "");
    EXPECT_TRUE(tcp_probe(net_->pair(), net_->manager(), net_->peer(), 6000));
    EXPECT_TRUE(tcp_probe(net_->pair(), net_->manager(), net_->peer(), 6000));
    EXPECT_FALSE(tcp_from_peer(6001));
    EXPECT_EQ(net_->counters4(IPACL_DIR_IN), (counts{2, 1, 0}));
}

TEST_F(Packets, OutboundFilters) {
    ASSERT_EQ(
        net_->enforce({"deny udp any host 10.201.0.2 eq 5000", "permit ip any any"}, IPACL_DIR_OUT),
        "");
    const auto &pair = net_->pair();
    EXPECT_EQ(udp_probe(pair, net_->manager(), net_->peer(), {.port = 5000, .count = 2}), 0);
    EXPECT_EQ(udp_probe(pair, net_->manager(), net_->peer(), {.port = 5001}), 1);
    EXPECT_EQ(net_->counters4(IPACL_DIR_OUT), (counts{2, 1, 0, 0}));
}

// IPv6 through ip6_tables, with the neighbours fixed so that no neighbour
// discovery meets the implicit deny.
TEST_F(Packets, Ipv6) {
    ASSERT_EQ(net_->enforce({"permit udp any host fd00:201::1 eq 5000"}, IPACL_DIR_IN), "");
    const auto &pair = net_->pair();
    udp_send permitted{.port = 5000, .count = 2, .family = ip_family::v6};
    udp_send denied{.port = 5001, .family = ip_family::v6};
    EXPECT_EQ(udp_probe(pair, net_->peer(), net_->manager(), permitted), 2);
    EXPECT_EQ(udp_probe(pair, net_->peer(), net_->manager(), denied), 0);
    counts six = net_->counters6(IPACL_DIR_IN);
    ASSERT_EQ(six.size(), 2u);
    EXPECT_EQ(six[0], 2u);
    EXPECT_GE(six[1], 1u);  // the implicit deny; may also meet the peer's MLD reports
}

}  // namespace
}  // namespace ipacl_testbed
