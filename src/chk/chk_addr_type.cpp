#include "chk/addr_type.h"

extern "C" uint32_t ipacl_chk_addr_type(const ipacl_filter *filter, char *err) {
    return ipacl::check_addr_type(*filter, err);
}
