#include "chk/prec_tos.h"

extern "C" uint32_t ipacl_chk_prec_tos(uint32_t prec, uint32_t tos, char *err) {
    return ipacl::check_prec_tos(prec, tos, err);
}
