// Everything the exported converters need: the tables, the engine and the
// one converter that departs from its table.
#pragma once

#include "wire/engine.h"
#include "wire/layout_ipt.h"
#include "wire/layout_messages.h"
#include "wire/layout_records.h"
#include "wire/prof_info.h"
#include "wire/layout_check.h"

namespace ipacl::wire {

template <Dir D, Rec R>
[[gnu::always_inline]] inline void convert(void *src, void *dst) {
    Converter<D, R>::run(static_cast<uint8_t *>(src), static_cast<uint8_t *>(dst));
}

}  // namespace ipacl::wire

// Defines the exported converters of one stem.
#define IPACL_WIRE_HTON(stem)                                                           \
    extern "C" void ipacl_hton_##stem(ipacl_##stem *src, ipacl_##stem *dst) {           \
        ipacl::wire::convert<ipacl::wire::Dir::hton, ipacl::wire::Rec::stem>(src, dst); \
    }
#define IPACL_WIRE_NTOH(stem)                                                           \
    extern "C" void ipacl_ntoh_##stem(ipacl_##stem *src, ipacl_##stem *dst) {           \
        ipacl::wire::convert<ipacl::wire::Dir::ntoh, ipacl::wire::Rec::stem>(src, dst); \
    }
#define IPACL_WIRE_PAIR(stem) IPACL_WIRE_HTON(stem) IPACL_WIRE_NTOH(stem)
