// Returning a slot: find the chunk that holds it, clear its bit, zero it,
// then release at most one emptied chunk.
#include <cstdio>
#include <cstring>

#include <ipacl/bm.h>
#include <ipacl/mm.h>

#include "mm/pool_chunk.h"

namespace ipacl::mm {
namespace {

bool holds(const ipacl_mm &pool, const ipacl_mm_chunk &chunk, uintptr_t at) {
    size_t area = 0;
    const auto begin = reinterpret_cast<uintptr_t>(chunk.data);
    return slot_area_size(pool, &area) && at >= begin && at - begin < area;
}

// The chunk whose slot `data` is, with that slot's bit already cleared; NULL
// when none.  A pointer inside a slot is reported and the walk goes on.
ipacl_mm_chunk *owner(ipacl_mm &pool, void *data, uint32_t *slot, char *err) {
    const auto at = reinterpret_cast<uintptr_t>(data);
    for (ipacl_mm_chunk *chunk = pool.first; chunk; chunk = chunk->next) {
        if (!holds(pool, *chunk, at)) continue;
        const uintptr_t offset = at - reinterpret_cast<uintptr_t>(chunk->data);
        if (offset % pool.slot_size != 0) {
            if (err) sprintf(err, "data %p not aligned", data);
            continue;
        }
        *slot = static_cast<uint32_t>(offset / pool.slot_size);
        if (ipacl_bm_clr(chunk->bitmap, pool.bm_size, *slot, err) == IPACL_OK) return chunk;
    }
    return nullptr;
}

// An emptied first chunk goes at once; otherwise the first empty chunk after
// it.  One per call keeps a free cheap and bounded.
void shrink(ipacl_mm &pool) {
    ipacl_mm_chunk *first = pool.first;
    if (first->used == 0) {
        pool.first = first->next;
        release_chunk(first);
        return;
    }
    for (ipacl_mm_chunk *prev = first; prev->next; prev = prev->next) {
        ipacl_mm_chunk *chunk = prev->next;
        if (chunk->used != 0) continue;
        prev->next = chunk->next;
        release_chunk(chunk);
        return;
    }
}

}  // namespace
}  // namespace ipacl::mm

extern "C" ipacl_rc ipacl_mm_free(ipacl_mm *pool, void *data, char *err) {
    if (!pool || !data) {
        if (err) sprintf(err, "bad mem desc %p data %p", static_cast<void *>(pool), data);
        return IPACL_E_BAD_ARG;
    }
    ipacl_str_zero(err);
    if (!pool->first) return IPACL_E_FAIL;
    uint32_t slot = 0;
    ipacl_mm_chunk *chunk = ipacl::mm::owner(*pool, data, &slot, err);
    if (!chunk) return IPACL_E_FAIL;
    // A slot freed twice still counts down: `used` is not cross-checked
    // against the bitmap.
    memset(chunk->data + static_cast<size_t>(slot) * pool->slot_size, 0, pool->slot_size);
    --chunk->used;
    ipacl::mm::shrink(*pool);
    return IPACL_OK;
}
