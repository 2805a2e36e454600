// Byte-order converters of the keys, profiles, bindings, filters, the
// manager's table rows, the usage and state records and the received
// notices.
#include <ipacl/wire.h>

#include "wire_harness.h"
#include "wire_tables.h"

WIRE_FUZZ_TARGET(WIRE_RECORD_PAIRS)
