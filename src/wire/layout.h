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
// The tables live in layout_*.h, one family per file.
#pragma once

#include <cstddef>
#include <iterator>

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

// A nested record at `off`.
template <Rec R>
constexpr Field rec(uint16_t off) {
    return {off, uint16_t(record_size<R>), Conv::rec, R};
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

}  // namespace ipacl::wire
