// Checks that a value read from the persistent store is large enough for
// its kest type.
#include <cstdio>

#include <ipacl/enums.h>
#include <ipacl/wire.h>

#include "wire/kest_sizes.h"

extern "C" uint32_t ipacl_sizeof_kest_chk(uint32_t type, uint32_t size, char *err) {
    ipacl_str_zero(err);
    const ipacl::wire::KestSizes *k = ipacl::wire::find_kest(type);
    if (!k) {
        if (err) sprintf(err, "bad type %u", type);
        return IPACL_E_BAD_ARG;
    }
    if (size < k->min_value) {
        if (err) {
            char type_text[IPACL_STR_SIZE];
            ipacl_str_kest_type(type, type_text);
            sprintf(err, "type %s bad size %u", type_text, size);
        }
        return IPACL_E_BAD_ARG;
    }
    return IPACL_OK;
}
