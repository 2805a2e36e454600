// Element sizes of the typed messages and the stored-record sizes.
#include <gtest/gtest.h>

#include <cstring>

#include <ipacl/ipacl.h>

namespace {

TEST(WireSizes, TypedMessageElements) {
    const uint32_t access[] = {0, 290, 148, 80, 160, 92, 16, 40, 32, 1204, 76, 32, 0};
    for (uint32_t type = 0; type < 13; ++type)
        EXPECT_EQ(ipacl_sizeof_access(type), access[type]) << type;
    EXPECT_EQ(ipacl_sizeof_access(0xFFFFFFFF), 0u);

    EXPECT_EQ(ipacl_sizeof_in(0), 0u);
    EXPECT_EQ(ipacl_sizeof_in(1), 24u);
    EXPECT_EQ(ipacl_sizeof_in(2), 12u);
    EXPECT_EQ(ipacl_sizeof_in(3), 0u);

    // By the exact value, unlike the response converter's flag bits.
    EXPECT_EQ(ipacl_sizeof_ipt(1), 74u);
    EXPECT_EQ(ipacl_sizeof_ipt(2), 74u);
    EXPECT_EQ(ipacl_sizeof_ipt(16), 146u);
    EXPECT_EQ(ipacl_sizeof_ipt(32), 290u);
    for (uint32_t op : {0u, 3u, 48u, 256u, 512u}) EXPECT_EQ(ipacl_sizeof_ipt(op), 0u) << op;

    // The log info is sized under 13, not 10.
    const uint32_t match[] = {0, 12, 10, 4, 0, 0, 0, 0, 0, 2, 0, 0, 0, 32, 0};
    for (uint32_t type = 0; type < 15; ++type)
        EXPECT_EQ(ipacl_sizeof_ipt_match(type), match[type]) << type;
}

TEST(WireSizes, StoredRecords) {
    const uint32_t keys[] = {0, 76, 80, 16, 0};
    const uint32_t values[] = {0, 100, 258, 104, 0};
    for (uint32_t type = 0; type < 5; ++type) {
        EXPECT_EQ(ipacl_sizeof_kest_key(type), keys[type]) << type;
        EXPECT_EQ(ipacl_sizeof_kest_val(type), values[type]) << type;
    }
}

TEST(WireSizes, StoredValueCheck) {
    char err[IPACL_ERR_TEXT_SIZE];
    struct Case {
        uint32_t type, size, rc;
        const char *msg;
    } cases[] = {
        {1, 99, IPACL_E_BAD_ARG, "type list bad size 99"},
        {1, 100, IPACL_OK, ""},
        {2, 195, IPACL_E_BAD_ARG, "type data bad size 195"},
        {2, 196, IPACL_OK, ""},  // below the 258-byte value, and accepted
        {3, 103, IPACL_E_BAD_ARG, "type group bad size 103"},
        {3, 0xFFFFFFFF, IPACL_OK, ""},
        {4, 1000, IPACL_E_BAD_ARG, "bad type 4"},
        {0, 0, IPACL_E_BAD_ARG, "bad type 0"},
    };
    for (const Case &c : cases) {
        std::strcpy(err, "stale");
        EXPECT_EQ(ipacl_sizeof_kest_chk(c.type, c.size, err), c.rc) << c.type << " " << c.size;
        EXPECT_STREQ(err, c.msg);
        EXPECT_EQ(ipacl_sizeof_kest_chk(c.type, c.size, nullptr), c.rc);
    }
}

}  // namespace
