// The chunked memory pool: a caller-written count, NULL pools, the sizes
// table and the displays.
#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include <ipacl/ipacl.h>

#include "capture_stdout.h"
#include "platform_double.h"

namespace {

using ipacl_double::output_of;

std::string hex_addr(const void *p) {
    char text[16];
    snprintf(text, sizeof text, "%08x", static_cast<uint32_t>(reinterpret_cast<uintptr_t>(p)));
    return text;
}

}  // namespace

// Walked step by step against a model elsewhere; what the model leaves out:
// a `used` written by the caller, a NULL pool, and a descriptor that cannot
// be made.
TEST(Pool, CallerWrittenUsedNullPoolAndFailedDescriptor) {
    ipacl_mm *pool = ipacl_mm_new(4, 16);
    ASSERT_NE(pool, nullptr);
    void *slots[8];
    for (void *&p : slots) p = ipacl_mm_alloc(pool, nullptr);  // two full chunks
    ipacl_mm_chunk *c1 = pool->first;
    ASSERT_EQ(ipacl_mm_free(pool, slots[0], nullptr), IPACL_OK);
    c1->used = 4;  // full by its count, though slot 0 is free: the pool goes by it
    void *third = ipacl_mm_alloc(pool, nullptr);
    EXPECT_EQ(third, c1->next->next->data);
    c1->used = 3;
    EXPECT_EQ(ipacl_mm_alloc(pool, nullptr), slots[0]);
    for (void *p : slots) ipacl_mm_free(pool, p, nullptr);
    ipacl_mm_free(pool, third, nullptr);
    EXPECT_EQ(pool->first, nullptr);
    free(pool);

    char err[IPACL_ERR_TEXT_SIZE];
    EXPECT_EQ(ipacl_mm_alloc(nullptr, err), nullptr);
    EXPECT_STREQ(err, "null mem desc");
    EXPECT_EQ(ipacl_mm_count(nullptr), 0u);
    ipacl_double::fail_malloc_after(1);
    EXPECT_EQ(ipacl_mm_new(4, 16), nullptr);
    ipacl_double::fail_malloc_after(0);
}

// A bitmap size lowered by the caller refuses the slots past it with the
// bit operation's text; one-byte slots take the plain division.
TEST(Pool, CallerWrittenBitmapSizeAndOneByteSlots) {
    ipacl_mm *pool = ipacl_mm_new(64, 1);
    ASSERT_NE(pool, nullptr);
    std::vector<void *> slots(41);
    for (void *&p : slots) p = ipacl_mm_alloc(pool, nullptr);
    char err[IPACL_ERR_TEXT_SIZE];
    pool->bm_size = 1;
    EXPECT_EQ(ipacl_mm_free(pool, slots[40], err), IPACL_E_FAIL);
    EXPECT_STREQ(err, "bit 40 > size 1");
    EXPECT_EQ(ipacl_mm_free(pool, slots[3], err), IPACL_OK);
    pool->bm_size = 8;
    slots.erase(slots.begin() + 3);
    for (void *p : slots) EXPECT_EQ(ipacl_mm_free(pool, p, err), IPACL_OK);
    EXPECT_EQ(pool->first, nullptr);
    free(pool);
}

// The table itself is data; what can go wrong is its edge.
TEST(MemSizes, LastTypeHasASizeAndNoneAfterIt) {
    EXPECT_EQ(ipacl_sizeof_mem(IPACL_MEM_TYPE_SYNC_INTF), 276u);
    EXPECT_EQ(ipacl_sizeof_mem_chunk(IPACL_MEM_TYPE_SYNC_INTF), 4u);
    EXPECT_EQ(ipacl_sizeof_mem(IPACL_MEM_TYPE_SYNC_INTF + 1u), 0u);
    EXPECT_EQ(ipacl_sizeof_mem_chunk(0xFFFFFFFFu), 0u);
}

TEST(MemShow, PoolDisplay) {
    EXPECT_EQ(output_of([] { ipacl_show_mm(nullptr); }), "");
    ipacl_mm *pool = ipacl_mm_new(130, 8);  // 17-byte bitmaps
    EXPECT_EQ(output_of([&] { ipacl_show_mm(pool); }), "Empty list in memory pool!\n");

    std::vector<void *> slots;
    for (int i = 0; i < 131; ++i) slots.push_back(ipacl_mm_alloc(pool, nullptr));
    ipacl_mm_free(pool, slots[8], nullptr);
    const ipacl_mm_chunk *c1 = pool->first;
    const ipacl_mm_chunk *c2 = c1->next;
    std::string want =
        "\nChunk size 130, data size 8, bitmap size 17.\n"
        "Chunk\t\t# Used\t\tUsed BitMap\n"
        "-----\t\t------\t\t-----------\n" +
        hex_addr(c1->data) + "h\t129       \t" +
        "ff fe ff ff ff ff ff ff ff ff ff ff ff ff ff ff \n\t\t\t\t03 \n" + hex_addr(c2->data) +
        "h\t1         \t" + "01 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 \n\t\t\t\t00 \n";
    EXPECT_EQ(output_of([&] { ipacl_show_mm(pool); }), want);
    for (void *p : slots)
        if (p != slots[8]) ipacl_mm_free(pool, p, nullptr);
    EXPECT_EQ(pool->first, nullptr);
    free(pool);
}

TEST(MemShow, BitmapDisplay) {
    uint8_t bm[33];
    for (int i = 0; i < 33; ++i) bm[i] = static_cast<uint8_t>(i);
    const std::string indent(24, ' ');
    EXPECT_EQ(output_of([&] {
                  ipacl_show_bm(bm, 33, "Filter Bitmap");
                  ipacl_show_bm(bm, 16, "A label longer than twenty-three");
                  ipacl_show_bm(bm, 2, nullptr);
                  ipacl_show_bm(nullptr, 2, "x");
                  ipacl_show_bm(bm, 0, "empty");
              }),
              "Filter Bitmap           "
              "00 01 02 03 04 05 06 07 08 09 0a 0b 0c 0d 0e 0f \n" +
                  indent + "10 11 12 13 14 15 16 17 18 19 1a 1b 1c 1d 1e 1f \n" + indent + "20 \n" +
                  "A label longer than twe "
                  "00 01 02 03 04 05 06 07 08 09 0a 0b 0c 0d 0e 0f \n"
                  "empty                   \n");
}

TEST(MemShow, MemoryUseTable) {
    const ipacl_mem_use rows[] = {{0, 1204, 3}, {0x123, 7, 0}};
    EXPECT_EQ(output_of([&] {
                  ipacl_show_mem_use(1, &rows[0]);
                  ipacl_show_mem_use(2, &rows[1]);
                  ipacl_show_mem_total(100003);
              }),
              "\nType            Size    # Records\n"
              "------------    ----    --------\n"
              "access list     1204    3\n"
              "123h[mem-typ    7       0\n"
              "------------    ----    --------\n"
              "                        100003\n");
}
