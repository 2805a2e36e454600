#include "cmp/cmp_prefix.h"

#include <ipacl/enums.h>

namespace {

constexpr int32_t kAddrBits = 8 * sizeof(ipacl_inet_addr::addr);

// Bits of the address that the prefix covers: the length, clamped to the
// family's width.  Other families keep their length but never reach past the
// address bytes: the length word behind them is the same in both prefixes
// anyway (the lengths were found equal), so that bound changes no result.
int32_t covered_bits(const ipacl_inet_addr &p) {
    auto bits = static_cast<int32_t>(p.prefix_len);
    if (p.family == IPACL_ADDR_TYPE_IPV4 && bits > 32) return 32;
    if (bits > kAddrBits) return kAddrBits;
    return bits;
}

}  // namespace

extern "C" int32_t ipacl_cmp_prefix(const ipacl_inet_addr *a, const ipacl_inet_addr *b) {
    if (a->family != b->family)
        return static_cast<int32_t>(a->family) - static_cast<int32_t>(b->family);
    auto a_len = static_cast<int32_t>(a->prefix_len);
    auto b_len = static_cast<int32_t>(b->prefix_len);
    if (a_len != b_len) return a_len < b_len ? -1 : 1;

    int32_t bits = covered_bits(*a);
    const uint8_t *x = a->addr;
    const uint8_t *y = b->addr;
    for (; bits >= 8; bits -= 8, ++x, ++y)
        if (*x != *y) return *x < *y ? -1 : 1;
    if (bits < 1) return 0;
    auto top = static_cast<uint8_t>(0xFFu << (8 - bits));
    return static_cast<int32_t>(*x & top) - static_cast<int32_t>(*y & top);
}
