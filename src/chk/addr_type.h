// A filter's address type and the families of its two prefixes agree.
#pragma once

#include <ipacl/chk.h>
#include <ipacl/enums.h>

#include <cstdio>
#include <cstring>

#include "chk/message.h"

namespace ipacl {

struct FamilyRule {
    uint32_t addr_type;
    const char *src_message;
    const char *dst_message;
};

inline constexpr FamilyRule kFamilyRules[] = {
    {IPACL_ADDR_TYPE_IPV4, "source prefix type should be IPv4",
     "destination prefix type should be IPv4"},
    {IPACL_ADDR_TYPE_IPV6, "source prefix type should be IPv6",
     "destination prefix type should be IPv6"},
};

inline const FamilyRule *family_rule_of(uint32_t addr_type) {
    for (const FamilyRule &rule : kFamilyRules)
        if (rule.addr_type == addr_type) return &rule;
    return nullptr;
}

// The family messages are this check's whole answer; callers give a buffer
// (a NULL one is still tolerated and gets none).
[[gnu::cold]] inline uint32_t refuse_family(const char *message, char *err) {
    if (err) strcpy(err, message);
    return IPACL_E_BAD_ADDR_TYPE;
}

inline uint32_t check_addr_type(const ipacl_filter &filter, char *err) {
    const FamilyRule *rule = family_rule_of(filter.addr_type);
    if (!rule)
        return fail(IPACL_E_BAD_ADDR_TYPE, err, [&](char *e) {
            sprintf(e, "bad address type %s", ValueText(ipacl_str_addr_type, filter.addr_type).s);
        });
    if (filter.src_addr.family != rule->addr_type) return refuse_family(rule->src_message, err);
    if (filter.dst_addr.family != rule->addr_type) return refuse_family(rule->dst_message, err);
    return pass(err);
}

}  // namespace ipacl
