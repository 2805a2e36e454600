// A zero-filled block from the system allocator, for the pool's chunks and
// the sync buffers.
#pragma once

#include <cstdlib>
#include <cstring>

namespace ipacl::mm {

// malloc and memset, kept apart on purpose: the compiler would otherwise
// merge the pair into calloc, and every allocation of the library must go
// through malloc, the one entry point that callers and tests instrument.
inline void *zeroed_block(size_t bytes) {
    void *block = malloc(bytes);
    if (!block) return nullptr;
    __asm__ volatile("" : "+r"(block));  // hides where block came from
    memset(block, 0, bytes);
    return block;
}

}  // namespace ipacl::mm
