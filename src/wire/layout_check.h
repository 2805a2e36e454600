// Compile-time proof that every table describes its record exactly: each
// byte of the C type belongs to one field, the count, the type word or the
// element area, and every element kind fits where it goes.
#pragma once

#include <utility>

#include "wire/layout.h"

namespace ipacl::wire {

template <Rec R>
constexpr bool covers_exactly() {
    using L = Layout<R>;
    constexpr uint32_t size = record_size<R>;
    uint8_t seen[size + 1] = {};
    bool ok = true;
    auto mark = [&](uint32_t off, uint32_t width) {
        if (width == 0) ok = ok && off == size;  // open-ended text at the end
        for (uint32_t i = 0; i < width; ++i) {
            if (off + i >= size || seen[off + i]++) ok = false;
        }
    };
    if constexpr (HasFields<L>)
        for (const Field &f : L::fields) mark(f.off, f.width);
    if constexpr (HasCount<L>) mark(L::count_at, 4);
    if constexpr (HasTag<L>) mark(L::tag_at, 4);
    if constexpr (HasCount<L> || HasTag<L>) mark(L::elems_at, size - L::elems_at);
    if constexpr (HasTag<L> && !HasCount<L>)
        for (const Variant &v : L::variants) ok = ok && v.size <= size - L::elems_at;
    for (uint32_t i = 0; i < size; ++i) ok = ok && seen[i] == 1;
    return ok;
}

template <size_t... I>
constexpr bool all_cover_exactly(std::index_sequence<I...>) {
    return (covers_exactly<static_cast<Rec>(I)>() && ...);
}

static_assert(all_cover_exactly(std::make_index_sequence<static_cast<size_t>(Rec::count_)>{}),
              "a conversion table does not match its record");

}  // namespace ipacl::wire
