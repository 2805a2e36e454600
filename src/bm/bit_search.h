// The search engine of the next-set and next-clear operations, inline so
// that the pool's allocation runs it without a call.
#pragma once

#include <cstdint>
#include <cstring>

#include "bm/bit_address.h"

namespace ipacl::bm {

// Bits of `byte` that have the wanted value, as set bits.
template <bool Wanted>
constexpr uint32_t matching(uint8_t byte) {
    return Wanted ? byte : static_cast<uint8_t>(~byte);
}

// The lowest bit at or after `start` with the wanted value, into *found.
// Bit i is bit i % 8 of byte i / 8, so on a little-endian machine a word
// read from byte k holds bits 8k and up in order: whole words are looked
// at first (a pool's bitmap of 32 or 64 slots is one word, with no branch
// on which byte holds the answer), the bytes of a tail after.
template <bool Wanted>
inline bool find(const uint8_t *bitmap, uint32_t size, uint32_t start, uint32_t *found) {
    uint32_t i = byte_of(start);
    uint32_t first_pos = start % 8;
    if constexpr (__BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__) {
        for (; size >= 4 && i <= size - 4; i += 4, first_pos = 0) {
            uint32_t word = 0;
            std::memcpy(&word, bitmap + i, 4);
            const uint32_t candidates = (Wanted ? word : ~word) & (~0u << first_pos);
            if (candidates == 0) continue;
            *found = i * 8 + static_cast<uint32_t>(__builtin_ctz(candidates));
            return true;
        }
    }
    for (; i < size; ++i, first_pos = 0) {
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
