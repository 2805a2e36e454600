// Element sizes of the typed messages and key and value sizes of stored
// records.  Unknown types have size 0.
#include <ipacl/wire.h>

#include "wire/kest_sizes.h"
#include "wire/layout_ipt.h"
#include "wire/layout_messages.h"

namespace ipacl::wire {
namespace {

template <size_t N>
uint32_t size_of_code(const Variant (&table)[N], uint32_t code) {
    for (const Variant &v : table)
        if (v.code == code) return v.size;
    return 0;
}

// Sizes by the exact operation value.  The response converter reads the
// same word as flag bits instead, so 3 is chain rows there but has no size
// here; both readings are what the peers use.
constexpr Variant kIptSizes[] = {
    variant<Rec::ipt_chain>(IPACL_IPT_OP_ALL_CHAINS),
    variant<Rec::ipt_chain>(IPACL_IPT_OP_MATCHED_CHAIN),
    variant<Rec::rule_info>(IPACL_IPT_OP_ALL_RULES),
    variant<Rec::ipt_rule>(IPACL_IPT_OP_MATCHED_RULE),
};

// Match info sizes.  The log info is sized under 13, not under 10 where the
// match converter finds it; 10 has no size.
constexpr Variant kMatchSizes[] = {
    variant<Rec::ipt_tcp>(IPACL_MATCH_TCP),
    variant<Rec::ipt_udp>(IPACL_MATCH_UDP),
    variant<Rec::ipt_icmp>(IPACL_MATCH_ICMP),
    variant<Rec::ipt_tos>(IPACL_MATCH_TOS),
    variant<Rec::ipt_log>(13),
};

}  // namespace
}  // namespace ipacl::wire

using namespace ipacl::wire;

extern "C" uint32_t ipacl_sizeof_access(uint32_t type) {
    return size_of_code(Layout<Rec::access_rsp>::variants, type);
}

extern "C" uint32_t ipacl_sizeof_in(uint32_t type) {
    return size_of_code(Layout<Rec::in_rsp>::variants, type);
}

extern "C" uint32_t ipacl_sizeof_ipt(uint32_t op) { return size_of_code(kIptSizes, op); }

extern "C" uint32_t ipacl_sizeof_ipt_match(uint32_t type) {
    return size_of_code(kMatchSizes, type);
}

extern "C" uint32_t ipacl_sizeof_kest_key(uint32_t type) {
    const KestSizes *k = find_kest(type);
    return k ? k->key : 0;
}

extern "C" uint32_t ipacl_sizeof_kest_val(uint32_t type) {
    const KestSizes *k = find_kest(type);
    return k ? k->value : 0;
}
