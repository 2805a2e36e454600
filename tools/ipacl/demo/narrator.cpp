#include "narrator.h"

#include "../hex.h"

#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <string>

namespace ipacl_tool::demo {
namespace {

const char *tag(role who) {
    switch (who) {
        case role::client:
            return "client ";
        case role::manager:
            return "manager";
        default:
            return "standby";
    }
}

// The rest of a line, ended and shown at once.
void finish_line(const char *format, va_list args) {
    std::vprintf(format, args);
    std::printf("\n");
    flush();
}

}  // namespace

void say(role who, const char *step, const char *format, ...) {
    std::printf("  %s | %-10s ", tag(who), step);
    va_list args;
    va_start(args, format);
    finish_line(format, args);
    va_end(args);
}

void heading(const char *format, ...) {
    std::printf("\n");
    va_list args;
    va_start(args, format);
    finish_line(format, args);
    va_end(args);
}

void show_hex(const std::vector<uint8_t> &bytes, std::size_t lines) {
    std::size_t shown = lines == 0 ? bytes.size() : std::min(bytes.size(), lines * 16);
    std::string dump = hex_dump(bytes.data(), shown, "                         ");
    std::fputs(dump.c_str(), stdout);
    if (shown < bytes.size())
        std::printf("                         ... %zu bytes in all\n", bytes.size());
    flush();
}

void before_display() { flush(); }

void flush() { std::fflush(stdout); }

}  // namespace ipacl_tool::demo
