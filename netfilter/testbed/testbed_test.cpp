// The probes themselves: every packet arrives between two fresh namespaces,
// and a rule that drops it (set by iptables-legacy, independent of the
// library) is seen as a drop.
#include "netns_pair.h"
#include "probes.h"

#include <gtest/gtest.h>

namespace ipacl_testbed {
namespace {

bool iptables(const netns_pair &pair, const char *program, const char *chain_rule) {
    std::string rule = std::string(program) + " -A INPUT " + chain_rule;
    const char *argv[] = {"sh", "-c", rule.c_str(), nullptr};
    std::string output;
    return run_in_netns(pair.manager().ns_fd, argv, "", output) == 0;
}

TEST(Testbed, ProbesPassAndSeeDrops) {
    auto made = netns_pair::create();
    if (made.refused) GTEST_SKIP() << "no private network namespaces here: " << made.why;
    ASSERT_TRUE(made.pair) << made.why;
    const auto &pair = made.pair;
    const netns_side &peer = pair->peer(), &manager = pair->manager();

    EXPECT_EQ(udp_probe(*pair, peer, manager, {.port = 5000, .count = 3}), 3);
    EXPECT_EQ(udp_probe(*pair, peer, manager, {.port = 5000, .family = ip_family::v6}), 1);
    EXPECT_EQ(udp_probe(*pair, peer, manager, {.port = 5000, .source = "10.201.5.2"}), 1);
    EXPECT_TRUE(tcp_probe(*pair, peer, manager, 5001));
    EXPECT_TRUE(tcp_probe(*pair, manager, peer, 5001, ip_family::v6));
    EXPECT_EQ(icmp_probe(*pair, peer, manager, 8, 2), 2);
    EXPECT_EQ(icmp_probe(*pair, peer, manager, 13, 2), 2);

    if (!iptables(*pair, "iptables-legacy", "-p udp --dport 5000 -j DROP") ||
        !iptables(*pair, "iptables-legacy", "-p tcp --dport 5001 -j DROP") ||
        !iptables(*pair, "iptables-legacy", "-p icmp --icmp-type 13 -j DROP") ||
        !iptables(*pair, "ip6tables-legacy", "-p udp --dport 5000 -j DROP"))
        GTEST_SKIP() << "iptables-legacy could not add a rule (Debian package iptables)";
    EXPECT_EQ(udp_probe(*pair, peer, manager, {.port = 5000, .count = 2}), 0);
    EXPECT_EQ(udp_probe(*pair, peer, manager, {.port = 5000, .family = ip_family::v6}), 0);
    EXPECT_FALSE(tcp_probe(*pair, peer, manager, 5001));
    EXPECT_EQ(icmp_probe(*pair, peer, manager, 8, 1), 1);
    EXPECT_EQ(icmp_probe(*pair, peer, manager, 13, 1), 0);
}

}  // namespace
}  // namespace ipacl_testbed
