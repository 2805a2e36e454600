// First-fit allocation: the first chunk with a free slot gives its lowest
// free slot; a new chunk is appended only when every chunk is full.
#include <cstdio>

#include <ipacl/bm.h>
#include <ipacl/mm.h>

#include "mm/pool_chunk.h"

namespace ipacl::mm {
namespace {

void *take_slot(const ipacl_mm &pool, ipacl_mm_chunk &chunk) {
    uint32_t slot = 0;
    if (ipacl_bm_next_clr(chunk.bitmap, pool.bm_size, 0, &slot) != IPACL_OK) return nullptr;
    // The bitmap has room for a few bits beyond `count`.  They are only ever
    // reached when a slot was freed twice and `used` undercounts: give the
    // bit back and refuse rather than hand out memory past the slot area.
    if (slot >= pool.count) {
        ipacl_bm_clr(chunk.bitmap, pool.bm_size, slot, nullptr);
        return nullptr;
    }
    ++chunk.used;
    return chunk.data + static_cast<size_t>(slot) * pool.slot_size;
}

}  // namespace
}  // namespace ipacl::mm

extern "C" void *ipacl_mm_alloc(ipacl_mm *pool, char *err) {
    if (!pool) {
        if (err) sprintf(err, "null mem desc");
        return nullptr;
    }
    ipacl_str_zero(err);
    for (ipacl_mm_chunk *chunk = pool->first; chunk; chunk = chunk->next)
        if (chunk->used < pool->count) return ipacl::mm::take_slot(*pool, *chunk);
    ipacl_mm_chunk *chunk = ipacl::mm::append_chunk(*pool, err);
    return chunk ? ipacl::mm::take_slot(*pool, *chunk) : nullptr;
}
