// The filter command language: one filter entry, as an operator types it and
// as ipacl_str_filter_ipv6 prints it, read into an ipacl_filter record.
//
//   ACTION PROTOCOL SOURCE [PORTS] DESTINATION [PORTS] [OPTION...]
//
//   ACTION       permit | deny
//   PROTOCOL     a name as the library prints it (ip, icmp, tcp, udp, ipv6,
//                icmp6) or a number
//   SOURCE,      any | host A | A/LEN | A WILDCARD (IPv4 only), where A is
//   DESTINATION  an IPv4 or IPv6 address
//   PORTS        lt P | gt P | eq P | neq P | range P1 P2, P a port name as
//                the library prints it (www, ssh, ...) or a number
//   OPTION       established | ICMP-TYPE [ICMP-CODE] | precedence P |
//                tos T | log-deny | fragments
//
// The language only reads words into fields; whether the values make a
// valid filter is for the library's check chains to say.  The record comes
// out in host order, ready for ipacl_chk_* and ipacl_hton_filter.
#pragma once

#include <ipacl/records.h>

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace ipacl_tool {

// Which address family a filter has.  `automatic` reads it from the words:
// an IPv4 address, the protocol "ip", precedence or tos make an IPv4 filter,
// an IPv6 address an IPv6 one, and a filter that says neither is IPv6, the
// family of the printed command form.
enum class family_choice { automatic, ipv4, ipv6 };

struct parse_options {
    std::string profile = "acl1";  // the owning protocol profile
    uint32_t index = 1;            // the filter index within it
    family_choice family = family_choice::automatic;
};

struct parse_error {
    std::size_t position = 0;  // 1-based number of the word at fault
    std::string word;          // that word; empty when the filter ended early
    std::string message;       // the whole text, position and word included
};

struct parse_result {
    bool ok = false;
    ipacl_filter filter{};
    parse_error error;
};

// Splits a command line into words at blanks, tabs and newlines.
std::vector<std::string> split_words(std::string_view text);

parse_result parse_filter(const std::vector<std::string> &words, const parse_options &options);
parse_result parse_filter(std::string_view text, const parse_options &options);

// The record every parse starts from: no addresses, no ports condition,
// no ICMP, precedence or tos, flags off, row status active.
ipacl_filter blank_filter(const parse_options &options);

}  // namespace ipacl_tool
