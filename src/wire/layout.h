// Layout<R> describes record R for the conversion engine.  Every layout
// names its C type; the rest is optional:
//
//   fields[]        the fixed fields, converted in table order;
//   count_at        a 32-bit element count (the record is a counted array);
//   tag_at, pick,   a 32-bit type word that selects the element record
//   variants[]      (or, without a count, the one nested body);
//   elems_at, elem  where the elements (or the body) start, and their record
//                   when no type word selects it.
//
// Every offset in the tables, and the width of every text and byte run, is
// named by members of the C type (IPACL_WIRE_AT, IPACL_WIRE_THROUGH below),
// so the layout is written once, in records.h; runs of numbers keep counts.
// The tables live in layout_*.h, one family per file.
#pragma once

#include <cstddef>
#include <iterator>
#include <type_traits>

#include <ipacl/records.h>

#include "wire/field.h"

namespace ipacl::wire {

template <Rec R>
struct Layout;

template <class L>
concept HasFields = requires {
    L::fields;
};
template <class L>
concept HasCount = requires {
    L::count_at;
};
template <class L>
concept HasTag = requires {
    L::tag_at;
};

template <Rec R>
inline constexpr uint32_t record_size = sizeof(typename Layout<R>::type);

// A nested record where `place` starts.
template <Rec R>
constexpr Field rec(Stretch place) {
    return {place.off, uint16_t(record_size<R>), Conv::rec, R};
}

// Bytes of a member of type M; an open-ended array at the end has none.
template <class M>
constexpr uint16_t member_size() {
    if constexpr (std::is_unbounded_array_v<M>) {
        return 0;
    } else {
        return uint16_t(sizeof(M));
    }
}

// A type code and the record it selects.
template <Rec R>
constexpr Variant variant(uint32_t code) {
    return {code, R, record_size<R>};
}

#define IPACL_WIRE_PLAIN(stem, ...)                      \
    template <>                                          \
    struct Layout<Rec::stem> {                           \
        using type = ::ipacl_##stem;                     \
        static constexpr Field fields[] = {__VA_ARGS__}; \
    }

// The members from `first` to `last` as one stretch.
constexpr Stretch through_of(Stretch first, Stretch last) {
    return {first.off, uint16_t(last.off + last.size - first.off)};
}

// The stretch of one member, and of the members from `first` to `last`, of
// the `type` of the Layout being written.  The table files spell them at()
// and through() while they define their layouts.
#define IPACL_WIRE_AT(member)                                                                  \
    ::ipacl::wire::Stretch {                                                                   \
        uint16_t(offsetof(type, member)), ::ipacl::wire::member_size<decltype(type::member)>() \
    }
#define IPACL_WIRE_THROUGH(first, last) \
    ::ipacl::wire::through_of(IPACL_WIRE_AT(first), IPACL_WIRE_AT(last))

}  // namespace ipacl::wire
