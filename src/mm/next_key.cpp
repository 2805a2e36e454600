// Successors of the keys that the manager's get-next walks step through.
#include <cstdint>

#include <ipacl/enums.h>
#include <ipacl/mm.h>

#include "mm/next_name.h"

extern "C" {

ipacl_rc ipacl_next_prof(ipacl_prof_key *key) {
    return key ? ipacl::ipacl_next_name(key->name, sizeof key->name) : IPACL_E_FAIL;
}

// Each interface is visited in and then out; any other direction moves on
// to the next interface.
ipacl_rc ipacl_next_if_prof(ipacl_if_prof_key *key) {
    if (!key) return IPACL_E_FAIL;
    if (key->direction == IPACL_DIR_IN) {
        key->direction = IPACL_DIR_OUT;
        return IPACL_OK;
    }
    if (key->if_index == UINT32_MAX) return IPACL_E_FAIL;
    ++key->if_index;
    key->direction = IPACL_DIR_IN;
    return IPACL_OK;
}

ipacl_rc ipacl_next_filter(ipacl_filter_key *key) {
    if (!key) return IPACL_E_FAIL;
    if (key->filter_index < UINT32_MAX) {
        ++key->filter_index;
        return IPACL_OK;
    }
    const ipacl_rc rc = ipacl::ipacl_next_name(key->prof_name, sizeof key->prof_name);
    if (rc == IPACL_OK) key->filter_index = 0;
    return rc;
}

}  // extern "C"
