// The "any" prefix: length 0 over an all-zero address of the family.
#include <ipacl/cmp.h>
#include <ipacl/enums.h>

#include "base/debug_report.h"

namespace {

bool zero_bytes(const uint8_t *bytes, size_t count) {
    for (size_t i = 0; i < count; ++i)
        if (bytes[i] != 0) return false;
    return true;
}

}  // namespace

// An unknown family cannot be matched against anything more precise, so it
// answers "any" and leaves a trace for the developer.
extern "C" uint32_t is_prefix_any(const ipacl_inet_addr *prefix) {
    switch (prefix->family) {
        case IPACL_ADDR_TYPE_IPV4:
            return prefix->prefix_len == 0 && zero_bytes(prefix->addr, 4);
        case IPACL_ADDR_TYPE_IPV6:
            return prefix->prefix_len == 0 && zero_bytes(prefix->addr, 16);
        default:
            ipacl::report_impossible("impossible address type in is_prefix_any(): %d\n",
                                     static_cast<int32_t>(prefix->family));
            return 1;
    }
}
