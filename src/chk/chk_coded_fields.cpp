// Checks of single coded fields by their range.
#include <ipacl/chk.h>
#include <ipacl/enums.h>

#include <cstdio>

#include "chk/range_rules.h"

using ipacl::pass;

extern "C" {

uint32_t ipacl_chk_proto(uint32_t proto, char *err) {
    return ipacl::check_field<ipacl::kProtoRule>(proto, err);
}

uint32_t ipacl_chk_dir(uint32_t dir, char *err) {
    return ipacl::check_field<ipacl::kDirRule>(dir, err);
}

// The quen side keeps a copy of its own.
uint32_t ipacl_chk_quen_dir(uint32_t dir, char *err) { return ipacl_chk_dir(dir, err); }

uint32_t ipacl_chk_prof_type(uint32_t prof_type, char *err) {
    return ipacl::check_field<ipacl::kProfTypeRule>(prof_type, err);
}

uint32_t ipacl_chk_rs(uint32_t given, uint32_t required, char *err) {
    if (given == required) return pass(err);
    return ipacl::fail(IPACL_E_BAD_RS, err, [&](char *e) {
        sprintf(e, "%s is not allowed for %s operation",
                ipacl::ValueText(ipacl_str_snmp_status, given).s,
                ipacl::ValueText(ipacl_str_snmp_status, required).s);
    });
}

}  // extern "C"
