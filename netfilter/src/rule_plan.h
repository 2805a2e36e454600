// A filter as the parts of one x_tables rule, before either family's kernel
// layout: addresses and masks, interface, protocol, fragment flag, the
// layer-4 match (tcp, udp, icmp), the tos match, the log twin and the target.
// The one place where a filter's meaning becomes a rule's.
#pragma once

#include <ipacl/records.h>

#include <cstdint>

namespace ipacl_nf {

enum class layer4 : uint8_t { none, tcp, udp, icmp };

struct port_test {
    bool present = false;
    bool invert = false;  // neq: every port but low..high
    uint16_t low = 0;
    uint16_t high = 0xffff;
};

struct rule_plan {
    uint32_t family = 0;  // IPACL_ADDR_TYPE_IPV4 or _IPV6
    uint8_t src[16] = {}, src_mask[16] = {};
    uint8_t dst[16] = {}, dst_mask[16] = {};
    bool outgoing = false;  // the interface is the output one
    char iface[16] = {};
    uint8_t iface_mask[16] = {};
    uint16_t proto = 0;  // 0: every protocol
    bool fragments = false;
    layer4 match = layer4::none;
    port_test sport, dport;
    bool established = false;
    uint8_t icmp_type = 0, code_low = 0, code_high = 0xff;
    bool tos_present = false;
    uint8_t tos_mask = 0, tos_value = 0;
    bool log = false;  // a LOG rule goes first, same tests
    char log_prefix[IPACL_TARGET_NAME_SIZE] = {};
    char chain[IPACL_CHAIN_NAME_SIZE] = {};
    char target[IPACL_TARGET_NAME_SIZE] = {};
};

// The LOG parameters of the log twin.
constexpr uint8_t kLogLevel = 4;  // syslog warning
constexpr uint8_t kLogFlags = 0;
// The tcp flags that make a segment part of an established connection.
constexpr uint8_t kTcpAck = 0x10, kTcpRst = 0x04;

// Checks `filter` (ipacl_chk_filter, then what the kernel cannot say) and
// plans its rule for `family`, bound in `dir` to `ifname`.
uint32_t plan_rule(const ipacl_filter *filter, uint32_t family, uint32_t dir, const char *ifname,
                   rule_plan &plan, char *err);

}  // namespace ipacl_nf

namespace ipacl_nf {

// The rule after the last filter: every packet of the interface (of every
// interface when there is none) is dropped.
uint32_t plan_implicit_deny(uint32_t family, uint32_t dir, const char *ifname, rule_plan &plan,
                            char *err);

}  // namespace ipacl_nf
