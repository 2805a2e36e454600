// Single-bit operations: set, clear and the two tests.  Each pair is one
// engine parameterised by the bit value it is about.
#include <cstdio>

#include <ipacl/bm.h>

#include "bm/bit_address.h"

namespace ipacl::bm {
namespace {

template <bool Wanted>
ipacl_rc put_bit(uint8_t *bitmap, uint32_t size, uint32_t bit, char *err) {
    if (!bitmap) {
        ipacl_str_zero(err);
        return IPACL_E_BAD_ARG;
    }
    if (!in_range(size, bit)) {
        if (err) sprintf(err, "bit %u > size %u", bit, size);
        return IPACL_E_BAD_ARG;
    }
    uint8_t &byte = bitmap[byte_of(bit)];
    const bool is_set = (byte & value_of(bit)) != 0;
    // An unchanged bit leaves err alone: callers chain these calls and read
    // the last message that mattered.
    if (is_set == Wanted) return IPACL_OK;
    byte = static_cast<uint8_t>(Wanted ? byte | value_of(bit) : byte & ~value_of(bit));
    ipacl_str_zero(err);
    return IPACL_OK;
}

// A bit outside the bitmap counts as clear; each test names its own message.
template <bool Wanted>
uint32_t test_bit(const uint8_t *bitmap, uint32_t size, uint32_t bit, char *err,
                  const char *out_of_range) {
    const uint32_t clear_answer = Wanted ? 0 : 1;
    if (!in_range(size, bit)) {
        if (err) sprintf(err, out_of_range, bit, size);
        return clear_answer;
    }
    ipacl_str_zero(err);
    if (!bitmap) return clear_answer;
    const bool is_set = (bitmap[byte_of(bit)] & value_of(bit)) != 0;
    return is_set == Wanted ? 1 : 0;
}

}  // namespace
}  // namespace ipacl::bm

extern "C" {

ipacl_rc ipacl_bm_set(uint8_t *bitmap, uint32_t size, uint32_t bit, char *err) {
    return ipacl::bm::put_bit<true>(bitmap, size, bit, err);
}

ipacl_rc ipacl_bm_clr(uint8_t *bitmap, uint32_t size, uint32_t bit, char *err) {
    return ipacl::bm::put_bit<false>(bitmap, size, bit, err);
}

uint32_t ipacl_bm_is_set(const uint8_t *bitmap, uint32_t size, uint32_t bit, char *err) {
    return ipacl::bm::test_bit<true>(bitmap, size, bit, err, "bit %u > size %u");
}

uint32_t ipacl_bm_is_clr(const uint8_t *bitmap, uint32_t size, uint32_t bit, char *err) {
    // "ibt" is the text operators and log scrapers already know; keep it.
    return ipacl::bm::test_bit<false>(bitmap, size, bit, err, "ibt %u > size %u");
}

}  // extern "C"
