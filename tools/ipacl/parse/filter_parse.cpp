#include "filter_parse.h"

#include "address.h"
#include "library_names.h"
#include "word_cursor.h"

#include <ipacl/enums.h>

#include <cstring>
#include <optional>

namespace ipacl_tool {
namespace {

constexpr uint32_t port_any_high = 65535;
constexpr uint32_t not_set = 0xFFFFFFFFu;

// The protocol as typed; its value depends on the family, decided later.
struct protocol_word {
    std::size_t position = 0;
    std::string text;                // the library's text for it
    std::optional<uint32_t> number;  // when given as a number
};

struct port_condition {
    uint32_t op = IPACL_PORT_OP_ANY;
    uint32_t low = 0;
    uint32_t high = port_any_high;
};

// Everything after the destination.
struct options_words {
    std::size_t precedence_position = 0;  // 0 when absent
    std::size_t tos_position = 0;
};

class filter_reader {
  public:
    filter_reader(const std::vector<std::string> &words, const parse_options &options)
        : words_(words), options_(options), filter_(blank_filter(options)) {}

    ipacl_filter read() {
        read_action();
        protocol_word protocol = read_protocol();
        address_form source = read_address(words_, "source");
        port_condition source_ports = read_ports();
        filter_.src_port_op = source_ports.op;
        filter_.src_port_low = source_ports.low;
        filter_.src_port_high = source_ports.high;
        address_form destination = read_address(words_, "destination");
        port_condition destination_ports = read_ports();
        filter_.dst_port_op = destination_ports.op;
        filter_.dst_port_low = destination_ports.low;
        filter_.dst_port_high = destination_ports.high;
        options_words trailing = read_options();

        address_family family = decide_family(source, destination, trailing, protocol);
        filter_.addr_type =
            family == address_family::ipv4 ? IPACL_ADDR_TYPE_IPV4 : IPACL_ADDR_TYPE_IPV6;
        filter_.src_wildcard = store_address(source, family, filter_.src_addr);
        filter_.dst_wildcard = store_address(destination, family, filter_.dst_addr);
        filter_.protocol = protocol_value(protocol, family);
        return filter_;
    }

  private:
    void read_action() {
        std::string_view word = words_.take("permit or deny");
        auto action = value_named(ipacl_str_action, IPACL_ACTION_DENY, IPACL_ACTION_PERMIT, word);
        if (!action) words_.fail_last("expected permit or deny");
        filter_.action = *action;
    }

    protocol_word read_protocol() {
        std::string expected = "a protocol (" + names_of(ipacl_str_proto, 0, 255) + " or a number)";
        protocol_word protocol;
        protocol.position = words_.position();
        std::string_view word = words_.take(expected);
        protocol.number = read_u32(word);
        if (protocol.number) {
            char text[64];
            protocol.text = text_of(ipacl_str_proto, *protocol.number, text);
        } else if (value_named(ipacl_str_proto, 0, 255, word)) {
            protocol.text = word;
        } else {
            words_.fail_last("expected " + expected);
        }
        return protocol;
    }

    uint32_t read_port(std::string_view role) {
        std::string_view word = words_.take(role);
        if (auto number = read_u32(word)) return *number;
        if (auto named = value_named(ipacl_str_port_num, 0, port_any_high, word)) return *named;
        words_.fail_last("expected " + std::string(role) +
                         " (a port name such as www or a number)");
    }

    // lt P | gt P | eq P | neq P | range P1 P2, each into the fields that
    // ipacl_str_filter_ipv6 prints back for it.
    port_condition read_ports() {
        port_condition ports;
        auto named =
            value_named(ipacl_str_port_op, IPACL_PORT_OP_LT, IPACL_PORT_OP_RANGE, words_.peek());
        if (!named) return ports;
        words_.take("a port operator");
        ports.op = *named;
        switch (ports.op) {
            case IPACL_PORT_OP_LT:
                ports.high = read_port("a port");
                break;
            case IPACL_PORT_OP_GT:
                ports.low = read_port("a port");
                break;
            case IPACL_PORT_OP_RANGE:
                ports.low = read_port("the first port of the range");
                ports.high = read_port("the last port of the range");
                break;
            default:  // eq, neq
                ports.low = ports.high = read_port("a port");
                break;
        }
        return ports;
    }

    options_words read_options() {
        options_words seen;
        std::size_t icmp_type_position = 0;
        while (!words_.at_end()) {
            std::size_t position = words_.position();
            std::string_view word = words_.take("an option");
            if (word == "established") {
                filter_.established = set_flag(filter_.established, position);
            } else if (word == "log-deny") {
                filter_.log_deny = set_flag(filter_.log_deny, position);
            } else if (word == "fragments") {
                filter_.fragments = set_flag(filter_.fragments, position);
            } else if (word == "precedence") {
                once(seen.precedence_position, position);
                filter_.precedence = read_named_number(ipacl_str_prec, 0, 7, "a precedence");
            } else if (word == "tos") {
                once(seen.tos_position, position);
                filter_.tos = read_named_number(ipacl_str_tos, 0, 15, "a tos");
            } else if (icmp_type_position != 0 && icmp_type_position + 1 == position &&
                       read_u32(word)) {
                filter_.icmp_code = icmp_number(word, "ICMP code");
            } else if (auto type = icmp_type(word)) {
                once(icmp_type_position, position);
                filter_.icmp_type = *type;
            } else {
                words_.fail_last(
                    "expected established, an ICMP type and code, precedence, tos, log-deny or "
                    "fragments");
            }
        }
        return seen;
    }

    uint32_t set_flag(uint32_t flag, std::size_t position) {
        if (flag != 0) words_.fail_at(position, "given twice");
        return 1;
    }

    void once(std::size_t &seen, std::size_t position) {
        if (seen != 0) words_.fail_at(position, "given twice");
        seen = position;
    }

    uint32_t read_named_number(text_function text, uint32_t first, uint32_t last,
                               std::string_view role) {
        std::string_view word = words_.take(role);
        if (auto number = read_u32(word)) {
            if (*number == not_set) words_.fail_last("this number means 'not set'");
            return *number;
        }
        if (auto named = value_named(text, first, last, word)) return *named;
        words_.fail_last("expected " + std::string(role) + " (" + names_of(text, first, last) +
                         " or a number)");
    }

    std::optional<uint32_t> icmp_type(std::string_view word) {
        if (read_u32(word)) return icmp_number(word, "ICMP type");
        return value_named(ipacl_str_icmp_type, 0, 255, word);
    }

    // The all-ones value means "not set" and would not print back.
    uint32_t icmp_number(std::string_view word, std::string_view role) {
        uint32_t number = *read_u32(word);
        if (number == not_set)
            words_.fail_last(std::string(role) + " " + std::string(word) + " means 'not set'");
        return number;
    }

    address_family decide_family(const address_form &source, const address_form &destination,
                                 const options_words &trailing, const protocol_word &protocol) {
        address_family chosen = chosen_family();
        for (const address_form *form : {&source, &destination}) {
            if (form->family == address_family::unknown) continue;
            if (chosen == address_family::unknown) {
                chosen = form->family;
            } else if (form->family != chosen) {
                words_.fail_at(form->position, form->family == address_family::ipv4
                                                   ? "IPv4 address in an IPv6 filter"
                                                   : "IPv6 address in an IPv4 filter");
            }
        }
        std::size_t ipv4_only =
            trailing.precedence_position ? trailing.precedence_position : trailing.tos_position;
        if (chosen == address_family::ipv6 && ipv4_only != 0)
            words_.fail_at(ipv4_only, "applies to IPv4 filters only");
        if (chosen != address_family::unknown) return chosen;
        if (ipv4_only != 0 || protocol.text == "ip") return address_family::ipv4;
        return address_family::ipv6;
    }

    address_family chosen_family() const {
        switch (options_.family) {
            case family_choice::ipv4:
                return address_family::ipv4;
            case family_choice::ipv6:
                return address_family::ipv6;
            default:
                return address_family::unknown;
        }
    }

    // "ip" is the any protocol of an IPv4 filter and "ipv6" that of an IPv6
    // one, as the library prints them.  An IPv6 filter cannot hold protocol
    // 0 or 41: their command form would read back as something else.
    uint32_t protocol_value(const protocol_word &protocol, address_family family) {
        bool ipv6 = family == address_family::ipv6;
        if (ipv6 && (protocol.text == "ip" || protocol.text == "ipv6") && protocol.number)
            words_.fail_at(protocol.position,
                           "protocol " + std::to_string(*protocol.number) + " prints as '" +
                               protocol.text + "', the any protocol of an " +
                               (protocol.text == "ip" ? "IPv4" : "IPv6") + " filter");
        if (ipv6 && protocol.text == "ip")
            words_.fail_at(protocol.position,
                           "the any protocol of an IPv4 filter; an IPv6 filter says ipv6");
        if (protocol.number) return *protocol.number;
        if (protocol.text == "ip") return IPACL_PROTO_ANY;
        if (protocol.text == "ipv6") return ipv6 ? IPACL_IPV6_PROTO_ANY : IPACL_PROTO_IPV6;
        return *value_named(ipacl_str_proto, 0, 255, protocol.text);
    }

    word_cursor words_;
    const parse_options &options_;
    ipacl_filter filter_;
};

// The record's text fields and the library's readers stop at a NUL: a word
// that carries one would be read as its first part and the rest ignored.
// The word is reported up to the NUL, which a terminal could not show.
void refuse_nul(const std::vector<std::string> &words) {
    for (std::size_t i = 0; i < words.size(); ++i) {
        std::size_t nul = words[i].find('\0');
        if (nul != std::string::npos)
            throw word_failure{i + 1, words[i].substr(0, nul), "contains a NUL character"};
    }
}

parse_result failed(const word_failure &failure) {
    parse_result result;
    result.error.position = failure.position;
    result.error.word = failure.word;
    result.error.message = "word " + std::to_string(failure.position);
    if (!failure.word.empty()) result.error.message += " '" + failure.word + "'";
    result.error.message += ": " + failure.what;
    return result;
}

}  // namespace

ipacl_filter blank_filter(const parse_options &options) {
    ipacl_filter filter{};
    std::strncpy(filter.prof_name, options.profile.c_str(), sizeof filter.prof_name - 1);
    filter.filter_index = options.index;
    filter.src_port_high = port_any_high;
    filter.dst_port_high = port_any_high;
    filter.icmp_type = IPACL_ICMP_TYPE_ANY;
    filter.icmp_code = IPACL_ICMP_CODE_ANY;
    filter.precedence = IPACL_PREC_ANY;
    filter.tos = IPACL_TOS_ANY;
    filter.snmp_status = IPACL_SNMP_STATUS_ACTIVE;
    return filter;
}

std::vector<std::string> split_words(std::string_view text) {
    std::vector<std::string> words;
    std::size_t at = 0;
    while (at < text.size()) {
        at = text.find_first_not_of(" \t\r\n", at);
        if (at == std::string_view::npos) break;
        std::size_t end = text.find_first_of(" \t\r\n", at);
        if (end == std::string_view::npos) end = text.size();
        words.emplace_back(text.substr(at, end - at));
        at = end;
    }
    return words;
}

parse_result parse_filter(const std::vector<std::string> &words, const parse_options &options) {
    if (options.profile.size() >= sizeof(ipacl_filter{}.prof_name)) {
        parse_result result;
        result.error.message = "profile name longer than " +
                               std::to_string(sizeof(ipacl_filter{}.prof_name) - 1) + " characters";
        return result;
    }
    try {
        refuse_nul(words);
        parse_result result;
        result.filter = filter_reader(words, options).read();
        result.ok = true;
        return result;
    } catch (const word_failure &failure) {
        return failed(failure);
    }
}

parse_result parse_filter(std::string_view text, const parse_options &options) {
    return parse_filter(split_words(text), options);
}

}  // namespace ipacl_tool
