// ICMP type and code: only on ICMP and ICMPv6, one byte each, and a code
// only under a type.
#pragma once

#include <ipacl/chk.h>
#include <ipacl/enums.h>
#include <ipacl/str_scalar.h>

#include <cstdio>

#include "chk/message.h"

namespace ipacl {

inline constexpr uint32_t kIcmpLimit = 256;

inline bool icmp_is_set(uint32_t value) { return value != IPACL_ICMP_TYPE_ANY; }
inline bool is_icmp(uint32_t proto) {
    return proto == IPACL_PROTO_ICMP || proto == IPACL_PROTO_ICMP6;
}

inline ValueText icmp_type_text(uint32_t type) { return ValueText(ipacl_str_icmp_type, type); }
inline ValueText icmp_code_text(uint32_t code) { return ValueText(ipacl_str_icmp_code, code); }

inline uint32_t check_icmp_on_other_proto(uint32_t proto, uint32_t type, uint32_t code, char *err) {
    if (icmp_is_set(type))
        return fail(IPACL_E_ICMP_TYPE_NOT_ALLOWED, err, [&](char *e) {
            sprintf(e, "icmp type %s is not allowed for %s", icmp_type_text(type).s,
                    ValueText(ipacl_str_proto, proto).s);
        });
    if (icmp_is_set(code))
        return fail(IPACL_E_ICMP_CODE_NOT_ALLOWED, err, [&](char *e) {
            sprintf(e, "icmp code %s is not allowed for %s", icmp_code_text(code).s,
                    ValueText(ipacl_str_proto, proto).s);
        });
    return IPACL_OK;
}

inline uint32_t check_icmp_on_icmp(uint32_t type, uint32_t code, char *err) {
    if (icmp_is_set(type)) {
        if (type >= kIcmpLimit)
            return fail(IPACL_E_BAD_ICMP_TYPE, err, [&](char *e) {
                sprintf(e, "invalid icmp type %s", icmp_type_text(type).s);
            });
        if (icmp_is_set(code) && code >= kIcmpLimit)
            return fail(IPACL_E_BAD_ICMP_CODE, err, [&](char *e) {
                sprintf(e, "invalid icmp code %s", icmp_code_text(code).s);
            });
    } else if (icmp_is_set(code)) {
        return fail(IPACL_E_ICMP_CODE_NOT_ALLOWED, err, [&](char *e) {
            sprintf(e, "icmp code %s is not allowed without icmp type", icmp_code_text(code).s);
        });
    }
    return IPACL_OK;
}

inline uint32_t check_icmp(uint32_t proto, uint32_t type, uint32_t code, char *err) {
    uint32_t rc = is_icmp(proto) ? check_icmp_on_icmp(type, code, err)
                                 : check_icmp_on_other_proto(proto, type, code, err);
    return rc ? rc : pass(err);
}

}  // namespace ipacl
