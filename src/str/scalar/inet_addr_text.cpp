// Text of an address prefix: IPv4 as address and wildcard mask or as
// address/length, IPv6 always as address/length.
#include <ipacl/cmp.h>
#include <ipacl/enums.h>
#include <ipacl/str_scalar.h>

#include <arpa/inet.h>
#include <netinet/in.h>

#include <cstdio>
#include <cstring>

#include "base/debug_report.h"

namespace ipacl {
namespace {

// inet_ntop renders into a buffer of this size, then the text is copied
// bounded into the caller's.
constexpr size_t kNtopSize = 256;

// Wildcard mask of an IPv4 prefix length, in host order.  The length is not
// checked: lengths above 32 wrap, except that 32 itself means "no wildcard".
uint32_t wildcard_of(uint32_t length) {
    if (length == 32) return 0;
    return 0xFFFFFFFFu >> (length % 32);
}

void ipv4_text(int32_t format, const ipacl_inet_addr &prefix, char *dst, uint32_t size) {
    char addr[kNtopSize];
    inet_ntop(AF_INET, prefix.addr, addr, sizeof addr);
    switch (format) {
        case IPACL_INET_FORMAT_WILDCARD: {
            uint32_t wildcard = htonl(wildcard_of(prefix.prefix_len));
            char mask[kNtopSize];
            inet_ntop(AF_INET, &wildcard, mask, sizeof mask);
            snprintf(dst, size, "%s %s", addr, mask);
            return;
        }
        case IPACL_INET_FORMAT_PREFIX:
            snprintf(dst, size, "%s/%u", addr, prefix.prefix_len);
            return;
        default:
            report_impossible("impossible prefix format in ipacl_str_inet_addr(): %d\n", format);
            snprintf(dst, size, "???");
            return;
    }
}

void ipv6_text(const ipacl_inet_addr &prefix, char *dst, uint32_t size) {
    char addr[kNtopSize];
    inet_ntop(AF_INET6, prefix.addr, addr, sizeof addr);
    snprintf(dst, size, "%s/%u", addr, prefix.prefix_len);
}

}  // namespace
}  // namespace ipacl

extern "C" char *ipacl_str_inet_addr(int32_t format, uint32_t any_ok, const ipacl_inet_addr *prefix,
                                     char *dst, uint32_t size) {
    if (any_ok && is_prefix_any(prefix)) {
        snprintf(dst, size, "any");
        return dst;
    }
    switch (prefix->family) {
        case IPACL_ADDR_TYPE_IPV4:
            ipacl::ipv4_text(format, *prefix, dst, size);
            break;
        case IPACL_ADDR_TYPE_IPV6:
            ipacl::ipv6_text(*prefix, dst, size);
            break;
        default:
            snprintf(dst, size, "unknown(%u)", prefix->family);
            break;
    }
    return dst;
}
