// Wire bytes of the converters: golden vectors written out byte by byte
// (the same bytes on every host), and the irregularities that peers rely on.
#include <gtest/gtest.h>

#include <cstring>
#include <vector>

#include <ipacl/ipacl.h>

namespace {

using Bytes = std::vector<uint8_t>;

Bytes cat(std::initializer_list<Bytes> parts) {
    Bytes out;
    for (const Bytes &p : parts) out.insert(out.end(), p.begin(), p.end());
    return out;
}
Bytes fill(size_t n, uint8_t v) { return Bytes(n, v); }

template <class T>
Bytes bytes_of(const T &rec, size_t n = sizeof(T)) {
    const uint8_t *p = reinterpret_cast<const uint8_t *>(&rec);
    return Bytes(p, p + n);
}

// ---- golden vectors ----

ipacl_filter sample_filter() {
    ipacl_filter f;
    std::memset(&f, 0x5A, sizeof f);  // what must not travel shows as 5a
    std::memset(f.prof_name, 0, sizeof f.prof_name);
    std::strcpy(f.prof_name, "acl-1");
    f.prof_name[6] = 'x';  // after the NUL: not copied
    f.filter_index = 10;
    f.order_position = 0x01020304;
    f.action = 2;
    f.addr_type = 1;
    f.src_word = 0xAABBCCDD;
    f.src_wildcard = 0x000000FF;
    f.dst_word = 0x11223344;
    f.dst_wildcard = 0x0000FFFF;
    f.protocol = 6;
    f.src_port_low = 1024;
    f.src_port_high = 65535;
    f.dst_port_low = 80;
    f.dst_port_high = 80;
    f.established = 1;
    f.icmp_type = 0xFFFFFFFF;
    f.icmp_code = 0xFFFFFFFF;
    f.precedence = 0xFFFFFFFF;
    f.tos = 0xFFFFFFFF;
    f.log_deny = 0;
    f.fragments = 0;
    f.snmp_status = 1;
    f.src_port_op = 5;
    f.dst_port_op = 4;
    f.packets = 0x0000000100000002ull;
    f.bytes = 5;
    f.src_addr.family = 1;
    const uint8_t v4[16] = {192, 168, 1, 0, 0xE1, 0xE2};
    std::memcpy(f.src_addr.addr, v4, 16);
    f.src_addr.prefix_len = 24;
    f.dst_addr.family = 2;
    const uint8_t v6[16] = {0x20, 0x01, 0x0d, 0xb8, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0x01};
    std::memcpy(f.dst_addr.addr, v6, 16);
    f.dst_addr.prefix_len = 64;
    return f;
}

const Bytes kFilterWire = cat({
    {'a', 'c', 'l', '-', '1', 0},
    fill(62, 0),  // 0 prof_name
    {0x00, 0x00, 0x00, 0x0a},
    {0x01, 0x02, 0x03, 0x04},  // 68 filter_index, order
    {0x00, 0x00, 0x00, 0x02},
    {0x00, 0x00, 0x00, 0x01},  // 76 action, addr_type
    {0xaa, 0xbb, 0xcc, 0xdd},
    {0x00, 0x00, 0x00, 0xff},  // 84 src word, wildcard
    {0x11, 0x22, 0x33, 0x44},
    {0x00, 0x00, 0xff, 0xff},  // 92 dst word, wildcard
    {0x00, 0x00, 0x00, 0x06},  // 100 protocol
    {0x00, 0x00, 0x04, 0x00},
    {0x00, 0x00, 0xff, 0xff},  // 104 src ports
    {0x00, 0x00, 0x00, 0x50},
    {0x00, 0x00, 0x00, 0x50},  // 112 dst ports
    {0x00, 0x00, 0x00, 0x01},  // 120 established
    {0xff, 0xff, 0xff, 0xff},
    {0xff, 0xff, 0xff, 0xff},  // 124 icmp type, code
    {0xff, 0xff, 0xff, 0xff},
    {0xff, 0xff, 0xff, 0xff},  // 132 precedence, tos
    {0x00, 0x00, 0x00, 0x00},
    {0x00, 0x00, 0x00, 0x00},  // 140 log_deny, fragments
    {0x00, 0x00, 0x00, 0x01},  // 148 snmp_status
    {0x00, 0x00, 0x00, 0x05},
    {0x00, 0x00, 0x00, 0x04},                          // 152 port ops
    {0x00, 0x00, 0x00, 0x01, 0x00, 0x00, 0x00, 0x02},  // 160 packets
    {0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x05},  // 168 bytes
    {0x00, 0x00, 0x00, 0x01},                          // 176 src family
    {192, 168, 1, 0, 0xe1, 0xe2},
    fill(10, 0),               // 180 src address
    {0x00, 0x00, 0x00, 0x18},  // 196 src prefix
    {0x00, 0x00, 0x00, 0x02},  // 200 dst family
    {0x20, 0x01, 0x0d, 0xb8},
    fill(11, 0),
    {0x01},                    // 204 dst address
    {0x00, 0x00, 0x00, 0x40},  // 220 dst prefix
    fill(14, 0),               // 224 tail: untouched
});

TEST(WireGolden, Filter) {
    ASSERT_EQ(kFilterWire.size(), 238u);
    ipacl_filter host = sample_filter();
    const ipacl_filter original = host;

    ipacl_filter wire;
    std::memset(&wire, 0, sizeof wire);
    ipacl_hton_filter(&host, &wire);
    EXPECT_EQ(bytes_of(wire), kFilterWire);
    EXPECT_EQ(bytes_of(host), bytes_of(original));

    // In place: the same bytes, with the name's leftovers and the tail kept.
    ipacl_filter in_place = original;
    ipacl_hton_filter(&in_place, &in_place);
    Bytes want = kFilterWire;
    want[6] = 'x';
    std::memcpy(&want[7], original.prof_name + 7, 61);
    std::memset(&want[224], 0x5A, 14);
    EXPECT_EQ(bytes_of(in_place), want);

    // And back: every field as it was, the tail still the destination's.
    ipacl_filter back;
    std::memset(&back, 0x77, sizeof back);
    ipacl_ntoh_filter(&wire, &back);
    EXPECT_STREQ(back.prof_name, "acl-1");
    EXPECT_EQ(back.prof_name[6], 0x77);
    EXPECT_EQ(std::memcmp(&back.filter_index, &original.filter_index, 224 - 68), 0);
    EXPECT_EQ(bytes_of(back.tail), fill(14, 0x77));
}

ipacl_prof make_prof(const char *name, uint32_t type, uint32_t last, uint32_t status) {
    ipacl_prof p;
    std::memset(&p, 0, sizeof p);
    std::strcpy(p.name, name);
    p.prof_type = type;
    p.last_filter_index = last;
    p.snmp_status = status;
    return p;
}

TEST(WireGolden, ProfileResponseInPlace) {
    Bytes msg(12 + 2 * 80);
    auto *rsp = reinterpret_cast<ipacl_prof_rsp *>(msg.data());
    rsp->count = 2;
    rsp->word4 = 7;
    rsp->word8 = 0x01000000;
    ipacl_prof profs[2] = {make_prof("p1", 2, 30, 1), make_prof("ipv6-list", 3, 0x100, 6)};
    std::memcpy(&msg[12], profs, sizeof profs);
    const Bytes host = msg;

    const Bytes wire = cat({
        {0x00, 0x00, 0x00, 0x02},  // 0 count
        {0x00, 0x00, 0x00, 0x07},
        {0x01, 0x00, 0x00, 0x00},  // 4 header words
        {'p', '1', 0},
        fill(65, 0),  // 12 name
        {0x00, 0x00, 0x00, 0x02},
        {0x00, 0x00, 0x00, 0x1e},  // 80 type, last index
        {0x00, 0x00, 0x00, 0x01},  // 88 status
        {'i', 'p', 'v', '6', '-', 'l', 'i', 's', 't', 0},
        fill(58, 0),  // 92 name
        {0x00, 0x00, 0x00, 0x03},
        {0x00, 0x00, 0x01, 0x00},  // 160 type, last index
        {0x00, 0x00, 0x00, 0x06},  // 168 status
    });
    ipacl_hton_prof_rsp(rsp, rsp);
    EXPECT_EQ(msg, wire);
    ipacl_ntoh_prof_rsp(rsp, rsp);
    EXPECT_EQ(msg, host);
}

TEST(WireGolden, IptablesRule) {
    ipacl_ipt_rule rule;
    std::memset(&rule, 0xA5, sizeof rule);  // what must not travel shows as a5
    std::memset(rule.chain, 0, sizeof rule.chain);
    std::strcpy(rule.chain, "INPUT");
    rule.rule_num = 3;
    ipacl_ipt_entry &e = rule.entry;
    std::memset(&e, 0, 80);
    const uint8_t addrs[16] = {192, 168, 1, 1, 10, 0, 0, 1, 255, 255, 255, 255, 255, 255, 255, 0};
    std::memcpy(&e.src, addrs, 16);
    std::strcpy(e.in_if, "eth0");
    std::memset(e.in_if_mask, 0xFF, 5);
    e.proto = 6;
    e.flags = 0x01;
    e.inv_flags = 0x02;
    e.nfcache = 0x10;
    e.target_offset = 0x98;
    e.next_offset = 0x0128;
    e.comefrom = 0x20;
    e.packets = 1;
    e.bytes = 0x1234;
    std::memset(rule.target, 0, sizeof rule.target);
    std::strcpy(rule.target, "ACCEPT");
    rule.match_count = 2;
    rule.matches[0].type = IPACL_MATCH_TCP;
    rule.matches[0].info.tcp = {1024, 65535, 22, 22, 0x00, 0x17, 0x02, 0x00};
    rule.matches[1].type = IPACL_MATCH_LOG;
    rule.matches[1].info.log.level = 4;
    rule.matches[1].info.log.log_flags = 0x01;
    std::strcpy(rule.matches[1].info.log.prefix, "acl-drop: ");
    rule.matches[2].type = IPACL_MATCH_TCP;  // beyond match_count: untouched

    const Bytes wire = cat({
        {'I', 'N', 'P', 'U', 'T', 0},
        fill(26, 0),                             // 0 chain
        {0x00, 0x00, 0x00, 0x03},                // 32 rule number
        {192, 168, 1, 1, 10, 0, 0, 1},           // 36 entry: src, dst
        {255, 255, 255, 255, 255, 255, 255, 0},  // 44 masks
        {'e', 't', 'h', '0'},
        fill(12, 0),
        fill(16, 0),  // 52 in, out
        fill(5, 0xff),
        fill(11, 0),
        fill(16, 0),  // 84 interface masks
        {0x00, 0x06},
        {0x01},
        {0x02},                    // 116 proto, flags
        {0x00, 0x00, 0x00, 0x10},  // 120 nfcache
        {0x00, 0x98},
        {0x01, 0x28},                    // 124 target, next offset
        {0x00, 0x00, 0x00, 0x20},        // 128 comefrom
        {0, 0, 0, 0, 0, 0, 0, 0x01},     // 132 packets
        {0, 0, 0, 0, 0, 0, 0x12, 0x34},  // 140 bytes
        {'A', 'C', 'C', 'E', 'P', 'T', 0},
        fill(23, 0),                                       // 148 target
        {0x00, 0x00, 0x00, 0x02},                          // 178 match_count
        {0x00, 0x00, 0x00, 0x01},                          // 182 tcp match
        {0x04, 0x00, 0xff, 0xff, 0x00, 0x16, 0x00, 0x16},  //   ports
        {0x00, 0x17, 0x02, 0x00},
        fill(20, 0),               //   flags, spare
        {0x00, 0x00, 0x00, 0x0a},  // 218 log match
        {0x04, 0x01},              //   level, flags
        {'a', 'c', 'l', '-', 'd', 'r', 'o', 'p', ':', ' ', 0},
        fill(19, 0),  // prefix
        fill(36, 0),  // 254 third slot
    });
    ASSERT_EQ(wire.size(), 290u);

    ipacl_ipt_rule out;
    std::memset(&out, 0, sizeof out);
    ipacl_hton_ipt_rule(&rule, &out);
    EXPECT_EQ(bytes_of(out), wire);

    ipacl_ipt_rule back;
    std::memset(&back, 0, sizeof back);
    ipacl_ntoh_ipt_rule(&out, &back);
    EXPECT_EQ(back.rule_num, 3u);
    EXPECT_EQ(back.match_count, 2u);
    EXPECT_EQ(std::memcmp(&back.entry, &rule.entry, sizeof e), 0);
    EXPECT_EQ(back.matches[0].info.tcp.dst_port_low, 22);
    EXPECT_STREQ(back.matches[1].info.log.prefix, "acl-drop: ");
}

// ---- deliberate irregularities; the byte-level rules of every record,
// these included, are checked against the layout model by
// wire_property_test ----

TEST(WireQuirks, ProfInfoHtonConvertsTheProfileIntoTheSource) {
    ipacl_prof_info src;
    src.info = 0x01020304;
    src.prof = make_prof("acl", 2, 9, 1);
    const ipacl_prof_info original = src;

    // Into a zero-filled buffer: the destination's profile stays zero and
    // the source's is overwritten from it (an empty name, zero words).
    ipacl_prof_info dst;
    std::memset(&dst, 0, sizeof dst);
    ipacl_hton_prof_info(&src, &dst);
    EXPECT_EQ(bytes_of(dst), cat({{0x01, 0x02, 0x03, 0x04}, fill(80, 0)}));
    EXPECT_EQ(src.info, original.info);
    EXPECT_EQ(bytes_of(src.prof), cat({{0, 'c', 'l', 0}, fill(76, 0)}));

    // Network to host goes the straightforward way.
    ipacl_prof_info wire = original, back;
    ipacl_hton_prof_info(&wire, &wire);
    std::memset(&back, 0, sizeof back);
    ipacl_ntoh_prof_info(&wire, &back);
    EXPECT_EQ(bytes_of(back), bytes_of(original));

    // The elements of an interface-profile sync go the same way.
    Bytes msg(96 + 84), out(96 + 84, 0);
    auto *op = reinterpret_cast<ipacl_if_prof_sync_op *>(msg.data());
    op->count = 1;
    std::memcpy(&op->infos[0], &original, sizeof original);
    ipacl_hton_if_prof_sync_op(op, reinterpret_cast<ipacl_if_prof_sync_op *>(out.data()));
    EXPECT_EQ(Bytes(out.begin() + 92, out.end()), cat({{0, 0, 0, 1, 1, 2, 3, 4}, fill(80, 0)}));
    EXPECT_EQ(op->infos[0].prof.prof_type, 0u);
}

TEST(WireQuirks, IptablesResponseFlags) {
    // Flags 3 (both chain queries): 74-byte chain rows at 12 and 86, whose
    // counters sit at the unaligned offset 66.
    Bytes msg = cat({{2, 0, 0, 0, 3, 0, 0, 0}, fill(4 + 2 * 74, 0)});
    msg[12 + 66] = msg[86 + 66] = 1;
    auto *rsp = reinterpret_cast<ipacl_ipt_rsp *>(msg.data());
    ipacl_hton_ipt_rsp(rsp, rsp);
    for (size_t row : {12u, 86u})
        EXPECT_EQ(Bytes(msg.begin() + row + 66, msg.begin() + row + 74),
                  Bytes({0, 0, 0, 0, 0, 0, 0, 1}));

    // Flags 48 are read as full rules (match_count at 178), not summaries.
    Bytes rules = cat({{1, 0, 0, 0, 48, 0, 0, 0}, fill(4 + 290, 0)});
    rules[12 + 178] = 1;
    auto *r = reinterpret_cast<ipacl_ipt_rsp *>(rules.data());
    ipacl_hton_ipt_rsp(r, r);
    EXPECT_EQ(Bytes(rules.begin() + 12 + 178, rules.begin() + 12 + 182), Bytes({0, 0, 0, 1}));

    // Flags 0 with count 5: only the three words.
    Bytes none = cat({{5, 0, 0, 0, 0, 0, 0, 0, 0, 1, 0, 0}, fill(64, 0x42)});
    auto *n = reinterpret_cast<ipacl_ipt_rsp *>(none.data());
    ipacl_hton_ipt_rsp(n, n);
    EXPECT_EQ(none, cat({{0, 0, 0, 5, 0, 0, 0, 0, 0, 0, 1, 0}, fill(64, 0x42)}));
}

}  // namespace
