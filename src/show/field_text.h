// Field formatters of the displays: each turns the field at `field` into
// its text in `out` (kValueSize bytes).  Fields are read with memcpy, as the
// packed records put many of them at unaligned offsets.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <ctime>

#include <ipacl/records.h>
#include <ipacl/str_scalar.h>

#include "platform/if_index.h"

namespace ipacl::show {

inline constexpr size_t kValueSize = 256;

using Format = void (*)(const uint8_t *field, char *out);

template <typename T>
T load(const uint8_t *p) {
    T value;
    memcpy(&value, p, sizeof value);
    return value;
}

// Unsigned numbers in decimal, 64-bit counters included.
template <typename T>
void number(const uint8_t *p, char *out) {
    snprintf(out, kValueSize, "%llu", static_cast<unsigned long long>(load<T>(p)));
}

// A number left-justified in `Width` columns; longer numbers print whole.
template <typename T, int Width>
void left_number(const uint8_t *p, char *out) {
    snprintf(out, kValueSize, "%-*u", Width, static_cast<unsigned>(load<T>(p)));
}

inline void signed_number(const uint8_t *p, char *out) {
    snprintf(out, kValueSize, "%d", load<int32_t>(p));
}

inline void hex4(const uint8_t *p, char *out) {
    snprintf(out, kValueSize, "%04x", load<uint32_t>(p));
}

// The text that `Text` (an ipacl_str_* function) gives the field.  The
// buffer starts empty, for the one text function that may write nothing.
template <auto Text, typename T = uint32_t>
void named(const uint8_t *p, char *out) {
    out[0] = '\0';
    Text(load<T>(p), out);
}

// A text field of `Size` bytes, which need not be terminated when full.
template <size_t Size>
void chars(const uint8_t *p, char *out) {
    const size_t n = strnlen(reinterpret_cast<const char *>(p), Size);
    memcpy(out, p, n);
    out[n] = '\0';
}

// A profile name, copied with the platform's bounded copy.
inline void profile_name(const uint8_t *p, char *out) {
    __strcpy_to_buf(out, reinterpret_cast<const char *>(p), IPACL_NAME_SIZE);
}

// A link of the manager's chained lists: a 32-bit address, shown as the
// pointer it is in the manager that sent it.
inline void link(const uint8_t *p, char *out) {
    // Printed only, never dereferenced.
    const uintptr_t address = load<uint32_t>(p);
    snprintf(out, kValueSize, "%p",
             reinterpret_cast<void *>(address));  // NOLINT(performance-no-int-to-ptr)
}

// A creation time (32-bit seconds) as the calendar text of ctime.
inline void date(const uint8_t *p, char *out) {
    const time_t t = static_cast<time_t>(load<uint32_t>(p));
    ipacl_str_date(&t, out);
}

// Flags are true only when exactly 1.
inline void true_or_false(const uint8_t *p, char *out) {
    snprintf(out, kValueSize, "%s", load<uint32_t>(p) == 1 ? "True" : "False");
}

inline void t_or_f(const uint8_t *p, char *out) {
    snprintf(out, kValueSize, "%s", load<uint32_t>(p) == 1 ? "T" : "F");
}

// An ipacl_inet_addr (or the same 24 bytes inside a flattened record) as
// address/length, "any" when it matches everything; `Size` bounds the text.
template <uint32_t Size>
void prefix(const uint8_t *p, char *out) {
    static_assert(Size <= kValueSize);
    const ipacl_inet_addr addr = load<ipacl_inet_addr>(p);
    ipacl_str_inet_addr(IPACL_INET_FORMAT_PREFIX, 1, &addr, out, Size);
}

// An interface by the platform's name, then its raw index in hexadecimal.
inline void if_index_and_hex(const uint8_t *p, char *out) {
    const uint32_t index = load<uint32_t>(p);
    char name[IPACL_STR_SIZE];
    ipacl_str_if_index(index, name);
    snprintf(out, kValueSize, "%s(0x%x)", name, index);
}

inline void raw_hex_in_parens(const uint8_t *p, char *out) {
    snprintf(out, kValueSize, "(0x%x)", load<uint32_t>(p));
}

}  // namespace ipacl::show
