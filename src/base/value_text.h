// One engine for the text of a single value.  A value form is a constexpr
// table of named values and the form every other value prints in: an
// enumeration names a few values and prints the rest in its own fallback
// format; a scalar names one special value and prints every other as a
// number.  A lookup is a short compare chain over the table, so gaps
// between values cost nothing.
#pragma once

#include <ipacl/records.h>

#include <cstddef>
#include <cstdint>
#include <cstdio>

namespace ipacl {

// Size of the buffers that every ipacl_str_* function may fill.
inline constexpr size_t kTextSize = 40;
static_assert(kTextSize == IPACL_STR_SIZE, "the value texts fill the callers' buffers");

struct EnumName {
    uint32_t value;
    const char *text;
};

// How a value without a name prints: through the form's printf format,
// given the value as unsigned or (for "%d" forms) as signed, or as a dotted
// quad of its four bytes, most significant first.
enum class NumberForm { unsigned_number, signed_number, dotted };

template <size_t N>
constexpr const char *enum_find(const EnumName (&table)[N], uint32_t value) {
    for (const EnumName &e : table)
        if (e.value == value) return e.text;
    return nullptr;
}

// Returns the length of the text written (every form fits kTextSize bytes
// for any 32-bit value).
template <size_t N>
uint32_t value_text(const EnumName (&table)[N], uint32_t value, char *dst, const char *fallback,
                    NumberForm form = NumberForm::unsigned_number) {
    int n;
    if (const char *text = enum_find(table, value))
        n = snprintf(dst, kTextSize, "%s", text);
    else if (form == NumberForm::dotted)
        n = snprintf(dst, kTextSize, "%u.%u.%u.%u", value >> 24, (value >> 16) & 0xFFu,
                     (value >> 8) & 0xFFu, value & 0xFFu);
    else if (form == NumberForm::signed_number)
        n = snprintf(dst, kTextSize, fallback, static_cast<int32_t>(value));
    else
        n = snprintf(dst, kTextSize, fallback, value);
    return static_cast<uint32_t>(n);
}

}  // namespace ipacl
