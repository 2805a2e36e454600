#include "field_lines.h"

#include "../hex.h"

#include <cstdio>
#include <string>

namespace ipacl_tool {

void show_number(const char *label, uint32_t value) { std::printf("%-24s%u\n", label, value); }

void show_hex(const char *label, uint32_t value) { std::printf("%-24s0x%08x\n", label, value); }

void show_text(const char *label, const char *text) { std::printf("%-24s%s\n", label, text); }

void show_bounded_text(const char *label, const uint8_t *text, std::size_t size) {
    std::size_t length = 0;
    while (length < size && text[length] != 0) ++length;
    std::printf("%-24s%.*s\n", label, static_cast<int>(length),
                reinterpret_cast<const char *>(text));
}

void show_named(const char *label, uint32_t (*text)(uint32_t, char *), uint32_t value) {
    char buffer[64] = {};
    text(value, buffer);
    show_text(label, buffer);
}

void show_bytes(const char *label, const uint8_t *bytes, std::size_t size) {
    std::printf("%s\n", label);
    std::fputs(hex_dump(bytes, size, "    ").c_str(), stdout);
}

}  // namespace ipacl_tool
