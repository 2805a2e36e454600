#include "management_net.h"

#include "netns_pair.h"
#include "probes.h"
#include "xtables_reach.h"

#include <sched.h>

#include <memory>

namespace ipacl_tool::demo {
namespace {

std::unique_ptr<ipacl_testbed::netns_pair> net;  // only in the demo's processes

}  // namespace

bool open_management_net(std::string &why) {
    ipacl_testbed::netns_pair_result made = ipacl_testbed::netns_pair::create();
    if (!made.pair) {
        why = made.why;
        return false;
    }
    if (!ipacl_testbed::xtables_reachable(*made.pair, made.pair->manager(), why)) return false;
    net = std::move(made.pair);
    return true;
}

void close_management_net() { net.reset(); }
bool have_management_net() { return net != nullptr; }
const std::string &management_interface() { return net->manager().ifname; }
const std::string &manager_address() { return net->manager().addr4; }
const std::string &client_address() { return net->peer().addr4; }

bool enter_manager_side() { return setns(net->manager().ns_fd, CLONE_NEWNET) == 0; }

packet_outcome send_test_packets() {
    using namespace ipacl_testbed;
    constexpr uint16_t snmp = 161;
    return {icmp_probe(*net, net->peer(), net->manager(), 8, 1) == 1,
            udp_probe(*net, net->peer(), net->manager(), {.port = snmp}) == 1};
}

}  // namespace ipacl_tool::demo
