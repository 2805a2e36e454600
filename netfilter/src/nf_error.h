// The error-text convention of the library, for this one: exactly one
// message on failure (bounded by IPACL_NF_ERR_TEXT_SIZE), "" on success.
#pragma once

#include <cstdint>

namespace ipacl_nf {

uint32_t fail(char *err, uint32_t code, const char *format, ...)
    __attribute__((format(printf, 3, 4)));

inline uint32_t succeed(char *err) {
    if (err) err[0] = '\0';
    return 0;
}

// Puts "filter N: " before the message already in `err` (apply's form).
void prefix_filter_position(char *err, uint32_t position);

}  // namespace ipacl_nf
