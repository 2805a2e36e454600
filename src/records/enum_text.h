// One engine for every enumeration text: a constexpr table of named values
// and the value's fallback format.  A lookup is a short compare chain over
// the table, so gaps between values cost nothing.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>

namespace ipacl {

struct EnumName {
    uint32_t value;
    const char *text;
};

// Size of the buffers that every ipacl_str_* function may fill.
inline constexpr size_t kStrSize = 40;

template <size_t N>
constexpr const char *enum_find(const EnumName (&table)[N], uint32_t value) {
    for (const EnumName &e : table)
        if (e.value == value) return e.text;
    return nullptr;
}

// A named value is written bounded; a fallback unbounded (each fallback form
// fits 40 bytes for any 32-bit value).  `fallback` takes the value as its
// only argument, as unsigned or, for "%d" forms, as signed.
template <size_t N>
uint32_t enum_text(const EnumName (&table)[N], uint32_t value, char *dst, const char *fallback,
                   bool signed_fallback = false) {
    if (const char *text = enum_find(table, value))
        return static_cast<uint32_t>(snprintf(dst, kStrSize, "%s", text));
    if (signed_fallback)
        return static_cast<uint32_t>(sprintf(dst, fallback, static_cast<int32_t>(value)));
    return static_cast<uint32_t>(sprintf(dst, fallback, value));
}

}  // namespace ipacl
