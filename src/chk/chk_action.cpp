#include "chk/action.h"

extern "C" uint32_t ipacl_chk_action(uint32_t action, uint32_t log_deny, char *err) {
    return ipacl::check_action(action, log_deny, err);
}
