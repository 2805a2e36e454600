// Field checks and record chains: codes, exact messages, which failure wins,
// and the deliberate differences between the chains.
#include <gtest/gtest.h>
#include <ipacl/ipacl.h>

#include <cstring>
#include <string>
#include <vector>

#include "platform_double.h"
#include "sample_records.h"

namespace {

using ipacl_double::platform;

constexpr uint32_t kNone = 0xFFFFFFFF;
constexpr uint32_t TCP = 6, UDP = 17, ICMP = 1, ICMP6 = 58;
const std::string kUntouched(IPACL_ERR_TEXT_SIZE - 1, 'X');

// Runs a check with a buffer pre-filled with garbage and again with NULL:
// both must give the same code.
struct Result {
    uint32_t code;
    std::string text;
};

template <typename Check>
Result run(Check check) {
    char err[IPACL_ERR_TEXT_SIZE];
    memset(err, 'X', sizeof err);
    err[sizeof err - 1] = '\0';
    uint32_t code = check(err);
    EXPECT_EQ(check(nullptr), code) << err;
    return {code, err};
}

#define EXPECT_CHECK(call, code_, text_)                       \
    do {                                                       \
        Result r_ = run([&](char *err) { return call; });      \
        EXPECT_EQ(r_.code, code_) << #call << ": " << r_.text; \
        EXPECT_EQ(r_.text, text_) << #call;                    \
    } while (0)

TEST(ChkFields, ProtocolActionEstablishedPrecedence) {
    EXPECT_CHECK(ipacl_chk_proto(kNone, err), 0u, "");
    EXPECT_CHECK(ipacl_chk_proto(256, err), IPACL_E_BAD_PROTO, "bad protocol 256");

    EXPECT_CHECK(ipacl_chk_action(2, 2, err), 0u, "");  // only 1 is refused with permit
    EXPECT_CHECK(ipacl_chk_action(3, 0, err), IPACL_E_BAD_ACTION, "bad action 3h[action]");
    EXPECT_CHECK(ipacl_chk_action(1, 2, err), IPACL_E_BAD_LOG_DENY, "invalid log-deny 2");
    EXPECT_CHECK(ipacl_chk_action(2, 1, err), IPACL_E_LOG_DENY_NOT_ALLOWED,
                 "log-deny is not allowed for permit");

    EXPECT_CHECK(ipacl_chk_tcp(TCP, 1, err), 0u, "");
    EXPECT_CHECK(ipacl_chk_tcp(TCP, 2, err), IPACL_E_BAD_ESTABLISHED, "invalid established 2");
    EXPECT_CHECK(ipacl_chk_tcp(UDP, 1, err), IPACL_E_ESTABLISHED_NOT_ALLOWED,
                 "establshed is not allowed for udp");

    EXPECT_CHECK(ipacl_chk_prec_tos(7, kNone, err), 0u, "");
    EXPECT_CHECK(ipacl_chk_prec_tos(0, 0, err), IPACL_E_PREC_AND_TOS,
                 "setting both precedence routine and tos normal-service is not allowed");
    EXPECT_CHECK(ipacl_chk_prec_tos(9, 20, err), IPACL_E_PREC_AND_TOS,
                 "setting both precedence 9 and tos 20 is not allowed");
    EXPECT_CHECK(ipacl_chk_prec_tos(8, kNone, err), IPACL_E_BAD_PREC, "bad precedence 8");
    EXPECT_CHECK(ipacl_chk_prec_tos(kNone, 16, err), IPACL_E_BAD_TOS, "bad tos 16");
}

TEST(ChkFields, PortNumbersAndOperations) {
    const char *S = IPACL_LABEL_SRC_PORT;
    EXPECT_CHECK(ipacl_chk_port_num(0, 65535, S, err), 0u, "");
    // The low port's code is 0x...11 and the high port's 0x...10.
    EXPECT_CHECK(ipacl_chk_port_num(70000, 80000, S, err), IPACL_E_BAD_LOW_PORT,
                 "bad low source port 70000");
    EXPECT_CHECK(ipacl_chk_port_num(1, 65536, "dest port", err), IPACL_E_BAD_HIGH_PORT,
                 "bad high dest port 65536");
    EXPECT_CHECK(ipacl_chk_port_num(80, 22, S, err), IPACL_E_BAD_PORT_RANGE,
                 "source port low www > high ssh");
    // Without a label: the code, and the buffer as it was.
    EXPECT_CHECK(ipacl_chk_port_num(10, 5, nullptr, err), IPACL_E_BAD_PORT_RANGE, kUntouched);

    EXPECT_CHECK(ipacl_chk_port_op(TCP, 5, 900, 80, S, err), 0u, "");  // range: not here
    EXPECT_CHECK(ipacl_chk_port_op(ICMP, 0, 0, 65535, S, err), 0u, "");
    EXPECT_CHECK(ipacl_chk_port_op(TCP, 6, 0, 65535, S, err), IPACL_E_BAD_PORT_OP,
                 "bad source port operation 6h[port-op]");
    EXPECT_CHECK(ipacl_chk_port_op(TCP, 6, 0, 65535, nullptr, err), IPACL_E_BAD_PORT_OP,
                 "bad (null) operation 6h[port-op]");
    EXPECT_CHECK(ipacl_chk_port_op(TCP, 2, 1024, 2000, S, err), IPACL_E_BAD_PORT_RANGE,
                 "bad low 1024 high 2000 for source port operation gt");
    EXPECT_CHECK(ipacl_chk_port_op(TCP, 2, 1024, 2000, nullptr, err), IPACL_E_BAD_PORT_RANGE,
                 kUntouched);
    EXPECT_CHECK(ipacl_chk_port_op(TCP, 4, 22, 23, S, err), IPACL_E_BAD_PORT_RANGE,
                 "low ssh != high telnet for source port operation eq");
    EXPECT_CHECK(ipacl_chk_port_op(ICMP, 4, 0, 65535, S, err), IPACL_E_PORT_NOT_ALLOWED,
                 "source port operation eq low 0 high 65535 is not allowed for icmp");
    EXPECT_CHECK(ipacl_chk_port_op(kNone, 0, 0, 80, nullptr, err), IPACL_E_PORT_NOT_ALLOWED,
                 "(null) operation any-port-op low 0 high www is not allowed for ip");
}

TEST(ChkFields, ServicePorts) {
    EXPECT_CHECK(ipacl_chk_proto_port(TCP, 4, 5989, "dest port", err), 0u, "");
    // The refusal needs both a label and a buffer: without either the port
    // is let through (so these are not run with a NULL buffer).
    char err[IPACL_ERR_TEXT_SIZE];
    EXPECT_EQ(ipacl_chk_proto_port(TCP, 4, 8080, "dest port", err), IPACL_E_PORT_NOT_ALLOWED);
    EXPECT_STREQ(err, "dest port 8080 is not allowed for tcp");
    EXPECT_EQ(ipacl_chk_proto_port(UDP, 4, 22, "source port", err), IPACL_E_PORT_NOT_ALLOWED);
    EXPECT_STREQ(err, "source port ssh is not allowed for udp");
    EXPECT_EQ(ipacl_chk_proto_port(UDP, 4, 22, "source port", nullptr), 0u);
    EXPECT_CHECK(ipacl_chk_proto_port(TCP, 4, 8080, nullptr, err), 0u, "");
    // Other operations are not looked at and leave the buffer alone.
    EXPECT_CHECK(ipacl_chk_proto_port(TCP, 1, 8080, "dest port", err), 0u, kUntouched);

    // low, high, whether the range holds a service port (an empty one does)
    EXPECT_EQ(ipacl_chk_tcp_port(20, 23), 1u);
    EXPECT_EQ(ipacl_chk_tcp_port(20, 24), 0u);
    EXPECT_EQ(ipacl_chk_tcp_port(9, 1), 1u);
    EXPECT_EQ(ipacl_chk_udp_port(161, 162), 1u);
    EXPECT_EQ(ipacl_chk_udp_port(kNone, kNone), 0u);
}

TEST(ChkFields, IcmpAndWildcards) {
    EXPECT_CHECK(ipacl_chk_icmp(ICMP6, 255, 255, err), 0u, "");
    EXPECT_CHECK(ipacl_chk_icmp(ICMP, 300, 1, err), IPACL_E_BAD_ICMP_TYPE, "invalid icmp type 300");
    EXPECT_CHECK(ipacl_chk_icmp(ICMP, 3, 300, err), IPACL_E_BAD_ICMP_CODE, "invalid icmp code 300");
    EXPECT_CHECK(ipacl_chk_icmp(ICMP6, kNone, 4, err), IPACL_E_ICMP_CODE_NOT_ALLOWED,
                 "icmp code 4 is not allowed without icmp type");
    EXPECT_CHECK(ipacl_chk_icmp(TCP, 8, 0, err), IPACL_E_ICMP_TYPE_NOT_ALLOWED,
                 "icmp type echo is not allowed for tcp");
    EXPECT_CHECK(ipacl_chk_icmp(kNone, kNone, 0, err), IPACL_E_ICMP_CODE_NOT_ALLOWED,
                 "icmp code 0 is not allowed for ip");

    EXPECT_CHECK(ipacl_chk_mask(0x000000FFu, err), 0u, "");
    EXPECT_CHECK(ipacl_chk_mask(0xFFFFFFFFu, err), 0u, "");
    EXPECT_CHECK(ipacl_chk_mask(0x00FF00FF, err), IPACL_E_BAD_WILDCARD,
                 "invalid wildcard 0.255.0.255");
}

TEST(ChkFields, AddressTypes) {
    const struct {
        uint32_t type, src, dst, code;
        const char *text;
    } cases[] = {
        {1, 1, 1, 0, ""},
        {3, 1, 1, IPACL_E_BAD_ADDR_TYPE, "bad address type 3h[addr-type]"},
        {kNone, 1, 1, IPACL_E_BAD_ADDR_TYPE, "bad address type no-addr-type"},
        {1, 2, 2, IPACL_E_BAD_ADDR_TYPE, "source prefix type should be IPv4"},
        {2, 2, 0, IPACL_E_BAD_ADDR_TYPE, "destination prefix type should be IPv6"},
    };
    for (const auto &c : cases) {
        ipacl_filter f{};
        f.addr_type = c.type, f.src_addr.family = c.src, f.dst_addr.family = c.dst;
        EXPECT_CHECK(ipacl_chk_addr_type(&f, err), c.code, c.text);
    }
}

TEST(ChkFields, DirectionTypeRowStatusAndNames) {
    EXPECT_CHECK(ipacl_chk_dir(4, err), 0u, "");
    EXPECT_CHECK(ipacl_chk_dir(5, err), IPACL_E_BAD_DIR, "bad interface direction in+out");
    EXPECT_CHECK(ipacl_chk_quen_dir(5, err), IPACL_E_BAD_DIR, "bad interface direction in+out");
    EXPECT_CHECK(ipacl_chk_dir(kNone, err), IPACL_E_BAD_DIR,
                 "bad interface direction ffffffffh[dir]");
    EXPECT_CHECK(ipacl_chk_prof_type(1, err), IPACL_E_BAD_PROF_TYPE, "bad profile type simple");
    EXPECT_CHECK(ipacl_chk_prof_type(kNone, err), IPACL_E_BAD_PROF_TYPE,
                 "bad profile type any-prof-type");
    EXPECT_CHECK(ipacl_chk_rs(4, 4, err), 0u, "");
    EXPECT_CHECK(ipacl_chk_rs(1, 4, err), IPACL_E_BAD_RS,
                 "active is not allowed for create+go operation");

    const std::string n64(64, 'a'), n65(65, 'a'), n31(31, 'c'), n32(32, 'c');
    EXPECT_CHECK(ipacl_chk_name(n64.c_str(), err), 0u, "");
    EXPECT_CHECK(ipacl_chk_name("", err), IPACL_E_NO_NAME, "missing name");
    EXPECT_CHECK(ipacl_chk_name(n65.c_str(), err), IPACL_E_NAME_TOO_LONG,
                 "length of '" + n65 + "' exceed 64 characters");
    EXPECT_CHECK(ipacl_chk_chain_name(n31.c_str(), err), 0u, "");
    EXPECT_CHECK(ipacl_chk_chain_name(n32.c_str(), err), IPACL_E_NAME_TOO_LONG,
                 "length of '" + n32 + "' exceed 31 characters");
}

TEST(ChkFields, ReservedWordsAndAlphanumerics) {
    const std::string reserved = " is reserved and is not allowed as part of an access list name";
    for (const char *free_name : {"acl1", "", "tcpx", "syslogtacacs", "ds"})
        EXPECT_CHECK(ipacl_chk_name_rsv(free_name, err), 0u, "");
    // Any case; words out of alphabetical order in the table, and the last one.
    for (const char *word : {"ACCESS", "gt", "Engineering", "ha"})
        EXPECT_CHECK(ipacl_chk_name_rsv(word, err), IPACL_E_NAME_RESERVED, word + reserved);
    // The hyphenated words are refused as not alphanumeric before the table.
    EXPECT_CHECK(ipacl_chk_name_rsv("syslogtacacs-ds", err), IPACL_E_NAME_NOT_ALNUM,
                 "syslogtacacs-ds is not alphanumeric");
    // Length is not checked; the alphanumeric test runs past 29 characters.
    const std::string long_name = "tcp" + std::string(70, '0');
    EXPECT_CHECK(ipacl_chk_name_rsv(long_name.c_str(), err), 0u, "");
    const std::string late_dash = std::string(40, 'a') + "-";
    EXPECT_CHECK(ipacl_chk_name_rsv(late_dash.c_str(), err), IPACL_E_NAME_NOT_ALNUM,
                 late_dash + " is not alphanumeric");
}

class ChkPlatform : public ::testing::Test {
  protected:
    void SetUp() override { ipacl_double::reset(); }
};

TEST_F(ChkPlatform, InterfaceTypes) {
    platform().if_types[100] = {0, 11};
    EXPECT_CHECK(ipacl_chk_if_index(100, err), 0u, "");
    for (uint8_t type : {1, 12}) {
        platform().if_types[100] = {0, type};
        EXPECT_CHECK(ipacl_chk_if_index(100, err), IPACL_E_BAD_IF_TYPE,
                     "if type " + std::to_string(type) + " not allowed");
    }
    platform().if_types[100] = {-5, 2};
    EXPECT_CHECK(ipacl_chk_if_index(100, err), 0xFFFFFFFBu, "bad if type");
    EXPECT_EQ(platform().type_calls.back(), 100u);
}

// ---- Chains ----

// The sample filter with a source port range and a tos: valid for every chain.
ipacl_filter valid_filter() {
    ipacl_filter f = ipacl_sample::filter();
    f.src_wildcard = 0x000000FF;
    f.dst_wildcard = 0x0000FFFF;
    f.src_port_low = 1024, f.src_port_high = 65535, f.src_port_op = IPACL_PORT_OP_GT;
    f.dst_port_low = 22, f.dst_port_high = 22;
    f.tos = 3;
    return f;
}

using FilterCheck = uint32_t (*)(const ipacl_filter *, char *);
constexpr FilterCheck kFilterChains[] = {ipacl_chk_filter, ipacl_chk_quen_filter,
                                         ipacl_chk_cli_filter, ipacl_chk_gen_filter};

// One bad field at a time, in the quen chain's step order: its code, and the
// chains that report it (plain, quen, cli, gen); the others pass it.
struct FilterCase {
    const char *what;
    void (*spoil)(ipacl_filter &);
    uint32_t code;
    const char *chains;
};

#define SPOIL(...) [](ipacl_filter &f) { __VA_ARGS__; }
const FilterCase kFilterCases[] = {
    {"empty name", SPOIL(f.prof_name[0] = 0), IPACL_E_NO_NAME, "pq-g"},
    {"reserved", SPOIL(strcpy(f.prof_name, "Permit")), IPACL_E_NAME_RESERVED, "-qc-"},
    {"action", SPOIL(f.action = 3), IPACL_E_BAD_ACTION, "pqcg"},
    {"address type", SPOIL(f.dst_addr.family = 2), IPACL_E_BAD_ADDR_TYPE, "pq--"},
    {"protocol 300 without ports",
     SPOIL(f.protocol = 300, f.established = 0, f.src_port_op = f.dst_port_op = 0;
           f.src_port_low = f.dst_port_low = 0, f.src_port_high = f.dst_port_high = 65535),
     IPACL_E_BAD_PROTO, "pq-g"},
    {"source wildcard", SPOIL(f.src_wildcard = 0x00FF00FF), IPACL_E_BAD_WILDCARD, "-qcg"},
    {"source low port", SPOIL(f.src_port_low = 70000), IPACL_E_BAD_LOW_PORT, "pqc-"},
    {"source port op", SPOIL(f.src_port_op = 9), IPACL_E_BAD_PORT_OP, "pqc-"},
    {"dest eq range", SPOIL(f.dst_port_high = 23), IPACL_E_BAD_PORT_RANGE, "pqc-"},
    {"established", SPOIL(f.established = 2), IPACL_E_BAD_ESTABLISHED, "pqc-"},
    {"icmp type on tcp", SPOIL(f.icmp_type = 8), IPACL_E_ICMP_TYPE_NOT_ALLOWED, "pqc-"},
    {"precedence and tos", SPOIL(f.precedence = 1), IPACL_E_PREC_AND_TOS, "pq--"},
};

TEST(ChkChains, EachChainChecksItsOwnFields) {
    ipacl_filter f = valid_filter();
    for (FilterCheck chain : kFilterChains) EXPECT_CHECK(chain(&f, err), 0u, "");
    // Records are packed and may sit at any address.
    alignas(8) uint8_t storage[sizeof f + 1];
    memcpy(storage + 1, &f, sizeof f);
    const auto *unaligned = reinterpret_cast<const ipacl_filter *>(storage + 1);
    for (FilterCheck chain : kFilterChains) EXPECT_CHECK(chain(unaligned, err), 0u, "");

    for (const FilterCase &c : kFilterCases) {
        f = valid_filter();
        c.spoil(f);
        for (size_t i = 0; i < 4; ++i) {
            const uint32_t expected = c.chains[i] == '-' ? 0 : c.code;
            char err[IPACL_ERR_TEXT_SIZE] = "stale";
            EXPECT_EQ(kFilterChains[i](&f, err), expected) << c.what << ", chain " << i;
            EXPECT_EQ(err[0] == '\0', expected == 0) << c.what << ": " << err;
        }
    }
}

// The quen chain runs every step: spoiling the fields of step k and of every
// later step reports step k, for each k.
TEST(ChkChains, TheFirstFailingStepWins) {
    const size_t n = std::size(kFilterCases);
    for (size_t k = 0; k < n; ++k) {
        ipacl_filter f = valid_filter();
        for (size_t j = n; j-- > k;) kFilterCases[j].spoil(f);
        char err[IPACL_ERR_TEXT_SIZE];
        EXPECT_EQ(ipacl_chk_quen_filter(&f, err), kFilterCases[k].code)
            << kFilterCases[k].what << ": " << err;
    }
    // Action 3 with an empty name reports the name.
    ipacl_filter f = valid_filter();
    f.action = 3;
    f.prof_name[0] = 0;
    EXPECT_CHECK(ipacl_chk_filter(&f, err), IPACL_E_NO_NAME, "missing name");
    EXPECT_CHECK(ipacl_chk_cli_filter(&f, err), IPACL_E_BAD_ACTION, "bad action 3h[action]");

    // The message comes from the failing step.
    f = valid_filter();
    f.dst_port_high = 23;
    EXPECT_CHECK(ipacl_chk_filter(&f, err), IPACL_E_BAD_PORT_RANGE,
                 "low ssh != high telnet for dest port operation eq");
    f = valid_filter();
    f.src_wildcard = 0x00FF00FF;
    EXPECT_CHECK(ipacl_chk_gen_filter(&f, err), IPACL_E_BAD_WILDCARD,
                 "invalid wildcard 0.255.0.255");
}

TEST(ChkChains, Profiles) {
    ipacl_prof p{};
    strcpy(p.name, "deny");
    p.prof_type = IPACL_PROF_TYPE_SIMPLE;
    EXPECT_CHECK(ipacl_chk_prof(&p, err), IPACL_E_BAD_PROF_TYPE, "bad profile type simple");
    p.prof_type = IPACL_PROF_TYPE_EXTENDED;
    EXPECT_CHECK(ipacl_chk_prof(&p, err), 0u, "");
    EXPECT_CHECK(ipacl_chk_quen_prof(&p, err), IPACL_E_NAME_RESERVED,
                 "deny is reserved and is not allowed as part of an access list name");
    strcpy(p.name, "acl1");
    p.prof_type = IPACL_PROF_TYPE_SIMPLE;  // the quen chain has no type step
    EXPECT_CHECK(ipacl_chk_quen_prof(&p, err), 0u, "");
    p.name[0] = 0;
    p.prof_type = 7;
    EXPECT_CHECK(ipacl_chk_prof(&p, err), IPACL_E_NO_NAME, "missing name");
    EXPECT_CHECK(ipacl_chk_quen_prof(&p, err), IPACL_E_NO_NAME, "missing name");
}

TEST_F(ChkPlatform, BindingChains) {
    ipacl_if_prof b{};
    b.if_index = 0x2000;
    b.direction = 5;
    strcpy(b.prof_name, "acl1");
    const char *bad_dir = "bad interface direction in+out";
    EXPECT_CHECK(ipacl_chk_if_prof(&b, err), IPACL_E_BAD_DIR, bad_dir);
    EXPECT_CHECK(ipacl_chk_gen_if_prof(&b, err), IPACL_E_BAD_DIR, bad_dir);
    EXPECT_CHECK(ipacl_chk_quen_if_prof(&b, err), IPACL_E_BAD_DIR, bad_dir);
    EXPECT_CHECK(ipacl_chk_cli_if_prof(&b, err), 0u, "");

    b.direction = 1;
    strcpy(b.prof_name, "out");
    EXPECT_CHECK(ipacl_chk_if_prof(&b, err), 0u, "");
    EXPECT_CHECK(ipacl_chk_cli_if_prof(&b, err), IPACL_E_NAME_RESERVED,
                 "out is reserved and is not allowed as part of an access list name");
    memset(b.prof_name, 'q', 65);
    b.prof_name[65] = 0;
    EXPECT_CHECK(ipacl_chk_cli_if_prof(&b, err), 0u, "");
    EXPECT_CHECK(ipacl_chk_quen_if_prof(&b, err), IPACL_E_NAME_TOO_LONG,
                 "length of '" + std::string(65, 'q') + "' exceed 64 characters");
    EXPECT_TRUE(platform().type_calls.empty());

    strcpy(b.prof_name, "acl1");
    EXPECT_CHECK(ipacl_chk_quen_if_prof(&b, err), 0u, "");  // default type 2
    EXPECT_EQ(platform().type_calls.back(), 0x2000u);
    EXPECT_TRUE(platform().fields_calls.empty());
}

TEST_F(ChkPlatform, ManagementPortOfQuenBindings) {
    ipacl_if_prof b{};
    b.if_index = 0x5000;
    b.direction = 2;
    strcpy(b.prof_name, "mgmtacl");
    platform().if_types[0x5000] = {0, 5};
    platform().field_first = 3;
    platform().port_init_if_index = 0x5000;
    EXPECT_CHECK(ipacl_chk_quen_if_prof(&b, err), 0u, "");
    ASSERT_FALSE(platform().port_init_calls.empty());
    EXPECT_EQ(platform().port_init_calls.back(), std::make_pair(3u, 0u));
    EXPECT_EQ(platform().fields_calls.back(), 0x5000u);

    // Failures carry no message: the buffer holds what the name step left.
    platform().port_init_if_index = 0x5001;
    EXPECT_CHECK(ipacl_chk_quen_if_prof(&b, err), IPACL_E_BAD_MGMT_IF, "");
    platform().port_init_if_index = 0x5000;
    platform().field_second = 1;
    EXPECT_CHECK(ipacl_chk_quen_if_prof(&b, err), IPACL_E_BAD_MGMT_IF, "");
    platform().field_second = 0;
    platform().port_init_rc = 77;
    EXPECT_CHECK(ipacl_chk_quen_if_prof(&b, err), 77u, "");
    platform().fields_rc = 78;
    EXPECT_CHECK(ipacl_chk_quen_if_prof(&b, err), 78u, "");
    platform().if_types[0x5000] = {79, 5};
    EXPECT_CHECK(ipacl_chk_quen_if_prof(&b, err), 79u, "");
    // The plain chain never asks the platform.
    size_t calls = platform().type_calls.size();
    EXPECT_CHECK(ipacl_chk_if_prof(&b, err), 0u, "");
    EXPECT_EQ(platform().type_calls.size(), calls);
}

// The longest messages, with 64-character names and 40-character texts,
// fit IPACL_ERR_TEXT_SIZE; the buffer is on the heap so that a longer write
// would be caught.
TEST(ChkBuffer, LongestMessagesFitTheDocumentedSize) {
    std::vector<char> err(IPACL_ERR_TEXT_SIZE);
    const std::string label(40, 'L'), name64(64, 'n');
    const char *l = label.c_str();
    const uint32_t big = 4000000000u, bigger = 4000000001u;
    size_t longest = 0;
    auto measure = [&](uint32_t code) {
        EXPECT_NE(code, 0u);
        longest = std::max(longest, strlen(err.data()));
    };
    measure(ipacl_chk_port_op(0xFFFFFFFE, 0xFFFFFFFE, big, bigger, l, err.data()));
    measure(ipacl_chk_port_op(TCP, 1, big, bigger, l, err.data()));
    measure(ipacl_chk_port_op(TCP, 4, big, bigger, l, err.data()));
    measure(ipacl_chk_proto_port(TCP, 4, big, l, err.data()));
    measure(ipacl_chk_port_num(big, bigger, l, err.data()));
    measure(ipacl_chk_prec_tos(big, bigger, err.data()));
    measure(ipacl_chk_name_rsv((name64 + "-").substr(1).c_str(), err.data()));
    measure(ipacl_chk_name_rsv("INTERNETWORK", err.data()));
    measure(ipacl_chk_name((name64 + "x").c_str(), err.data()));
    EXPECT_LT(longest, size_t{IPACL_ERR_TEXT_SIZE});
}

}  // namespace
