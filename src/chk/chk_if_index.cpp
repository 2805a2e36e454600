// Interfaces that may carry a profile, by the type the platform reports.
#include <ipacl/chk.h>

#include <cstdio>
#include <cstring>

#include "chk/message.h"
#include "platform/if_index.h"

namespace {

constexpr uint8_t kProfileIfTypes[] = {2, 4, 5, 6, 7, 8, 9, 10, 11};

bool may_carry_profile(uint8_t type) {
    for (uint8_t allowed : kProfileIfTypes)
        if (allowed == type) return true;
    return false;
}

}  // namespace

// The platform's own code is passed back when it cannot tell the type.
extern "C" uint32_t ipacl_chk_if_index(uint32_t if_index, char *err) {
    ipacl_str_zero(err);
    uint8_t type = 0;
    if (int rc = if_index_get_type(if_index, &type)) {
        if (err) strcpy(err, "bad if type");
        return static_cast<uint32_t>(rc);
    }
    if (may_carry_profile(type)) return IPACL_OK;
    return ipacl::fail(IPACL_E_BAD_IF_TYPE, err,
                       [&](char *e) { sprintf(e, "if type %u not allowed", type); });
}
