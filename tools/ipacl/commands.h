// The subcommands of `ipacl`.  Each adds itself to the application and, when
// it runs, leaves the program's exit status in `status`.
#pragma once

#include <CLI/CLI.hpp>

namespace ipacl_tool {

// Exit statuses shared by every command.
constexpr int exit_ok = 0;
constexpr int exit_refused = 1;  // a check refused the filter; the demo failed
constexpr int exit_usage = 2;    // the command line or the filter could not be read

void add_check_command(CLI::App &app, int &status);
void add_show_command(CLI::App &app, int &status);
void add_encode_command(CLI::App &app, int &status);
void add_decode_command(CLI::App &app, int &status);
void add_demo_command(CLI::App &app, int &status);
void add_ipt_command(CLI::App &app, int &status);

}  // namespace ipacl_tool
