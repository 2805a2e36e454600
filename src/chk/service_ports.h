// The well-known service ports that "eq <port>" may name, per protocol.
#pragma once

#include <ipacl/enums.h>

#include <cstdint>

namespace ipacl {

inline constexpr uint32_t kTcpServicePorts[] = {
    IPACL_PORT_FTP_DATA,  IPACL_PORT_FTP,         IPACL_PORT_SSH,       IPACL_PORT_TELNET,
    IPACL_PORT_SMTP,      IPACL_PORT_TACACS_PLUS, IPACL_PORT_TACACS_DS, IPACL_PORT_WWW,
    IPACL_PORT_SFTP,      IPACL_PORT_HTTP,        IPACL_PORT_RADIUS,    IPACL_PORT_WBEM_HTTP,
    IPACL_PORT_WBEM_HTTPS};

inline constexpr uint32_t kUdpServicePorts[] = {IPACL_PORT_DNS,       IPACL_PORT_TFTP,
                                                IPACL_PORT_NTP,       IPACL_PORT_SNMP,
                                                IPACL_PORT_SNMP_TRAP, IPACL_PORT_SYSLOG};

template <size_t N>
constexpr bool is_service_port(const uint32_t (&ports)[N], uint32_t port) {
    for (uint32_t p : ports)
        if (p == port) return true;
    return false;
}

// 1 when low > high or every port of low..high is in the list.
template <size_t N>
constexpr uint32_t all_service_ports(const uint32_t (&ports)[N], uint32_t low, uint32_t high) {
    for (uint64_t port = low; port <= high; ++port)
        if (!is_service_port(ports, static_cast<uint32_t>(port))) return 0;
    return 1;
}

}  // namespace ipacl
