#include "nf_error.h"

#include <ipacl/netfilter.h>

#include <cstdarg>
#include <cstdio>
#include <cstring>

namespace ipacl_nf {

uint32_t fail(char *err, uint32_t code, const char *format, ...) {
    if (!err) return code;
    va_list args;
    va_start(args, format);
    std::vsnprintf(err, IPACL_NF_ERR_TEXT_SIZE, format, args);
    va_end(args);
    return code;
}

void prefix_filter_position(char *err, uint32_t position) {
    if (!err) return;
    char head[24];
    int length = std::snprintf(head, sizeof head, "filter %u: ", position);
    std::size_t room = IPACL_NF_ERR_TEXT_SIZE - static_cast<std::size_t>(length) - 1;
    std::size_t message = strnlen(err, room);
    std::memmove(err + length, err, message);
    std::memcpy(err, head, static_cast<std::size_t>(length));
    err[length + message] = '\0';
}

}  // namespace ipacl_nf
