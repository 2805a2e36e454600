// Bitmaps and masks: bit numbering, the generous range rule, the searches
// (one of which allocates), and the mask conversions with their stored
// length on failure and the spare byte they write.
#include <gtest/gtest.h>

#include <cstring>
#include <vector>

#include <ipacl/ipacl.h>

namespace {

using Bytes = std::vector<uint8_t>;

Bytes bytes(const uint8_t *p, size_t n) { return Bytes(p, p + n); }

}  // namespace

TEST(Bm, SingleBitsAndTheRangeRule) {
    uint8_t bm[4] = {};  // size 2, plus the byte the range rule lets in
    char err[IPACL_ERR_TEXT_SIZE] = "old";
    EXPECT_EQ(ipacl_bm_set(bm, 2, 9, err), IPACL_OK);  // bit 9 is value 2 of byte 1
    EXPECT_EQ(bytes(bm, 4), (Bytes{0, 2, 0, 0}));
    EXPECT_STREQ(err, "");
    EXPECT_EQ(ipacl_bm_set(bm, 2, 23, err), IPACL_OK);
    EXPECT_EQ(ipacl_bm_is_set(bm, 2, 9, err), 1u);
    EXPECT_EQ(ipacl_bm_is_clr(bm, 2, 23, err), 0u);

    EXPECT_EQ(ipacl_bm_set(bm, 2, 24, err), IPACL_E_BAD_ARG);
    EXPECT_STREQ(err, "bit 24 > size 2");
    EXPECT_EQ(bm[3], 0);
    EXPECT_EQ(ipacl_bm_clr(bm, 2, 0xFFFFFFFFu, err), IPACL_E_BAD_ARG);
    EXPECT_STREQ(err, "bit 4294967295 > size 2");
    // Out of range counts as clear, and the clear test's text reads "ibt".
    EXPECT_EQ(ipacl_bm_is_set(bm, 2, 24, err), 0u);
    EXPECT_STREQ(err, "bit 24 > size 2");
    EXPECT_EQ(ipacl_bm_is_clr(bm, 2, 1000, err), 1u);
    EXPECT_STREQ(err, "ibt 1000 > size 2");
    EXPECT_EQ(ipacl_bm_set(bm, 2, 24, nullptr), IPACL_E_BAD_ARG);
    EXPECT_EQ(ipacl_bm_clr(nullptr, 2, 0, err), IPACL_E_BAD_ARG);  // no bitmap: no text
    EXPECT_STREQ(err, "");

    // An unchanged bit leaves the bitmap and the previous message alone.
    strcpy(err, "earlier");
    EXPECT_EQ(ipacl_bm_set(bm, 2, 9, err), IPACL_OK);
    EXPECT_EQ(ipacl_bm_clr(bm, 2, 10, err), IPACL_OK);
    EXPECT_STREQ(err, "earlier");
    EXPECT_EQ(ipacl_bm_clr(bm, 2, 9, err), IPACL_OK);
    EXPECT_STREQ(err, "");
    EXPECT_EQ(bytes(bm, 4), (Bytes{0, 0, 0x80, 0}));
    ipacl_bm_init(bm, 3);
    EXPECT_EQ(bm[2], 0);
}

TEST(Bm, Searches) {
    uint8_t bm[3] = {0x00, 0x01, 0x00};  // only bit 8
    uint32_t bit = 77;
    EXPECT_EQ(ipacl_bm_next_set(bm, 3, 8, &bit), IPACL_OK);  // start is eligible
    EXPECT_EQ(bit, 8u);
    bit = 77;
    EXPECT_EQ(ipacl_bm_next_set(bm, 3, 9, &bit), IPACL_E_FAIL);
    EXPECT_EQ(bit, 0u);

    // The clear-bit search takes what it finds: 0, 1, 2, ... then nothing.
    uint8_t empty[2] = {};
    for (uint32_t want = 0; want < 16; ++want) {
        ASSERT_EQ(ipacl_bm_next_clr(empty, 2, 0, &bit), IPACL_OK);
        EXPECT_EQ(bit, want);
    }
    bit = 77;
    EXPECT_EQ(ipacl_bm_next_clr(empty, 2, 0, &bit), IPACL_E_FAIL);
    EXPECT_EQ(bit, 0u);
    uint8_t holes[2] = {0xFF, 0xB5};  // clear: 9, 11, 14
    EXPECT_EQ(ipacl_bm_next_clr(holes, 2, 10, &bit), IPACL_OK);
    EXPECT_EQ(bit, 11u);
    EXPECT_EQ(holes[1], 0xBD);
}

TEST(Bm, CountCompareAndCombine) {
    const uint8_t old_bm[3] = {0x0F, 0xF0, 0x81};
    const uint8_t new_bm[3] = {0x3C, 0xF0, 0x00};
    EXPECT_EQ(ipacl_bm_count(old_bm, 3), 10u);
    EXPECT_EQ(ipacl_bm_is_same(old_bm, new_bm, 0), 1u);
    EXPECT_EQ(ipacl_bm_is_same(old_bm + 1, new_bm + 1, 1), 1u);
    EXPECT_EQ(ipacl_bm_is_same(old_bm, new_bm, 3), 0u);

    uint8_t out[3];
    EXPECT_EQ(ipacl_bm_or(old_bm, new_bm, 3, out), IPACL_OK);
    EXPECT_EQ(bytes(out, 3), (Bytes{0x3F, 0xF0, 0x81}));
    EXPECT_EQ(ipacl_bm_to_set(old_bm, new_bm, 3, out), IPACL_OK);
    EXPECT_EQ(bytes(out, 3), (Bytes{0x30, 0x00, 0x00}));
    EXPECT_EQ(ipacl_bm_to_clr(old_bm, new_bm, 3, out), IPACL_OK);
    EXPECT_EQ(bytes(out, 3), (Bytes{0x03, 0x00, 0x81}));
    uint8_t a[2] = {0x0F, 0x01}, b[2] = {0x3C, 0x03};  // output aliasing an input
    EXPECT_EQ(ipacl_bm_to_set(a, b, 2, b), IPACL_OK);
    EXPECT_EQ(bytes(b, 2), (Bytes{0x30, 0x02}));
}

TEST(Bm, MaskToLen) {
    struct Case {
        Bytes mask;
        uint32_t inverse;
        ipacl_rc rc;
        uint32_t len;  // stored even when the mask is refused
    };
    const Case cases[] = {
        {{0x00, 0x00, 0x00, 0xFF}, 1, IPACL_OK, 24},
        {{0xFF, 0xFF, 0xFF, 0xFF}, 1, IPACL_OK, 0},
        {{0xFF, 0xFF, 0xF0, 0x00}, 0, IPACL_OK, 20},
        {Bytes(16, 0xFF), 0, IPACL_OK, 128},
        {{0xFF, 0xE4, 0x00, 0x00}, 0, IPACL_E_FAIL, 11},  // 1110 0100
        {{0x00, 0x1B, 0xFF, 0xFF}, 1, IPACL_E_FAIL, 11},  // 0001 1011
        {{0xFF, 0xFF, 0xFF, 0x00}, 1, IPACL_E_FAIL, 0},
        {Bytes(17, 0xFF), 0, IPACL_E_FAIL, 0},
        {{}, 0, IPACL_E_FAIL, 0},
    };
    for (const Case &c : cases) {
        uint32_t len = 99;
        const uint8_t dummy = 0;
        const uint8_t *mask = c.mask.empty() ? &dummy : c.mask.data();
        EXPECT_EQ(ipacl_bm_mask_to_len(mask, static_cast<uint32_t>(c.mask.size()), &len, c.inverse),
                  c.rc);
        EXPECT_EQ(len, c.len) << c.mask.size() << " bytes, inverse " << c.inverse;
    }
}

TEST(Bm, LenToMaskWritesTheSpareByte) {
    struct Case {
        uint32_t len, inverse;
        Bytes mask;  // the 4 bytes and the spare one behind them
    };
    const Case cases[] = {
        {20, 0, {0xFF, 0xFF, 0xF0, 0x00, 0xAA}}, {20, 1, {0x00, 0x00, 0x0F, 0xFF, 0xAA}},
        {0, 0, {0x00, 0x00, 0x00, 0x00, 0xAA}},  {32, 0, {0xFF, 0xFF, 0xFF, 0xFF, 0x00}},
        {32, 1, {0x00, 0x00, 0x00, 0x00, 0xFF}},
    };
    for (const Case &c : cases) {
        uint8_t mask[5];
        memset(mask, 0xAA, sizeof mask);
        EXPECT_EQ(ipacl_bm_len_to_mask(mask, 4, c.len, c.inverse), IPACL_OK);
        EXPECT_EQ(bytes(mask, 5), c.mask) << c.len << " inverse " << c.inverse;
    }
    uint8_t mask[5];
    memset(mask, 0xAA, sizeof mask);
    EXPECT_EQ(ipacl_bm_len_to_mask(mask, 4, 33, 0), IPACL_E_FAIL);
    EXPECT_EQ(ipacl_bm_len_to_mask(mask, 0, 0, 0), IPACL_E_FAIL);
    EXPECT_EQ(bytes(mask, 5), Bytes(5, 0xAA));

    uint8_t v6[17];
    uint32_t len = 0;
    EXPECT_EQ(ipacl_bm_len_to_mask(v6, 16, 65, 0), IPACL_OK);
    EXPECT_EQ(ipacl_bm_mask_to_len(v6, 16, &len, 0), IPACL_OK);
    EXPECT_EQ(len, 65u);
}
