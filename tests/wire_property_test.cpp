// Every converter over many generated records, against the layout model
// that the converter fuzz targets check with (fuzz/wire_model.h), written
// apart from the library's own tables.  For each record the harness checks
// that in place and out of place the converter writes exactly the model's
// bytes, leaves the bytes the model leaves (over a patterned destination
// too), leaves its source alone, and that the opposite converter restores
// the record.  A difference aborts with a dump of the three byte strings.
#include <gtest/gtest.h>

#include <ipacl/wire.h>

#include <cstring>
#include <random>
#include <vector>

#include "wire_harness.h"
#include "wire_tables.h"

namespace {

const wire_fuzz::Pair kRecordPairs[] = WIRE_PAIR_TABLE(WIRE_RECORD_PAIRS);
const wire_fuzz::Pair kMessagePairs[] = WIRE_PAIR_TABLE(WIRE_MESSAGE_PAIRS);
const wire_fuzz::Pair kIptPairs[] = WIRE_PAIR_TABLE(WIRE_IPT_PAIRS);

// A word of a generated record: often a small number or a single flag in
// either byte order, so that counts and type words pick real elements;
// otherwise random bytes.
uint32_t generated_word(std::mt19937 &gen) {
    uint32_t word = gen();
    switch (gen() % 4) {
        case 0:
            word = gen() % 13;
            break;
        case 1:
            word = 1u << (gen() % 12);  // the operation flags that pick elements
            break;
        default:
            return word;
    }
    return gen() % 2 ? __builtin_bswap32(word) : word;
}

// Deterministic on every platform: mt19937 output is fixed by the standard.
template <size_t N>
void check_family(const wire_fuzz::Pair (&pairs)[N], uint32_t seed) {
    std::mt19937 gen(seed);
    for (size_t pair = 0; pair < N; ++pair) {
        for (int round = 0; round < 400; ++round) {
            std::vector<uint8_t> input(2 + 4 * (gen() % 800));
            input[0] = static_cast<uint8_t>(pair);
            input[1] = static_cast<uint8_t>(round);  // bit 0: start from network order
            for (size_t at = 2; at < input.size(); at += 4) {
                const uint32_t word = generated_word(gen);
                std::memcpy(&input[at], &word, 4);
            }
            wire_fuzz::run(pairs, N, input.data(), input.size());
        }
    }
}

TEST(WireProperty, RecordsKeysAndNoticesFollowTheModel) { check_family(kRecordPairs, 1); }
TEST(WireProperty, MessagesFollowTheModel) { check_family(kMessagePairs, 2); }
TEST(WireProperty, IptablesRecordsFollowTheModel) { check_family(kIptPairs, 3); }

}  // namespace
