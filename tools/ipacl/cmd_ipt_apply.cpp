// ipacl ipt apply: a file of filters becomes the ACL chain of one direction,
// IPv4 filters in ip_tables and IPv6 filters in ip6_tables, each family in
// one table replacement.
#include "cmd_ipt.h"
#include "commands.h"
#include "filter_file.h"

#include <ipacl/enums.h>
#include <ipacl/netfilter.h>

#include <cstdio>
#include <fstream>
#include <iostream>
#include <memory>
#include <string>
#include <vector>

namespace ipacl_tool {
namespace {

struct apply_command {
    bool in = false;
    bool out = false;
    std::string interface;
    std::string path;

    uint32_t dir() const { return out ? IPACL_DIR_OUT : IPACL_DIR_IN; }
    const char *ifname() const { return interface.empty() ? nullptr : interface.c_str(); }

    // Every filter as the kernel will get it, so that a refusal names its
    // line before anything changes.
    bool translates(const filter_line &line) const {
        char err[IPACL_NF_ERR_TEXT_SIZE] = {};
        uint32_t code;
        if (line.filter.addr_type == IPACL_ADDR_TYPE_IPV6) {
            ipacl_nf_rule6 rule;
            code = ipacl_nf_translate6(&line.filter, dir(), ifname(), &rule, err);
        } else {
            ipacl_ipt_rule rule;
            code = ipacl_nf_translate(&line.filter, dir(), ifname(), &rule, err);
        }
        if (code == IPACL_OK) return true;
        std::fprintf(stderr, "ipacl: %s: %s\n", line.where.c_str(), err);
        return false;
    }

    int apply_family(uint32_t family, const std::vector<ipacl_filter> &filters) const {
        char err[IPACL_NF_ERR_TEXT_SIZE] = {};
        uint32_t code = ipacl_nf_apply(family, dir(), ifname(), filters.data(),
                                       static_cast<uint32_t>(filters.size()), err);
        if (code != IPACL_OK) return netfilter_status(code, err);
        char chain[IPACL_CHAIN_NAME_SIZE] = {};
        ipacl_nf_chain_name(dir(), chain, err);
        std::printf("%s: %zu %s filter%s applied, %s, interface %s\n", chain, filters.size(),
                    family == IPACL_ADDR_TYPE_IPV6 ? "IPv6" : "IPv4",
                    filters.size() == 1 ? "" : "s", out ? "outbound" : "inbound",
                    interface.empty() ? "any" : interface.c_str());
        return exit_ok;
    }

    int run() const {
        filter_file file;
        if (path == "-") {
            file = read_filter_file(std::cin, "<stdin>");
        } else {
            std::ifstream stream(path);
            if (!stream) {
                std::fprintf(stderr, "ipacl: %s: cannot open\n", path.c_str());
                return exit_usage;
            }
            file = read_filter_file(stream, path);
        }
        if (!file.error.empty()) {
            std::fprintf(stderr, "ipacl: %s\n", file.error.c_str());
            return exit_usage;
        }
        std::vector<ipacl_filter> v4, v6;
        for (const filter_line &line : file.filters) {
            if (!translates(line)) return exit_refused;
            (line.filter.addr_type == IPACL_ADDR_TYPE_IPV6 ? v6 : v4).push_back(line.filter);
        }
        if (file.filters.empty()) {
            std::fprintf(stderr, "ipacl: %s: no filters\n", path.c_str());
            return exit_usage;
        }
        int status = v4.empty() ? exit_ok : apply_family(IPACL_ADDR_TYPE_IPV4, v4);
        if (status == exit_ok && !v6.empty()) status = apply_family(IPACL_ADDR_TYPE_IPV6, v6);
        return status;
    }
};

}  // namespace

void add_ipt_apply_command(CLI::App &ipt, int &status) {
    auto command = std::make_shared<apply_command>();
    CLI::App *sub = ipt.add_subcommand(
        "apply",
        "Replace the rules of one direction's ACL chain with the filters of FILE (- reads "
        "stdin), followed by the implicit deny");
    auto *in = sub->add_flag("--in", command->in, "Filter packets that arrive (the default)");
    auto *out = sub->add_flag("--out", command->out, "Filter packets that leave");
    in->excludes(out);
    sub->add_option("--interface", command->interface,
                    "Kernel interface the filters hold on (default: every interface)");
    sub->add_option("file", command->path, "File of filters, one a line; - for stdin")->required();
    sub->footer(
        "One filter a line, as `ipacl check` reads it; # starts a comment.  A filter is\n"
        "IPv6 unless an IPv4 address, ip, precedence or tos make it IPv4.  IPv4 filters go\n"
        "to ip_tables, IPv6 filters to ip6_tables; a family with no filter in FILE is left\n"
        "as it is.  Exit status 2: the file could not be read, or the kernel's tables\n"
        "cannot be changed here (no root, no x_tables); 1: a filter was refused (nothing\n"
        "changed) or the kernel refused a family's change (that family kept its rules).");
    sub->callback([command, &status] { status = command->run(); });
}

}  // namespace ipacl_tool
