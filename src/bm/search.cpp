// Searches for the next set or clear bit.
#include <ipacl/bm.h>

#include "bm/bit_search.h"

namespace ipacl::bm {
namespace {

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
