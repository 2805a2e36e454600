#include "chk/icmp.h"

extern "C" uint32_t ipacl_chk_icmp(uint32_t proto, uint32_t type, uint32_t code, char *err) {
    return ipacl::check_icmp(proto, type, code, err);
}
