// The demo's management network: two private network namespaces joined by
// a veth pair, the manager's end its management interface.  Made by the
// demo's process before the manager starts (which inherits it), where this
// machine allows it; otherwise the demo goes on without enforcement.
#pragma once

#include <ipacl/records.h>

#include <string>
#include <vector>

namespace ipacl_tool::demo {

// Makes the network and checks that the kernel's x_tables can be used in
// it; false with `why` when the machine refuses either.
bool open_management_net(std::string &why);
void close_management_net();
bool have_management_net();

// The manager's interface name, and both ends' addresses.
const std::string &management_interface();
const std::string &manager_address();
const std::string &client_address();

// Moves the calling process (the manager) into the manager's namespace.
bool enter_manager_side();

// The manager enforces the filters of `family` among `filters` (all its
// accepted ones, in order) on its management interface, inbound, in one
// table replacement; says what it did.  False when the kernel refused.
bool enforce_filters(const std::vector<ipacl_filter> &filters, uint32_t family);
// The manager shows the rules of its ACL chain with their packet counters.
void show_enforced_rules();

// The client sends one ICMP echo and one UDP datagram (to the snmp port)
// from its end to the manager's.
struct packet_outcome {
    bool echo_answered;
    bool udp_arrived;
};
packet_outcome send_test_packets();

}  // namespace ipacl_tool::demo
