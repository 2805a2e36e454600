// The filter command language: command lines and the records or errors they
// give, and the command form the library prints read back.
#include "tools/ipacl/parse/filter_parse.h"

#include <ipacl/enums.h>
#include <ipacl/str_record.h>

#include <arpa/inet.h>
#include <gtest/gtest.h>

#include <cstring>
#include <functional>
#include <random>
#include <string>
#include <string_view>

namespace {

using ipacl_tool::family_choice;
using ipacl_tool::parse_filter;
using ipacl_tool::parse_options;

void set_prefix(ipacl_inet_addr &prefix, const char *text, uint32_t length) {
    std::memset(prefix.addr, 0, sizeof prefix.addr);
    inet_pton(prefix.family == IPACL_ADDR_TYPE_IPV4 ? AF_INET : AF_INET6, text, prefix.addr);
    prefix.prefix_len = length;
}

// An IPv4 filter from any to any; from TEXT/LENGTH (the wildcard its inverse).
void ipv4(ipacl_filter &f) {
    f.addr_type = f.src_addr.family = f.dst_addr.family = IPACL_ADDR_TYPE_IPV4;
    f.src_wildcard = f.dst_wildcard = IPACL_MASK_ANY;
}
void ipv4_from(ipacl_filter &f, const char *text, uint32_t length) {
    ipv4(f);
    set_prefix(f.src_addr, text, length);
    f.src_wildcard = 0xFFFFFFFFu >> length;
}

struct record_case {
    const char *command;
    uint32_t action, protocol;
    // What the command changes in the blank record, IPv6 from any to any.
    std::function<void(ipacl_filter &)> change;
    parse_options options = {};
};

TEST(FilterLanguage, CommandsGiveTheirRecords) {
    const uint32_t permit = IPACL_ACTION_PERMIT, deny = IPACL_ACTION_DENY;
    const uint32_t tcp = IPACL_PROTO_TCP;
    const record_case cases[] = {
        // lt keeps low at 0, gt keeps high at 65535: what the command form
        // prints back for each operator.
        {"permit tcp any lt 1024 any gt 1023", permit, tcp,
         [](ipacl_filter &f) {
             f.src_port_op = IPACL_PORT_OP_LT;
             f.src_port_high = 1024;
             f.dst_port_op = IPACL_PORT_OP_GT;
             f.dst_port_low = 1023;
         }},
        // "ip" is the any protocol of IPv4 filters, "ipv6" that of IPv6
        // filters and protocol 41 in IPv4 ones; 0 is a number like others.
        {"permit ip any any", permit, IPACL_PROTO_ANY, ipv4},
        {"permit ipv6 10.0.0.0/8 any", permit, IPACL_PROTO_IPV6,
         [](ipacl_filter &f) { ipv4_from(f, "10.0.0.0", 8); }},
        {"permit 0 any any", permit, 0, ipv4},
        {"permit tcp any any tos throughput precedence 9", permit, tcp,
         [](ipacl_filter &f) {
             ipv4(f);
             f.tos = IPACL_TOS_THROUGHPUT;
             f.precedence = 9;
         }},
        // A wildcard that is not one run of ones keeps the length up to its
        // first gap; the checks refuse the wildcard itself.
        {"permit ip 10.0.0.0 0.255.0.255 any", permit, IPACL_PROTO_ANY,
         [](ipacl_filter &f) {
             ipv4_from(f, "10.0.0.0", 8);
             f.src_wildcard = 0x00FF00FF;
         }},
        {"\tdeny  udp host 2001:db8::1\n any ",
         deny,
         IPACL_PROTO_UDP,
         [](ipacl_filter &f) { set_prefix(f.src_addr, "2001:db8::1", 128); },
         {.profile = "web", .index = 7}},
    };
    for (const record_case &c : cases) {
        auto result = parse_filter(c.command, c.options);
        ASSERT_TRUE(result.ok) << c.command << ": " << result.error.message;
        ipacl_filter expected = ipacl_tool::blank_filter(c.options);
        expected.action = c.action;
        expected.protocol = c.protocol;
        expected.addr_type = expected.src_addr.family = expected.dst_addr.family =
            IPACL_ADDR_TYPE_IPV6;
        c.change(expected);
        EXPECT_EQ(0, std::memcmp(&result.filter, &expected, sizeof expected)) << c.command;
    }
    // Values are the check chains' business: the language takes them.
    auto result = parse_filter("permit 300 any any eq 70000 4294967294", parse_options{});
    ASSERT_TRUE(result.ok) << result.error.message;
    EXPECT_EQ(300u, result.filter.protocol);
    EXPECT_EQ(70000u, result.filter.dst_port_low);
    EXPECT_EQ(4294967294u, result.filter.icmp_type);
}

struct error_case {
    const char *command;
    const char *message;
    parse_options options = {};
};

TEST(FilterLanguage, ErrorsNameTheWordAndItsPosition) {
    const error_case cases[] = {
        {"", "word 1: expected permit or deny, found the end of the filter"},
        {"allow tcp any any", "word 1 'allow': expected permit or deny"},
        {"permit tcpx any any",
         "word 2 'tcpx': expected a protocol (ip, icmp, tcp, udp, ipv6 or icmp6 or a number)"},
        {"permit tcp anywhere any",
         "word 3 'anywhere': expected a source address (any, host A, A/LEN or A WILDCARD)"},
        {"permit tcp 10.0.0.1 any",
         "word 3 '10.0.0.1': an IPv4 address needs /LEN, a wildcard mask after it, or 'host' "
         "before it"},
        {"permit tcp 2001::1 any",
         "word 3 '2001::1': an IPv6 address needs /LEN after it or 'host' before it"},
        {"permit tcp 10.0.0.0/33 any",
         "word 3 '10.0.0.0/33': prefix length must be a number from 0 to 32"},
        {"permit tcp 2001::/12x any",
         "word 3 '2001::/12x': prefix length must be a number from 0 to 128"},
        {"permit tcp host any any", "word 4 'any': not an IPv4 or IPv6 host address"},
        {"permit tcp any eq", "word 5: expected a port, found the end of the filter"},
        {"permit tcp any range 1 any",
         "word 6 'any': expected the last port of the range (a port name such as www or a "
         "number)"},
        {"permit tcp any any bogus",
         "word 5 'bogus': expected established, an ICMP type and code, precedence, tos, "
         "log-deny or fragments"},
        {"permit icmp any any 8 0 3", "word 7 '3': given twice"},
        {"permit tcp any any established established", "word 6 'established': given twice"},
        {"permit icmp any any 4294967295",
         "word 5 '4294967295': ICMP type 4294967295 means 'not set'"},
        {"permit tcp any any tos loud",
         "word 6 'loud': expected a tos (normal-service, monetary-cost, reliability, "
         "throughput or delay or a number)"},
        {"permit tcp 10.0.0.0/8 2001::/16", "word 4 '2001::/16': IPv6 address in an IPv4 filter"},
        {"permit tcp 2001::/16 any precedence 3",
         "word 5 'precedence': applies to IPv4 filters only"},
        {"permit 41 2001::/16 any",
         "word 2 '41': protocol 41 prints as 'ipv6', the any protocol of an IPv6 filter"},
        {"permit 0 ::/0 any",
         "word 2 '0': protocol 0 prints as 'ip', the any protocol of an IPv4 filter"},
        {"permit ip 2001::/16 any",
         "word 2 'ip': the any protocol of an IPv4 filter; an IPv6 filter says ipv6"},
    };
    for (const error_case &c : cases) {
        auto result = parse_filter(c.command, c.options);
        ASSERT_FALSE(result.ok) << c.command;
        EXPECT_EQ(c.message, result.error.message) << c.command;
        // The position is the word number the message names.
        EXPECT_EQ(std::to_string(result.error.position), std::string(c.message + 5, 1));
    }
}

TEST(FilterLanguage, AWordWithANulIsRefused) {
    using namespace std::string_view_literals;
    for (auto command : {"permit tcp any any eq 80\0"sv, "permit\0 tcp any any"sv})
        EXPECT_NE(parse_filter(command, {}).error.message.find("contains a NUL character"),
                  std::string::npos);
    auto result = parse_filter("permit tcp host 1.2.3.4\0junk any"sv, {});
    EXPECT_EQ(result.error.message, "word 4 '1.2.3.4': contains a NUL character");
    EXPECT_EQ(result.error.position, 4u);
}

TEST(FilterLanguage, ProfileOptionMustFitTheRecord) {
    parse_options options;
    options.profile = std::string(67, 'a');
    EXPECT_TRUE(parse_filter("permit ip any any", options).ok);
    options.profile += 'a';
    EXPECT_EQ("profile name longer than 67 characters",
              parse_filter("permit ip any any", options).error.message);
}

// Commands from the grammar's words at random, valid or not: addresses of
// every form (random IPv6 ones too), port names and numbers out of range,
// options repeated or misplaced.
class command_generator {
  public:
    explicit command_generator(uint32_t seed) : random_(seed) {}

    std::string command() {
        std::string text = pick({"permit", "deny", "permit", "deny", "allow"}) + " " +
                           pick({"ip", "ipv6", "tcp", "udp", "icmp", "icmp6", "tcp", "udp", "ipv6",
                                 "0", "6", "41", "58", "4294967295", decimal(300)});
        bool four = number(3) == 0;  // a quarter of the commands mind IPv4
        for (int side = 0; side < 2; ++side) {
            text += " " + (four ? pick({"any", "0.0.0.0/0", ipv4() + "/" + decimal(32),
                                        ipv4() + " 0.255.0.255", "host " + ipv4(), "::/0"})
                                : pick({"any", "host " + ipv6(), ipv6() + "/" + decimal(128),
                                        ipv6() + "/" + decimal(128), "::/0"}));
            std::string port = pick({"www", "ssh", "dns", "0", "65535", "65536", decimal(70000)});
            std::string op = pick({"", "", "", " lt ", " gt ", " eq ", " neq ", " range 1000 "});
            if (!op.empty()) text += op + port;
        }
        for (const char *option : {"established", "log-deny", "fragments"})
            if (number(3) == 0) text += std::string(" ") + option;
        text += pick({"", "", "", "", "", " echo", " " + decimal(300),
                      " unreachable " + decimal(300), " precedence flash", " tos delay"});
        return text;
    }

    parse_options options() {
        const family_choice families[] = {family_choice::automatic, family_choice::automatic,
                                          family_choice::automatic, family_choice::ipv6,
                                          family_choice::ipv4};
        return {pick({"acl1", "web", "", "ACCESS", std::string(67, 'p')}),
                number(5) == 0 ? 0xFFFFFFFFu : number(1000), families[number(4)]};
    }

  private:
    uint32_t number(uint32_t high) {
        return std::uniform_int_distribution<uint32_t>(0, high)(random_);
    }
    std::string decimal(uint32_t high) { return std::to_string(number(high)); }
    std::string pick(std::initializer_list<std::string> choices) {
        return *(choices.begin() + number(static_cast<uint32_t>(choices.size()) - 1));
    }
    std::string ipv6() {
        uint8_t bytes[16] = {};
        for (uint32_t i = 0, filled = number(16); i < filled; ++i)
            bytes[i] = static_cast<uint8_t>(number(255));
        char text[INET6_ADDRSTRLEN];
        return inet_ntop(AF_INET6, bytes, text, sizeof text);
    }
    std::string ipv4() {
        return decimal(255) + "." + decimal(255) + "." + decimal(255) + "." + decimal(255);
    }

    std::mt19937 random_;
};

// The command form's own examples print back word for word; generated
// ones read back into the same record.
TEST(FilterLanguageProperty, PrintedIpv6FiltersReadBackUnchanged) {
    char printed[512];
    for (const char *command :
         {"permit tcp any 2001:db8::/32 eq www established", "permit ipv6 any any",
          "deny udp 2001:db8::1/128 range 1000 1010 any lt 1024 log-deny fragments",
          "permit icmp6 any any 8 0", "deny 300 fe80::/10 gt 1023 ::1/128 neq ssh"}) {
        auto result = parse_filter(command, parse_options{});
        ASSERT_TRUE(result.ok) << command << ": " << result.error.message;
        ASSERT_EQ(IPACL_OK, ipacl_str_filter_ipv6(&result.filter, printed, sizeof printed));
        EXPECT_STREQ(command, printed);
    }
    command_generator generate(20240611);
    uint32_t ipv6_filters = 0;
    const uint32_t commands = 20000;
    for (uint32_t i = 0; i < commands; ++i) {
        std::string command = generate.command();
        parse_options options = generate.options();
        auto first = parse_filter(command, options);
        if (!first.ok || first.filter.addr_type != IPACL_ADDR_TYPE_IPV6) continue;
        ++ipv6_filters;
        ASSERT_EQ(IPACL_OK, ipacl_str_filter_ipv6(&first.filter, printed, sizeof printed))
            << command;
        auto again = parse_filter(printed, options);
        ASSERT_TRUE(again.ok) << command << " -> " << printed << ": " << again.error.message;
        ASSERT_EQ(0, std::memcmp(&first.filter, &again.filter, sizeof first.filter))
            << command << " -> " << printed;
    }
    // The generator is meant to reach the property often, not by luck.
    EXPECT_GT(ipv6_filters, commands / 5);
}

}  // namespace
