// Bytes as text and back: the dump that `encode` and the demo print, and
// the reader that `decode` takes it with.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace ipacl_tool {

// Sixteen bytes a line, each line led by its offset: "0000: 61 63 6c 31 ...".
// `indent` is put before every line.
std::string hex_dump(const uint8_t *bytes, std::size_t size, std::string_view indent = "");

// Reads hexadecimal bytes: pairs of digits, grouped or not, with an optional
// 0x before a group.  Offsets ("0010:") and everything after a '#' on a line
// are skipped, so a dump reads back as it was printed.  On bad text returns
// false with the reason in `error`.
bool read_hex(std::string_view text, std::vector<uint8_t> &bytes, std::string &error);

}  // namespace ipacl_tool
