// Presence and length of list, profile and chain names.
#pragma once

#include <ipacl/chk.h>

#include <cstdio>
#include <cstring>

#include "chk/message.h"

namespace ipacl {

struct NameRule {
    uint32_t max_length;
};

inline constexpr NameRule kListNameRule{IPACL_NAME_MAX_LEN};
inline constexpr NameRule kChainNameRule{IPACL_CHAIN_NAME_MAX_LEN};

// Length up to `limit`, walked here: names are short and a library call
// costs more than the walk.
inline size_t length_up_to(const char *name, size_t limit) {
    size_t n = 0;
    while (n < limit && name[n]) ++n;
    return n;
}

// A null name is as missing as an empty one.
template <const NameRule &R>
uint32_t check_name(const char *name, char *err) {
    if (!name || name[0] == '\0')
        return fail(IPACL_E_NO_NAME, err, [](char *e) { strcpy(e, "missing name"); });
    if (length_up_to(name, R.max_length + 1) > R.max_length)
        return fail(IPACL_E_NAME_TOO_LONG, err, [&](char *e) {
            sprintf(e, "length of '%s' exceed %u characters", name, R.max_length);
        });
    return pass(err);
}

}  // namespace ipacl
