#include "nf_test_support.h"

#include "tools/ipacl/parse/filter_parse.h"

#include <arpa/inet.h>
#include <gtest/gtest.h>
#include <sched.h>

#include <net/if.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <cstring>

namespace nf_test {
namespace {

std::string dotted(uint32_t network_order) {
    char text[INET_ADDRSTRLEN];
    inet_ntop(AF_INET, &network_order, text, sizeof text);
    return text;
}

std::string ipv6_text(const uint8_t *bytes) {
    char text[INET6_ADDRSTRLEN];
    inet_ntop(AF_INET6, bytes, text, sizeof text);
    return text;
}

uint32_t mask_bytes(const uint8_t *mask) {
    uint32_t count = 0;
    for (int i = 0; i < 16; ++i) count += mask[i] != 0;
    return count;
}

std::string interface_part(const char *flag, const char *name, const uint8_t *mask) {
    if (!name[0] && mask_bytes(mask) == 0) return "";
    return std::string(" ") + flag + " " + std::string(name, strnlen(name, 16)) + "/" +
           std::to_string(mask_bytes(mask));
}

std::string text_of(const char *format, ...) __attribute__((format(printf, 1, 2)));
std::string text_of(const char *format, ...) {
    char text[128];
    va_list args;
    va_start(args, format);
    std::vsnprintf(text, sizeof text, format, args);
    va_end(args);
    return text;
}

std::string match_part(const ipacl_match &m) {
    switch (m.type) {
        case IPACL_MATCH_TCP: {
            const ipacl_ipt_tcp &t = m.info.tcp;
            return text_of(" tcp %u:%u %u:%u flags %02x/%02x inv %02x", t.src_port_low,
                           t.src_port_high, t.dst_port_low, t.dst_port_high, t.flag_mask,
                           t.flag_cmp, t.inv_flags);
        }
        case IPACL_MATCH_UDP: {
            const ipacl_ipt_udp &u = m.info.udp;
            return text_of(" udp %u:%u %u:%u inv %02x", u.src_port_low, u.src_port_high,
                           u.dst_port_low, u.dst_port_high, u.inv_flags);
        }
        case IPACL_MATCH_ICMP:
            return text_of(" icmp %u %u:%u", m.info.icmp.icmp_type, m.info.icmp.code_low,
                           m.info.icmp.code_high);
        case IPACL_MATCH_TOS:
            return text_of(" tos %02x", m.info.tos.tos);
        case IPACL_MATCH_LOG:
            return text_of(" log %u %u '%.30s'", m.info.log.level, m.info.log.log_flags,
                           m.info.log.prefix);
        default:
            return text_of(" match %u", m.type);
    }
}

template <class Rule>
std::string tail(const Rule &rule, uint16_t proto, bool fragments) {
    std::string text;
    if (proto) text += " -p " + std::to_string(proto);
    if (fragments) text += " -f";
    for (uint32_t i = 0; i < rule.match_count && i < IPACL_RULE_MATCHES; ++i)
        text += match_part(rule.matches[i]);
    return text + " -j " + rule.target;
}

}  // namespace

ipacl_filter filter_of(const std::string &line, bool ipv6, uint32_t index) {
    ipacl_tool::parse_options options;
    options.family = ipv6 ? ipacl_tool::family_choice::ipv6 : ipacl_tool::family_choice::ipv4;
    options.index = index;
    ipacl_tool::parse_result parsed = ipacl_tool::parse_filter(line, options);
    EXPECT_TRUE(parsed.ok) << line << ": " << parsed.error.message;
    return parsed.filter;
}

std::string describe(const ipacl_ipt_rule &rule) {
    const ipacl_ipt_entry &e = rule.entry;
    std::string text = rule.chain;
    if (e.src_mask) text += " -s " + dotted(e.src) + "/" + dotted(e.src_mask);
    if (e.dst_mask) text += " -d " + dotted(e.dst) + "/" + dotted(e.dst_mask);
    text += interface_part("-i", e.in_if, e.in_if_mask);
    text += interface_part("-o", e.out_if, e.out_if_mask);
    return text + tail(rule, e.proto, e.flags & 1);
}

std::string describe(const ipacl_nf_rule6 &rule) {
    std::string text = rule.chain;
    if (mask_bytes(rule.src_mask))
        text += " -s " + ipv6_text(rule.src) + "/" + ipv6_text(rule.src_mask);
    if (mask_bytes(rule.dst_mask))
        text += " -d " + ipv6_text(rule.dst) + "/" + ipv6_text(rule.dst_mask);
    text += interface_part("-i", rule.in_if, rule.in_if_mask);
    text += interface_part("-o", rule.out_if, rule.out_if_mask);
    return text + tail(rule, rule.proto, false);
}

std::string run(const std::string &command) {
    std::string output;
    FILE *pipe = popen((command + " 2>&1").c_str(), "r");
    if (!pipe) return "popen failed";
    char buffer[4096];
    std::size_t n;
    while ((n = std::fread(buffer, 1, sizeof buffer, pipe)) > 0) output.append(buffer, n);
    pclose(pipe);
    while (!output.empty() && (output.back() == '\n' || output.back() == ' ')) output.pop_back();
    return output;
}

std::string enter_private_netns() {
    if (unshare(CLONE_NEWNET) != 0)
        return std::string("cannot create a network namespace: ") + std::strerror(errno);
    int fd = socket(AF_INET, SOCK_DGRAM, 0);
    ifreq request{};
    std::strcpy(request.ifr_name, "lo");
    bool up = fd >= 0 && ioctl(fd, SIOCGIFFLAGS, &request) == 0 &&
              (request.ifr_flags |= IFF_UP, ioctl(fd, SIOCSIFFLAGS, &request) == 0);
    int error = errno;
    if (fd >= 0) close(fd);
    return up ? "" : std::string("cannot bring up the loopback: ") + std::strerror(error);
}

void clear_names() {
    for (char *name : {ipacl_chain_in, ipacl_chain_out, ipacl_chain_fwd})
        std::memset(name, 0, IPACL_CHAIN_NAME_SIZE);
    for (char *name :
         {ipacl_target_accept, ipacl_target_drop, ipacl_target_queue, ipacl_target_return})
        std::memset(name, 0, IPACL_TARGET_NAME_SIZE);
}

}  // namespace nf_test
