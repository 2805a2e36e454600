// Byte-wise combinations of two bitmaps into a third.  The output may alias
// either input: each byte is read before it is written.
#include <ipacl/bm.h>

namespace ipacl::bm {
namespace {

using Combine = uint8_t (*)(uint8_t first, uint8_t second);

constexpr uint8_t either(uint8_t a, uint8_t b) { return a | b; }
constexpr uint8_t only_in_second(uint8_t first, uint8_t second) {
    return static_cast<uint8_t>(second & ~first);
}
constexpr uint8_t only_in_first(uint8_t first, uint8_t second) {
    return static_cast<uint8_t>(first & ~second);
}

template <Combine Op>
ipacl_rc combine(const uint8_t *first, const uint8_t *second, uint32_t size, uint8_t *out) {
    if (size == 0) return IPACL_OK;
    if (!first || !second || !out) return IPACL_E_BAD_ARG;
    for (uint32_t i = 0; i < size; ++i) out[i] = Op(first[i], second[i]);
    return IPACL_OK;
}

}  // namespace
}  // namespace ipacl::bm

extern "C" {

ipacl_rc ipacl_bm_or(const uint8_t *a, const uint8_t *b, uint32_t size, uint8_t *out) {
    return ipacl::bm::combine<ipacl::bm::either>(a, b, size, out);
}

ipacl_rc ipacl_bm_to_set(const uint8_t *old_bm, const uint8_t *new_bm, uint32_t size,
                         uint8_t *out) {
    return ipacl::bm::combine<ipacl::bm::only_in_second>(old_bm, new_bm, size, out);
}

ipacl_rc ipacl_bm_to_clr(const uint8_t *old_bm, const uint8_t *new_bm, uint32_t size,
                         uint8_t *out) {
    return ipacl::bm::combine<ipacl::bm::only_in_first>(old_bm, new_bm, size, out);
}

}  // extern "C"
