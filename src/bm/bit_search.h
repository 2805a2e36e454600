// The search engine of the next-set and next-clear operations, inline so
// that the pool's allocation runs it without a call.
#pragma once

#include <cstdint>

#include "bm/bit_address.h"

namespace ipacl::bm {

// Bits of `byte` that have the wanted value, as set bits.
template <bool Wanted>
constexpr uint32_t matching(uint8_t byte) {
    return Wanted ? byte : static_cast<uint8_t>(~byte);
}

// The lowest bit at or after `start` with the wanted value, into *found.
// Whole bytes that cannot hold a match (0x00 when looking for a set bit,
// 0xFF for a clear one) are skipped before any bit is looked at.
template <bool Wanted>
inline bool find(const uint8_t *bitmap, uint32_t size, uint32_t start, uint32_t *found) {
    uint32_t first_pos = start % 8;
    for (uint32_t i = byte_of(start); i < size; ++i, first_pos = 0) {
        const uint32_t candidates = matching<Wanted>(bitmap[i]) & (0xFFu << first_pos);
        if (candidates == 0) continue;
        *found = i * 8 + static_cast<uint32_t>(__builtin_ctz(candidates));
        return true;
    }
    return false;
}

// The lowest clear bit of the bitmap, taken (set) and reported in *bit.
inline bool take_lowest_clear(uint8_t *bitmap, uint32_t size, uint32_t *bit) {
    if (!bitmap || !find<false>(bitmap, size, 0, bit)) return false;
    bitmap[byte_of(*bit)] |= value_of(*bit);
    return true;
}

}  // namespace ipacl::bm
