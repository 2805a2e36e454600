// The canonical form in which names are compared and matched against the
// reserved words: lower case, cut to 29 characters.
#include <ipacl/records.h>
#include <ipacl/str_scalar.h>

#include <cstring>

#include "base/char_class.h"

namespace {
constexpr size_t kCanonicalLength = 29;
}

extern "C" void ipacl_str_to_chain(const char *name, char *dst) {
    memset(dst, 0, IPACL_CHAIN_NAME_SIZE);
    const ipacl::CharClass chars;
    size_t length = strnlen(name, kCanonicalLength);
    for (size_t i = 0; i < length; ++i) dst[i] = chars.lower(name[i]);
}
