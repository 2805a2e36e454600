// One-line text of a filter key and the long form of a filter: a dump of
// every field, whether it applies to the filter's protocol or not.
#include <cstdio>

#include <ipacl/enums.h>
#include <ipacl/str_record.h>
#include <ipacl/str_scalar.h>

#include "str/record/profile_name.h"

namespace {

// Prefixes print as address/length, "any" when they match everything.
constexpr int32_t kPrefixSlashForm = IPACL_INET_FORMAT_PREFIX;
constexpr uint32_t kAnyAllowed = 1;

constexpr const char *true_false(uint32_t flag) { return flag != 0 ? "T" : "F"; }

}  // namespace

extern "C" {

uint32_t ipacl_str_filter_key(const ipacl_filter_key *key, char *dst) {
    if (dst == nullptr) return 0;
    if (key == nullptr) return static_cast<uint32_t>(sprintf(dst, "%s", ""));
    char index[IPACL_STR_SIZE];
    ipacl_str_index(key->filter_index, index);
    const ipacl::ProfileName name(key->prof_name);
    return static_cast<uint32_t>(sprintf(dst, "prof %s %s", name.text, index));
}

uint32_t ipacl_str_filter(const ipacl_filter *f, char *dst) {
    if (dst == nullptr) return 0;
    if (f == nullptr) return static_cast<uint32_t>(sprintf(dst, "%s", ""));

    char status[IPACL_STR_SIZE], index[IPACL_STR_SIZE], order[IPACL_STR_SIZE];
    char action[IPACL_STR_SIZE], proto[IPACL_STR_SIZE];
    char src[IPACL_STR_SIZE], dst_ip[IPACL_STR_SIZE];
    char src_op[IPACL_STR_SIZE], src_low[IPACL_STR_SIZE], src_high[IPACL_STR_SIZE];
    char dst_op[IPACL_STR_SIZE], dst_low[IPACL_STR_SIZE], dst_high[IPACL_STR_SIZE];
    char icmp_type[IPACL_STR_SIZE], icmp_code[IPACL_STR_SIZE];
    char prec[IPACL_STR_SIZE], tos[IPACL_STR_SIZE];

    ipacl_str_snmp_status(f->snmp_status, status);
    const ipacl::ProfileName name(f->prof_name);
    ipacl_str_index(f->filter_index, index);
    ipacl_str_order(f->order_position, order);
    ipacl_str_action(f->action, action);
    if (f->addr_type == IPACL_ADDR_TYPE_IPV6)
        ipacl_str_ipv6_proto(f->protocol, proto);
    else
        ipacl_str_proto(f->protocol, proto);
    ipacl_str_inet_addr(kPrefixSlashForm, kAnyAllowed, &f->src_addr, src, sizeof src);
    ipacl_str_inet_addr(kPrefixSlashForm, kAnyAllowed, &f->dst_addr, dst_ip, sizeof dst_ip);
    ipacl_str_port_op(f->src_port_op, src_op);
    ipacl_str_port_num(f->src_port_low, src_low);
    ipacl_str_port_num(f->src_port_high, src_high);
    ipacl_str_port_op(f->dst_port_op, dst_op);
    ipacl_str_port_num(f->dst_port_low, dst_low);
    ipacl_str_port_num(f->dst_port_high, dst_high);
    ipacl_str_icmp_type(f->icmp_type, icmp_type);
    ipacl_str_icmp_code(f->icmp_code, icmp_code);
    ipacl_str_prec(f->precedence, prec);
    ipacl_str_tos(f->tos, tos);

    return static_cast<uint32_t>(sprintf(
        dst,
        "%s prof %s %s %s %s %s s-ip %s d-ip %s %s s-port %s:%s %s d-port %s:%s %s:%s "
        "est:%s %s %s log:%s frag:%s",
        status, name.text, index, order, action, proto, src, dst_ip, src_op, src_low, src_high,
        dst_op, dst_low, dst_high, icmp_type, icmp_code, true_false(f->established), prec, tos,
        true_false(f->log_deny), true_false(f->fragments)));
}

}  // extern "C"
