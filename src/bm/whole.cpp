// Operations on a whole bitmap: clearing, counting, comparing.
#include <cstring>

#include <ipacl/bm.h>

extern "C" {

void ipacl_bm_init(uint8_t *bitmap, uint32_t size) {
    if (bitmap) memset(bitmap, 0, size);
}

uint32_t ipacl_bm_count(const uint8_t *bitmap, uint32_t size) {
    if (!bitmap) return 0;
    uint32_t count = 0;
    for (uint32_t i = 0; i < size; ++i)
        count += static_cast<uint32_t>(__builtin_popcount(bitmap[i]));
    return count;
}

uint32_t ipacl_bm_is_same(const uint8_t *a, const uint8_t *b, uint32_t size) {
    if (size == 0 || a == b) return 1;
    if (!a || !b) return 0;
    return memcmp(a, b, size) == 0 ? 1 : 0;
}

}  // extern "C"
