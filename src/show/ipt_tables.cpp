// Table displays of the iptables state: rule summaries and chains.
#include <ipacl/enums.h>
#include <ipacl/show.h>

#include "show/table.h"
#include "wire/endian.h"

namespace {

using namespace ipacl::show;

// An address of an entry, kept in network order, as ipacl_str_addr prints a
// host-order one ("any" for 0).
template <size_t Offset>
void entry_address(const uint8_t *p, char *out) {
    ipacl_str_addr(ipacl::wire::load<uint32_t, ipacl::wire::Order::big>(p + Offset), out);
}

// The rule-summary title row does not line up with its rule of dashes and
// its rows: that is how the summary has always looked.
constexpr const char *kRuleInfoHeader[] = {
    "\nRule Pro Source IP       Dest IP         In       Out      Target   # Packets",
    "--- ---- --------------- --------------- -------- -------- -------- ---------",
};
constexpr Column kRuleInfo[] = {
    column(offsetof(ipacl_rule_info, rule_num), left_number<uint32_t, 3>, 0, " "),
    column(offsetof(ipacl_rule_info, entry.proto), named<ipacl_str_proto, uint16_t>, 4, " "),
    column(offsetof(ipacl_rule_info, entry), entry_address<offsetof(ipacl_ipt_entry, src)>, 15,
           " "),
    column(offsetof(ipacl_rule_info, entry), entry_address<offsetof(ipacl_ipt_entry, dst)>, 15,
           " "),
    column(offsetof(ipacl_rule_info, entry.in_if), chars<IPACL_KERNEL_IF_SIZE>, 8, " "),
    column(offsetof(ipacl_rule_info, entry.out_if), chars<IPACL_KERNEL_IF_SIZE>, 8, " "),
    column(offsetof(ipacl_rule_info, target), chars<IPACL_TARGET_NAME_SIZE>, 8, " "),
    column(offsetof(ipacl_rule_info, entry.packets), number<uint64_t>, 0, "\n"),
};

constexpr const char *kChainHeader[] = {
    "\nEntry    Chain Name                       Policy    # Packets",
    "-----    -----------------------------    ------    ---------",
};
constexpr Column kBuiltinChain[] = {
    column(offsetof(ipacl_ipt_chain, entry), left_number<uint32_t, 5>, 0, "    "),
    column(offsetof(ipacl_ipt_chain, chain), chars<IPACL_CHAIN_NAME_SIZE>, 29, "    "),
    column(offsetof(ipacl_ipt_chain, policy), chars<IPACL_TARGET_NAME_SIZE>, 6, "    "),
    column(offsetof(ipacl_ipt_chain, packets), number<uint64_t>, 0, "\n"),
};
// A user chain has no policy, and the kernel keeps no counter for it.
constexpr Column kUserChain[] = {
    column(offsetof(ipacl_ipt_chain, entry), left_number<uint32_t, 5>, 0, "    "),
    column(offsetof(ipacl_ipt_chain, chain), chars<IPACL_CHAIN_NAME_SIZE>, 29, "\n"),
};

}  // namespace

extern "C" {

void ipacl_show_rule_info(uint32_t first, const ipacl_rule_info *info) {
    if (info != nullptr) print_table(first, info, kRuleInfoHeader, kRuleInfo);
}

void ipacl_show_ipt_chain(uint32_t first, const ipacl_ipt_chain *chain) {
    if (chain == nullptr) return;
    if (chain->policy[0] != '\0')
        print_table(first, chain, kChainHeader, kBuiltinChain);
    else
        print_table(first, chain, kChainHeader, kUserChain);
}

}  // extern "C"
