// Scalars in a chosen byte order at any address.
//
// load<T, O>(p) reads a T stored at p in byte order O; store<T, O>(p, v)
// writes one.  Every access goes through memcpy, so packed records whose
// 32- and 64-bit fields sit at odd offsets are read and written without a
// misaligned dereference; the compiler turns each into one move.
#pragma once

#include <cstdint>
#include <cstring>

namespace ipacl::wire {

enum class Order : uint8_t {
    little,
    big,
#if __BYTE_ORDER__ == __ORDER_BIG_ENDIAN__
    native = big,
#else
    native = little,
#endif
};

constexpr uint16_t byte_swap(uint16_t v) { return __builtin_bswap16(v); }
constexpr uint32_t byte_swap(uint32_t v) { return __builtin_bswap32(v); }
constexpr uint64_t byte_swap(uint64_t v) { return __builtin_bswap64(v); }

// Four 32-bit numbers side by side, swapped at once with shifts and masks,
// which every vector unit has (no byte shuffle needed).  Only where the
// target's baseline has 16-byte vectors: elsewhere (i386 without SSE2)
// numbers are swapped one by one.
#if defined(__SSE2__) || defined(__ARM_NEON)
#define IPACL_WIRE_U32X4 1
typedef uint32_t U32x4 __attribute__((vector_size(16)));
constexpr U32x4 byte_swap(U32x4 v) {
    return (v << 24) | ((v << 8) & 0x00FF0000u) | ((v >> 8) & 0x0000FF00u) | (v >> 24);
}
#endif

// Turns a value between the host's order and O (the same step both ways).
template <class T, Order O>
constexpr T host_to_or_from(T v) {
    if constexpr (O == Order::native)
        return v;
    else
        return byte_swap(v);
}

template <class T, Order O>
inline T load(const void *p) {
    T v;
    std::memcpy(&v, p, sizeof v);
    return host_to_or_from<T, O>(v);
}

template <class T, Order O>
inline void store(void *p, T v) {
    v = host_to_or_from<T, O>(v);
    std::memcpy(p, &v, sizeof v);
}

}  // namespace ipacl::wire
