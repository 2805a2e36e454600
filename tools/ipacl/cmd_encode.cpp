// ipacl encode: a filter in network byte order, as a message would carry it.
#include "commands.h"
#include "filter_input.h"
#include "filter_messages.h"
#include "hex.h"

#include <ipacl/enums.h>

#include <cstdio>
#include <memory>
#include <string>

namespace ipacl_tool {
namespace {

struct encode_command {
    filter_input input;
    std::string message = "filter";

    int run() {
        auto filter = read_filter(input);
        if (!filter) return exit_usage;
        std::vector<uint8_t> bytes;
        if (message == "filter_cfg")
            bytes = filter_cfg_message(*filter, IPACL_CONF_OP_ADD);
        else if (message == "filter_sync")
            bytes = filter_sync_message(*filter, IPACL_SYNC_OP_ADD, 1);
        else
            bytes = filter_record_message(*filter);
        std::fputs(hex_dump(bytes.data(), bytes.size()).c_str(), stdout);
        return exit_ok;
    }
};

}  // namespace

void add_encode_command(CLI::App &app, int &status) {
    auto command = std::make_shared<encode_command>();
    CLI::App *sub =
        app.add_subcommand("encode",
                           "Print a filter in network byte order as a hex dump (read it back with "
                           "`ipacl decode --type MESSAGE -`)");
    sub->add_option("-m,--message", command->message,
                    "filter: the ipacl_filter record alone; filter_cfg: a configuration "
                    "request adding it; filter_sync: the standby's update adding it")
        ->check(CLI::IsMember({"filter", "filter_cfg", "filter_sync"}))
        ->capture_default_str();
    add_filter_arguments(*sub, command->input);
    sub->callback([command, &status] { status = command->run(); });
}

}  // namespace ipacl_tool
