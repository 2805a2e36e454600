// Displays of a pool and of a bitmap: bytes in hex rows of 16, continuation
// rows indented to line up under the first.
#include <cstdint>
#include <cstdio>

#include <ipacl/mm.h>

namespace ipacl::mm {
namespace {

constexpr uint32_t kBytesPerRow = 16;

// Each byte as "%02x "; after every 16th byte but the last, `row_break`.
void print_bytes(const uint8_t *bytes, uint32_t size, const char *row_break) {
    for (uint32_t i = 0; i < size; ++i) {
        printf("%02x ", bytes[i]);
        if ((i + 1) % kBytesPerRow == 0 && i + 1 < size) printf("%s", row_break);
    }
    printf("\n");
}

}  // namespace
}  // namespace ipacl::mm

extern "C" {

void ipacl_show_mm(const ipacl_mm *pool) {
    if (!pool) return;
    if (!pool->first) {
        printf("Empty list in memory pool!\n");
        return;
    }
    printf("\nChunk size %d, data size %d, bitmap size %d.\n", static_cast<int>(pool->count),
           static_cast<int>(pool->slot_size), static_cast<int>(pool->bm_size));
    printf("Chunk\t\t# Used\t\tUsed BitMap\n");
    printf("-----\t\t------\t\t-----------\n");
    for (const ipacl_mm_chunk *chunk = pool->first; chunk; chunk = chunk->next) {
        // Addresses print as 32-bit words, the width of the manager's host.
        printf("%08xh\t%-10d\t", static_cast<uint32_t>(reinterpret_cast<uintptr_t>(chunk->data)),
               static_cast<int>(chunk->used));
        ipacl::mm::print_bytes(chunk->bitmap, pool->bm_size, "\n\t\t\t\t");
    }
}

void ipacl_show_bm(const uint8_t *bitmap, uint32_t size, const char *label) {
    if (!bitmap || !label) return;
    printf("%-23.23s ", label);
    ipacl::mm::print_bytes(bitmap, size, "\n                        ");
}

}  // extern "C"
