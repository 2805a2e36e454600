// Small helpers for the decode displays: reading packed words and printing
// labelled lines in the library's block style (labels padded to 24).
#pragma once

#include <cstdint>
#include <cstddef>

#include "wire/endian.h"

namespace ipacl_tool {

inline uint32_t word_at(const uint8_t *bytes, std::size_t offset) {
    return ipacl::wire::load<uint32_t, ipacl::wire::Order::native>(bytes + offset);
}

inline uint32_t big_endian_at(const uint8_t *bytes, std::size_t offset) {
    return ipacl::wire::load<uint32_t, ipacl::wire::Order::big>(bytes + offset);
}

void show_number(const char *label, uint32_t value);
void show_hex(const char *label, uint32_t value);
void show_text(const char *label, const char *text);
// A field of `size` bytes printed up to its first NUL.
void show_bounded_text(const char *label, const uint8_t *text, std::size_t size);
// An enumerated word: the library's text of it.
void show_named(const char *label, uint32_t (*text)(uint32_t, char *), uint32_t value);
void show_bytes(const char *label, const uint8_t *bytes, std::size_t size);

}  // namespace ipacl_tool
