#include "kernel_family.h"

#include <ipacl/enums.h>

#include <netinet/in.h>
#include <sys/socket.h>

#include <linux/netfilter_ipv4/ip_tables.h>
#include <linux/netfilter_ipv6/ip6_tables.h>

#include <cstddef>

namespace ipacl_nf {
namespace {

// Both families share the request headers; only the entries differ.
static_assert(offsetof(ipt_replace, entries) == offsetof(ip6t_replace, entries));
static_assert(offsetof(ipt_get_entries, entrytable) == offsetof(ip6t_get_entries, entrytable));
static_assert(sizeof(ipt_getinfo) == sizeof(ip6t_getinfo));
// The socket uses the IPv4 option numbers for both families.  The headers
// spell the two sets the same way, hence the lint exception.
// NOLINTBEGIN(misc-redundant-expression)
static_assert(IPT_SO_SET_REPLACE == IP6T_SO_SET_REPLACE);
static_assert(IPT_SO_SET_ADD_COUNTERS == IP6T_SO_SET_ADD_COUNTERS);
static_assert(IPT_SO_GET_INFO == IP6T_SO_GET_INFO);
static_assert(IPT_SO_GET_ENTRIES == IP6T_SO_GET_ENTRIES);
// NOLINTEND(misc-redundant-expression)

template <class Entry>
constexpr family_layout layout(const char *module, uint32_t family, int domain, int level) {
    return {module,
            family,
            domain,
            level,
            sizeof(Entry),
            offsetof(Entry, nfcache),
            offsetof(Entry, target_offset),
            offsetof(Entry, next_offset),
            offsetof(Entry, comefrom),
            offsetof(Entry, counters)};
}

constexpr family_layout kIpv4 =
    layout<ipt_entry>("ip_tables", IPACL_ADDR_TYPE_IPV4, AF_INET, IPPROTO_IP);
constexpr family_layout kIpv6 =
    layout<ip6t_entry>("ip6_tables", IPACL_ADDR_TYPE_IPV6, AF_INET6, IPPROTO_IPV6);

}  // namespace

const family_layout &ipv4_layout() { return kIpv4; }
const family_layout &ipv6_layout() { return kIpv6; }

const family_layout *layout_of(uint32_t family) {
    if (family == IPACL_ADDR_TYPE_IPV4) return &kIpv4;
    if (family == IPACL_ADDR_TYPE_IPV6) return &kIpv6;
    return nullptr;
}

}  // namespace ipacl_nf
