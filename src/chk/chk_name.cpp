#include "chk/name.h"

extern "C" {

uint32_t ipacl_chk_name(const char *name, char *err) {
    return ipacl::check_name<ipacl::kListNameRule>(name, err);
}

uint32_t ipacl_chk_chain_name(const char *name, char *err) {
    return ipacl::check_name<ipacl::kChainNameRule>(name, err);
}

}  // extern "C"
