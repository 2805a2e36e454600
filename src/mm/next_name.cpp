// A numeric name steps by value.  Any other name steps by raising its first
// character that can be raised to the next printable character, leaving the
// rest as it is ("abc" -> "bbc"): this is the order the manager's tables are
// walked in, so it must not be "improved" into a lexicographic successor.
#include "mm/next_name.h"

#include <cctype>
#include <cstdint>
#include <cstdio>
#include <cstring>

#include <ipacl/str_scalar.h>

namespace ipacl {
namespace {

constexpr int kLastAscii = 127;

ipacl_rc step_number(char *name) {
    uint32_t value = 0;
    ipacl_str_toint(name, &value);
    if (value == UINT32_MAX) return IPACL_E_FAIL;
    sprintf(name, "%u", value + 1);  // may grow by one digit: 99 -> 100
    return IPACL_OK;
}

// The next printable character after `c` (a signed byte), or -1.  Bytes 127
// and 0x80..0xFE have none; 0xFF (-1) wraps round to the first printable.
int raised(signed char c) {
    for (int next = c + 1; next >= 0 && next <= kLastAscii; ++next)
        if (isprint(next)) return next;
    return -1;
}

}  // namespace

ipacl_rc ipacl_next_name(char *name, size_t capacity) {
    // A name without its terminator inside the field is not a name.
    if (!name || !memchr(name, '\0', capacity)) return IPACL_E_FAIL;
    // Note that the empty name counts as numeric and steps to "1".
    if (ipacl_str_isdigit(name)) return step_number(name);
    if (name[0] == '\0') return IPACL_E_FAIL;
    for (char *at = name; *at; ++at) {
        const int next = raised(static_cast<signed char>(*at));
        if (next < 0) continue;
        *at = static_cast<char>(next);
        return IPACL_OK;
    }
    return IPACL_E_FAIL;
}

}  // namespace ipacl
