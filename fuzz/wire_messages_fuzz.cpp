// Byte-order converters of the request, response, configuration,
// confirmation, sync, usage, internal-state and test messages and of the
// quen envelope header: counted, typed and fixed messages.
#include <ipacl/wire.h>

#include "wire_harness.h"
#include "wire_tables.h"

WIRE_FUZZ_TARGET(WIRE_MESSAGE_PAIRS)
