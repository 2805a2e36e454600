#include "filter_input.h"

#include <cstdio>

namespace ipacl_tool {

const char *const filter_language_help =
    "FILTER: ACTION PROTOCOL SOURCE [PORTS] DESTINATION [PORTS] [OPTION...]\n"
    "  ACTION       permit | deny\n"
    "  PROTOCOL     ip | icmp | tcp | udp | ipv6 | icmp6 | a number\n"
    "  SOURCE/DEST  any | host A | A/LEN | A WILDCARD (IPv4)\n"
    "  PORTS        lt P | gt P | eq P | neq P | range P1 P2  (P: www, ssh, ... or a number)\n"
    "  OPTION       established | ICMP-TYPE [ICMP-CODE] | precedence P | tos T |\n"
    "               log-deny | fragments\n"
    "A filter is IPv6 unless an IPv4 address, the protocol ip, precedence, tos or -4\n"
    "make it IPv4.  Example: permit tcp any 2001:db8::/32 eq www established";

void add_filter_arguments(CLI::App &command, filter_input &input) {
    command.add_option("filter", input.words, "The filter, as words or one quoted argument")
        ->required()
        ->allow_extra_args();
    command
        .add_option("-p,--profile", input.options.profile,
                    "Name of the protocol profile the filter belongs to")
        ->capture_default_str();
    command.add_option("-i,--index", input.options.index, "Index of the filter in its profile")
        ->capture_default_str();
    auto *v4 = command.add_flag("-4,--ipv4", input.ipv4, "Make the filter IPv4");
    auto *v6 = command.add_flag("-6,--ipv6", input.ipv6, "Make the filter IPv6");
    v4->excludes(v6);
    command.footer(filter_language_help);
}

std::optional<ipacl_filter> read_filter(filter_input &input) {
    if (input.ipv4) input.options.family = family_choice::ipv4;
    if (input.ipv6) input.options.family = family_choice::ipv6;
    std::string text;
    for (const std::string &word : input.words) text += word + " ";
    parse_result result = parse_filter(text, input.options);
    if (!result.ok) {
        std::fprintf(stderr, "ipacl: %s\n", result.error.message.c_str());
        return std::nullopt;
    }
    return result.filter;
}

}  // namespace ipacl_tool
