// Shared helpers of the fuzz targets: failing loudly, reading the fuzzer's
// bytes, and hex dumps for reports.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>

// A property that does not hold is a finding: print why and abort so that
// libFuzzer keeps the input as a crash.
#define FUZZ_CHECK(cond, ...)                                                               \
    do {                                                                                    \
        if (!(cond)) {                                                                      \
            std::fprintf(stderr, "\n*** property failed: %s (%s:%d)\n", #cond, __FILE__,    \
                         __LINE__);                                                         \
            __VA_OPT__(std::fprintf(stderr, "*** " __VA_ARGS__); std::fputc('\n', stderr);) \
            std::abort();                                                                   \
        }                                                                                   \
    } while (0)

namespace fuzz {

// Reads the fuzzer's bytes front to back; past the end every read is zero,
// so a short input is simply a record with trailing zero fields.
class Reader {
  public:
    Reader(const uint8_t *data, size_t size) : p_(data), n_(size) {}

    uint8_t u8() { return n_ ? (--n_, *p_++) : 0; }
    uint32_t u32() {
        uint32_t v = 0;
        for (int i = 0; i < 4; ++i) v |= uint32_t(u8()) << (8 * i);
        return v;
    }
    // Copies `len` bytes (zero past the end).
    void bytes(void *out, size_t len) {
        size_t take = len < n_ ? len : n_;
        if (take) std::memcpy(out, p_, take);
        std::memset(static_cast<uint8_t *>(out) + take, 0, len - take);
        p_ += take;
        n_ -= take;
    }
    const uint8_t *rest() const { return p_; }
    size_t left() const { return n_; }

  private:
    const uint8_t *p_;
    size_t n_;
};

inline void hexdump(const char *label, const void *data, size_t size, size_t from = 0,
                    size_t len = SIZE_MAX) {
    const uint8_t *b = static_cast<const uint8_t *>(data);
    size_t end = (len == SIZE_MAX || from + len > size) ? size : from + len;
    std::fprintf(stderr, "%s (%zu bytes, showing %zu..%zu):", label, size, from, end);
    for (size_t i = from; i < end; ++i)
        std::fprintf(stderr, "%s%02x", (i - from) % 32 ? " " : "\n  ", b[i]);
    std::fputc('\n', stderr);
}

// First differing offset of two equal-sized buffers, or SIZE_MAX.
inline size_t first_diff(const void *a, const void *b, size_t size) {
    const uint8_t *x = static_cast<const uint8_t *>(a), *y = static_cast<const uint8_t *>(b);
    for (size_t i = 0; i < size; ++i)
        if (x[i] != y[i]) return i;
    return SIZE_MAX;
}

}  // namespace fuzz
