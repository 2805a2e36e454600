// Fitting text to columns and lines.
#include <ipacl/str_scalar.h>

#include "base/value_text.h"

extern "C" {

// Width 0 empties the string.  A negative width is taken as it is: only the
// byte at that position is cleared, which callers rely on never doing.
void ipacl_str_n(char *s, int32_t n) {
    if (!s) return;
    if (n > 0) {
        bool padding = false;
        for (int32_t i = 0; i < n; ++i) {
            if (s[i] == '\0') padding = true;
            if (padding) s[i] = ' ';
        }
    }
    s[n] = '\0';
}

// Each character is copied before it is looked at, so the 40th one lands in
// dst[39] and is then overwritten by the terminator.
void ipacl_str_from_line(const char *in, char *dst) {
    for (size_t i = 0; i < ipacl::kTextSize; ++i) {
        dst[i] = in[i];
        if (in[i] == '\0') return;
        if (in[i] == '\n') {
            dst[i] = '\0';
            return;
        }
    }
    dst[ipacl::kTextSize - 1] = '\0';
}

}  // extern "C"
