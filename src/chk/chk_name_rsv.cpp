#include "chk/name_rsv.h"

extern "C" uint32_t ipacl_chk_name_rsv(const char *name, char *err) {
    return ipacl::check_name_rsv(name, err);
}
