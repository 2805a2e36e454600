// ipacl ipt clear-counters: zeroes the packet and byte counters of every
// chain and rule of the IPv4 filter table.
#include "cmd_ipt.h"
#include "commands.h"

#include <ipacl/enums.h>
#include <ipacl/netfilter.h>

#include <cstdio>

namespace ipacl_tool {
namespace {

int clear_counters() {
    char err[IPACL_NF_ERR_TEXT_SIZE] = {};
    ipacl_ipt_rsp rsp{};
    for (uint32_t op : {IPACL_IPT_OP_CLEAR_CHAIN_COUNTERS, IPACL_IPT_OP_CLEAR_RULE_COUNTERS}) {
        uint32_t code = ipacl_nf_query(op, nullptr, 0, &rsp, sizeof rsp, err);
        if (code != IPACL_OK) return netfilter_status(code, err);
    }
    std::printf("counters of every chain and rule cleared\n");
    return exit_ok;
}

}  // namespace

void add_ipt_clear_command(CLI::App &ipt, int &status) {
    CLI::App *sub = ipt.add_subcommand(
        "clear-counters", "Zero the packet and byte counters of every chain and rule (IPv4)");
    sub->callback([&status] { status = clear_counters(); });
}

}  // namespace ipacl_tool
