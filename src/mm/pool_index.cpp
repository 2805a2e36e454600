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

size_t area_of(const PoolIndex &index) {
    return static_cast<size_t>(index.count) * index.slot_size;  // fits: the chunks exist
}

void add(RankSet &set, TreeNode *node) {
    if (set.first && set.first->key < node->key) {
        set.rest = tree::insert(set.rest, node);
        return;
    }
    if (set.first) set.rest = tree::insert(set.rest, set.first);
    set.first = node;
}

void remove(RankSet &set, const TreeNode *node) {
    if (node != set.first) {
        set.rest = tree::erase(set.rest, node->key);
        return;
    }
    set.first = tree::least(set.rest);
    if (set.first) set.rest = tree::erase(set.rest, set.first->key);
}

// Puts `node` into or takes it out of `set` as `want` says.
void keep_in(RankSet &set, TreeNode &node, bool *in, bool want) {
    if (*in == want) return;
    if (want)
        add(set, &node);
    else
        remove(set, &node);
    *in = want;
}

void place(PoolIndex &index, ipacl_mm_chunk *chunk) {
    ChunkRecord &record = record_of(chunk);
    keep_in(index.with_room, record.with_room, &record.has_room, chunk->used < index.count);
    keep_in(index.empty, record.empty, &record.is_empty, chunk->used == 0);
}

}  // namespace

void index_begin(ipacl_mm &pool) {
    PoolIndex &index = record_of(pool.first).index;
    index = PoolIndex{nullptr, {}, {}, nullptr, 0, pool.count, pool.slot_size, true};
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
    place(index, chunk);
    if (area_of(index) == 0) return;
    record.by_address.key = reinterpret_cast<uintptr_t>(chunk->data);
    index.by_address = tree::insert(index.by_address, &record.by_address);
}

void index_update(ipacl_mm &pool, ipacl_mm_chunk *chunk) {
    if (PoolIndex *index = index_of(pool)) place(*index, chunk);
}

void index_remove(PoolIndex &index, ipacl_mm_chunk *chunk) {
    if (!index.kept) return;
    ChunkRecord &record = record_of(chunk);
    keep_in(index.with_room, record.with_room, &record.has_room, false);
    keep_in(index.empty, record.empty, &record.is_empty, false);
    if (area_of(index) != 0)
        index.by_address = tree::erase(index.by_address, record.by_address.key);
    if (chunk->next)
        record_of(chunk->next).prev = record.prev;
    else
        index.last = record.prev;
}

void index_hand_over(const PoolIndex &index, ipacl_mm_chunk *chunk) {
    record_of(chunk).index = index;
}

ipacl_mm_chunk *index_first_with_room(const PoolIndex &index) {
    return chunk_of(index.with_room.first, offsetof(ChunkRecord, with_room));
}

ipacl_mm_chunk *index_first_empty(const PoolIndex &index) {
    return chunk_of(index.empty.first, offsetof(ChunkRecord, empty));
}

ipacl_mm_chunk *index_holding(const PoolIndex &index, uintptr_t at) {
    ipacl_mm_chunk *chunk =
        chunk_of(tree::at_or_before(index.by_address, at), offsetof(ChunkRecord, by_address));
    if (!chunk || at - reinterpret_cast<uintptr_t>(chunk->data) >= area_of(index)) return nullptr;
    return chunk;
}

ipacl_mm_chunk *index_before(const ipacl_mm_chunk *chunk) { return record_of(chunk).prev; }

}  // namespace ipacl::mm
