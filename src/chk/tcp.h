// The established flag belongs to TCP.
#pragma once

#include <ipacl/chk.h>
#include <ipacl/enums.h>

#include <cstdio>

#include "chk/message.h"

namespace ipacl {

inline uint32_t check_tcp(uint32_t proto, uint32_t established, char *err) {
    if (proto == IPACL_PROTO_TCP) {
        if (established > 1)
            return fail(IPACL_E_BAD_ESTABLISHED, err,
                        [&](char *e) { sprintf(e, "invalid established %u", established); });
    } else if (established != 0) {
        return fail(IPACL_E_ESTABLISHED_NOT_ALLOWED, err, [&](char *e) {
            sprintf(e, "establshed is not allowed for %s", ValueText(ipacl_str_proto, proto).s);
        });
    }
    return pass(err);
}

}  // namespace ipacl
