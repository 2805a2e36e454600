// Wire bytes of the converters: a golden vector written out byte by byte (the
// same bytes on every host), and the irregularity that peers rely on most.
// The byte-level rules of every record, the other irregularities included,
// are checked against the independent layout model by wire_property_test;
// the vector here also checks that model's reading of the layout.
#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <sstream>
#include <string>
#include <vector>

#include <ipacl/ipacl.h>

namespace {

using Bytes = std::vector<uint8_t>;

// Bytes written as hex pairs; "*N" repeats the previous byte N more times.
Bytes hex(const char *text) {
    Bytes out;
    std::istringstream in(text);
    for (std::string token; in >> token;) {
        if (token[0] == '*') {
            const uint8_t last = out.back();
            out.insert(out.end(), std::stoul(token.substr(1)), last);
        } else {
            out.push_back(static_cast<uint8_t>(std::stoul(token, nullptr, 16)));
        }
    }
    return out;
}

template <class T>
Bytes bytes_of(const T &rec) {
    const uint8_t *p = reinterpret_cast<const uint8_t *>(&rec);
    return Bytes(p, p + sizeof(T));
}

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
    f.src_port_low = 1024, f.src_port_high = 65535;
    f.dst_port_low = 80, f.dst_port_high = 80;
    f.established = 1;
    f.icmp_type = f.icmp_code = f.precedence = f.tos = 0xFFFFFFFF;
    f.log_deny = f.fragments = 0;
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

const Bytes kFilterWire =
    hex("61 63 6c 2d 31 00 *62"                             // 0 prof_name
        " 00 00 00 0a 01 02 03 04 00 00 00 02 00 00 00 01"  // 68 index, order, action, type
        " aa bb cc dd 00 00 00 ff 11 22 33 44 00 00 ff ff"  // 84 src, dst word and wildcard
        " 00 00 00 06 00 00 04 00 00 00 ff ff"              // 100 protocol, src ports
        " 00 00 00 50 00 00 00 50 00 00 00 01"              // 112 dst ports, established
        " ff *15"                                           // 124 icmp, precedence, tos
        " 00 00 00 00 00 00 00 00 00 00 00 01"              // 140 log, fragments, status
        " 00 00 00 05 00 00 00 04"                          // 152 port ops
        " 00 00 00 01 00 00 00 02 00 00 00 00 00 00 00 05"  // 160 packets, bytes
        " 00 00 00 01 c0 a8 01 00 e1 e2 00 *9 00 00 00 18"  // 176 src family, address, length
        " 00 00 00 02 20 01 0d b8 00 *10 01 00 00 00 40"    // 200 dst family, address, length
        " 00 *13");                                         // 224 tail: untouched

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
    std::memcpy(&want[6], original.prof_name + 6, 62);
    std::memset(&want[224], 0x5A, 14);
    EXPECT_EQ(bytes_of(in_place), want);

    // And back: every field as it was, the tail still the destination's.
    ipacl_filter back;
    std::memset(&back, 0x77, sizeof back);
    ipacl_ntoh_filter(&wire, &back);
    EXPECT_STREQ(back.prof_name, "acl-1");
    EXPECT_EQ(back.prof_name[6], 0x77);
    EXPECT_EQ(std::memcmp(&back.filter_index, &original.filter_index, 224 - 68), 0);
    EXPECT_EQ(bytes_of(back.tail), Bytes(14, 0x77));
}

TEST(WireQuirks, ProfInfoHtonConvertsTheProfileIntoTheSource) {
    ipacl_prof_info src{};
    src.info = 0x01020304;
    std::strcpy(src.prof.name, "acl");
    src.prof.prof_type = 2;
    src.prof.last_filter_index = 9;
    const ipacl_prof_info original = src;

    // Into a zero-filled buffer: the destination's profile stays zero and
    // the source's is overwritten from it (an empty name, zero words).
    ipacl_prof_info dst{};
    ipacl_hton_prof_info(&src, &dst);
    EXPECT_EQ(bytes_of(dst), hex("01 02 03 04 00 *79"));
    EXPECT_EQ(src.info, original.info);
    EXPECT_EQ(bytes_of(src.prof), hex("00 63 6c 00 *76"));

    // Network to host goes the straightforward way.
    ipacl_prof_info wire = original, back{};
    ipacl_hton_prof_info(&wire, &wire);
    ipacl_ntoh_prof_info(&wire, &back);
    EXPECT_EQ(bytes_of(back), bytes_of(original));
}

}  // namespace
