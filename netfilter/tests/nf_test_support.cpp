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
#include <cstdio>
#include <cstring>

namespace nf_test {
namespace {

std::string address(const void *bytes) {
    char text[INET_ADDRSTRLEN];
    return inet_ntop(AF_INET, bytes, text, sizeof text);
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

std::string match_part(const ipacl_match &m) {
    char text[128];
    const auto &t = m.info.tcp;
    const auto &u = m.info.udp;
    if (m.type == IPACL_MATCH_TCP)
        std::snprintf(text, sizeof text, " tcp %u:%u %u:%u flags %02x/%02x inv %02x",
                      t.src_port_low, t.src_port_high, t.dst_port_low, t.dst_port_high, t.flag_mask,
                      t.flag_cmp, t.inv_flags);
    else if (m.type == IPACL_MATCH_UDP)
        std::snprintf(text, sizeof text, " udp %u:%u %u:%u inv %02x", u.src_port_low,
                      u.src_port_high, u.dst_port_low, u.dst_port_high, u.inv_flags);
    else if (m.type == IPACL_MATCH_ICMP)
        std::snprintf(text, sizeof text, " icmp %u %u:%u", m.info.icmp.icmp_type,
                      m.info.icmp.code_low, m.info.icmp.code_high);
    else if (m.type == IPACL_MATCH_TOS)
        std::snprintf(text, sizeof text, " tos %02x", m.info.tos.tos);
    else
        std::snprintf(text, sizeof text, " log %u %u '%.30s'", m.info.log.level,
                      m.info.log.log_flags, m.info.log.prefix);
    return text;
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
    if (e.src_mask) text += " -s " + address(&e.src) + "/" + address(&e.src_mask);
    if (e.dst_mask) text += " -d " + address(&e.dst) + "/" + address(&e.dst_mask);
    text +=
        interface_part("-i", e.in_if, e.in_if_mask) + interface_part("-o", e.out_if, e.out_if_mask);
    if (e.proto) text += " -p " + std::to_string(e.proto);
    if (e.flags & 1) text += " -f";
    for (uint32_t i = 0; i < rule.match_count && i < IPACL_RULE_MATCHES; ++i)
        text += match_part(rule.matches[i]);
    return text + " -j " + rule.target;
}

std::string run(const std::string &command) {
    std::string output;
    FILE *pipe = popen((command + " 2>&1").c_str(), "r");
    if (!pipe) return "popen failed";
    char buffer[4096];
    for (std::size_t n; (n = std::fread(buffer, 1, sizeof buffer, pipe)) > 0;)
        output.append(buffer, n);
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
