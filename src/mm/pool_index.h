// The index of a pool's chunks answers without walking the chunk list:
// which chunk holds an address (a table of hints, then a tree of the chunks
// by slot-area address),
// which chunk comes first with room and which comes first empty (trees of
// just those chunks, by rank: ranks grow as chunks are made, so they follow
// the list), and which chunk comes before a given one or last (a link back).
//
// The index lives in the chunk records themselves: each record is allocated
// with room for its tree nodes and for the roots, and the roots in use are
// those in the record of the pool's first chunk, handed on when that chunk
// goes.  So the index costs no allocation of its own and vanishes with the
// pool's last chunk, and the public layouts stay as they are.
//
// The index was built for the pool's `count` and `slot_size`; should those
// change under it, or a chunk's `used` be found changed from outside, it is
// given up and the pool is served by walking the list until it is empty.
#pragma once

#include <cstddef>
#include <cstdint>

#include <ipacl/mm.h>

#include "mm/index_tree.h"

namespace ipacl::mm {

// Chunks keyed by rank, the first two of them kept aside: in a pool in
// steady use one chunk gains room and fills up again ahead of the one that
// had room before (a partly filled last chunk, say), and so comes and goes
// without touching a tree.
struct RankSet {
    TreeNode *first;   // least rank, NULL when the set is empty
    TreeNode *second;  // NULL or a rank above `first` and at most any in `rest`
    TreeNode *rest;    // the others
};

// Recent answers of the address search, kept by stretches of
// `1 << granule_shift` bytes, a stretch being no longer than a slot area: a
// chunk found is noted at the start of each stretch its area covers (one or
// two), so the chunk holding an address is the one noted at the start of
// the address's stretch or at the start of the next.  Entries are hints
// only, checked against the slot area they copy before use and cleared
// when their chunk leaves.  The table lives in the record of one chunk,
// made with room for it, and is sized to the chunks when that chunk was
// made: when the pool outgrows it, or that chunk goes, the next chunk made
// brings a new one, and until then the search alone serves.
struct Hint {
    uintptr_t data;  // the chunk's slot area, so a wrong hint costs no visit
    ipacl_mm_chunk *chunk;
    const uint8_t *bitmap;  // fetched alongside the record, not read
};

struct PoolIndex {
    SearchNode *by_address;       // chunks with a slot area, keyed by its address
    Hint *hints;                  // NULL while there is no table
    ipacl_mm_chunk *hints_owner;  // the chunk whose record holds the table
    size_t hint_mask;             // entries - 1, a power of two less one
    size_t chunks;                // in the index
    uint64_t slot_magic;          // 2^64 / slot_size rounded up, 0 where not used
    uint32_t granule_shift;
    RankSet with_room;  // chunks with used < count
    RankSet empty;      // chunks with used 0
    ipacl_mm_chunk *last;
    uint64_t next_rank;
    uint32_t count;  // the pool's geometry when the index began
    uint32_t slot_size;
    bool kept;  // false: given up, the list walk serves the pool
};

// What the library allocates for a chunk: the public record first, so a
// chunk pointer is a record pointer, then the room of the index, then, in
// a record made to hold one, a table of hints.  What every allocation and
// free reads (the public record, the two flags) shares the first cache line.
struct ChunkRecord {
    ipacl_mm_chunk chunk;
    bool has_room;         // in the `with_room` set
    bool is_empty;         // in the `empty` set
    ipacl_mm_chunk *prev;  // the chunk before in the list, NULL for the first
    SearchNode by_address;
    TreeNode with_room;  // these two are keyed by the chunk's rank
    TreeNode empty;
    PoolIndex index;   // the live roots while this chunk is the first
    size_t hint_room;  // entries of a hint table just behind the record, or 0
};

// Entries of hint table the record of a chunk about to be made should have
// room for: 0 unless the pool has none or has outgrown it.
size_t index_hint_room(ipacl_mm &pool);

// Gives the index up for the rest of the pool's life.
inline void index_give_up(PoolIndex &index) { index.kept = false; }

// The roots in the first chunk, kept or given up; NULL for an empty pool.
// Inline: every allocation and free asks, more than once.
inline PoolIndex *index_roots(ipacl_mm &pool) {
    if (!pool.first) return nullptr;
    PoolIndex &index = reinterpret_cast<ChunkRecord *>(pool.first)->index;
    if (index.kept && (index.count != pool.count || index.slot_size != pool.slot_size))
        index_give_up(index);
    return &index;
}

// The roots when the index serves the pool; NULL when the walk must.
inline PoolIndex *index_of(ipacl_mm &pool) {
    PoolIndex *index = index_roots(pool);
    return index && index->kept ? index : nullptr;
}

// A first chunk has just been linked into an empty pool: a new index.
void index_begin(ipacl_mm &pool);

// A chunk has just been linked after the last one.
void index_append(PoolIndex &index, ipacl_mm_chunk *chunk);

// The rank sets' operations, inline: in steady use they end before any
// tree is touched.
inline void rank_add(RankSet &set, TreeNode *node) {
    if (!set.first) {
        set.first = node;
        return;
    }
    if (node->key < set.first->key) {
        if (set.second) set.rest = tree::insert(set.rest, set.second);
        set.second = set.first;
        set.first = node;
        return;
    }
    if (set.second && node->key < set.second->key) {
        TreeNode *later = set.second;
        set.second = node;
        node = later;
    }
    set.rest = tree::insert(set.rest, node);
}

inline void rank_remove(RankSet &set, const TreeNode *node) {
    if (node == set.first) {
        set.first = set.second;
        set.second = nullptr;
    } else if (node == set.second) {
        set.second = nullptr;
    } else {
        set.rest = tree::erase(set.rest, node->key);
        return;
    }
    if (set.first || !set.rest) return;
    set.first = tree::least(set.rest);
    set.rest = tree::erase(set.rest, set.first->key);
}

// Puts `node` into or takes it out of `set` as `want` says.
inline void rank_keep(RankSet &set, TreeNode &node, bool *in, bool want) {
    if (*in == want) return;
    if (want)
        rank_add(set, &node);
    else
        rank_remove(set, &node);
    *in = want;
}

// `chunk` moved into or out of the sets its `used` now says it belongs to.
inline void index_place(PoolIndex &index, ipacl_mm_chunk *chunk) {
    ChunkRecord &record = *reinterpret_cast<ChunkRecord *>(chunk);
    rank_keep(index.with_room, record.with_room, &record.has_room, chunk->used < index.count);
    rank_keep(index.empty, record.empty, &record.is_empty, chunk->used == 0);
}

// To call after a chunk's `used` changed.
inline void index_update(ipacl_mm &pool, ipacl_mm_chunk *chunk) {
    if (PoolIndex *index = index_of(pool)) index_place(*index, chunk);
}

// A chunk just unlinked from the list leaves the index (nothing when the
// index is given up).
void index_remove(PoolIndex &index, ipacl_mm_chunk *chunk);

// The roots copied into the record of `chunk`, the new first chunk.
void index_hand_over(const PoolIndex &index, ipacl_mm_chunk *chunk);

// Lookups of a kept index; NULL when there is no such chunk.  Inline, as
// they are on the path of every allocation and free.
inline ipacl_mm_chunk *index_first_with_room(const PoolIndex &index) {
    return index.with_room.first ? reinterpret_cast<ipacl_mm_chunk *>(
                                       reinterpret_cast<char *>(index.with_room.first) -
                                       offsetof(ChunkRecord, with_room))
                                 : nullptr;
}

inline ipacl_mm_chunk *index_first_empty(const PoolIndex &index) {
    return index.empty.first
               ? reinterpret_cast<ipacl_mm_chunk *>(reinterpret_cast<char *>(index.empty.first) -
                                                    offsetof(ChunkRecord, empty))
               : nullptr;
}

inline size_t index_area(const PoolIndex &index) {
    return static_cast<size_t>(index.count) * index.slot_size;  // fits: the chunks exist
}

// The chunk holding `at` by the address tree, noted in the hints.
ipacl_mm_chunk *index_search(PoolIndex &index, uintptr_t at);

// The chunk holding `at`, with the start of its slot area in *area; NULL
// when none does.  A hint's copy of the start is used, so the slot's
// position is worked out while the chunk's record is still on its way; the
// record's own start, once there, must agree.
inline ipacl_mm_chunk *index_holding(PoolIndex &index, uintptr_t at, uintptr_t *area) {
    if (index.hints) {
        const uintptr_t granule = at >> index.granule_shift;
        for (uintptr_t g = granule; g <= granule + 1; ++g) {
            const Hint &hint = index.hints[g & index.hint_mask];
            if (!hint.chunk || at - hint.data >= index_area(index)) continue;
            // Both are about to be written, and neither address depends
            // on the other: fetch them together rather than one after
            // the other.
            __builtin_prefetch(hint.chunk, 1);
            __builtin_prefetch(hint.bitmap, 1);
            if (__builtin_expect(reinterpret_cast<uintptr_t>(hint.chunk->data) != hint.data, 0))
                break;
            *area = hint.data;
            return hint.chunk;
        }
    }
    ipacl_mm_chunk *chunk = index_search(index, at);
    if (chunk) *area = reinterpret_cast<uintptr_t>(chunk->data);
    return chunk;
}

// The slot at `offset` into a slot area of the index's pool, in *slot;
// false when `offset` is not on a slot boundary.
inline bool index_slot_at(const PoolIndex &index, uintptr_t offset, uint32_t *slot) {
    uintptr_t quotient = 0;
#if defined(__SIZEOF_INT128__)
    if (index.slot_magic)
        quotient = static_cast<uintptr_t>(
            (static_cast<unsigned __int128>(index.slot_magic) * offset) >> 64);
    else
#endif
        quotient = offset / index.slot_size;
    *slot = static_cast<uint32_t>(quotient);
    return offset - quotient * index.slot_size == 0;
}

ipacl_mm_chunk *index_before(const ipacl_mm_chunk *chunk);

}  // namespace ipacl::mm
