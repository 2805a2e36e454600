// Order of names: length first, then the canonical forms (the first 29
// characters in lower case, as ipacl_str_to_chain makes them), all-digit
// forms by their value.  Length first makes numbered lists read naturally
// ("9" before "10").
#include <ipacl/cmp.h>
#include <ipacl/records.h>
#include <ipacl/str_scalar.h>

#include <cstring>

#include "base/char_class.h"

namespace {

constexpr size_t kCanonicalLength = 29;

ipacl_cmp_result order_of(uint32_t a, uint32_t b) {
    if (a < b) return IPACL_CMP_LT;
    if (a > b) return IPACL_CMP_GT;
    return IPACL_CMP_EQ;
}

// Compares the canonical forms of two names of the same length in one pass,
// without making the forms: the first differing lowered character decides
// (as signed bytes), unless both forms are all digits, whose values then
// decide (in the wrapping 32-bit arithmetic of ipacl_str_toint).
ipacl_cmp_result order_of_canonical(const char *a, const char *b, size_t length) {
    const ipacl::CharClass chars;
    ipacl_cmp_result by_text = IPACL_CMP_EQ;
    bool digits = true;
    uint32_t a_value = 0, b_value = 0;
    for (size_t i = 0; i < length; ++i) {
        char x = chars.lower(a[i]);
        char y = chars.lower(b[i]);
        if (by_text == IPACL_CMP_EQ && x != y)
            by_text = static_cast<signed char>(x) < static_cast<signed char>(y) ? IPACL_CMP_LT
                                                                                : IPACL_CMP_GT;
        digits = digits && chars.is_digit(x) && chars.is_digit(y);
        if (!digits) {
            if (by_text != IPACL_CMP_EQ) return by_text;
            continue;
        }
        a_value = a_value * 10 + static_cast<uint32_t>(x - '0');
        b_value = b_value * 10 + static_cast<uint32_t>(y - '0');
    }
    return digits ? order_of(a_value, b_value) : by_text;
}

}  // namespace

extern "C" {

ipacl_cmp_result ipacl_cmp_name(const char *a, const char *b) {
    size_t a_len = strlen(a);
    size_t b_len = strlen(b);
    if (a_len != b_len) return a_len < b_len ? IPACL_CMP_LT : IPACL_CMP_GT;
    if (a_len == 0) return IPACL_CMP_EQ;
    return order_of_canonical(a, b, a_len < kCanonicalLength ? a_len : kCanonicalLength);
}

ipacl_cmp_result ipacl_cmp_prof(const ipacl_prof *a, const ipacl_prof *b) {
    return ipacl_cmp_name(a->name, b->name);
}

ipacl_cmp_result ipacl_cmp_filter(const ipacl_filter *a, const ipacl_filter *b) {
    ipacl_cmp_result by_name = ipacl_cmp_name(a->prof_name, b->prof_name);
    if (by_name != IPACL_CMP_EQ) return by_name;
    return ipacl_cmp_index(a->filter_index, b->filter_index);
}

ipacl_cmp_result ipacl_cmp_index(uint32_t a, uint32_t b) { return order_of(a, b); }

ipacl_cmp_result ipacl_cmp_if_prof(const ipacl_if_prof *a, const ipacl_if_prof *b) {
    ipacl_cmp_result by_index = order_of(a->if_index, b->if_index);
    if (by_index != IPACL_CMP_EQ) return by_index;
    return order_of(a->direction, b->direction);
}

}  // extern "C"
