// The manager's half of enforcement: its accepted filters become the rules
// of its ACL chain on the management interface, and it reads them back with
// their counters.
#include "management_net.h"
#include "narrator.h"

#include <ipacl/enums.h>
#include <ipacl/netfilter.h>
#include <ipacl/show.h>

#include <cstring>

namespace ipacl_tool::demo {
namespace {

constexpr role me = role::manager;
constexpr uint32_t max_rules = 32;

bool apply_family(uint32_t family, const std::vector<ipacl_filter> &filters) {
    std::vector<ipacl_filter> chosen;
    for (const ipacl_filter &filter : filters)
        if (filter.addr_type == family) chosen.push_back(filter);
    if (chosen.empty()) return true;
    char err[IPACL_NF_ERR_TEXT_SIZE] = {};
    uint32_t rc = ipacl_nf_apply(family, IPACL_DIR_IN, management_interface().c_str(),
                                 chosen.data(), static_cast<uint32_t>(chosen.size()), err);
    const char *name = family == IPACL_ADDR_TYPE_IPV6 ? "IPv6" : "IPv4";
    if (rc != IPACL_OK) {
        say(me, "error", "ipacl_nf_apply (%s): 0x%08x %s", name, rc, err);
        return false;
    }
    say(me, "enforce", "ipacl_nf_apply: %zu %s filter(s) and the implicit deny, inbound on %s",
        chosen.size(), name, management_interface().c_str());
    return true;
}

}  // namespace

bool enforce_filters(const std::vector<ipacl_filter> &filters, uint32_t family) {
    return apply_family(family, filters);
}

void show_enforced_rules() {
    char chain[IPACL_CHAIN_NAME_SIZE] = {};
    char err[IPACL_NF_ERR_TEXT_SIZE] = {};
    ipacl_nf_chain_name(IPACL_DIR_IN, chain, err);
    std::vector<uint8_t> buf(ipacl_nf_rsp_size(IPACL_IPT_OP_ALL_RULES, max_rules));
    auto *rsp = reinterpret_cast<ipacl_ipt_rsp *>(buf.data());
    uint32_t rc = ipacl_nf_query(IPACL_IPT_OP_ALL_RULES, chain, 0, rsp,
                                 static_cast<uint32_t>(buf.size()), err);
    if (rc != IPACL_OK) {
        say(me, "error", "ipacl_nf_query: 0x%08x %s", rc, err);
        return;
    }
    say(me, "rules",
        "ipacl_nf_query and ipacl_show_rule_info: chain %s of %s, with counters:", chain,
        management_interface().c_str());
    before_display();
    for (uint32_t i = 0; i < rsp->count; ++i) {
        ipacl_rule_info info;
        std::memcpy(&info, rsp->records + i * sizeof info, sizeof info);
        ipacl_show_rule_info(i == 0 ? 1 : 0, &info);
    }
    flush();
}

}  // namespace ipacl_tool::demo
