// Three-way order of two address prefixes, used by the filter match.  Kept
// out of the exported interface (hidden, C linkage for the library's own
// callers and tests).
#pragma once

#include <ipacl/records.h>

#include <cstdint>

extern "C" {

// Negative, zero or positive.  Families first (their difference), then the
// prefix lengths, then the address bits inside the prefix: host bits behind
// the prefix never count (10.1.2.3/8 equals 10.9.9.9/8).
int32_t ipacl_cmp_prefix(const ipacl_inet_addr *a, const ipacl_inet_addr *b);
}
