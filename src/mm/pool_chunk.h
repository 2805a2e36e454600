// Making and releasing the chunks of a memory pool.
#pragma once

#include <cstdint>

#include <ipacl/mm.h>

namespace ipacl::mm {

// Bytes of a chunk's slot area; false when it does not fit in a size_t.
bool slot_area_size(const ipacl_mm &pool, size_t *bytes);

// A new zero-filled chunk linked at the end of the pool, or NULL with the
// reason in err.
ipacl_mm_chunk *append_chunk(ipacl_mm &pool, char *err);

// Frees a chunk that is no longer linked.
void release_chunk(ipacl_mm_chunk *chunk);

}  // namespace ipacl::mm
