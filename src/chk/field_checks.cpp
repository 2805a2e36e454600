// The single field checks, each the check that the chains run on one field.
#include <ipacl/chk.h>
#include <ipacl/enums.h>

#include <cstdio>

#include "chk/action.h"
#include "chk/addr_type.h"
#include "chk/icmp.h"
#include "chk/mask.h"
#include "chk/name.h"
#include "chk/name_rsv.h"
#include "chk/ports.h"
#include "chk/prec_tos.h"
#include "chk/range_rules.h"
#include "chk/tcp.h"

using namespace ipacl;

extern "C" {

uint32_t ipacl_chk_proto(uint32_t proto, char *err) { return check_field<kProtoRule>(proto, err); }

uint32_t ipacl_chk_action(uint32_t action, uint32_t log_deny, char *err) {
    return check_action(action, log_deny, err);
}

uint32_t ipacl_chk_tcp(uint32_t proto, uint32_t established, char *err) {
    return check_tcp(proto, established, err);
}

uint32_t ipacl_chk_prec_tos(uint32_t prec, uint32_t tos, char *err) {
    return check_prec_tos(prec, tos, err);
}

uint32_t ipacl_chk_port_num(uint32_t low, uint32_t high, const char *label, char *err) {
    return check_port_num(low, high, label, err);
}

uint32_t ipacl_chk_port_op(uint32_t proto, uint32_t op, uint32_t low, uint32_t high,
                           const char *label, char *err) {
    return check_port_op(proto, op, low, high, label, err);
}

uint32_t ipacl_chk_icmp(uint32_t proto, uint32_t type, uint32_t code, char *err) {
    return check_icmp(proto, type, code, err);
}

uint32_t ipacl_chk_mask(uint32_t wildcard, char *err) { return check_mask(wildcard, err); }

uint32_t ipacl_chk_addr_type(const ipacl_filter *filter, char *err) {
    return check_addr_type(*filter, err);
}

uint32_t ipacl_chk_dir(uint32_t dir, char *err) { return check_field<kDirRule>(dir, err); }

// The quen side keeps a copy of its own.
uint32_t ipacl_chk_quen_dir(uint32_t dir, char *err) { return check_field<kDirRule>(dir, err); }

uint32_t ipacl_chk_prof_type(uint32_t prof_type, char *err) {
    return check_field<kProfTypeRule>(prof_type, err);
}

uint32_t ipacl_chk_rs(uint32_t given, uint32_t required, char *err) {
    if (given == required) return pass(err);
    return fail(IPACL_E_BAD_RS, err, [&](char *e) {
        sprintf(e, "%s is not allowed for %s operation", ValueText(ipacl_str_snmp_status, given).s,
                ValueText(ipacl_str_snmp_status, required).s);
    });
}

uint32_t ipacl_chk_name(const char *name, char *err) {
    return check_name<kListNameRule>(name, err);
}

uint32_t ipacl_chk_chain_name(const char *name, char *err) {
    return check_name<kChainNameRule>(name, err);
}

uint32_t ipacl_chk_name_rsv(const char *name, char *err) { return check_name_rsv(name, err); }

}  // extern "C"
