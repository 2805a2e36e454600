// One IPv6 rule as one line of the tool's listing form (see the header).
#include "nf_error.h"
#include "rule_records.h"

#include <ipacl/enums.h>
#include <ipacl/netfilter.h>

#include <arpa/inet.h>
#include <linux/netfilter_ipv6/ip6_tables.h>

#include <cstdarg>
#include <cstdio>
#include <cstring>

namespace ipacl_nf {
namespace {

// A text that grows by formatted pieces; `overflow` once it no longer fits.
class line_text {
  public:
    void add(const char *format, ...) __attribute__((format(printf, 2, 3))) {
        if (used_ >= sizeof text_) return;
        va_list args;
        va_start(args, format);
        int n = std::vsnprintf(text_ + used_, sizeof text_ - used_, format, args);
        va_end(args);
        used_ += n > 0 ? static_cast<std::size_t>(n) : 0;
    }
    const char *text() const { return text_; }
    std::size_t length() const { return used_; }

  private:
    char text_[512] = {};
    std::size_t used_ = 0;
};

// Leading ones of a mask, or -1 when it is no prefix.
int prefix_length(const uint8_t *mask) {
    int length = 0;
    bool ended = false;
    for (int bit = 0; bit < 128; ++bit) {
        bool one = mask[bit / 8] & (0x80 >> (bit % 8));
        if (one && ended) return -1;
        if (one) ++length;
        ended = ended || !one;
    }
    return length;
}

void add_address(line_text &line, const uint8_t *addr, const uint8_t *mask, bool invert) {
    char text[INET6_ADDRSTRLEN], mask_text[INET6_ADDRSTRLEN];
    int length = prefix_length(mask);
    if (invert) line.add(" not");
    if (length == 0) return line.add(" any");
    inet_ntop(AF_INET6, addr, text, sizeof text);
    if (length > 0) return line.add(" %s/%d", text, length);
    inet_ntop(AF_INET6, mask, mask_text, sizeof mask_text);
    line.add(" %s/%s", text, mask_text);
}

void add_interface(line_text &line, const char *word, const char *name, bool invert) {
    if (!name[0]) return;
    line.add(" %s%s %.16s", invert ? "not " : "", word, name);
}

void add_ports(line_text &line, const char *word, uint16_t low, uint16_t high, bool invert) {
    if (low == 0 && high == 0xffff && !invert) return;
    const char *no = invert ? "not " : "";
    if (low == high) return line.add(" %s %s%s %u", word, no, "eq", low);
    line.add(" %s %srange %u %u", word, no, low, high);
}

void add_tcp(line_text &line, const ipacl_ipt_tcp &tcp) {
    add_ports(line, "sport", tcp.src_port_low, tcp.src_port_high,
              tcp.inv_flags & kInvertSourcePort);
    add_ports(line, "dport", tcp.dst_port_low, tcp.dst_port_high, tcp.inv_flags & kInvertDestPort);
    bool flags_inverted = tcp.inv_flags & kInvertTcpFlags;
    if (tcp.flag_mask == (kTcpAck | kTcpRst) && tcp.flag_cmp == 0 && flags_inverted)
        line.add(" established");
    else if (tcp.flag_mask)
        line.add(" %sflags 0x%02x/0x%02x", flags_inverted ? "not " : "", tcp.flag_cmp,
                 tcp.flag_mask);
}

void add_match(line_text &line, const ipacl_match &m) {
    switch (m.type) {
        case IPACL_MATCH_TCP:
            return add_tcp(line, m.info.tcp);
        case IPACL_MATCH_UDP: {
            const ipacl_ipt_udp &udp = m.info.udp;
            add_ports(line, "sport", udp.src_port_low, udp.src_port_high,
                      udp.inv_flags & kInvertSourcePort);
            return add_ports(line, "dport", udp.dst_port_low, udp.dst_port_high,
                             udp.inv_flags & kInvertDestPort);
        }
        case IPACL_MATCH_ICMP: {
            const ipacl_ipt_icmp &icmp = m.info.icmp;
            line.add(" %sicmp6 %u", icmp.inv_flags ? "not " : "", icmp.icmp_type);
            if (icmp.code_low == icmp.code_high) return line.add(" %u", icmp.code_low);
            if (icmp.code_low != 0 || icmp.code_high != 0xff)
                line.add(" %u-%u", icmp.code_low, icmp.code_high);
            return;
        }
        case IPACL_MATCH_TOS:
            return line.add(" %stos 0x%02x", m.info.tos.invert ? "not " : "", m.info.tos.tos);
        case IPACL_MATCH_LOG:
            return line.add(" log \"%.29s\"", m.info.log.prefix);
        default:
            return;
    }
}

void add_protocol(line_text &line, const ipacl_nf_rule6 &r) {
    if (r.inv_flags & IP6T_INV_PROTO) line.add(" not");
    if (!(r.flags & IP6T_F_PROTO) || r.proto == 0) return line.add(" ip");
    char text[IPACL_STR_SIZE];
    ipacl_str_proto(r.proto, text);
    line.add(" %s", text);
}

}  // namespace
}  // namespace ipacl_nf

extern "C" {

IPACL_NF_API uint32_t ipacl_nf_str_rule6(const ipacl_nf_rule6 *rule, char *text, uint32_t size,
                                         char *err) {
    using namespace ipacl_nf;
    if (!rule || !text || size == 0) return fail(err, IPACL_E_BAD_ARG, "bad rule or text buffer");
    const ipacl_nf_rule6 &r = *rule;
    line_text line;
    line.add("%.32s %u %.30s", r.chain, r.rule_num, r.target);
    add_protocol(line, r);
    add_address(line, r.src, r.src_mask, r.inv_flags & IP6T_INV_SRCIP);
    add_address(line, r.dst, r.dst_mask, r.inv_flags & IP6T_INV_DSTIP);
    add_interface(line, "in", r.in_if, r.inv_flags & IP6T_INV_VIA_IN);
    add_interface(line, "out", r.out_if, r.inv_flags & IP6T_INV_VIA_OUT);
    for (uint32_t i = 0; i < r.match_count && i < IPACL_RULE_MATCHES; ++i)
        add_match(line, r.matches[i]);
    line.add(" packets %llu bytes %llu", static_cast<unsigned long long>(r.packets),
             static_cast<unsigned long long>(r.bytes));
    if (line.length() + 1 > size) {
        text[0] = '\0';
        return fail(err, IPACL_NF_E_SHORT_BUFFER, "text needs %u bytes, buffer holds %u",
                    static_cast<uint32_t>(line.length() + 1), size);
    }
    std::memcpy(text, line.text(), line.length() + 1);
    return succeed(err);
}
}
