#include <ipacl/netfilter.h>
extern "C" {
uint32_t ipacl_nf_query(uint32_t, const char *, uint32_t, ipacl_ipt_rsp *, uint32_t, char *) {
    return 1;
}
uint32_t ipacl_nf_rsp_size(uint32_t, uint32_t) { return 12; }
uint32_t ipacl_nf_rules6(const char *, ipacl_nf_rule6 *, uint32_t *, char *) { return 1; }
uint32_t ipacl_nf_str_rule6(const ipacl_nf_rule6 *, char *, uint32_t, char *) { return 1; }
}
