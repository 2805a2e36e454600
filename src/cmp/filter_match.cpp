// Two filters that match the same packets the same way.  The fields that only
// place, count or describe a filter (index, order, log-deny, row status,
// port operations, counters, wildcard words) do not take part.
#include <ipacl/cmp.h>

#include <cstddef>
#include <cstring>

#include "cmp/cmp_prefix.h"

namespace {

// The plain 32-bit fields of the match, compared in this order after the
// name, the prefixes, the action and the protocol.  Held as offsets: the
// record is packed and may sit at any address.
constexpr size_t kPlainFields[] = {
    offsetof(ipacl_filter, src_port_low), offsetof(ipacl_filter, src_port_high),
    offsetof(ipacl_filter, dst_port_low), offsetof(ipacl_filter, dst_port_high),
    offsetof(ipacl_filter, established),  offsetof(ipacl_filter, icmp_type),
    offsetof(ipacl_filter, icmp_code),    offsetof(ipacl_filter, precedence),
    offsetof(ipacl_filter, tos),          offsetof(ipacl_filter, fragments),
};

uint32_t field_at(const ipacl_filter *f, size_t offset) {
    uint32_t value;
    memcpy(&value, reinterpret_cast<const char *>(f) + offset, sizeof value);
    return value;
}

}  // namespace

extern "C" ipacl_cmp_result ipacl_cmp_eq_filter_field(const ipacl_filter *a,
                                                      const ipacl_filter *b) {
    if (ipacl_cmp_eq_name(a->prof_name, b->prof_name) != IPACL_CMP_EQ) return IPACL_CMP_NE;
    if (a->src_addr.family != b->src_addr.family) return IPACL_CMP_NE;
    if (ipacl_cmp_prefix(&a->src_addr, &b->src_addr) != 0) return IPACL_CMP_NE;
    if (ipacl_cmp_prefix(&a->dst_addr, &b->dst_addr) != 0) return IPACL_CMP_NE;
    if (a->action != b->action) return IPACL_CMP_NE;
    if (ipacl_cmp_eq_proto(a->protocol, b->protocol, a->src_addr.family) != IPACL_CMP_EQ)
        return IPACL_CMP_NE;
    for (size_t offset : kPlainFields)
        if (field_at(a, offset) != field_at(b, offset)) return IPACL_CMP_NE;
    return IPACL_CMP_EQ;
}
