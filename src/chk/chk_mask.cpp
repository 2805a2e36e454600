#include "chk/mask.h"

extern "C" uint32_t ipacl_chk_mask(uint32_t wildcard, char *err) {
    return ipacl::check_mask(wildcard, err);
}
