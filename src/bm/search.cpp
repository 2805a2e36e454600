// Searches for the next set or clear bit.  Whole bytes that cannot hold a
// match (0x00 when looking for a set bit, 0xFF for a clear one) are skipped
// before any bit is looked at.
#include <ipacl/bm.h>

#include "bm/bit_address.h"

namespace ipacl::bm {
namespace {

// Bits of `byte` that have the wanted value, as set bits.
template <bool Wanted>
constexpr uint32_t matching(uint8_t byte) {
    return Wanted ? byte : static_cast<uint8_t>(~byte);
}

// The lowest bit at or after `start` with the wanted value, into *found.
template <bool Wanted>
bool find(const uint8_t *bitmap, uint32_t size, uint32_t start, uint32_t *found) {
    uint32_t first_pos = start % 8;
    for (uint32_t i = byte_of(start); i < size; ++i, first_pos = 0) {
        const uint32_t candidates = matching<Wanted>(bitmap[i]) & (0xFFu << first_pos);
        if (candidates == 0) continue;
        *found = i * 8 + static_cast<uint32_t>(__builtin_ctz(candidates));
        return true;
    }
    return false;
}

template <bool Wanted>
ipacl_rc next(const uint8_t *bitmap, uint32_t size, uint32_t start, uint32_t *out) {
    uint32_t found = 0;
    const bool ok = bitmap && find<Wanted>(bitmap, size, start, &found);
    if (out) *out = ok ? found : 0;
    return ok ? IPACL_OK : IPACL_E_FAIL;
}

}  // namespace
}  // namespace ipacl::bm

extern "C" {

ipacl_rc ipacl_bm_next_set(const uint8_t *bitmap, uint32_t size, uint32_t start, uint32_t *bit) {
    return ipacl::bm::next<true>(bitmap, size, start, bit);
}

// Not a pure search: the pool allocates its slots with it, so the bit it
// finds is taken (set) before it returns.
ipacl_rc ipacl_bm_next_clr(uint8_t *bitmap, uint32_t size, uint32_t start, uint32_t *bit) {
    uint32_t found = 0;
    const ipacl_rc rc = ipacl::bm::next<false>(bitmap, size, start, &found);
    if (rc == IPACL_OK) bitmap[ipacl::bm::byte_of(found)] |= ipacl::bm::value_of(found);
    if (bit) *bit = found;
    return rc;
}

}  // extern "C"
