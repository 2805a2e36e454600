// One engine for every converter fuzz target: the target supplies its table
// of converter pairs, the engine picks one from the input and checks it
// against the reference model of wire_model.h.
#pragma once

#include <cstddef>
#include <cstdint>

#include "wire_model.h"

namespace wire_fuzz {

using Converter = void (*)(uint8_t *src, uint8_t *dst);

struct Pair {
    const char *stem;
    const wire_model::Layout *layout;
    Converter hton;  // nullptr for receive-only records
    Converter ntoh;
};

// Input: [pair selector][mode: bit 0 = start from network order][record].
void run(const Pair *pairs, size_t count, const uint8_t *data, size_t size);

}  // namespace wire_fuzz

// A pair of exported converters of the record type ipacl_<stem>.
#define WIRE_PAIR(stem)                                                        \
    wire_fuzz::Pair {                                                          \
#stem, &wire_model::stem,                                                    \
            [](uint8_t *s, uint8_t *d) { ipacl_hton_##stem((ipacl_##stem *)s, (ipacl_##stem *)d); }, \
            [](uint8_t *s, uint8_t *d) { ipacl_ntoh_##stem((ipacl_##stem *)s, (ipacl_##stem *)d); } \
    }

// A receive-only record: network-to-host converter alone.
#define WIRE_NTOH_ONLY(stem)                                                             \
    wire_fuzz::Pair {                                                                    \
#stem, &wire_model::stem, nullptr,                                               \
            [](uint8_t * s,                                                              \
               uint8_t * d) { ipacl_ntoh_##stem((ipacl_##stem *)s, (ipacl_##stem *)d); } \
    }

// The table of pairs built from one of the lists of wire_tables.h.
#define WIRE_PAIR_TABLE(PAIRS) \
    { PAIRS(WIRE_PAIR_ENTRY, WIRE_NTOH_ENTRY) }
#define WIRE_PAIR_ENTRY(stem) WIRE_PAIR(stem),
#define WIRE_NTOH_ENTRY(stem) WIRE_NTOH_ONLY(stem),

// The whole of a converter fuzz target: its table of pairs and libFuzzer's
// entry point over it.
#define WIRE_FUZZ_TARGET(PAIRS)                                               \
    namespace {                                                               \
    const wire_fuzz::Pair kPairs[] = WIRE_PAIR_TABLE(PAIRS);                  \
    }                                                                         \
    extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) { \
        wire_fuzz::run(kPairs, sizeof kPairs / sizeof kPairs[0], data, size); \
        return 0;                                                             \
    }
