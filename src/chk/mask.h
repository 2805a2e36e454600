// A wildcard mask is a run of low-order ones: the host bits that a filter
// ignores.
#pragma once

#include <ipacl/chk.h>

#include <cstdio>

#include "chk/message.h"

namespace ipacl {

// The buffer is cleared before the test.
inline uint32_t check_mask(uint32_t wildcard, char *err) {
    pass(err);
    // Zeros then ones: adding one carries through the ones and leaves no bit
    // in common with the mask.  All ones and zero pass as well.
    if ((wildcard & (wildcard + 1)) == 0) return IPACL_OK;
    return fail(IPACL_E_BAD_WILDCARD, err, [&](char *e) {
        sprintf(e, "invalid wildcard %u.%u.%u.%u", wildcard >> 24, (wildcard >> 16) & 0xFFu,
                (wildcard >> 8) & 0xFFu, wildcard & 0xFFu);
    });
}

}  // namespace ipacl
