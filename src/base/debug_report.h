// Report of an internal error (a value that the code cannot handle and that
// no caller should pass) to the platform's debug history and debug log.
#pragma once

#include <cstdint>

namespace ipacl {

// Formats `format` with the one number `value` and records it as a history
// event 0x730000 (record: the 32-bit subtype 100 followed by the text and its
// NUL) when the facility accepts the subtype, then prints it with zlogf when
// debug printing of subtype 100 is on.
void report_impossible(const char *format, int32_t value) __attribute__((format(printf, 1, 0)));

}  // namespace ipacl
