// Returning a slot: find the chunk that holds it, clear its bit, zero it,
// then release at most one emptied chunk.
#include <cstdio>
#include <cstring>

#include <ipacl/bm.h>
#include <ipacl/mm.h>

#include "bm/bit_address.h"
#include "mm/pool_chunk.h"
#include "mm/pool_index.h"

namespace ipacl::mm {
namespace {

bool holds(const ipacl_mm &pool, const ipacl_mm_chunk &chunk, uintptr_t at) {
    size_t area = 0;
    const auto begin = reinterpret_cast<uintptr_t>(chunk.data);
    return slot_area_size(pool, &area) && at >= begin && at - begin < area;
}

// `chunk`, whose slot area holds `data` at slot *slot when `aligned`, with
// that slot's bit cleared; NULL when `data` is inside a slot (reported) or
// the bit cannot be cleared.
ipacl_mm_chunk *clear_slot(const ipacl_mm &pool, ipacl_mm_chunk *chunk, void *data, bool aligned,
                           uint32_t slot, char *err) {
    if (!aligned) {
        if (err) sprintf(err, "data %p not aligned", data);
        return nullptr;
    }
    // The bit is cleared in place; ipacl_bm_clr serves the cases that it
    // refuses (no bitmap, a `bm_size` changed from outside), with its
    // messages.  `err` is already clear, as ipacl_bm_clr would leave it.
    if (chunk->bitmap && bm::in_range(pool.bm_size, slot)) {
        chunk->bitmap[bm::byte_of(slot)] &= static_cast<uint8_t>(~bm::value_of(slot));
        return chunk;
    }
    return ipacl_bm_clr(chunk->bitmap, pool.bm_size, slot, err) == IPACL_OK ? chunk : nullptr;
}

uintptr_t offset_in(const ipacl_mm_chunk &chunk, const void *data) {
    return reinterpret_cast<uintptr_t>(data) - reinterpret_cast<uintptr_t>(chunk.data);
}

// The slot to be zeroed starts on its way into the cache while the index is
// searched; a prefetch never faults, whatever `data` turns out to be.  Its
// first and last lines: the lines between follow the zeroing's own stream.
void prefetch_slot(const ipacl_mm &pool, const void *data) {
    const auto *bytes = static_cast<const char *>(data);
    __builtin_prefetch(bytes, 1);
    if (pool.slot_size > 1) __builtin_prefetch(bytes + (pool.slot_size - 1), 1);
}

// The chunk whose slot `data` is, with that slot's bit already cleared; NULL
// when none.  Slot areas never overlap, so at most one chunk holds `data`:
// the index names it, or the walk meets it.
ipacl_mm_chunk *owner(ipacl_mm &pool, PoolIndex *index, void *data, uint32_t *slot, char *err) {
    const auto at = reinterpret_cast<uintptr_t>(data);
    if (index) {
        uintptr_t area = 0;
        ipacl_mm_chunk *chunk = index_holding(*index, at, &area);
        if (!chunk) return nullptr;
        const bool aligned = index_slot_at(*index, at - area, slot);
        return clear_slot(pool, chunk, data, aligned, *slot, err);
    }
    for (ipacl_mm_chunk *chunk = pool.first; chunk; chunk = chunk->next) {
        if (!holds(pool, *chunk, at)) continue;
        const uintptr_t offset = offset_in(*chunk, data);
        *slot = static_cast<uint32_t>(offset / pool.slot_size);
        const bool aligned = offset % pool.slot_size == 0;
        if (ipacl_mm_chunk *owner = clear_slot(pool, chunk, data, aligned, *slot, err))
            return owner;
    }
    return nullptr;
}

// The first empty chunk after the first one, with the chunk before it.
ipacl_mm_chunk *empty_after_first(ipacl_mm &pool, PoolIndex &index, ipacl_mm_chunk **prev) {
    if (index.kept) {
        ipacl_mm_chunk *chunk = index_first_empty(index);
        if (!chunk) return nullptr;
        // As for allocation: an answer that a `used` changed from outside
        // made wrong hands the pool over to the walk.
        if (chunk != pool.first && chunk->used == 0) {
            *prev = index_before(chunk);
            return chunk;
        }
        index_give_up(index);
    }
    for (*prev = pool.first; (*prev)->next; *prev = (*prev)->next)
        if ((*prev)->next->used == 0) return (*prev)->next;
    return nullptr;
}

// An emptied first chunk goes at once; otherwise the first empty chunk after
// it.  One per call keeps a free cheap and bounded.
void shrink(ipacl_mm &pool) {
    ipacl_mm_chunk *first = pool.first;
    PoolIndex &index = *index_roots(pool);
    if (first->used == 0) {
        pool.first = first->next;
        index_remove(index, first);
        if (pool.first) index_hand_over(index, pool.first);
        release_chunk(first);
        return;
    }
    ipacl_mm_chunk *prev = nullptr;
    ipacl_mm_chunk *chunk = empty_after_first(pool, index, &prev);
    if (!chunk) return;
    prev->next = chunk->next;
    index_remove(index, chunk);
    release_chunk(chunk);
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
    ipacl::mm::prefetch_slot(*pool, data);
    // Looked up once: nothing before the release step can give it up.
    ipacl::mm::PoolIndex *index = ipacl::mm::index_of(*pool);
    uint32_t slot = 0;
    ipacl_mm_chunk *chunk = ipacl::mm::owner(*pool, index, data, &slot, err);
    if (!chunk) return IPACL_E_FAIL;
    // A slot freed twice still counts down: `used` is not cross-checked
    // against the bitmap.
    memset(chunk->data + static_cast<size_t>(slot) * pool->slot_size, 0, pool->slot_size);
    --chunk->used;
    if (index) {
        ipacl::mm::index_place(*index, chunk);
        // Nothing to release, the common case, seen without a search.
        if (pool->first->used != 0 && !index->empty.first) return IPACL_OK;
    }
    ipacl::mm::shrink(*pool);
    return IPACL_OK;
}
