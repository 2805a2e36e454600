// The two x_tables families as data: socket, option level, and where the
// common fields of an entry sit in each family's native layout (the build
// target's XT_ALIGN: 8 on x86_64, 4 on i386).
#pragma once

#include <cstdint>

namespace ipacl_nf {

struct family_layout {
    const char *module;  // "ip_tables" or "ip6_tables", for messages
    uint32_t family;     // IPACL_ADDR_TYPE_IPV4 or _IPV6
    int domain;          // AF_INET or AF_INET6
    int level;           // IPPROTO_IP or IPPROTO_IPV6
    uint32_t entry_size;
    uint32_t ip_size;  // the family's address part, before nfcache
    uint32_t target_offset_at;
    uint32_t next_offset_at;
    uint32_t comefrom_at;
    uint32_t counters_at;
};

const family_layout &ipv4_layout();
const family_layout &ipv6_layout();
// The layout of IPACL_ADDR_TYPE_IPV4 or _IPV6, nullptr for any other.
const family_layout *layout_of(uint32_t family);

}  // namespace ipacl_nf
