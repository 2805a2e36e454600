// Small helpers for the decode displays: reading packed words and printing
// labelled lines in the library's block style (labels padded to 24).
#pragma once

#include <cstdint>
#include <cstring>

namespace ipacl_tool {

inline uint32_t word_at(const uint8_t *bytes, std::size_t offset) {
    uint32_t word;
    std::memcpy(&word, bytes + offset, sizeof word);
    return word;
}

inline uint32_t big_endian_at(const uint8_t *bytes, std::size_t offset) {
    return uint32_t{bytes[offset]} << 24 | uint32_t{bytes[offset + 1]} << 16 |
           uint32_t{bytes[offset + 2]} << 8 | uint32_t{bytes[offset + 3]};
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
