// Action and its log-deny flag.  With permit only the value 1 is refused:
// other values there mean nothing and pass.
#pragma once

#include <ipacl/chk.h>
#include <ipacl/enums.h>

#include <cstdio>

#include "chk/range_rules.h"

namespace ipacl {

inline uint32_t check_action(uint32_t action, uint32_t log_deny, char *err) {
    if (uint32_t rc = check_range<kActionRule>(action, err)) return rc;
    if (action == IPACL_ACTION_DENY && log_deny > 1)
        return fail(IPACL_E_BAD_LOG_DENY, err,
                    [&](char *e) { sprintf(e, "invalid log-deny %u", log_deny); });
    if (action == IPACL_ACTION_PERMIT && log_deny == 1)
        return fail(IPACL_E_LOG_DENY_NOT_ALLOWED, err, [&](char *e) {
            sprintf(e, "log-deny is not allowed for %s", ValueText(ipacl_str_action, action).s);
        });
    return pass(err);
}

}  // namespace ipacl
