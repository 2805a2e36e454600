// Equality of numbers, bindings and protocols.
#include <ipacl/cmp.h>
#include <ipacl/enums.h>

namespace {

ipacl_cmp_result eq_of(bool equal) { return equal ? IPACL_CMP_EQ : IPACL_CMP_NE; }

// The protocol number that a filter's wildcard protocol (-1, "ip") stands
// for in each address family.
uint32_t any_proto_of(uint32_t family) {
    switch (family) {
        case IPACL_ADDR_TYPE_IPV4:
            return IPACL_PROTO_IP;
        case IPACL_ADDR_TYPE_IPV6:
            return IPACL_PROTO_IPV6;
        default:
            return IPACL_PROTO_ANY;
    }
}

}  // namespace

extern "C" {

ipacl_cmp_result ipacl_cmp_eq_index(uint32_t a, uint32_t b) { return eq_of(a == b); }
ipacl_cmp_result ipacl_cmp_eq_dir(uint32_t a, uint32_t b) { return ipacl_cmp_eq_index(a, b); }
ipacl_cmp_result ipacl_cmp_eq_if_index(uint32_t a, uint32_t b) { return ipacl_cmp_eq_index(a, b); }

ipacl_cmp_result ipacl_cmp_eq_if_prof(const ipacl_if_prof_key *a, const ipacl_if_prof_key *b) {
    return eq_of(a->if_index == b->if_index && a->direction == b->direction);
}

ipacl_cmp_result ipacl_cmp_eq_if_prof_field(const ipacl_if_prof *a, const ipacl_if_prof *b) {
    if (ipacl_cmp_eq_name(a->prof_name, b->prof_name) != IPACL_CMP_EQ) return IPACL_CMP_NE;
    return eq_of(a->if_index == b->if_index && a->direction == b->direction);
}

ipacl_cmp_result ipacl_cmp_eq_proto(uint32_t a, uint32_t b, uint32_t family) {
    uint32_t any = any_proto_of(family);
    bool wildcard_match = (a == IPACL_PROTO_ANY && b == any) || (b == IPACL_PROTO_ANY && a == any);
    return eq_of(a == b || wildcard_match);
}

}  // extern "C"
