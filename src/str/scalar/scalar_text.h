// One engine for the scalar texts that print a word for one special value
// and the number itself for every other value.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>

namespace ipacl {

// Size of the buffers that every ipacl_str_* function may fill.
inline constexpr size_t kScalarTextSize = 40;

enum class NumberForm { decimal, dotted };

struct ScalarForm {
    uint32_t special;  // the value that has a word of its own
    const char *special_text;
    NumberForm form;  // how every other value prints
};

template <const ScalarForm &F>
uint32_t scalar_text(uint32_t value, char *dst) {
    int n;
    if (value == F.special)
        n = snprintf(dst, kScalarTextSize, "%s", F.special_text);
    else if constexpr (F.form == NumberForm::dotted)
        n = snprintf(dst, kScalarTextSize, "%u.%u.%u.%u", value >> 24, (value >> 16) & 0xFFu,
                     (value >> 8) & 0xFFu, value & 0xFFu);
    else
        n = snprintf(dst, kScalarTextSize, "%u", value);
    return static_cast<uint32_t>(n);
}

}  // namespace ipacl
