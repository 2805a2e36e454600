// Byte-order converters of the iptables query records: entries, chain rows,
// rules with their matches, rule summaries, the request and the response.
#include <ipacl/wire.h>

#include "wire_harness.h"
#include "wire_tables.h"

#define PAIR_ENTRY(stem) WIRE_PAIR(stem),
#define NTOH_ENTRY(stem) WIRE_NTOH_ONLY(stem),

namespace {

const wire_fuzz::Pair kPairs[] = {WIRE_IPT_PAIRS(PAIR_ENTRY, NTOH_ENTRY)};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    wire_fuzz::run(kPairs, sizeof kPairs / sizeof kPairs[0], data, size);
    return 0;
}
