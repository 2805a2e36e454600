// Chunks are made in three allocations (record, bitmap, slot area) and only
// linked once all three succeeded, so a failure never changes the pool.  The
// record's allocation brings the chunk's room in the index along.
#include "mm/pool_chunk.h"

#include <cstdio>
#include <cstdlib>

#include "mm/pool_index.h"
#include "mm/zeroed_block.h"

namespace ipacl::mm {
namespace {

uint8_t *zeroed(size_t bytes) { return static_cast<uint8_t *>(zeroed_block(bytes)); }

ipacl_mm_chunk *refuse(char *err, const char *text) {
    if (err) sprintf(err, "%s", text);
    return nullptr;
}

}  // namespace

bool slot_area_size(const ipacl_mm &pool, size_t *bytes) {
    return !__builtin_mul_overflow(static_cast<size_t>(pool.count),
                                   static_cast<size_t>(pool.slot_size), bytes);
}

ipacl_mm_chunk *append_chunk(ipacl_mm &pool, char *err) {
    const size_t hint_room = index_hint_room(pool);
    auto *record =
        static_cast<ChunkRecord *>(malloc(sizeof(ChunkRecord) + hint_room * sizeof(Hint)));
    if (!record) return refuse(err, "no mem for data");
    record->hint_room = hint_room;
    ipacl_mm_chunk *chunk = &record->chunk;
    // From here on a failure abandons the half-made chunk instead of
    // unwinding it; the pool is unchanged either way.
    chunk->bitmap = zeroed(pool.bm_size);
    if (!chunk->bitmap) return refuse(err, "no mem for bitmap");
    size_t area = 0;
    chunk->data = slot_area_size(pool, &area) ? zeroed(area) : nullptr;
    if (!chunk->data) return refuse(err, "no mem for mem chunk");
    chunk->used = 0;
    chunk->next = nullptr;

    if (!pool.first) {
        pool.first = chunk;
        index_begin(pool);
    } else if (PoolIndex *index = index_of(pool)) {
        index->last->next = chunk;
        index_append(*index, chunk);
    } else {
        ipacl_mm_chunk *last = pool.first;
        while (last->next) last = last->next;
        last->next = chunk;
    }
    return chunk;
}

void release_chunk(ipacl_mm_chunk *chunk) {
    free(chunk->data);
    free(chunk->bitmap);
    free(chunk);
}

}  // namespace ipacl::mm
