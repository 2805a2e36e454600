#include "chk/ports.h"

extern "C" {

uint32_t ipacl_chk_port_num(uint32_t low, uint32_t high, const char *label, char *err) {
    return ipacl::check_port_num(low, high, label, err);
}

uint32_t ipacl_chk_port_op(uint32_t proto, uint32_t op, uint32_t low, uint32_t high,
                           const char *label, char *err) {
    return ipacl::check_port_op(proto, op, low, high, label, err);
}

}  // extern "C"
