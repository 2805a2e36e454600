// The conversion tables as plain data, for programs built beside the
// library (the decode command of the ipacl tool): for every record its
// stem, size, fields, and the count word, type word and elements of its
// tail.  Not part of the library's interface; included from the source
// tree, so a record added to or changed in the tables reaches every reader
// at once.
#pragma once

#include <cstddef>
#include <cstdint>
#include <iterator>
#include <string_view>

#include "wire/layout_ipt.h"
#include "wire/layout_messages.h"
#include "wire/layout_records.h"

namespace ipacl::wire {

struct RecordShape {
    Rec rec;
    std::string_view stem;  // the record is the C type ipacl_<stem>
    uint32_t size;          // sizeof the C type
    const Field *fields;
    size_t field_count;
    bool counted;  // a count word at count_at numbers the elements
    uint16_t count_at;
    bool tagged;  // a type word at tag_at picks the element record
    uint16_t tag_at;
    Pick pick;
    const Variant *variants;
    size_t variant_count;
    uint16_t elems_at;  // where the elements (or the one body) start
    Rec elem;           // the element record when no type word picks it
};

template <Rec R>
constexpr RecordShape shape_of(std::string_view stem) {
    using L = Layout<R>;
    RecordShape s{R,     stem, record_size<R>, nullptr, 0, false, 0,
                  false, 0,    Pick::equal,    nullptr, 0, 0,     Rec::count_};
    if constexpr (HasFields<L>) s.fields = L::fields, s.field_count = std::size(L::fields);
    if constexpr (HasCount<L>) s.counted = true, s.count_at = L::count_at;
    if constexpr (HasTag<L>) {
        s.tagged = true, s.tag_at = L::tag_at, s.pick = L::pick;
        s.variants = L::variants, s.variant_count = std::size(L::variants);
    } else if constexpr (HasCount<L>) {
        s.elem = L::elem;
    }
    if constexpr (HasCount<L> || HasTag<L>) s.elems_at = L::elems_at;
    return s;
}

// Indexed by Rec.
inline constexpr RecordShape kRecordShapes[] = {
#define IPACL_WIRE_SHAPE(stem) shape_of<Rec::stem>(#stem),
    IPACL_WIRE_RECORDS(IPACL_WIRE_SHAPE)
#undef IPACL_WIRE_SHAPE
};

constexpr const RecordShape &shape(Rec rec) { return kRecordShapes[static_cast<size_t>(rec)]; }

constexpr const RecordShape *find_shape(std::string_view stem) {
    for (const RecordShape &s : kRecordShapes)
        if (s.stem == stem) return &s;
    return nullptr;
}

}  // namespace ipacl::wire
