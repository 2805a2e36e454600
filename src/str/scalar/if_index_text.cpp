// Interface names come from the platform; only "no interface" is ours.
#include <ipacl/enums.h>
#include <ipacl/str_scalar.h>

#include <cstdio>

#include "platform/if_index.h"
#include "base/value_text.h"

extern "C" uint32_t ipacl_str_if_index(uint32_t if_index, char *dst) {
    if (if_index == IPACL_IF_INDEX_NONE)
        return static_cast<uint32_t>(snprintf(dst, ipacl::kTextSize, "no-if"));
    return static_cast<uint32_t>(snprintf_if_index(dst, ipacl::kTextSize, if_index));
}
