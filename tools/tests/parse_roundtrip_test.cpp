// Property: every IPv6 filter the language accepts prints, through
// ipacl_str_filter_ipv6, as a command that reads back into the same record.
// The commands come from a seeded generator that walks the grammar with
// names, numbers and addresses of every kind, valid or not.
#include "tools/ipacl/parse/filter_parse.h"

#include <ipacl/enums.h>
#include <ipacl/str_record.h>

#include <arpa/inet.h>
#include <gtest/gtest.h>

#include <cstring>
#include <random>
#include <string>

namespace {

using ipacl_tool::family_choice;
using ipacl_tool::parse_filter;
using ipacl_tool::parse_options;

class command_generator {
  public:
    explicit command_generator(uint32_t seed) : random_(seed) {}

    std::string command() {
        std::string text = pick({"permit", "deny", "permit", "deny", "allow"});
        text +=
            " " + (chance(10)
                       ? decimal(0, 300)
                       : pick({"ip", "ipv6", "tcp", "udp", "icmp", "icmp6", "tcp", "udp", "ipv6",
                               "tcp", "udp", "ipv6", "0", "6", "17", "41", "58", "4294967295"}));
        text += " " + address() + ports() + " " + address() + ports();
        for (const char *flag : {"established", "log-deny", "fragments"})
            if (chance(25)) text += std::string(" ") + flag;
        if (chance(30)) {  // an ICMP type, maybe with a code
            text += " " + pick({"echo", "unreachable", decimal(0, 300)});
            if (chance(50)) text += " " + decimal(0, 300);
        }
        if (chance(5)) text += " precedence " + pick({"flash", "7", "12"});
        if (chance(5)) text += " tos " + pick({"delay", "3"});
        return text;
    }

    parse_options options() {
        const family_choice families[] = {family_choice::automatic, family_choice::automatic,
                                          family_choice::automatic, family_choice::ipv6,
                                          family_choice::ipv4};
        return {pick({"acl1", "web", "", "ACCESS", std::string(67, 'p')}),
                number(0, 5) == 0 ? 0xFFFFFFFFu : number(0, 1000), families[number(0, 4)]};
    }

  private:
    std::string pick(std::initializer_list<std::string> choices) {
        return *(choices.begin() + number(0, static_cast<uint32_t>(choices.size()) - 1));
    }
    uint32_t number(uint32_t low, uint32_t high) {
        return std::uniform_int_distribution<uint32_t>(low, high)(random_);
    }
    bool chance(uint32_t percent) { return number(1, 100) <= percent; }
    std::string decimal(uint32_t low, uint32_t high) { return std::to_string(number(low, high)); }

    std::string ipv6_address() {
        uint8_t bytes[16] = {};
        for (uint32_t i = 0, filled = chance(20) ? 0 : number(0, 16); i < filled; ++i)
            bytes[i] = static_cast<uint8_t>(number(0, 255));
        char text[INET6_ADDRSTRLEN];
        return inet_ntop(AF_INET6, bytes, text, sizeof text);
    }
    std::string ipv4_address() {
        return decimal(0, 255) + "." + decimal(0, 255) + "." + decimal(0, 255) + "." +
               decimal(0, 255);
    }
    std::string address() {
        uint32_t kind = number(0, 9);
        if (kind < 2) return "any";
        if (kind == 2) return "host " + ipv6_address();
        if (kind < 6) return ipv6_address() + "/" + decimal(0, 128);
        if (kind == 6) return pick({"::/0", "::1/0", "0.0.0.0/0"});
        if (kind == 7) return ipv4_address() + "/" + decimal(0, 32);
        if (kind == 8) return ipv4_address() + " " + pick({"0.0.0.255", "0.255.0.255", "0.0.0.0"});
        return "host " + ipv4_address();
    }

    std::string port() {
        return pick({"www", "ssh", "ftp-data", "dns", "wbem-https", "0", "65535", "65536",
                     "4294967295", decimal(0, 70000), decimal(0, 70000)});
    }
    // Ports after an address, 40% of the time.
    std::string ports() {
        if (!chance(40)) return "";
        if (chance(20)) return " range " + port() + " " + port();
        return pick({" lt ", " gt ", " eq ", " neq "}) + port();
    }

    std::mt19937 random_;
};

TEST(FilterLanguageProperty, PrintedIpv6FiltersReadBackUnchanged) {
    command_generator generate(20240611);
    uint32_t ipv6_filters = 0;
    const uint32_t commands = 20000;
    for (uint32_t i = 0; i < commands; ++i) {
        std::string command = generate.command();
        parse_options options = generate.options();
        auto first = parse_filter(command, options);
        if (!first.ok || first.filter.addr_type != IPACL_ADDR_TYPE_IPV6) continue;
        ++ipv6_filters;
        char printed[512];
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

// The command form's own examples read and print back word for word.
TEST(FilterLanguageProperty, CommandFormTextIsAFixedPoint) {
    for (const char *command :
         {"permit tcp any 2001:db8::/32 eq www established",
          "deny udp 2001:db8::1/128 range 1000 1010 any lt 1024 log-deny "
          "fragments",
          "permit icmp6 any any 8 0", "deny 300 fe80::/10 gt 1023 ::1/128 neq 9"}) {
        auto result = parse_filter(command, parse_options{});
        ASSERT_TRUE(result.ok) << command << ": " << result.error.message;
        char printed[512];
        ASSERT_EQ(IPACL_OK, ipacl_str_filter_ipv6(&result.filter, printed, sizeof printed));
        EXPECT_STREQ(command, printed);
    }
}

}  // namespace
