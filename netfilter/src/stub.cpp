// Placeholder bodies until the kernel side lands.
#include <ipacl/netfilter.h>

#include <cstdio>

namespace {
uint32_t not_yet(char *err) {
    if (err) std::snprintf(err, IPACL_NF_ERR_TEXT_SIZE, "not built yet");
    return IPACL_NF_E_UNAVAILABLE;
}
}  // namespace

extern "C" {
void ipacl_nf_fill_names(void) {}
uint32_t ipacl_nf_chain_name(uint32_t, char *, char *err) { return not_yet(err); }
uint32_t ipacl_nf_translate(const ipacl_filter *, uint32_t, const char *, ipacl_ipt_rule *,
                            char *err) {
    return not_yet(err);
}
uint32_t ipacl_nf_translate6(const ipacl_filter *, uint32_t, const char *, ipacl_nf_rule6 *,
                             char *err) {
    return not_yet(err);
}
uint32_t ipacl_nf_apply(uint32_t, uint32_t, const char *, const ipacl_filter *, uint32_t,
                        char *err) {
    return not_yet(err);
}
uint32_t ipacl_nf_remove(uint32_t, uint32_t, char *err) { return not_yet(err); }
uint32_t ipacl_nf_query(uint32_t, const char *, uint32_t, ipacl_ipt_rsp *, uint32_t, char *err) {
    return not_yet(err);
}
uint32_t ipacl_nf_rsp_size(uint32_t, uint32_t) { return 12; }
uint32_t ipacl_nf_rules6(const char *, ipacl_nf_rule6 *, uint32_t *, char *err) {
    return not_yet(err);
}
uint32_t ipacl_nf_str_rule6(const ipacl_nf_rule6 *, char *, uint32_t, char *err) {
    return not_yet(err);
}
}
