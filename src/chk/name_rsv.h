// List names are plain words that the command language does not use itself.
#pragma once

#include <ipacl/chk.h>
#include <ipacl/str_scalar.h>

#include <cstddef>
#include <cstdio>

#include "chk/message.h"
#include "chk/reserved_words.h"
#include "base/char_class.h"

namespace ipacl {

inline constexpr size_t kCanonicalLength = 29;  // as ipacl_str_to_chain cuts

// Length of the name when every character is a letter or digit, else -1.
inline ptrdiff_t alnum_length(const char *name) {
    const CharClass chars;
    const char *p = name;
    for (; *p; ++p)
        if (!chars.is_alnum(*p)) return -1;
    return p - name;
}

// The whole name must be letters and digits; its canonical form (lowered,
// 29 characters) must not be a reserved word.  The empty name passes.  Most
// names are cleared by the reserved words' index before a canonical form is
// made.
inline uint32_t check_name_rsv(const char *name, char *err) {
    if (!name) return pass(err);
    ptrdiff_t length = alnum_length(name);
    if (length < 0)
        return fail(IPACL_E_NAME_NOT_ALNUM, err,
                    [&](char *e) { sprintf(e, "%s is not alphanumeric", name); });
    size_t form_length = length < static_cast<ptrdiff_t>(kCanonicalLength)
                             ? static_cast<size_t>(length)
                             : kCanonicalLength;
    if (!kReservedIndex.may_hold(CharClass().lower(name[0]), form_length)) return pass(err);
    char form[IPACL_CHAIN_NAME_SIZE];
    ipacl_str_to_chain(name, form);
    if (find_reserved(form, form_length))
        return fail(IPACL_E_NAME_RESERVED, err, [&](char *e) {
            sprintf(e, "%s is reserved and is not allowed as part of an access list name", name);
        });
    return pass(err);
}

}  // namespace ipacl
