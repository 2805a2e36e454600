// Checks of one converter on one fuzzer record:
//  1. in place, the result is the reference model's, byte for byte;
//  2. into a separate copy of the source, the destination (and the source,
//     which only the profile-info quirk writes) are the model's, and
//     out-of-place equals in-place on every converted byte;
//  3. into a separate patterned buffer, only the bytes the field rules
//     transfer change (untouched fields keep the pattern);
//  4. the opposite converter, in place, restores the starting record.
// Every buffer is malloc'ed to the record's exact size, so a converter that
// walks past its counted elements or reads past a text is caught by ASan.
#include "wire_harness.h"

#include <cstdlib>
#include <cstring>
#include <vector>

#include "fuzz_support.h"

namespace wire_fuzz {
namespace {

using wire_model::Dir;

struct Buf {
    uint8_t *p;
    size_t n;
    explicit Buf(const std::vector<uint8_t> &from)
        : p(static_cast<uint8_t *>(std::malloc(from.size() ? from.size() : 1))), n(from.size()) {
        std::memcpy(p, from.data(), n);
    }
    Buf(size_t size, uint8_t fill)
        : p(static_cast<uint8_t *>(std::malloc(size ? size : 1))), n(size) {
        std::memset(p, fill, n);
    }
    ~Buf() { std::free(p); }
    Buf(const Buf &) = delete;
    Buf &operator=(const Buf &) = delete;
};

const char *dir_name(Dir d) { return d == Dir::hton ? "hton" : "ntoh"; }

void expect_same(const Pair &pair, Dir dir, const char *what, const uint8_t *got,
                 const std::vector<uint8_t> &want, const std::vector<uint8_t> &input) {
    size_t at = fuzz::first_diff(got, want.data(), want.size());
    if (at == SIZE_MAX) return;
    std::fprintf(stderr, "\n*** ipacl_%s_%s: %s differs from the field rules at offset %zu\n",
                 dir_name(dir), pair.stem, what, at);
    size_t from = at > 16 ? at - 16 : 0;
    fuzz::hexdump("input record", input.data(), input.size(), from, 48);
    fuzz::hexdump("expected", want.data(), want.size(), from, 48);
    fuzz::hexdump("converter wrote", got, want.size(), from, 48);
    std::abort();
}

}  // namespace

void run(const Pair *pairs, size_t count, const uint8_t *data, size_t size) {
    fuzz::Reader in(data, size);
    const Pair &pair = pairs[in.u8() % count];
    Dir dir = (in.u8() & 1) || !pair.hton ? Dir::ntoh : Dir::hton;
    Converter first = dir == Dir::hton ? pair.hton : pair.ntoh;
    Converter back = dir == Dir::hton ? pair.ntoh : pair.hton;
    Dir back_dir = dir == Dir::hton ? Dir::ntoh : Dir::hton;

    std::vector<uint8_t> input(in.rest(), in.rest() + in.left());
    input.resize(wire_model::fit(*pair.layout, dir, input));

    // 1. In place.
    std::vector<uint8_t> converted = input;
    wire_model::convert(*pair.layout, dir, converted.data(), converted.data());
    Buf inplace(input);
    first(inplace.p, inplace.p);
    expect_same(pair, dir, "in-place result", inplace.p, converted, input);

    // 2. Out of place into a copy of the source.
    {
        std::vector<uint8_t> want_src = input, want_dst = input;
        wire_model::convert(*pair.layout, dir, want_src.data(), want_dst.data());
        Buf src(input), dst(input);
        first(src.p, dst.p);
        expect_same(pair, dir, "out-of-place destination", dst.p, want_dst, input);
        expect_same(pair, dir, "out-of-place source", src.p, want_src, input);
    }

    // 3. Out of place into a patterned buffer.  The host-to-network profile
    // info reads its destination's profile, whose name must then be a text:
    // give it a zero-filled destination instead.
    {
        uint8_t fill =
            dir == Dir::hton && wire_model::reads_destination(*pair.layout) ? 0x00 : 0xA5;
        std::vector<uint8_t> want_src = input, want_dst(input.size(), fill);
        wire_model::convert(*pair.layout, dir, want_src.data(), want_dst.data());
        Buf src(input), dst(input.size(), fill);
        first(src.p, dst.p);
        expect_same(pair, dir, "destination over a pattern", dst.p, want_dst, input);
        expect_same(pair, dir, "source (pattern destination)", src.p, want_src, input);
    }

    // 4. Back again, in place.
    if (back) {
        std::vector<uint8_t> restored = converted;
        wire_model::convert(*pair.layout, back_dir, restored.data(), restored.data());
        back(inplace.p, inplace.p);
        expect_same(pair, back_dir, "round trip", inplace.p, restored, input);
    }
}

}  // namespace wire_fuzz
