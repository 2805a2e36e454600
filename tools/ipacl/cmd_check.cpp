// ipacl check: one of the library's filter check chains on a filter.
#include "commands.h"
#include "filter_input.h"

#include <ipacl/chk.h>
#include <ipacl/str_record.h>

#include <cstdio>
#include <map>
#include <memory>
#include <string>

namespace ipacl_tool {
namespace {

using filter_check = uint32_t (*)(const ipacl_filter *, char *);

const std::map<std::string, filter_check> chains = {
    {"cli", ipacl_chk_cli_filter},
    {"quen", ipacl_chk_quen_filter},
    {"plain", ipacl_chk_filter},
    {"gen", ipacl_chk_gen_filter},
};

struct check_command {
    filter_input input;
    std::string chain = "cli";

    int run() {
        auto filter = read_filter(input);
        if (!filter) return exit_usage;
        char err[IPACL_ERR_TEXT_SIZE * 2] = {};
        uint32_t code = chains.at(chain)(&*filter, err);
        if (code != IPACL_OK) {
            std::printf("0x%08x %s\n", code, err);
            return exit_refused;
        }
        char line[512];
        ipacl_str_filter(&*filter, line);
        std::printf("%s\n", line);
        return exit_ok;
    }
};

}  // namespace

void add_check_command(CLI::App &app, int &status) {
    auto command = std::make_shared<check_command>();
    CLI::App *sub = app.add_subcommand(
        "check",
        "Run a check chain on a filter: print the refusal's code and message (exit status "
        "1), or the long form of the accepted filter");
    sub->add_option("-c,--chain", command->chain,
                    "cli: the command line's check (ipacl_chk_cli_filter), quen: the quen "
                    "messages' (ipacl_chk_quen_filter), plain: the manager's "
                    "(ipacl_chk_filter), gen: the generic one (ipacl_chk_gen_filter)")
        ->check(CLI::IsMember({"cli", "quen", "plain", "gen"}))
        ->capture_default_str();
    add_filter_arguments(*sub, command->input);
    sub->callback([command, &status] { status = command->run(); });
}

}  // namespace ipacl_tool
