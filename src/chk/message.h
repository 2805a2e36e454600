// How a check answers: one message into the caller's buffer (when there is
// one) and a code, or an empty buffer and IPACL_OK.
#pragma once

#include <ipacl/codes.h>
#include <ipacl/records.h>

#include <cstdint>

namespace ipacl {

// Text of a value for a message, made by one of the ipacl_str_* functions.
using ValueTextFn = uint32_t (*)(uint32_t, char *);

struct ValueText {
    char s[IPACL_STR_SIZE];
    ValueText(ValueTextFn fn, uint32_t value) { fn(value, s); }
};

// Clears the buffer as ipacl_str_zero does, without a call per step of a
// chain.
inline uint32_t pass(char *err) {
    if (err) err[0] = '\0';
    return IPACL_OK;
}

// Runs `write(err)` only when there is a buffer, so that the texts of the
// values are made only when someone will read them.  Kept out of line: the
// checks are on the path of every accepted record, failures are rare.
template <typename Write>
[[gnu::cold, gnu::noinline]] uint32_t fail(uint32_t code, char *err, Write write) {
    if (err) write(err);
    return code;
}

// The same for the messages that also need the caller's label of the field.
template <typename Write>
[[gnu::cold, gnu::noinline]] uint32_t fail_labeled(uint32_t code, const char *label, char *err,
                                                   Write write) {
    if (label && err) write(err);
    return code;
}

// A missing label still prints, as the C library prints a null string.
inline const char *label_text(const char *label) { return label ? label : "(null)"; }

}  // namespace ipacl
