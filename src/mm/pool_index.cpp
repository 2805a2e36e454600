// Keeping the index of a pool's chunks.  The address tree holds only chunks
// whose slot area has bytes, so the areas in it never overlap and the
// nearest one at or below an address is the only one that can hold it.
#include "mm/pool_index.h"

namespace ipacl::mm {
namespace {

ChunkRecord &record_of(ipacl_mm_chunk *chunk) { return *reinterpret_cast<ChunkRecord *>(chunk); }
const ChunkRecord &record_of(const ipacl_mm_chunk *chunk) {
    return *reinterpret_cast<const ChunkRecord *>(chunk);
}

// The chunk whose record has `node` at `offset`.
template <typename Node>
ipacl_mm_chunk *chunk_of(Node *node, size_t offset) {
    if (!node) return nullptr;
    return reinterpret_cast<ipacl_mm_chunk *>(reinterpret_cast<char *>(node) - offset);
}

size_t area_of(const PoolIndex &index) { return index_area(index); }

uint32_t floor_log2(size_t bytes) {
    uint32_t shift = 0;
    while (bytes >> (shift + 1)) ++shift;
    return shift;
}

// A multiply and a shift instead of a division, for offsets below 4 GiB:
// with m = ceil(2^64 / d), floor(n * m / 2^64) = floor(n / d) for every
// 32-bit n and 1 < d < 2^32.  0 where the plain division must serve.
uint64_t slot_magic_for(const PoolIndex &index) {
#if defined(__SIZEOF_INT128__)
    if (index.slot_size > 1 && area_of(index) - 1 <= UINT32_MAX)
        return UINT64_MAX / index.slot_size + 1;
#endif
    (void)index;
    return 0;
}

// The hints at the stretch starts within the slot area of `chunk` (one or
// two: the area is at least one stretch long and less than two) set to it,
// or, when `keep` is false, cleared where they name it.
void note(PoolIndex &index, ipacl_mm_chunk *chunk, bool keep) {
    if (!index.hints) return;
    const uintptr_t stretch = uintptr_t{1} << index.granule_shift;
    const auto begin = reinterpret_cast<uintptr_t>(chunk->data);
    const uintptr_t last = begin + (area_of(index) - 1);
    for (uintptr_t g = (begin >> index.granule_shift) + ((begin & (stretch - 1)) != 0);
         g <= last >> index.granule_shift; ++g) {
        Hint &hint = index.hints[g & index.hint_mask];
        if (keep)
            hint = Hint{begin, chunk, chunk->bitmap};
        else if (hint.chunk == chunk)
            hint = Hint{};
    }
}

// Hints per chunk of the pool a new table is sized for, and its bounds.
constexpr size_t kHintsPerChunk = 2;
constexpr size_t kFewestHints = 64;
constexpr size_t kMostHints = size_t{1} << 20;

// A table behind the record of `chunk`, just linked, taken up in place of
// the one in use (if any) when it has room for more, and filled with every
// chunk, so that no free has to search for a chunk merely because it is
// new to the table.  Tables grow by doubling, so the filling costs each
// chunk a constant share.  Otherwise `chunk` alone is noted.
void adopt_hints(PoolIndex &index, ipacl_mm_chunk *chunk) {
    ChunkRecord &record = record_of(chunk);
    if (record.hint_room <= (index.hints ? index.hint_mask + 1 : 0)) {
        note(index, chunk, true);
        return;
    }
    index.hints = reinterpret_cast<Hint *>(&record + 1);
    for (size_t i = 0; i < record.hint_room; ++i) index.hints[i] = Hint{};
    index.hints_owner = chunk;
    index.hint_mask = record.hint_room - 1;
    for (ipacl_mm_chunk *each = chunk; each; each = record_of(each).prev) note(index, each, true);
}

}  // namespace

void index_begin(ipacl_mm &pool) {
    PoolIndex &index = record_of(pool.first).index;
    index = PoolIndex{};
    index.count = pool.count;
    index.slot_size = pool.slot_size;
    index.kept = true;
    index.slot_magic = slot_magic_for(index);
    index.granule_shift = area_of(index) ? floor_log2(area_of(index)) : 0;
    index_append(index, pool.first);
}

void index_append(PoolIndex &index, ipacl_mm_chunk *chunk) {
    ChunkRecord &record = record_of(chunk);
    record.prev = index.last;
    index.last = chunk;
    record.with_room.key = index.next_rank;
    record.empty.key = index.next_rank++;
    record.has_room = false;
    record.is_empty = false;
    ++index.chunks;
    index_place(index, chunk);
    if (area_of(index) == 0) return;
    record.by_address.key = reinterpret_cast<uintptr_t>(chunk->data);
    index.by_address = tree::insert(index.by_address, &record.by_address);
    adopt_hints(index, chunk);
}

size_t index_hint_room(ipacl_mm &pool) {
    size_t area = 0;
    if (__builtin_mul_overflow(static_cast<size_t>(pool.count), pool.slot_size, &area) || !area)
        return 0;
    const PoolIndex *index = pool.first ? index_of(pool) : nullptr;
    if (pool.first && !index) return 0;
    const size_t chunks = (index ? index->chunks : 0) + 1;
    const size_t entries = index && index->hints ? index->hint_mask + 1 : 0;
    if (entries >= kMostHints || entries >= chunks * kHintsPerChunk) return 0;
    size_t room = kFewestHints;
    while (room < 2 * chunks * kHintsPerChunk && room < kMostHints) room *= 2;
    return room;
}

void index_remove(PoolIndex &index, ipacl_mm_chunk *chunk) {
    if (!index.kept) return;
    ChunkRecord &record = record_of(chunk);
    rank_keep(index.with_room, record.with_room, &record.has_room, false);
    rank_keep(index.empty, record.empty, &record.is_empty, false);
    if (area_of(index) != 0) {
        index.by_address = tree::erase(index.by_address, record.by_address.key);
        note(index, chunk, false);
    }
    --index.chunks;
    if (chunk == index.hints_owner) {
        index.hints = nullptr;
        index.hints_owner = nullptr;
        index.hint_mask = 0;
    }
    if (chunk->next)
        record_of(chunk->next).prev = record.prev;
    else
        index.last = record.prev;
}

void index_hand_over(const PoolIndex &index, ipacl_mm_chunk *chunk) {
    record_of(chunk).index = index;
}

ipacl_mm_chunk *index_search(PoolIndex &index, uintptr_t at) {
    ipacl_mm_chunk *chunk =
        chunk_of(tree::at_or_before(index.by_address, at), offsetof(ChunkRecord, by_address));
    if (!chunk || at - reinterpret_cast<uintptr_t>(chunk->data) >= area_of(index)) return nullptr;
    note(index, chunk, true);
    return chunk;
}

ipacl_mm_chunk *index_before(const ipacl_mm_chunk *chunk) { return record_of(chunk).prev; }

}  // namespace ipacl::mm
