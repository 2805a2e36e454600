// Texts of filter protocols, well-known ports and LOG-target flags: the
// members of the enumeration family whose results or forms differ.
#include <ipacl/enums.h>

#include <cstring>

#include "records/enum_text.h"

namespace ipacl {
namespace {

// The filter protocols: one lookup serves the IPv4 and the IPv6 text.
constexpr EnumName kProto[] = {{0, "ip"},   {1, "icmp"},  {6, "tcp"},
                               {17, "udp"}, {41, "ipv6"}, {58, "icmp6"}};

constexpr EnumName kPort[] = {
    {20, "ftp-data"}, {21, "ftp"},         {22, "ssh"},         {23, "telnet"},
    {25, "smtp"},     {49, "tacacs-plus"}, {53, "dns"},         {65, "tacacs-ds"},
    {69, "tftp"},     {80, "www"},         {115, "sftp"},       {123, "ntp"},
    {143, "http"},    {161, "snmp"},       {162, "snmp-trap"},  {514, "syslog"},
    {1812, "radius"}, {5988, "wbem-http"}, {5989, "wbem-https"}};

// A printed name returns the protocol number plus one (so "any" returns 0);
// a printed number returns its character count.
uint32_t proto_text(uint32_t value, char *dst, const char *any_text) {
    const char *text = value == IPACL_PROTO_ANY ? any_text : enum_find(kProto, value);
    if (!text) return static_cast<uint32_t>(sprintf(dst, "%u", value));
    snprintf(dst, kStrSize, "%s", text);
    return value + 1;
}

}  // namespace
}  // namespace ipacl

using namespace ipacl;

extern "C" {

uint32_t ipacl_str_proto(uint32_t v, char *d) { return proto_text(v, d, "ip"); }
uint32_t ipacl_str_ipv6_proto(uint32_t v, char *d) { return proto_text(v, d, "ipv6"); }

uint32_t ipacl_str_port_num(uint32_t v, char *d) { return enum_text(kPort, v, d, "%u"); }

uint32_t ipacl_str_dst_port_num(uint32_t v, char *d) {
    if (const char *text = enum_find(kPort, v))
        return static_cast<uint32_t>(snprintf(d, kStrSize, "dst_%s", text));
    return static_cast<uint32_t>(sprintf(d, "%u", v));
}

// Bits 0x08 and 0x20 are neither named nor refused: 0x08 prints "".
void ipacl_str_log_flag(uint8_t v, char *d) {
    if (v == 0) {
        snprintf(d, kStrSize, "%s", "none");
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
