// Block displays of the match extensions of an iptables rule.
#include <cstdio>

#include <ipacl/enums.h>
#include <ipacl/show.h>

#include "show/block.h"

namespace {

using namespace ipacl::show;

constexpr Row kTcpPorts[] = {
    field("TCP Source Port Low", offsetof(ipacl_ipt_tcp, src_port_low), number<uint16_t>),
    field("TCP Source Port High", offsetof(ipacl_ipt_tcp, src_port_high), number<uint16_t>),
    field("TCP Dest Port Low", offsetof(ipacl_ipt_tcp, dst_port_low), number<uint16_t>),
    field("TCP Dest Port High", offsetof(ipacl_ipt_tcp, dst_port_high), number<uint16_t>),
};

constexpr Row kUdp[] = {
    field("UDP Source Port Low", offsetof(ipacl_ipt_udp, src_port_low), number<uint16_t>),
    field("UDP Source Port High", offsetof(ipacl_ipt_udp, src_port_high), number<uint16_t>),
    field("UDP Dest Port Low", offsetof(ipacl_ipt_udp, dst_port_low), number<uint16_t>),
    field("UDP Dest Port High", offsetof(ipacl_ipt_udp, dst_port_high), number<uint16_t>),
};

constexpr Row kIcmp[] = {
    field("ICMP Type", offsetof(ipacl_ipt_icmp, icmp_type), named<ipacl_str_icmp_type, uint8_t>),
    field("ICMP Low Code", offsetof(ipacl_ipt_icmp, code_low), number<uint8_t>),
    field("ICMP High Code", offsetof(ipacl_ipt_icmp, code_high), number<uint8_t>),
};

// The TOS byte holds the precedence in bits 7..5 and the TOS in bits 4..1.
void precedence_bits(const uint8_t *p, char *out) { ipacl_str_prec(*p >> 5, out); }
void tos_bits(const uint8_t *p, char *out) { ipacl_str_tos((*p >> 1) & 15, out); }

constexpr Row kTos[] = {
    field("Precedence", offsetof(ipacl_ipt_tos, tos), precedence_bits),
    field("TOS", offsetof(ipacl_ipt_tos, tos), tos_bits),
};

constexpr Row kLog[] = {
    field("Log Level", offsetof(ipacl_ipt_log, level), named<ipacl_str_syslog, uint8_t>),
    field("Log Flags", offsetof(ipacl_ipt_log, log_flags), named<ipacl_str_log_flag, uint8_t>),
    field("Prefix", offsetof(ipacl_ipt_log, prefix), chars<IPACL_TARGET_NAME_SIZE>),
};

struct TcpFlag {
    uint8_t bit;
    const char *name;
};

// High bit first, as iptables lists them.
constexpr TcpFlag kTcpFlags[] = {
    {0x20, "URG"}, {0x10, "ACK"}, {0x08, "PSH"}, {0x04, "RST"}, {0x02, "SYN"}, {0x01, "FIN"},
};

constexpr size_t kFlagLineSize = 256;

}  // namespace

extern "C" {

void ipacl_show_tcp_flags(const char *label, uint8_t flags, uint32_t negate) {
    char line[kFlagLineSize];
    size_t used = static_cast<size_t>(snprintf(line, sizeof line, "%s", label ? label : ""));
    for (const TcpFlag &flag : kTcpFlags) {
        if (!(flags & flag.bit) || used >= sizeof line) continue;
        used += static_cast<size_t>(
            snprintf(line + used, sizeof line - used, "%s%s ", negate != 0 ? "!" : "", flag.name));
    }
    printf("%s\n", line);
}

// The mask lists the flags the rule looks at, the compare value those that
// must be set; only the latter can be inverted.
void ipacl_show_ipt_tcp(const ipacl_ipt_tcp *tcp) {
    if (tcp == nullptr) return;
    print_block(tcp, kTcpPorts);
    ipacl_show_tcp_flags("TCP flag mask           ", tcp->flag_mask, 0);
    ipacl_show_tcp_flags("TCP flag compare        ", tcp->flag_cmp, tcp->inv_flags != 0);
}

void ipacl_show_ipt_udp(const ipacl_ipt_udp *udp) {
    if (udp != nullptr) print_block(udp, kUdp);
}

void ipacl_show_ipt_icmp(const ipacl_ipt_icmp *icmp) {
    if (icmp != nullptr) print_block(icmp, kIcmp);
}

void ipacl_show_ipt_tos(const ipacl_ipt_tos *tos) {
    if (tos != nullptr) print_block(tos, kTos);
}

void ipacl_show_ipt_log(const ipacl_ipt_log *log) {
    if (log != nullptr) print_block(log, kLog);
}

}  // extern "C"
