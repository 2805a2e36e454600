// Host to network of a profile info: the info word goes from source to
// destination, but the profile is converted from the destination into the
// source.  In place that is the ordinary conversion; into a separate buffer
// it leaves the destination's profile as it was and overwrites the
// source's.  Every peer converts profile infos this way, so the order is
// kept.  Network to host is the plain table (layout_records.h).
#pragma once

#include "wire/engine.h"
#include "wire/layout_records.h"

namespace ipacl::wire {

template <>
struct Converter<Dir::hton, Rec::prof_info> {
    [[gnu::always_inline]] static void run(uint8_t *s, uint8_t *d) {
        using L = Layout<Rec::prof_info>;
        constexpr Field info = L::fields[0];
        constexpr Field prof = L::fields[1];
        convert_field<Dir::hton, info>(s, d);
        Converter<Dir::hton, prof.rec>::run(d + prof.off, s + prof.off);
    }
};

}  // namespace ipacl::wire
