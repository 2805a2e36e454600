// `ipacl decode` on arbitrary bytes: whatever the size check lets through
// converts and displays without touching memory outside the message (run
// under the sanitizers), and what it refuses it refuses with a reason.
// (The messages themselves: cli_test.sh.)
#include "decode/wire_types.h"
#include "hex.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdio>
#include <random>
#include <string>
#include <vector>

namespace {

using ipacl_tool::wire_type;

// The displays print to standard output; the test keeps it quiet.
struct quiet_stdout {
    int saved = (std::fflush(stdout), dup(1));
    int null = open("/dev/null", O_WRONLY);
    quiet_stdout() { dup2(null, 1); }
    ~quiet_stdout() {
        std::fflush(stdout);
        dup2(saved, 1);
        close(saved);
        close(null);
    }
};

// Decodes a copy the way the command does: exact bytes, a few zeros behind.
bool decode(const wire_type &type, std::vector<uint8_t> bytes, std::string &why) {
    std::size_t size = bytes.size();
    if (!ipacl_tool::measure(type, bytes.data(), size, why)) return false;
    bytes.resize(size + 8, 0);
    ipacl_tool::decode_and_show(type, bytes.data(), size);
    return true;
}

void put_big_endian(std::vector<uint8_t> &bytes, std::size_t offset, uint32_t value) {
    if (offset + 4 > bytes.size()) return;
    for (int i = 0; i < 4; ++i) bytes[offset + i] = static_cast<uint8_t>(value >> (24 - 8 * i));
}

// Each type reads its empty message and not a byte more; random bytes of
// sizes around each type's own, with counts and type words that are often
// plausible: what passes the size check must decode cleanly.
TEST(Decode, RandomBytesNeverReachOutsideTheMessage) {
    quiet_stdout quiet;
    std::mt19937 random(61104);
    auto number = [&](uint32_t low, uint32_t high) {
        return std::uniform_int_distribution<uint32_t>(low, high)(random);
    };
    uint32_t accepted = 0;
    std::string why;
    for (const wire_type &type : ipacl_tool::wire_types()) {
        std::vector<uint8_t> empty(type.fixed, 0);
        if (type.tail == ipacl_tool::tail_kind::text) empty.push_back(0);  // the empty text
        EXPECT_TRUE(decode(type, empty, why)) << type.name << ": " << why;
        empty.push_back(0);
        EXPECT_FALSE(decode(type, empty, why)) << type.name << " accepted a byte too many";
        for (int round = 0; round < 300; ++round) {
            std::size_t size = type.fixed + number(0, 3) * number(0, 300) + number(0, 2) - 1;
            if (round % 10 == 0) size = number(0, static_cast<uint32_t>(type.fixed));
            std::vector<uint8_t> bytes(size);
            for (uint8_t &byte : bytes)
                byte = number(0, 3) == 0 ? static_cast<uint8_t>(number(0, 255)) : 0;
            if (type.tail != ipacl_tool::tail_kind::none) {
                put_big_endian(bytes, type.count_at, number(0, 3));
                if (type.tail != ipacl_tool::tail_kind::counted)
                    put_big_endian(bytes, 4, number(0, 40));
            }
            why.clear();
            if (decode(type, bytes, why))
                ++accepted;
            else
                EXPECT_FALSE(why.empty()) << type.name;
        }
    }
    EXPECT_GT(accepted, 500u);
}

TEST(Decode, HexReadsTheDumpItWrites) {
    std::vector<uint8_t> bytes(40);
    for (std::size_t i = 0; i < bytes.size(); ++i) bytes[i] = static_cast<uint8_t>(i * 7);
    std::string dump = ipacl_tool::hex_dump(bytes.data(), bytes.size());
    std::vector<uint8_t> read;
    std::string error;
    ASSERT_TRUE(ipacl_tool::read_hex(dump + "# a comment\n0x2a2B", read, error)) << error;
    bytes.push_back(0x2a);
    bytes.push_back(0x2b);
    EXPECT_EQ(bytes, read);
    read.clear();
    EXPECT_FALSE(ipacl_tool::read_hex("00 0g", read, error));
    EXPECT_EQ("'0g' is not hexadecimal", error);
}

}  // namespace
