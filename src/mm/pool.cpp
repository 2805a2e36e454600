// Creating a pool and counting what it holds.
#include <cstdlib>

#include <ipacl/mm.h>

extern "C" {

ipacl_mm *ipacl_mm_new(uint32_t count, uint32_t slot_size) {
    auto *pool = static_cast<ipacl_mm *>(malloc(sizeof(ipacl_mm)));
    if (!pool) return nullptr;
    pool->count = count;
    pool->slot_size = slot_size;
    pool->bm_size = (count + 7) / 8;
    pool->first = nullptr;
    return pool;
}

uint32_t ipacl_mm_count(const ipacl_mm *pool) {
    uint32_t used = 0;
    for (const ipacl_mm_chunk *c = pool ? pool->first : nullptr; c; c = c->next) used += c->used;
    return used;
}

}  // extern "C"
