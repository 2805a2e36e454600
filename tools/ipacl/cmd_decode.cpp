// ipacl decode: network-order bytes of any record or message, converted with
// the library's ipacl_ntoh_* function and printed with its display.
#include "commands.h"
#include "decode/wire_types.h"
#include "hex.h"

#include <cstdio>
#include <iostream>
#include <iterator>
#include <memory>
#include <string>
#include <vector>

namespace ipacl_tool {
namespace {

struct decode_command {
    std::string type_name;
    std::vector<std::string> hex;

    int run() {
        const wire_type *type = find_wire_type(type_name);
        std::string text;
        if (hex.empty() || (hex.size() == 1 && hex[0] == "-")) {
            text.assign(std::istreambuf_iterator<char>(std::cin), std::istreambuf_iterator<char>());
        } else {
            for (const std::string &group : hex) text += group + " ";
        }
        std::vector<uint8_t> bytes;
        std::string error;
        if (!read_hex(text, bytes, error)) {
            std::fprintf(stderr, "ipacl: %s\n", error.c_str());
            return exit_usage;
        }
        if (!measure(*type, bytes.data(), bytes.size(), error)) {
            std::fprintf(stderr, "ipacl: %s\n", error.c_str());
            return exit_usage;
        }
        std::size_t size = bytes.size();
        bytes.resize(size + 8, 0);  // zeros behind the message: every text ends inside
        decode_and_show(*type, bytes.data(), size);
        return exit_ok;
    }
};

std::string type_list() {
    std::string text = "TYPE is one of:\n";
    char line[128];
    for (const wire_type &type : wire_types()) {
        std::snprintf(line, sizeof line, "  %-22s %.*s\n", std::string(type.name).c_str(),
                      static_cast<int>(type.summary.size()), type.summary.data());
        text += line;
    }
    return text;
}

}  // namespace

void add_decode_command(CLI::App &app, int &status) {
    auto command = std::make_shared<decode_command>();
    CLI::App *sub = app.add_subcommand(
        "decode",
        "Convert network-order bytes of a record or message to host order with its "
        "ipacl_ntoh_* function and print it with the library's display");
    std::vector<std::string> names;
    for (const wire_type &type : wire_types()) names.emplace_back(type.name);
    sub->add_option("-t,--type", command->type_name, "The record or message the bytes hold")
        ->required()
        ->check(CLI::IsMember(names));
    sub->add_option("hex", command->hex,
                    "The bytes in hexadecimal (a dump of `ipacl encode` will do); - or "
                    "nothing reads them from standard input");
    sub->footer(type_list());
    sub->callback([command, &status] { status = command->run(); });
}

}  // namespace ipacl_tool
