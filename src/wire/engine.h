// The conversion engine: Converter<D, R>::run(src, dst) converts record R in
// direction D, driven by Layout<R>.  The tables are expanded at compile
// time, so a record converts as straight-line code: one load, byte reversal
// and store per number, one copy per text or byte run.
//
// In place (src == dst) is always allowed: each field is read whole before
// its destination bytes are written, and no field overlaps another.
#pragma once

#include <cstddef>
#include <cstring>
#include <utility>

#include "wire/endian.h"
#include "wire/layout.h"

namespace ipacl::wire {

// Host to network reads host order and writes big-endian; network to host
// the other way round.
template <Dir D>
inline constexpr Order from_order = D == Dir::hton ? Order::native : Order::big;
template <Dir D>
inline constexpr Order to_order = D == Dir::hton ? Order::big : Order::native;

template <Dir D, Rec R>
struct Converter;

// Conversion code is forced inline down to the exported function, so that
// each converter becomes one straight run of moves.
#define IPACL_WIRE_INLINE [[gnu::always_inline]] inline

template <Dir D, class T>
IPACL_WIRE_INLINE void reverse_one(const uint8_t *s, uint8_t *d) {
    store<T, to_order<D>>(d, load<T, from_order<D>>(s));
}

template <Dir D, class T, size_t... I>
IPACL_WIRE_INLINE void reverse_each(const uint8_t *s, uint8_t *d, std::index_sequence<I...>) {
    (reverse_one<D, T>(s + I * sizeof(T), d + I * sizeof(T)), ...);
}

// Runs up to this many numbers are unrolled; longer ones (the 256 slots of
// a list) stay a loop for the compiler to vectorise.
inline constexpr size_t kUnrolledRun = 32;

template <Dir D, class T, size_t N>
IPACL_WIRE_INLINE void reverse_run(const uint8_t *s, uint8_t *d) {
    if constexpr (N <= kUnrolledRun) {
        reverse_each<D, T>(s, d, std::make_index_sequence<N>{});
    } else {
        for (size_t i = 0; i < N; ++i) reverse_one<D, T>(s + i * sizeof(T), d + i * sizeof(T));
    }
}

// 32-bit numbers go four at a time where the target can, the last one to
// three singly.  Each group of four is read whole before it is written, so
// in place still works.
template <Dir D, size_t N>
IPACL_WIRE_INLINE void reverse_words(const uint8_t *s, uint8_t *d) {
#ifdef IPACL_WIRE_U32X4
    constexpr size_t quads = N / 4;
    reverse_run<D, U32x4, quads>(s, d);
    reverse_run<D, uint32_t, N % 4>(s + 16 * quads, d + 16 * quads);
#else
    reverse_run<D, uint32_t, N>(s, d);
#endif
}

// A plain string copy: up to and including the NUL, nothing after it, no
// limit.  A text copied onto itself stays as it is.
IPACL_WIRE_INLINE void copy_text(const uint8_t *s, uint8_t *d) {
    if (s != d) std::strcpy(reinterpret_cast<char *>(d), reinterpret_cast<const char *>(s));
}

template <Dir D, Field F>
IPACL_WIRE_INLINE void convert_field(uint8_t *src, uint8_t *dst) {
    uint8_t *s = src + F.off;
    uint8_t *d = dst + F.off;
    if constexpr (F.conv == Conv::s16)
        reverse_run<D, uint16_t, F.width / 2>(s, d);
    else if constexpr (F.conv == Conv::s32)
        reverse_words<D, F.width / 4>(s, d);
    else if constexpr (F.conv == Conv::s64)
        reverse_run<D, uint64_t, F.width / 8>(s, d);
    else if constexpr (F.conv == Conv::str)
        copy_text(s, d);
    else if constexpr (F.conv == Conv::copy)
        std::memmove(d, s, F.width);
    else if constexpr (F.conv == Conv::zero)
        std::memset(d, 0, F.width);
    else if constexpr (F.conv == Conv::rec)
        Converter<D, F.rec>::run(s, d);
    else
        static_assert(F.conv == Conv::none);
}

template <Dir D, Rec R, size_t... I>
IPACL_WIRE_INLINE void convert_fields(uint8_t *s, uint8_t *d, std::index_sequence<I...>) {
    (convert_field<D, Layout<R>::fields[I]>(s, d), ...);
}

// Converts elements one after another while their index is below the host-
// order count at `count`; the count is read again on every pass.
template <Dir D, Rec E>
IPACL_WIRE_INLINE void walk(uint8_t *s, uint8_t *d, const uint8_t *count) {
    constexpr size_t size = record_size<E>;
    for (uint32_t i = 0; i < load<uint32_t, Order::native>(count); ++i)
        Converter<D, E>::run(s + i * size, d + i * size);
}

// Converts what follows the fixed fields, taking E as the element record:
// the counted elements, or the one body of a tagged record.  Host to
// network reads the count from the source, network to host from the
// destination (where it has already been written in host order).
template <Dir D, Rec R, Rec E>
IPACL_WIRE_INLINE void convert_body_as(uint8_t *s, uint8_t *d) {
    using L = Layout<R>;
    if constexpr (HasCount<L>)
        walk<D, E>(s + L::elems_at, d + L::elems_at, (D == Dir::hton ? s : d) + L::count_at);
    else
        Converter<D, E>::run(s + L::elems_at, d + L::elems_at);
}

// The first variant that `type` picks decides; none picked, nothing done.
template <Dir D, Rec R, size_t... I>
IPACL_WIRE_INLINE void convert_body_by_type(uint32_t type, uint8_t *s, uint8_t *d,
                                            std::index_sequence<I...>) {
    using L = Layout<R>;
    (void)((picks(L::pick, L::variants[I].code, type) &&
            (convert_body_as<D, R, L::variants[I].rec>(s, d), true)) ||
           ...);
}

template <Dir D, Rec R>
IPACL_WIRE_INLINE void convert_body(uint32_t type, uint8_t *s, uint8_t *d) {
    using L = Layout<R>;
    if constexpr (HasTag<L>)
        convert_body_by_type<D, R>(type, s, d, std::make_index_sequence<std::size(L::variants)>{});
    else
        convert_body_as<D, R, L::elem>(s, d);
}

// Host to network: the count and type words are read from the source while
// still in host order, and written reversed after the elements.
template <Rec R>
IPACL_WIRE_INLINE void hton_body(uint8_t *s, uint8_t *d) {
    using L = Layout<R>;
    uint32_t type = 0;
    if constexpr (HasTag<L>) type = load<uint32_t, Order::native>(s + L::tag_at);
    convert_body<Dir::hton, R>(type, s, d);
    if constexpr (HasCount<L>) reverse_one<Dir::hton, uint32_t>(s + L::count_at, d + L::count_at);
    if constexpr (HasTag<L>) reverse_one<Dir::hton, uint32_t>(s + L::tag_at, d + L::tag_at);
}

// Network to host: the count and type words are written into the
// destination first and read back from there.
template <Rec R>
IPACL_WIRE_INLINE void ntoh_body(uint8_t *s, uint8_t *d) {
    using L = Layout<R>;
    uint32_t type = 0;
    if constexpr (HasCount<L>) reverse_one<Dir::ntoh, uint32_t>(s + L::count_at, d + L::count_at);
    if constexpr (HasTag<L>) {
        reverse_one<Dir::ntoh, uint32_t>(s + L::tag_at, d + L::tag_at);
        type = load<uint32_t, Order::native>(d + L::tag_at);
    }
    convert_body<Dir::ntoh, R>(type, s, d);
}

template <Dir D, Rec R>
struct Converter {
    using L = Layout<R>;
    [[gnu::always_inline]] static void run(uint8_t *s, uint8_t *d) {
        if constexpr (HasFields<L>)
            convert_fields<D, R>(s, d, std::make_index_sequence<std::size(L::fields)>{});
        if constexpr (HasCount<L> || HasTag<L>) {
            if constexpr (D == Dir::hton)
                hton_body<R>(s, d);
            else
                ntoh_body<R>(s, d);
        }
    }
};

}  // namespace ipacl::wire
