#include "hex.h"

#include <cctype>
#include <cstdio>

namespace ipacl_tool {
namespace {

int digit_value(char c) {
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    return -1;
}

bool all_hex(std::string_view text) {
    for (char c : text)
        if (digit_value(c) < 0) return false;
    return !text.empty();
}

bool read_group(std::string_view group, std::vector<uint8_t> &bytes, std::string &error) {
    std::string_view digits = group;
    if (digits.size() > 2 && digits[0] == '0' && (digits[1] == 'x' || digits[1] == 'X'))
        digits.remove_prefix(2);
    if (!all_hex(digits)) {
        error.assign("'").append(group).append("' is not hexadecimal");
        return false;
    }
    if (digits.size() % 2 != 0) {
        error.assign("'").append(group).append("' has an odd number of hex digits");
        return false;
    }
    for (std::size_t i = 0; i < digits.size(); i += 2)
        bytes.push_back(
            static_cast<uint8_t>(digit_value(digits[i]) * 16 + digit_value(digits[i + 1])));
    return true;
}

}  // namespace

std::string hex_dump(const uint8_t *bytes, std::size_t size, std::string_view indent) {
    std::string text;
    char piece[32];
    for (std::size_t at = 0; at < size; at += 16) {
        std::snprintf(piece, sizeof piece, "%04zx:", at);
        text += indent;
        text += piece;
        for (std::size_t i = at; i < size && i < at + 16; ++i) {
            std::snprintf(piece, sizeof piece, " %02x", bytes[i]);
            text += piece;
        }
        text += '\n';
    }
    return text;
}

bool read_hex(std::string_view text, std::vector<uint8_t> &bytes, std::string &error) {
    std::size_t at = 0;
    while (at < text.size()) {
        unsigned char c = static_cast<unsigned char>(text[at]);
        if (std::isspace(c)) {
            ++at;
            continue;
        }
        if (c == '#') {
            std::size_t end = text.find('\n', at);
            at = end == std::string_view::npos ? text.size() : end;
            continue;
        }
        std::size_t end = at;
        while (end < text.size() && !std::isspace(static_cast<unsigned char>(text[end])) &&
               text[end] != '#')
            ++end;
        std::string_view group = text.substr(at, end - at);
        at = end;
        if (group.size() > 1 && group.back() == ':' && all_hex(group.substr(0, group.size() - 1)))
            continue;  // an offset
        if (!read_group(group, bytes, error)) return false;
    }
    return true;
}

}  // namespace ipacl_tool
