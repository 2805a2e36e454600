// One-line text of a filter key and the long form of a filter: a dump of
// every field, whether it applies to the filter's protocol or not.
#include <cstdio>
#include <cstring>

#include <ipacl/enums.h>
#include <ipacl/str_record.h>
#include <ipacl/str_scalar.h>

#include "base/member.h"
#include "str/record/profile_name.h"

namespace {

// Prefixes print as address/length, "any" when they match everything.
constexpr int32_t kPrefixSlashForm = IPACL_INET_FORMAT_PREFIX;
constexpr uint32_t kAnyAllowed = 1;

constexpr size_t kScratchSize = IPACL_STR_SIZE > IPACL_NAME_SIZE ? IPACL_STR_SIZE : IPACL_NAME_SIZE;

// A part of the long form: the text that leads it in, and what forms its
// value in the scratch buffer.
struct Part {
    const char *lead;
    void (*value)(const ipacl_filter &f, char *scratch);
};

template <uint32_t (*Text)(uint32_t, char *), auto Member>
void named(const ipacl_filter &f, char *s) {
    Text(ipacl::member_value(f, Member), s);
}

template <auto Member>
void prefix(const ipacl_filter &f, char *s) {
    ipacl_str_inet_addr(kPrefixSlashForm, kAnyAllowed, &(f.*Member), s, IPACL_STR_SIZE);
}

// Flags print "T" for any value but 0.
template <auto Member>
void true_false(const ipacl_filter &f, char *s) {
    s[0] = ipacl::member_value(f, Member) != 0 ? 'T' : 'F';
    s[1] = '\0';
}

void name(const ipacl_filter &f, char *s) {
    const ipacl::ProfileName copy(f.prof_name);
    strcpy(s, copy.text);
}

// The protocol by the names of the filter's address family.
void protocol(const ipacl_filter &f, char *s) {
    if (f.addr_type == IPACL_ADDR_TYPE_IPV6)
        ipacl_str_ipv6_proto(f.protocol, s);
    else
        ipacl_str_proto(f.protocol, s);
}

using F = ipacl_filter;

constexpr Part kParts[] = {
    {"", named<ipacl_str_snmp_status, &F::snmp_status>},
    {" prof ", name},
    {" ", named<ipacl_str_index, &F::filter_index>},
    {" ", named<ipacl_str_order, &F::order_position>},
    {" ", named<ipacl_str_action, &F::action>},
    {" ", protocol},
    {" s-ip ", prefix<&F::src_addr>},
    {" d-ip ", prefix<&F::dst_addr>},
    {" ", named<ipacl_str_port_op, &F::src_port_op>},
    {" s-port ", named<ipacl_str_port_num, &F::src_port_low>},
    {":", named<ipacl_str_port_num, &F::src_port_high>},
    {" ", named<ipacl_str_port_op, &F::dst_port_op>},
    {" d-port ", named<ipacl_str_port_num, &F::dst_port_low>},
    {":", named<ipacl_str_port_num, &F::dst_port_high>},
    {" ", named<ipacl_str_icmp_type, &F::icmp_type>},
    {":", named<ipacl_str_icmp_code, &F::icmp_code>},
    {" est:", true_false<&F::established>},
    {" ", named<ipacl_str_prec, &F::precedence>},
    {" ", named<ipacl_str_tos, &F::tos>},
    {" log:", true_false<&F::log_deny>},
    {" frag:", true_false<&F::fragments>},
};

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

    uint32_t length = 0;
    char scratch[kScratchSize];
    for (const Part &part : kParts) {
        part.value(*f, scratch);
        length += static_cast<uint32_t>(sprintf(dst + length, "%s%s", part.lead, scratch));
    }
    return length;
}

}  // extern "C"
