// Conversion between a prefix length and its network or wildcard mask.
// Both forms are handled as one: a wildcard mask is a network mask with
// every byte complemented, so each byte is normalised on the way in or out.
#include <cstring>

#include <ipacl/bm.h>

namespace ipacl::bm {
namespace {

constexpr uint32_t kMaxMaskSize = 16;  // an IPv6 mask

// The byte as it would read in the normal (ones first) form.
constexpr uint8_t normal(uint8_t byte, uint32_t inverse) {
    return inverse ? static_cast<uint8_t>(~byte) : byte;
}

constexpr uint32_t leading_ones(uint8_t byte) {
    uint32_t n = 0;
    while (n < 8 && (byte & (0x80u >> n))) ++n;
    return n;
}

}  // namespace
}  // namespace ipacl::bm

extern "C" {

ipacl_rc ipacl_bm_mask_to_len(const uint8_t *mask, uint32_t size, uint32_t *len, uint32_t inverse) {
    using ipacl::bm::normal;
    uint32_t ignored;
    if (!len) len = &ignored;
    *len = 0;
    if (!mask || size == 0 || size > ipacl::bm::kMaxMaskSize) return IPACL_E_FAIL;

    uint32_t full = 0;
    while (full < size && normal(mask[full], inverse) == 0xFF) ++full;
    if (full == size) {
        *len = size * 8;
        return IPACL_OK;
    }
    const uint8_t edge = normal(mask[full], inverse);
    const uint32_t bits = ipacl::bm::leading_ones(edge);
    // Stored before the rest is checked: a caller that gets IPACL_E_FAIL can
    // still see how far the prefix ran.
    *len = full * 8 + bits;
    if (edge & (0xFFu >> bits)) return IPACL_E_FAIL;
    for (uint32_t i = full + 1; i < size; ++i)
        if (normal(mask[i], inverse) != 0) return IPACL_E_FAIL;
    return IPACL_OK;
}

ipacl_rc ipacl_bm_len_to_mask(uint8_t *mask, uint32_t size, uint32_t len, uint32_t inverse) {
    if (!mask || size == 0 || static_cast<uint64_t>(len) > static_cast<uint64_t>(size) * 8)
        return IPACL_E_FAIL;
    // Whole bytes are counted in 8 bits, which covers every mask of up to 16
    // bytes that this conversion is meant for.
    const uint8_t whole = static_cast<uint8_t>(len / 8);
    const uint32_t rest = len % 8;
    const uint8_t full = inverse ? 0x00 : 0xFF;
    memset(mask, full, whole);
    memset(mask + whole, static_cast<uint8_t>(~full), size - whole);
    // The partial byte is written even when len fills the mask exactly, so
    // the caller's array carries one spare byte behind its size bytes.
    const uint8_t partial = static_cast<uint8_t>(0xFFu << (8 - rest));
    mask[whole] = ipacl::bm::normal(partial, inverse);
    return IPACL_OK;
}

}  // extern "C"
