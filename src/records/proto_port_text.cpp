// Texts of filter protocols, well-known ports and LOG-target flags: the
// members of the enumeration family whose results or forms differ.
#include <ipacl/enums.h>

#include <cstring>

#include "base/value_text.h"

namespace ipacl {
namespace {

// The filter protocols: one lookup serves the IPv4 and the IPv6 text.
constexpr EnumName kProto[] = {{IPACL_PROTO_IP, "ip"},     {IPACL_PROTO_ICMP, "icmp"},
                               {IPACL_PROTO_TCP, "tcp"},   {IPACL_PROTO_UDP, "udp"},
                               {IPACL_PROTO_IPV6, "ipv6"}, {IPACL_PROTO_ICMP6, "icmp6"}};

constexpr EnumName kPort[] = {{IPACL_PORT_FTP_DATA, "ftp-data"},
                              {IPACL_PORT_FTP, "ftp"},
                              {IPACL_PORT_SSH, "ssh"},
                              {IPACL_PORT_TELNET, "telnet"},
                              {IPACL_PORT_SMTP, "smtp"},
                              {IPACL_PORT_TACACS_PLUS, "tacacs-plus"},
                              {IPACL_PORT_DNS, "dns"},
                              {IPACL_PORT_TACACS_DS, "tacacs-ds"},
                              {IPACL_PORT_TFTP, "tftp"},
                              {IPACL_PORT_WWW, "www"},
                              {IPACL_PORT_SFTP, "sftp"},
                              {IPACL_PORT_NTP, "ntp"},
                              {IPACL_PORT_HTTP, "http"},
                              {IPACL_PORT_SNMP, "snmp"},
                              {IPACL_PORT_SNMP_TRAP, "snmp-trap"},
                              {IPACL_PORT_SYSLOG, "syslog"},
                              {IPACL_PORT_RADIUS, "radius"},
                              {IPACL_PORT_WBEM_HTTP, "wbem-http"},
                              {IPACL_PORT_WBEM_HTTPS, "wbem-https"}};

// A printed name returns the protocol number plus one (so "any" returns 0);
// a printed number returns its character count.
uint32_t proto_text(uint32_t value, char *dst, const char *any_text) {
    const char *text = value == IPACL_PROTO_ANY ? any_text : enum_find(kProto, value);
    if (!text) return static_cast<uint32_t>(snprintf(dst, kTextSize, "%u", value));
    snprintf(dst, kTextSize, "%s", text);
    return value + 1;
}

}  // namespace
}  // namespace ipacl

using namespace ipacl;

extern "C" {

uint32_t ipacl_str_proto(uint32_t v, char *d) { return proto_text(v, d, "ip"); }
uint32_t ipacl_str_ipv6_proto(uint32_t v, char *d) { return proto_text(v, d, "ipv6"); }

uint32_t ipacl_str_port_num(uint32_t v, char *d) { return value_text(kPort, v, d, "%u"); }

uint32_t ipacl_str_dst_port_num(uint32_t v, char *d) {
    if (const char *text = enum_find(kPort, v))
        return static_cast<uint32_t>(snprintf(d, kTextSize, "dst_%s", text));
    return static_cast<uint32_t>(snprintf(d, kTextSize, "%u", v));
}

// Bits 0x08 and 0x20 are neither named nor refused: 0x08 prints "".
void ipacl_str_log_flag(uint8_t v, char *d) {
    if (v == 0) {
        snprintf(d, kTextSize, "%s", "none");
        return;
    }
    if (v & (0x10 | 0x40 | 0x80)) {
        sprintf(d, "%xh[log-flag]", v);
        return;
    }
    d[0] = '\0';
    if (v & IPACL_LOG_FLAG_TCP_SEQ) strcat(d, "tcp-seq-no ");
    if (v & IPACL_LOG_FLAG_TCP_OPTIONS) strcat(d, "tcp-options ");
    if (v & IPACL_LOG_FLAG_IP_OPTIONS) strcat(d, "ip-options ");
}

}  // extern "C"
