// Precedence and tos share the same bits of the packet: one or the other.
#pragma once

#include <ipacl/chk.h>
#include <ipacl/enums.h>

#include <cstdio>

#include "chk/range_rules.h"

namespace ipacl {

inline uint32_t check_prec_tos(uint32_t prec, uint32_t tos, char *err) {
    if (prec != IPACL_PREC_ANY && tos != IPACL_TOS_ANY)
        return fail(IPACL_E_PREC_AND_TOS, err, [&](char *e) {
            sprintf(e, "setting both precedence %s and tos %s is not allowed",
                    ValueText(ipacl_str_prec, prec).s, ValueText(ipacl_str_tos, tos).s);
        });
    if (uint32_t rc = check_range<kPrecRule>(prec, err)) return rc;
    if (uint32_t rc = check_range<kTosRule>(tos, err)) return rc;
    return pass(err);
}

}  // namespace ipacl
