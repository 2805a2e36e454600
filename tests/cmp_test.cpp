// Ordering and equality of names and records, and the "any" prefix.
#include <gtest/gtest.h>
#include <ipacl/ipacl.h>

#include <cstddef>
#include <cstring>
#include <string>

#include "cmp/cmp_prefix.h"
#include "platform_double.h"

namespace {

using ipacl_double::platform;

constexpr uint32_t LT = IPACL_CMP_LT, GT = IPACL_CMP_GT, NE = IPACL_CMP_NE, EQ = IPACL_CMP_EQ;

ipacl_inet_addr prefix(uint32_t family, std::initializer_list<uint8_t> bytes, uint32_t len) {
    ipacl_inet_addr p{};
    p.family = family;
    size_t i = 0;
    for (uint8_t b : bytes) p.addr[i++] = b;
    p.prefix_len = len;
    return p;
}

ipacl_filter filter(const char *name, uint32_t index) {
    ipacl_filter f{};
    strcpy(f.prof_name, name);
    f.filter_index = index;
    f.action = IPACL_ACTION_PERMIT;
    f.protocol = IPACL_PROTO_TCP;
    f.src_addr = prefix(1, {10, 0, 0, 0}, 8);
    f.dst_addr = prefix(1, {192, 168, 1, 0}, 24);
    f.icmp_type = f.icmp_code = f.precedence = f.tos = 0xFFFFFFFF;
    return f;
}

// Expected results as "<", ">" or "=".
uint32_t order_of(const char *sign) { return *sign == '<' ? LT : *sign == '>' ? GT : EQ; }

TEST(CmpName, LengthFirstThenCanonicalForm) {
    // Length first; all-digit names by value; characters compare as signed
    // bytes, so a high byte sorts before ASCII.
    const char *const cases[] = {"zz", "aaa", "<", "abc", "ABC", "=", "abd", "ABC",  ">",
                                 "",   "a",   "<", "10",  "09",  ">", "9",   "10",   "<",
                                 "",   "",    "=", "a",   "",    ">", "a",   "\xe9", ">"};
    for (size_t i = 0; i < std::size(cases); i += 3)
        EXPECT_EQ(ipacl_cmp_name(cases[i], cases[i + 1]), order_of(cases[i + 2]))
            << cases[i] << " / " << cases[i + 1];
}

TEST(CmpName, OnlyTheFirst29CharactersOfEqualLengthsCount) {
    std::string a = std::string(29, 'n') + std::string(11, 'a');
    std::string b = std::string(29, 'n') + std::string(11, 'b');
    EXPECT_EQ(ipacl_cmp_name(a.c_str(), b.c_str()), EQ);
    EXPECT_EQ(ipacl_cmp_eq_name(a.c_str(), b.c_str()), NE);
    std::string c = std::string(28, 'n') + "z" + std::string(11, 'a');
    EXPECT_EQ(ipacl_cmp_name(a.c_str(), c.c_str()), LT);
    // 29-digit names: their values wrap, but they are compared by value.
    std::string d1 = std::string(28, '0') + "1" + "5";
    std::string d2 = std::string(28, '0') + "2" + "0";
    EXPECT_EQ(ipacl_cmp_name(d1.c_str(), d2.c_str()), LT);
    // The digit rule applies to the canonical forms: 29 digits followed by a
    // letter are still compared by value.
    std::string e1 = std::string(28, '0') + "3x";
    std::string e2 = std::string(28, '0') + "2y";
    EXPECT_EQ(ipacl_cmp_name(e1.c_str(), e2.c_str()), GT);
}

TEST(CmpRecords, ProfilesFiltersIndexesAndBindings) {
    ipacl_prof p1{}, p2{};
    strcpy(p1.name, "Acl1");
    strcpy(p2.name, "acl2");
    EXPECT_EQ(ipacl_cmp_prof(&p1, &p2), LT);
    strcpy(p2.name, "ACL1");
    EXPECT_EQ(ipacl_cmp_prof(&p1, &p2), EQ);

    ipacl_filter f5 = filter("acl", 5), f7 = filter("acl", 7), g1 = filter("acm", 1);
    EXPECT_EQ(ipacl_cmp_filter(&f7, &f5), GT);
    EXPECT_EQ(ipacl_cmp_filter(&g1, &f5), GT);  // the name decides before the index
    ipacl_filter_key fk{};
    strcpy(fk.prof_name, "ACL");
    fk.filter_index = 5;
    EXPECT_EQ(ipacl_cmp_filter(reinterpret_cast<const ipacl_filter *>(&fk), &f5), EQ);

    EXPECT_EQ(ipacl_cmp_index(0xFFFFFFFF, 2), GT);

    ipacl_if_prof a{}, b{};
    a.if_index = 5, a.direction = 2;
    b.if_index = 6, b.direction = 1;
    EXPECT_EQ(ipacl_cmp_if_prof(&a, &b), LT);
    b.if_index = 5;
    EXPECT_EQ(ipacl_cmp_if_prof(&a, &b), GT);
    b.direction = 2;
    strcpy(b.prof_name, "other");
    EXPECT_EQ(ipacl_cmp_if_prof(&a, &b), EQ);
}

TEST(CmpEquality, NamesAndNumbers) {
    EXPECT_EQ(ipacl_cmp_eq_name("Acl", "aCL"), EQ);
    EXPECT_EQ(ipacl_cmp_eq_name("acl", "acl1"), NE);
    ipacl_prof p1{}, p2{};
    strcpy(p1.name, "X");
    strcpy(p2.name, "x");
    EXPECT_EQ(ipacl_cmp_eq_prof(&p1, &p2), EQ);
    EXPECT_EQ(ipacl_cmp_eq_if_name("eth0", "ETH0"), NE);
    EXPECT_EQ(ipacl_cmp_eq_chain_name("INPUT", "input"), NE);
    EXPECT_EQ(ipacl_cmp_eq_dir(1, 3), NE);  // both print "in"
    EXPECT_EQ(ipacl_cmp_eq_if_index(7, 7), EQ);

    char out[IPACL_NAME_SIZE];
    memset(out, '#', sizeof out);
    ipacl_str_to_lower("MiXeD-1", out);
    EXPECT_STREQ(out, "mixed-1");
    for (size_t i = 7; i < sizeof out; ++i) EXPECT_EQ(out[i], '\0');
}

TEST(CmpEquality, Bindings) {
    ipacl_if_prof a{}, b{};
    a.if_index = b.if_index = 9;
    a.direction = b.direction = 1;
    strcpy(a.prof_name, "Acl");
    strcpy(b.prof_name, "other");
    const auto *ka = reinterpret_cast<const ipacl_if_prof_key *>(&a);
    const auto *kb = reinterpret_cast<const ipacl_if_prof_key *>(&b);
    EXPECT_EQ(ipacl_cmp_eq_if_prof(ka, kb), EQ);  // names do not count
    EXPECT_EQ(ipacl_cmp_eq_if_prof_field(&a, &b), NE);
    strcpy(b.prof_name, "ACL");
    EXPECT_EQ(ipacl_cmp_eq_if_prof_field(&a, &b), EQ);
    b.direction = 3;
    EXPECT_EQ(ipacl_cmp_eq_if_prof(ka, kb), NE);
    EXPECT_EQ(ipacl_cmp_eq_if_prof_field(&a, &b), NE);
    b.direction = 1, b.if_index = 10;
    EXPECT_EQ(ipacl_cmp_eq_if_prof(ka, kb), NE);
    EXPECT_EQ(ipacl_cmp_eq_if_prof_field(&a, &b), NE);
}

TEST(CmpEquality, ProtocolWildcardPerFamily) {
    constexpr uint32_t kAny = 0xFFFFFFFF;
    // a, b, family, result
    const uint32_t cases[] = {kAny, 0, 1, EQ, kAny, 0, 2, NE, 41, kAny, 2, EQ, kAny, 0, 9, NE};
    for (size_t i = 0; i < std::size(cases); i += 4)
        EXPECT_EQ(ipacl_cmp_eq_proto(cases[i], cases[i + 1], cases[i + 2]), cases[i + 3]) << i / 4;
}

TEST(CmpPrefix, FamilyLengthThenCoveredBits) {
    auto a = prefix(1, {10, 1, 2, 3}, 8), b = prefix(1, {10, 9, 9, 9}, 8);
    EXPECT_EQ(ipacl_cmp_prefix(&a, &b), 0);
    b = prefix(1, {11, 0, 0, 0}, 8);
    EXPECT_LT(ipacl_cmp_prefix(&a, &b), 0);
    b = prefix(7, {10}, 8);  // the difference of the families
    EXPECT_EQ(ipacl_cmp_prefix(&a, &b), -6);
    b = prefix(1, {10, 1, 2, 3}, 9);
    EXPECT_EQ(ipacl_cmp_prefix(&b, &a), 1);
    // Partial byte: the difference of the masked bytes.
    a = prefix(1, {10, 0xC0}, 10), b = prefix(1, {10, 0x40}, 10);
    EXPECT_EQ(ipacl_cmp_prefix(&a, &b), 0x80);
    b = prefix(1, {10, 0xFF}, 10);
    EXPECT_EQ(ipacl_cmp_prefix(&a, &b), 0);
    // Lengths beyond the family's width.
    a = prefix(1, {1, 2, 3, 4, 1}, 40), b = prefix(1, {1, 2, 3, 4, 2}, 40);
    EXPECT_EQ(ipacl_cmp_prefix(&a, &b), 0);  // clamped to 32 bits
    a = prefix(2, {1}, 200), b = prefix(2, {1}, 200);
    a.addr[15] = 1;
    EXPECT_EQ(ipacl_cmp_prefix(&a, &b), 1);
    a = prefix(9, {}, 1000), b = prefix(9, {}, 1000);
    EXPECT_EQ(ipacl_cmp_prefix(&a, &b), 0);
}

TEST(CmpEquality, FilterMatchFields) {
    ipacl_filter a = filter("Acl", 1), b = filter("aCL", 2);
    // Not part of the match.
    b.order_position = 9, b.log_deny = 1, b.snmp_status = 4, b.src_port_op = 3;
    b.dst_port_op = 5, b.packets = 10, b.bytes = 20, b.src_word = 1, b.src_wildcard = 0xFF;
    b.dst_word = 2, b.dst_wildcard = 0xFFFF;
    b.src_addr.addr[3] = 7;  // host bit behind the /8
    EXPECT_EQ(ipacl_cmp_eq_filter_field(&a, &b), EQ);

    // Each field of the match, changed in its lowest byte; a source family
    // mismatch is caught before the prefixes.
    using F = ipacl_filter;
    for (size_t at :
         {offsetof(F, prof_name), offsetof(F, src_addr.addr), offsetof(F, dst_addr.prefix_len),
          offsetof(F, action), offsetof(F, protocol), offsetof(F, src_port_low),
          offsetof(F, src_port_high), offsetof(F, dst_port_low), offsetof(F, dst_port_high),
          offsetof(F, established), offsetof(F, icmp_type), offsetof(F, icmp_code),
          offsetof(F, precedence), offsetof(F, tos), offsetof(F, fragments),
          offsetof(F, src_addr.family)}) {
        ipacl_filter c = a;
        reinterpret_cast<uint8_t *>(&c)[at] ^= 1;
        EXPECT_EQ(ipacl_cmp_eq_filter_field(&a, &c), NE) << "offset " << at;
    }

    // The wildcard protocol matches the family's "any" protocol, judged by
    // the first filter's source family.
    a.protocol = 0xFFFFFFFF;
    b.protocol = 0;
    EXPECT_EQ(ipacl_cmp_eq_filter_field(&a, &b), EQ);

    // Records are packed and may sit at any address.
    alignas(8) uint8_t storage[2 * sizeof(ipacl_filter) + 2];
    memcpy(storage + 1, &a, sizeof a);
    memcpy(storage + 1 + sizeof a, &a, sizeof a);
    const auto *x = reinterpret_cast<const ipacl_filter *>(storage + 1);
    const auto *y = reinterpret_cast<const ipacl_filter *>(storage + 1 + sizeof a);
    EXPECT_EQ(ipacl_cmp_eq_filter_field(x, y), EQ);
    EXPECT_EQ(ipacl_cmp_filter(x, y), EQ);
}

class PrefixAny : public ::testing::Test {
  protected:
    void SetUp() override { ipacl_double::reset(); }
};

TEST_F(PrefixAny, ZeroLengthOverZeroAddressAndUnknownFamilies) {
    auto p = prefix(1, {}, 0);
    EXPECT_EQ(is_prefix_any(&p), 1u);
    p.prefix_len = 1;
    EXPECT_EQ(is_prefix_any(&p), 0u);
    p = prefix(1, {0, 0, 0, 0, 9}, 0);  // bytes beyond the IPv4 address do not count
    EXPECT_EQ(is_prefix_any(&p), 1u);
    p = prefix(2, {}, 0);
    EXPECT_EQ(is_prefix_any(&p), 1u);
    p.addr[15] = 1;
    EXPECT_EQ(is_prefix_any(&p), 0u);
    EXPECT_TRUE(platform().subtype_checks.empty());
    EXPECT_TRUE(platform().chk_ints.empty());

    // An unknown family is "any", and reported; the report itself (history
    // record, log switches) is tested with the address text.
    platform().chk_int_rc = 1;
    p = prefix(0xFFFFFFFF, {1, 2, 3, 4}, 24);
    EXPECT_EQ(is_prefix_any(&p), 1u);
    const std::string text = "impossible address type in is_prefix_any(): -1\n";
    ASSERT_EQ(platform().hist_events.size(), 1u);
    EXPECT_EQ(std::string(platform().hist_events[0].record.begin() + 4,
                          platform().hist_events[0].record.end()),
              text + '\0');
    ASSERT_EQ(platform().zlogs.size(), 1u);
    EXPECT_EQ(platform().zlogs[0].text, text);

    // The address text of an unknown family with "any" allowed is "any".
    char buf[64];
    EXPECT_STREQ(ipacl_str_inet_addr(1, 1, &p, buf, sizeof buf), "any");
    EXPECT_STREQ(ipacl_str_inet_addr(1, 0, &p, buf, sizeof buf), "unknown(4294967295)");
}

}  // namespace
