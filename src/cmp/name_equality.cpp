// Equality of names: profile names ignore case over their whole length;
// interface and chain names are kernel names and match exactly.
#include <ipacl/cmp.h>
#include <ipacl/records.h>

#include <cstring>

#include "base/char_class.h"

namespace {

ipacl_cmp_result eq_of(bool equal) { return equal ? IPACL_CMP_EQ : IPACL_CMP_NE; }

}  // namespace

extern "C" {

// The lowered copy ends at strlen(text); the cleared bytes behind it
// terminate it.  `out` holds IPACL_NAME_SIZE bytes and text at most 64
// characters, as every profile name does.
void ipacl_str_to_lower(const char *text, char *out) {
    memset(out, 0, IPACL_NAME_SIZE);
    const ipacl::CharClass chars;
    size_t length = strlen(text);
    for (size_t i = 0; i < length; ++i) out[i] = chars.lower(text[i]);
}

// The same answer as comparing the two lowered copies with strcmp, computed
// in step so that no name, however long, needs a copy.
ipacl_cmp_result ipacl_cmp_eq_name(const char *a, const char *b) {
    const ipacl::CharClass chars;
    for (;; ++a, ++b) {
        if (chars.lower(*a) != chars.lower(*b)) return IPACL_CMP_NE;
        if (*a == '\0') return IPACL_CMP_EQ;
    }
}

ipacl_cmp_result ipacl_cmp_eq_prof(const ipacl_prof *a, const ipacl_prof *b) {
    return ipacl_cmp_eq_name(a->name, b->name);
}

ipacl_cmp_result ipacl_cmp_eq_if_name(const char *a, const char *b) {
    return eq_of(strcmp(a, b) == 0);
}

ipacl_cmp_result ipacl_cmp_eq_chain_name(const char *a, const char *b) {
    return ipacl_cmp_eq_if_name(a, b);
}

}  // extern "C"
