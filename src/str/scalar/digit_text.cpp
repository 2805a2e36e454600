// All-digit names: the test and the value, as the name order uses them.
#include <ipacl/str_scalar.h>

#include <cstring>

#include "base/char_class.h"

extern "C" {

// The empty name counts as numeric: two empty names then compare as 0 = 0.
uint32_t ipacl_str_isdigit(const char *s) {
    const ipacl::CharClass chars;
    for (; *s; ++s)
        if (!chars.is_digit(*s)) return 0;
    return 1;
}

// From the last character to the first, in wrapping unsigned arithmetic;
// the result is kept current after every digit.
void ipacl_str_toint(const char *s, uint32_t *out) {
    *out = 0;
    uint32_t place = 1;
    for (size_t i = strlen(s); i-- > 0;) {
        *out += static_cast<uint32_t>(static_cast<int>(s[i]) - '0') * place;
        place *= 10;
    }
}

}  // extern "C"
