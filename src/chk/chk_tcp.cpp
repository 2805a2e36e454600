#include "chk/tcp.h"

extern "C" uint32_t ipacl_chk_tcp(uint32_t proto, uint32_t established, char *err) {
    return ipacl::check_tcp(proto, established, err);
}
