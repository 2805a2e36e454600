// The family of checks that accept a value inside a fixed range and refuse
// any other with "<what> <value's text>".
#pragma once

#include <cstdint>
#include <cstdio>

#include "chk/message.h"

namespace ipacl {

struct RangeRule {
    int64_t low, high;  // accepted values, both included
    bool is_signed;     // the value is read as signed 32-bit (-1 means "not set")
    uint32_t code;
    const char *format;  // one %s: the text of the value
    ValueTextFn text;
};

template <const RangeRule &R>
constexpr bool in_range(uint32_t value) {
    int64_t v = R.is_signed ? static_cast<int64_t>(static_cast<int32_t>(value)) : value;
    return v >= R.low && v <= R.high;
}

// Returns the rule's code with its message, or 0 leaving `err` as it is.
template <const RangeRule &R>
uint32_t check_range(uint32_t value, char *err) {
    if (in_range<R>(value)) return IPACL_OK;
    return fail(R.code, err, [&](char *e) { sprintf(e, R.format, ValueText(R.text, value).s); });
}

// A whole check of one field: its range, then a cleared buffer.
template <const RangeRule &R>
uint32_t check_field(uint32_t value, char *err) {
    if (uint32_t rc = check_range<R>(value, err)) return rc;
    return pass(err);
}

}  // namespace ipacl
