// Byte-order converters of the iptables query records: entries, chain rows,
// rules with their matches, rule summaries, the request and the response.
#include <ipacl/wire.h>

#include "wire_harness.h"
#include "wire_tables.h"

WIRE_FUZZ_TARGET(WIRE_IPT_PAIRS)
