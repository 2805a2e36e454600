// ipacl ipt: apply, show and clear-counters under one command.
#include "cmd_ipt.h"
#include "commands.h"

#include <ipacl/netfilter.h>

#include <cstdio>

namespace ipacl_tool {

int netfilter_status(uint32_t code, const char *err) {
    if (code == IPACL_OK) return exit_ok;
    std::fprintf(stderr, "ipacl: %s\n", err);
    bool cannot = code == IPACL_NF_E_PERMISSION || code == IPACL_NF_E_UNAVAILABLE;
    return cannot ? exit_usage : exit_refused;
}

void add_ipt_command(CLI::App &app, int &status) {
    CLI::App *ipt = app.add_subcommand(
        "ipt",
        "Enforce filters as rules of the kernel's x_tables on an interface, and read the "
        "rules back (needs CAP_NET_ADMIN)");
    ipt->require_subcommand(1);
    add_ipt_apply_command(*ipt, status);
    add_ipt_show_command(*ipt, status);
    add_ipt_clear_command(*ipt, status);
}

}  // namespace ipacl_tool
