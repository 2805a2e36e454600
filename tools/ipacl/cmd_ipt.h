// ipacl ipt: the filters enforced by the running kernel (libipacl_netfilter).
// What its three subcommands share.
#pragma once

#include <CLI/CLI.hpp>

#include <cstdint>

namespace ipacl_tool {

void add_ipt_apply_command(CLI::App &ipt, int &status);
void add_ipt_show_command(CLI::App &ipt, int &status);
void add_ipt_clear_command(CLI::App &ipt, int &status);

// The exit status of a library result, after printing its message on one
// line: 0 for IPACL_OK; exit_usage when the kernel cannot be used at all (no
// permission, no x_tables), so that scripts can tell "cannot" from "refused";
// exit_refused for everything else.
int netfilter_status(uint32_t code, const char *err);

}  // namespace ipacl_tool
