// Ports that must be service ports of their protocol.
#include <ipacl/chk.h>
#include <ipacl/enums.h>

#include <cstdio>

#include "chk/message.h"
#include "chk/service_ports.h"

using ipacl::ValueText;

extern "C" {

uint32_t ipacl_chk_tcp_port(uint32_t low, uint32_t high) {
    return ipacl::all_service_ports(ipacl::kTcpServicePorts, low, high);
}

uint32_t ipacl_chk_udp_port(uint32_t low, uint32_t high) {
    return ipacl::all_service_ports(ipacl::kUdpServicePorts, low, high);
}

// Only "eq" names a single port.  The refusal needs both the label and a
// buffer; without either the port is let through, as callers that do not
// label the field only want a yes.
uint32_t ipacl_chk_proto_port(uint32_t proto, uint32_t op, uint32_t port, const char *label,
                              char *err) {
    if (op != IPACL_PORT_OP_EQ) return IPACL_OK;
    bool allowed = true;
    if (proto == IPACL_PROTO_TCP) allowed = ipacl::is_service_port(ipacl::kTcpServicePorts, port);
    if (proto == IPACL_PROTO_UDP) allowed = ipacl::is_service_port(ipacl::kUdpServicePorts, port);
    if (allowed || !label || !err) return ipacl::pass(err);
    sprintf(err, "%s %s is not allowed for %s", label, ValueText(ipacl_str_port_num, port).s,
            ValueText(ipacl_str_proto, proto).s);
    return IPACL_E_PORT_NOT_ALLOWED;
}

}  // extern "C"
