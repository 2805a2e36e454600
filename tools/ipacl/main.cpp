// ipacl: the library end to end, from the command line.
#include "commands.h"

#include <ipacl/version.h>

#include <cstdio>

int main(int argc, char **argv) {
    CLI::App app{
        "ipacl: the IP access-control-list library from the command line.\n"
        "Start with `ipacl demo`; `ipacl COMMAND --help` describes each command.",
        "ipacl"};
    app.require_subcommand(1);
    app.fallthrough(false);
    app.set_version_flag("--version", "ipacl " IPACL_VERSION_STRING, "Print the version and exit");

    int status = ipacl_tool::exit_ok;
    ipacl_tool::add_demo_command(app, status);
    ipacl_tool::add_check_command(app, status);
    ipacl_tool::add_show_command(app, status);
    ipacl_tool::add_encode_command(app, status);
    ipacl_tool::add_decode_command(app, status);
    ipacl_tool::add_ipt_command(app, status);

    try {
        app.parse(argc, argv);
    } catch (const CLI::CallForHelp &e) {
        return app.exit(e);
    } catch (const CLI::CallForAllHelp &e) {
        return app.exit(e);
    } catch (const CLI::CallForVersion &e) {
        return app.exit(e);
    } catch (const CLI::ParseError &e) {
        app.exit(e);
        return ipacl_tool::exit_usage;
    }
    std::fflush(stdout);
    return status;
}
