// First-fit allocation: the first chunk with a free slot gives its lowest
// free slot; a new chunk is appended only when every chunk is full.
#include <cstdio>

#include <ipacl/bm.h>
#include <ipacl/mm.h>

#include "bm/bit_search.h"
#include "mm/pool_chunk.h"
#include "mm/pool_index.h"

namespace ipacl::mm {
namespace {

void *take_slot(ipacl_mm &pool, ipacl_mm_chunk &chunk) {
    uint32_t slot = 0;
    if (!bm::take_lowest_clear(chunk.bitmap, pool.bm_size, &slot)) return nullptr;
    // The bitmap has room for a few bits beyond `count`.  They are only ever
    // reached when a slot was freed twice and `used` undercounts: give the
    // bit back and refuse rather than hand out memory past the slot area.
    if (slot >= pool.count) {
        ipacl_bm_clr(chunk.bitmap, pool.bm_size, slot, nullptr);
        return nullptr;
    }
    ++chunk.used;
    index_update(pool, &chunk);
    return chunk.data + static_cast<size_t>(slot) * pool.slot_size;
}

ipacl_mm_chunk *first_with_room(ipacl_mm &pool) {
    if (PoolIndex *index = index_of(pool)) {
        ipacl_mm_chunk *chunk = index_first_with_room(*index);
        // A `used` changed from outside would make the answer wrong; where
        // that shows, the walk takes over.
        if (!chunk || chunk->used < pool.count) return chunk;
        index_give_up(*index);
    }
    for (ipacl_mm_chunk *chunk = pool.first; chunk; chunk = chunk->next)
        if (chunk->used < pool.count) return chunk;
    return nullptr;
}

}  // namespace
}  // namespace ipacl::mm

extern "C" void *ipacl_mm_alloc(ipacl_mm *pool, char *err) {
    if (!pool) {
        if (err) sprintf(err, "null mem desc");
        return nullptr;
    }
    ipacl_str_zero(err);
    ipacl_mm_chunk *chunk = ipacl::mm::first_with_room(*pool);
    if (!chunk) chunk = ipacl::mm::append_chunk(*pool, err);
    return chunk ? ipacl::mm::take_slot(*pool, *chunk) : nullptr;
}
