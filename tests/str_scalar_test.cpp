// Scalar texts: addresses, prefixes, identifiers, clock readings and the
// small string helpers behind name comparison.
#include <gtest/gtest.h>
#include <ipacl/ipacl.h>

#include <cctype>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <string>

#include "platform/tivra.h"
#include "platform_double.h"
#include "sample_records.h"

namespace {

using ipacl_double::platform;

using ipacl_sample::v4;

std::string inet(int32_t format, uint32_t any_ok, const ipacl_inet_addr &p, uint32_t size = 64) {
    char buf[64];
    memset(buf, '#', sizeof buf);
    EXPECT_EQ(ipacl_str_inet_addr(format, any_ok, &p, buf, size), buf);
    return buf;
}

class StrScalar : public ::testing::Test {
  protected:
    void SetUp() override { ipacl_double::reset(); }
};

constexpr uint64_t kAnyRet = ~uint64_t{0};

struct TextCase {
    uint32_t (*fn)(uint32_t, char *);
    uint32_t value;
    const char *text;
    uint64_t ret = kAnyRet;  // given where it is not the character count
};

// Numbers with a special word, and enumerations: fallback forms differ per
// enumeration; protocol texts return the number plus one; access-op names
// single operations only.
const TextCase kTexts[] = {{ipacl_str_addr, 0, "any"},
                           {ipacl_str_addr, 0x0A000001, "10.0.0.1"},
                           {ipacl_str_mask, 0, "0.0.0.0"},
                           {ipacl_str_mask, 0xFFFFFFFF, "any"},
                           {ipacl_str_index, 0, "no-index"},
                           {ipacl_str_order, 7, "7"},
                           {ipacl_str_rule_id, 0xDEADBEEF, "none"},
                           {ipacl_str_entry_id, 0xDEADBEAD, "none"},
                           {ipacl_str_entry_id, 0xDEADBEEF, "3735928559"},
                           {ipacl_str_icmp_code, 0xFFFFFFFF, "any-code"},
                           {ipacl_str_dir, 3, "in"},
                           {ipacl_str_dir, 0x10, "10h[dir]"},
                           {ipacl_str_prof_type, 0xFFFFFFFF, "any-prof-type"},
                           {ipacl_str_prof_type, 0xFFFFFFFE, "-2h[prof-type]"},
                           {ipacl_str_addr_type, 1, "ipV4"},
                           {ipacl_str_quen_msg, 0xFFFFFFFF, "ffffffffh[quen]"},
                           {ipacl_str_tos, 3, "3"},
                           {ipacl_str_icmp_type, 0xFFFFFFFF, "any-icmp"},
                           {ipacl_str_vni_event, 2, "2(vni-event)"},
                           {ipacl_str_avm_event, 0, "0(avm-event)"},
                           {ipacl_str_avm_event, 2, "removed"},
                           {ipacl_str_conf_op, 3, "clear"},
                           {ipacl_str_conf_op, 4, "delete-all"},
                           {ipacl_str_mem_type, 11, "sync intf"},
                           {ipacl_str_access_type, 11, "access-mgmt", 11},
                           {ipacl_str_kest_type, 0xABC, "abch[kest-type]", 15},
                           {ipacl_str_access_op, 0x80, "80h[access-op]"},
                           {ipacl_str_access_op, 0x3, "3h[access-op]"},
                           {ipacl_str_access_op, 0x10000000, "delete list"},
                           {ipacl_str_proto, 58, "icmp6", 59},
                           {ipacl_str_proto, 0xFFFFFFFF, "ip", 0},
                           {ipacl_str_proto, 2, "2", 1},
                           {ipacl_str_ipv6_proto, 0xFFFFFFFF, "ipv6", 0},
                           {ipacl_str_ipv6_proto, 300, "300", 3},
                           {ipacl_str_port_num, 143, "http"},
                           {ipacl_str_port_num, 443, "443"},
                           {ipacl_str_dst_port_num, 5989, "dst_wbem-https"},
                           {ipacl_str_dst_port_num, 443, "443"}};

TEST_F(StrScalar, NamedValuesFallbacksAndResults) {
    for (const TextCase &c : kTexts) {
        char buf[64];
        memset(buf, 'X', sizeof buf);
        const uint32_t ret = c.fn(c.value, buf);
        EXPECT_STREQ(buf, c.text) << c.value;
        EXPECT_EQ(ret, c.ret == kAnyRet ? strlen(c.text) : c.ret) << c.text;
    }
    char buf[16] = "keep";
    ipacl_str_list_type(3, buf);  // unknown: the buffer stays as it was
    EXPECT_STREQ(buf, "keep");
    ipacl_str_pm_phy_layer(7, buf);
    EXPECT_STREQ(buf, "7(phy-layer)");
}

TEST_F(StrScalar, LogFlags) {
    const struct {
        uint8_t flags;
        const char *text;
    } cases[] = {{0x00, "none"},
                 {0x08, ""},
                 {0x11, "11h[log-flag]"},
                 {0x07, "tcp-seq-no tcp-options ip-options "},
                 {0x0C, "ip-options "}};
    for (const auto &c : cases) {
        char buf[64] = "junk";
        ipacl_str_log_flag(c.flags, buf);
        EXPECT_STREQ(buf, c.text) << int{c.flags};
    }
}

TEST_F(StrScalar, InterfaceIndexGoesToThePlatformExceptNone) {
    char buf[IPACL_STR_SIZE];
    EXPECT_EQ(ipacl_str_if_index(0, buf), 5u);
    EXPECT_STREQ(buf, "no-if");
    EXPECT_TRUE(platform().if_name_calls.empty());

    EXPECT_EQ(ipacl_str_if_index(0x1000, buf), 6u);
    EXPECT_STREQ(buf, "if4096");
    ASSERT_EQ(platform().if_name_calls.size(), 1u);
    EXPECT_EQ(platform().if_name_calls[0], std::make_pair(40u, 0x1000u));

    platform().if_name_rc_override = 17;  // the platform's result is returned as it is
    EXPECT_EQ(ipacl_str_if_index(1, buf), 17u);
}

ipacl_inet_addr v6_of(uint32_t family, uint8_t first, uint32_t len) {
    ipacl_inet_addr p{};
    p.family = family;
    const uint8_t addr[4] = {0x20, 0x01, 0x0d, 0xb8};
    if (first) memcpy(p.addr, addr, sizeof addr);
    p.prefix_len = len;
    return p;
}

// IPv4 as wildcard (format 0) or length (1), lengths above 32 wrapping except
// 32 itself; "any" only when allowed; IPv6 ignores the format; other
// families show their number.
TEST_F(StrScalar, PrefixTexts) {
    struct Case {
        int32_t format;
        uint32_t any_ok;
        ipacl_inet_addr p;
        const char *text;
    };
    const Case cases[] = {{0, 0, v4(10, 1, 0, 0, 16), "10.1.0.0 0.0.255.255"},
                          {0, 0, v4(10, 1, 2, 3, 32), "10.1.2.3 0.0.0.0"},
                          {0, 0, v4(0, 0, 0, 0, 0), "0.0.0.0 255.255.255.255"},
                          {0, 0, v4(10, 0, 0, 0, 33), "10.0.0.0 127.255.255.255"},
                          {1, 0, v4(10, 1, 0, 0, 99), "10.1.0.0/99"},
                          {0, 1, v4(0, 0, 0, 0, 0), "any"},
                          {1, 0, v4(0, 0, 0, 0, 0), "0.0.0.0/0"},
                          {1, 1, v4(0, 0, 0, 0, 1), "0.0.0.0/1"},
                          {1, 1, v6_of(IPACL_ADDR_TYPE_IPV6, 0, 0), "any"},
                          {0, 0, v6_of(IPACL_ADDR_TYPE_IPV6, 0, 0), "::/0"},
                          {9, 0, v6_of(IPACL_ADDR_TYPE_IPV6, 1, 32), "2001:db8::/32"},
                          {1, 0, v6_of(7, 1, 32), "unknown(7)"}};
    for (const Case &c : cases) EXPECT_EQ(inet(c.format, c.any_ok, c.p), c.text) << c.text;
    EXPECT_TRUE(platform().hist_events.empty());

    // Writes are bounded by the size; size 0 writes nothing.
    char buf[16];
    memset(buf, '#', sizeof buf);
    ipacl_inet_addr p = v4(192, 168, 100, 200, 24);
    ipacl_str_inet_addr(0, 0, &p, buf, 8);
    EXPECT_STREQ(buf, "192.168");
    EXPECT_EQ(buf[8], '#');
    ipacl_str_inet_addr(0, 0, &p, buf, 0);
    EXPECT_EQ(buf[0], '1');
}

TEST_F(StrScalar, UnknownIpv4FormatIsReportedAndPrintsQuestionMarks) {
    platform().chk_int_rc = 1;
    EXPECT_EQ(inet(2, 0, v4(10, 0, 0, 0, 8)), "???");

    const std::string text = "impossible prefix format in ipacl_str_inet_addr(): 2\n";
    ASSERT_EQ(platform().subtype_checks.size(), 1u);
    EXPECT_EQ(platform().subtype_checks[0], std::make_pair(0x730000u, 100u));
    ASSERT_EQ(platform().hist_events.size(), 1u);
    const auto &event = platform().hist_events[0];
    EXPECT_EQ(event.event, 0x730000u);
    EXPECT_EQ(event.length, 4 + text.size() + 1);
    EXPECT_EQ(std::string(event.record.begin(), event.record.end()),
              std::string("\x64\0\0\0", 4) + text + '\0');  // the subtype, then the text

    ASSERT_EQ(platform().chk_ints.size(), 1u);
    const auto &chk = platform().chk_ints[0];
    EXPECT_EQ(std::tie(chk.subtype, chk.a, chk.b, chk.c), std::make_tuple(100u, 0u, 0u, 1u));
    ASSERT_EQ(platform().zlogs.size(), 1u);
    const auto &log = platform().zlogs[0];
    EXPECT_EQ(std::tie(log.level, log.module, log.flags, log.text),
              std::make_tuple(1, std::string(tivra_dbg_modname), 0, text));

    // Negative formats print signed; the history and the log each follow
    // their own switch.
    ipacl_double::reset();
    platform().subtype_check_rc = 1;
    EXPECT_EQ(inet(-3, 0, v4(10, 0, 0, 0, 8)), "???");
    EXPECT_TRUE(platform().hist_events.empty());
    EXPECT_TRUE(platform().zlogs.empty());
    ASSERT_EQ(platform().chk_ints.size(), 1u);
    platform().subtype_check_rc = 0;
    EXPECT_EQ(inet(-3, 0, v4(10, 0, 0, 0, 8)), "???");
    ASSERT_EQ(platform().hist_events.size(), 1u);
    EXPECT_EQ(
        std::string(reinterpret_cast<const char *>(platform().hist_events[0].record.data()) + 4),
        "impossible prefix format in ipacl_str_inet_addr(): -3\n");
}

// True when `text` has the shape of `pattern`: '9' stands for any digit,
// every other character for itself.
bool has_shape(const char *text, const char *pattern) {
    for (; *pattern; ++text, ++pattern) {
        if (*pattern == '9' ? !isdigit(static_cast<unsigned char>(*text)) : *text != *pattern)
            return false;
    }
    return *text == '\0';
}

TEST_F(StrScalar, ClockTextsAndDateWithoutNewline) {
    char buf[IPACL_STR_SIZE];
    EXPECT_EQ(ipacl_str_time(buf), 11u);
    EXPECT_TRUE(has_shape(buf, "999:999:999")) << buf;
    EXPECT_EQ(buf[0], '0');  // seconds of a minute
    EXPECT_EQ(ipacl_str_time_stamp(buf), 8u);
    EXPECT_TRUE(has_shape(buf, "99:99:99")) << buf;
    EXPECT_LT(atoi(buf), 24);

    setenv("TZ", "UTC", 1);
    tzset();
    time_t later = 1700000000;
    ipacl_str_date(&later, buf);
    EXPECT_STREQ(buf, "Tue Nov 14 22:13:20 2023");
}

TEST_F(StrScalar, PadOrCutToWidth) {
    // Bytes after the first NUL are blanked too, even if they held text.
    const struct {
        char in[7];
        int32_t width;
        const char *out;
    } cases[] = {{"abcdef", 3, "abc"}, {"abcdef", 0, ""}, {"a\0cd", 5, "a    "}};
    char buf[16];
    for (const auto &c : cases) {
        memcpy(buf, c.in, sizeof c.in);
        ipacl_str_n(buf, c.width);
        EXPECT_STREQ(buf, c.out) << c.in;
    }
    // A negative width clears only the byte at that position.
    strcpy(buf, "xyz");
    ipacl_str_n(buf + 2, -1);
    EXPECT_STREQ(buf, "x");
    EXPECT_EQ(buf[2], 'z');
}

TEST_F(StrScalar, FirstLineOfInput) {
    char buf[IPACL_STR_SIZE + 8];
    memset(buf, '#', sizeof buf);
    ipacl_str_from_line("abc\ndef", buf);
    EXPECT_STREQ(buf, "abc");
    EXPECT_EQ(buf[4], '#');
    std::string fifty(50, 'x');
    memset(buf, '#', sizeof buf);
    ipacl_str_from_line(fifty.c_str(), buf);
    EXPECT_EQ(std::string(buf), std::string(39, 'x'));
    EXPECT_EQ(buf[40], '#');
}

TEST_F(StrScalar, DigitsAndTheirValue) {
    const struct {
        const char *text;
        uint32_t digits, value;
    } cases[] = {
        {"", 1, 0},           {"0042", 1, 42},  {"4294967295", 1, 4294967295u},
        {"4294967296", 1, 0}, {"\xb2", 0, ~0u}, {"1a", 0, 59},  // unchecked: ('a' - '0') * 1 + 10
    };
    for (const auto &c : cases) {
        EXPECT_EQ(ipacl_str_isdigit(c.text), c.digits) << c.text;
        if (c.value == ~0u) continue;
        uint32_t v = 99;
        ipacl_str_toint(c.text, &v);
        EXPECT_EQ(v, c.value) << c.text;
    }
}

TEST_F(StrScalar, CanonicalFormLowersAndCutsAt29) {
    char buf[IPACL_CHAIN_NAME_SIZE];
    memset(buf, '#', sizeof buf);
    ipacl_str_to_chain("INPUT", buf);
    EXPECT_STREQ(buf, "input");
    EXPECT_EQ(std::string(buf, sizeof buf), "input" + std::string(sizeof buf - 5, '\0'));
    ipacl_str_to_chain("ABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789WXYZ", buf);
    EXPECT_STREQ(buf, "abcdefghijklmnopqrstuvwxyz012");
}

}  // namespace
