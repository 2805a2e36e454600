#include "enforced_pair.h"

#include "xtables_reach.h"

#include "parse/filter_parse.h"

#include <ipacl/enums.h>
#include <ipacl/netfilter.h>

#include <cstring>

namespace ipacl_testbed {
namespace {

constexpr uint32_t max_rules = 32;

std::string chain_of(uint32_t dir) {
    char chain[IPACL_CHAIN_NAME_SIZE] = {};
    char err[IPACL_NF_ERR_TEXT_SIZE];
    ipacl_nf_chain_name(dir, chain, err);
    return chain;
}

}  // namespace

std::unique_ptr<enforced_pair> enforced_pair::create(std::string &why, bool &refused) {
    netns_pair_result made = netns_pair::create();
    refused = made.refused;
    why = made.why;
    if (!made.pair) return nullptr;
    std::unique_ptr<enforced_pair> enforced(new enforced_pair);
    enforced->pair_ = std::move(made.pair);

    if (!xtables_reachable(enforced->pair(), enforced->manager(), why)) {
        refused = true;
        return nullptr;
    }
    return enforced;
}

std::string enforced_pair::enforce(std::initializer_list<const char *> filters, uint32_t dir) {
    std::vector<ipacl_filter> records;
    ipacl_tool::parse_options options;
    for (const char *text : filters) {
        options.index = static_cast<uint32_t>(records.size() + 1);
        ipacl_tool::parse_result parsed = ipacl_tool::parse_filter(text, options);
        if (!parsed.ok) return std::string(text) + ": " + parsed.error.message;
        records.push_back(parsed.filter);
    }
    netns_scope inside(manager().ns_fd, pair().home_fd());
    char err[IPACL_NF_ERR_TEXT_SIZE] = {};
    uint32_t family = records.empty() ? IPACL_ADDR_TYPE_IPV4 : records.front().addr_type;
    uint32_t code = ipacl_nf_apply(family, dir, manager().ifname.c_str(), records.data(),
                                   static_cast<uint32_t>(records.size()), err);
    return code == IPACL_OK ? "" : err;
}

std::vector<uint64_t> enforced_pair::counters4(uint32_t dir) const {
    std::string chain = chain_of(dir);
    std::vector<uint8_t> buf(ipacl_nf_rsp_size(IPACL_IPT_OP_MATCHED_RULE, max_rules));
    std::vector<uint64_t> packets;
    netns_scope inside(manager().ns_fd, pair().home_fd());
    char err[IPACL_NF_ERR_TEXT_SIZE] = {};
    auto *rsp = reinterpret_cast<ipacl_ipt_rsp *>(buf.data());
    if (ipacl_nf_query(IPACL_IPT_OP_MATCHED_RULE, chain.c_str(), 0, rsp,
                       static_cast<uint32_t>(buf.size()), err) != IPACL_OK)
        return packets;
    for (uint32_t i = 0; i < rsp->count; ++i) {
        ipacl_ipt_rule rule;
        std::memcpy(&rule, rsp->records + i * sizeof rule, sizeof rule);
        packets.push_back(rule.entry.packets);
    }
    ipacl_ipt_chain row{};
    auto *chain_rsp = reinterpret_cast<ipacl_ipt_rsp *>(buf.data());
    if (ipacl_nf_query(IPACL_IPT_OP_MATCHED_CHAIN, chain.c_str(), 0, chain_rsp,
                       static_cast<uint32_t>(buf.size()), err) == IPACL_OK &&
        chain_rsp->count == 1) {
        std::memcpy(&row, chain_rsp->records, sizeof row);
        packets.push_back(row.packets);
    }
    return packets;
}

std::vector<uint64_t> enforced_pair::counters6(uint32_t dir) const {
    std::string chain = chain_of(dir);
    std::vector<ipacl_nf_rule6> rules(max_rules);
    uint32_t count = max_rules;
    std::vector<uint64_t> packets;
    netns_scope inside(manager().ns_fd, pair().home_fd());
    char err[IPACL_NF_ERR_TEXT_SIZE] = {};
    if (ipacl_nf_rules6(chain.c_str(), rules.data(), &count, err) != IPACL_OK) return packets;
    for (uint32_t i = 0; i < count; ++i) packets.push_back(rules[i].packets);
    return packets;
}

}  // namespace ipacl_testbed
