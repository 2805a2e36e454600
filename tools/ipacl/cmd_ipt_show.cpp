// ipacl ipt show: the live filter table with the library's displays: chain
// rows, whole rules or rule summaries of ip_tables, then the rules of
// ip6_tables in this tool's own one-line form.
#include "cmd_ipt.h"
#include "commands.h"

#include <ipacl/enums.h>
#include <ipacl/netfilter.h>
#include <ipacl/show.h>

#include <cstdio>
#include <cstring>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace ipacl_tool {
namespace {

struct view {
    uint32_t all_op;    // the operation without --chain
    uint32_t chain_op;  // with --chain
    uint32_t record_size;
    void (*show)(const uint8_t *record, uint32_t first);
};

const std::map<std::string, view> views = {
    {"chains",
     {IPACL_IPT_OP_ALL_CHAINS, IPACL_IPT_OP_MATCHED_CHAIN, sizeof(ipacl_ipt_chain),
      [](const uint8_t *r, uint32_t first) {
          ipacl_show_ipt_chain(first, reinterpret_cast<const ipacl_ipt_chain *>(r));
      }}},
    {"rules",
     {IPACL_IPT_OP_MATCHED_RULE, IPACL_IPT_OP_MATCHED_RULE, sizeof(ipacl_ipt_rule),
      [](const uint8_t *r, uint32_t) {
          ipacl_show_ipt_rule(reinterpret_cast<const ipacl_ipt_rule *>(r));
      }}},
    {"summary",
     {IPACL_IPT_OP_ALL_RULES, IPACL_IPT_OP_ALL_RULES, sizeof(ipacl_rule_info),
      [](const uint8_t *r, uint32_t first) {
          ipacl_show_rule_info(first, reinterpret_cast<const ipacl_rule_info *>(r));
      }}},
};

// The whole answer of one query, asked again with the size the first
// answer reports when it did not fit.
uint32_t query_all(uint32_t op, const char *chain, std::vector<uint8_t> &buf, char *err) {
    buf.assign(ipacl_nf_rsp_size(op, 16), 0);
    for (int attempt = 0; attempt < 3; ++attempt) {
        auto *rsp = reinterpret_cast<ipacl_ipt_rsp *>(buf.data());
        uint32_t code = ipacl_nf_query(op, chain, 0, rsp, static_cast<uint32_t>(buf.size()), err);
        if (code != IPACL_NF_E_SHORT_BUFFER) return code;
        buf.assign(ipacl_nf_rsp_size(op, rsp->word8 + 16), 0);  // room if the table grows
    }
    return IPACL_NF_E_SHORT_BUFFER;
}

uint32_t rules6(const char *chain, std::vector<ipacl_nf_rule6> &rules, char *err) {
    uint32_t count = 0;
    for (int attempt = 0; attempt < 3; ++attempt) {
        rules.resize(count + 16);
        count = static_cast<uint32_t>(rules.size());
        uint32_t code = ipacl_nf_rules6(chain, rules.data(), &count, err);
        if (code != IPACL_NF_E_SHORT_BUFFER) {
            rules.resize(code == IPACL_OK ? count : 0);
            return code;
        }
    }
    return IPACL_NF_E_SHORT_BUFFER;
}

// Not an exit status: the chain is not in that family's table.
constexpr int no_such_chain = -1;

struct show_command {
    std::string what;
    std::string chain;

    const char *chain_arg() const { return chain.empty() ? nullptr : chain.c_str(); }

    static int show_records(const view &v, uint32_t op, const char *name) {
        char err[IPACL_NF_ERR_TEXT_SIZE] = {};
        std::vector<uint8_t> buf;
        uint32_t code = query_all(op, name, buf, err);
        if (code == IPACL_NF_E_BAD_CHAIN && name) return no_such_chain;
        if (code != IPACL_OK) return netfilter_status(code, err);
        const auto *rsp = reinterpret_cast<const ipacl_ipt_rsp *>(buf.data());
        for (uint32_t i = 0; i < rsp->count; ++i)
            v.show(rsp->records + i * v.record_size, i == 0 ? 1 : 0);
        if (rsp->count == 0) std::printf("(none)\n");
        return exit_ok;
    }

    // A rule summary does not name its chain, so every chain gets its own
    // table under its name.
    static int show_summary_by_chain(const view &v) {
        char err[IPACL_NF_ERR_TEXT_SIZE] = {};
        std::vector<uint8_t> buf;
        uint32_t code = query_all(IPACL_IPT_OP_ALL_CHAINS, nullptr, buf, err);
        if (code != IPACL_OK) return netfilter_status(code, err);
        const auto *rsp = reinterpret_cast<const ipacl_ipt_rsp *>(buf.data());
        for (uint32_t i = 0; i < rsp->count; ++i) {
            ipacl_ipt_chain row;
            std::memcpy(&row, rsp->records + i * sizeof row, sizeof row);
            std::printf("%sChain %s\n", i == 0 ? "" : "\n", row.chain);
            int status = show_records(v, v.chain_op, row.chain);
            if (status != exit_ok) return status;
        }
        return exit_ok;
    }

    int show_ipv4(const view &v) const {
        if (what == "summary" && chain.empty()) return show_summary_by_chain(v);
        return show_records(v, chain.empty() ? v.all_op : v.chain_op, chain_arg());
    }

    // IPv6 chains have no record of their own; their rules are listed after
    // the IPv4 ones.  A kernel without ip6_tables only gets a note.
    int show_ipv6() const {
        char err[IPACL_NF_ERR_TEXT_SIZE] = {};
        std::vector<ipacl_nf_rule6> rules;
        uint32_t code = rules6(chain_arg(), rules, err);
        if (code == IPACL_NF_E_UNAVAILABLE) {
            std::printf("\n(IPv6: %s)\n", err);
            return exit_ok;
        }
        if (code == IPACL_NF_E_BAD_CHAIN && !chain.empty()) return no_such_chain;
        if (code != IPACL_OK) return netfilter_status(code, err);
        if (rules.empty()) return exit_ok;
        std::printf("\nIPv6 rules\n");
        for (const ipacl_nf_rule6 &rule : rules) {
            char line[1024];
            code = ipacl_nf_str_rule6(&rule, line, sizeof line, err);
            if (code != IPACL_OK) return netfilter_status(code, err);
            std::printf("%s\n", line);
        }
        return exit_ok;
    }

    // A chain given with --chain may be in one family's table only.
    int run() const {
        int v4 = show_ipv4(views.at(what));
        if (v4 != exit_ok && v4 != no_such_chain) return v4;
        int v6 = what == "chains" ? no_such_chain : show_ipv6();
        if (v4 == no_such_chain && v6 == no_such_chain) {
            std::fprintf(stderr, "ipacl: no chain '%s'\n", chain.c_str());
            return exit_refused;
        }
        return v6 == no_such_chain ? exit_ok : v6;
    }
};

}  // namespace

void add_ipt_show_command(CLI::App &ipt, int &status) {
    auto command = std::make_shared<show_command>();
    CLI::App *sub = ipt.add_subcommand(
        "show",
        "Print the live filter table: chains (one row each, with policy and packets), rules "
        "(each whole, with its matches and counters) or summary (one line a rule)");
    sub->add_option("what", command->what, "chains, rules or summary")
        ->required()
        ->check(CLI::IsMember({"chains", "rules", "summary"}));
    sub->add_option("--chain", command->chain, "Only this chain");
    sub->callback([command, &status] { status = command->run(); });
}

}  // namespace ipacl_tool
