// A port condition of a filter in the words of a filter command.
#pragma once

#include <cstdint>

namespace ipacl {

// Scratch space the condition is written into.
inline constexpr uint32_t kPortSpecSize = 256;

// Writes "<op> <port>[ <port>]" into `out` (kPortSpecSize bytes) and
// returns it, or returns nullptr when the condition matches every port.
// An explicit operator decides which bounds print: "lt" the high one,
// "gt", "neq" and "eq" the low one, "range" both, an unknown operator none.
// Operator 0 derives the condition from the bounds.
char *str_port_spec(uint32_t op, uint32_t low, uint32_t high, char *out);

}  // namespace ipacl
