// Sync buffers (sizes, zero fill, minimums, allocation failure) and the
// successors of profile, binding and filter keys, quirks included.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <string>

#include <ipacl/ipacl.h>

#include "platform_double.h"

namespace {

bool all_zero(const void *p, size_t n) {
    const auto *b = static_cast<const uint8_t *>(p);
    return std::all_of(b, b + n, [](uint8_t v) { return v == 0; });
}

// Calls `make` with the output preset to a sentinel, so that an output left
// untouched shows.
template <typename T, typename Make>
T *made(Make make, uint32_t arg, ipacl_rc *rc) {
    T *out = reinterpret_cast<T *>(uintptr_t{0x1});
    *rc = make(arg, &out);
    return out;
}

std::string next_prof(const char *name) {
    ipacl_prof_key key{};
    strcpy(key.name, name);
    if (ipacl_next_prof(&key) != IPACL_OK) return "FAIL(" + std::string(key.name) + ")";
    return key.name;
}

}  // namespace

TEST(SyncExt, BuffersGrowByItemAndHaveAMinimum) {
    ipacl_rc rc = 1;
    auto *p = made<ipacl_prof_sync_op>(ipacl_new_prof_sync_op_ext, 3, &rc);
    ASSERT_EQ(rc, IPACL_OK);
    EXPECT_TRUE(all_zero(p, 92 + 3 * 72));
    ipacl_free_prof_sync_op_ext(p);
    auto *i = made<ipacl_if_prof_sync_op>(ipacl_new_if_prof_sync_op_ext, 2, &rc);
    ASSERT_EQ(rc, IPACL_OK);
    EXPECT_TRUE(all_zero(i, 96 + 2 * 84));
    ipacl_free_if_prof_sync_op_ext(i);
    ipacl_double::fail_malloc_after(1);
    EXPECT_EQ(made<ipacl_filter_sync_op>(ipacl_new_filter_sync_op_ext, 5, &rc), nullptr);
    EXPECT_EQ(rc, IPACL_E_NO_MEM);

    const auto sentinel = reinterpret_cast<ipacl_prof_sync *>(uintptr_t{0x1});
    EXPECT_EQ(made<ipacl_prof_sync>(ipacl_new_prof_sync_ext, 87, &rc), sentinel);
    EXPECT_EQ(rc, IPACL_E_BAD_ARG);
    ipacl_free_prof_sync_ext(made<ipacl_prof_sync>(ipacl_new_prof_sync_ext, 88, &rc));
    EXPECT_EQ(rc, IPACL_OK);
    made<ipacl_if_prof_sync>(ipacl_new_if_prof_sync_ext, 91, &rc);
    EXPECT_EQ(rc, IPACL_E_BAD_ARG);
    made<ipacl_filter_sync>(ipacl_new_filter_sync_ext, 245, &rc);
    EXPECT_EQ(rc, IPACL_E_BAD_ARG);
    auto *f = made<ipacl_filter_sync>(ipacl_new_filter_sync_ext, 300, &rc);
    ASSERT_EQ(rc, IPACL_OK);
    EXPECT_TRUE(all_zero(f, 300));
    ipacl_free_filter_sync_ext(f);
    ipacl_double::fail_malloc_after(1);
    EXPECT_EQ(made<ipacl_filter_sync>(ipacl_new_filter_sync_ext, 246, &rc), nullptr);
    EXPECT_EQ(rc, IPACL_E_NO_MEM);
    ipacl_free_filter_sync_op_ext(nullptr);  // NULL is accepted
    ipacl_free_if_prof_sync_ext(nullptr);
}

TEST(Next, BindingAndFilterKeys) {
    const struct {
        ipacl_if_prof_key from, to;
        ipacl_rc rc;
    } cases[] = {{{5, 1}, {5, 2}, IPACL_OK},
                 {{5, 2}, {6, 1}, IPACL_OK},
                 {{0xFFFFFFFFu, 2}, {0xFFFFFFFFu, 2}, IPACL_E_FAIL}};
    for (const auto &c : cases) {
        ipacl_if_prof_key k = c.from;
        EXPECT_EQ(ipacl_next_if_prof(&k), c.rc) << c.from.if_index << "/" << c.from.direction;
        EXPECT_EQ(k.if_index, c.to.if_index);
        EXPECT_EQ(k.direction, c.to.direction);
    }

    // The index steps first, then the name; "4294967295" has no successor.
    ipacl_filter_key k{};
    strcpy(k.prof_name, "10");
    k.filter_index = 0xFFFFFFFEu;
    EXPECT_EQ(ipacl_next_filter(&k), IPACL_OK);
    EXPECT_EQ(k.filter_index, 0xFFFFFFFFu);
    EXPECT_EQ(ipacl_next_filter(&k), IPACL_OK);
    EXPECT_STREQ(k.prof_name, "11");
    EXPECT_EQ(k.filter_index, 0u);
    strcpy(k.prof_name, "4294967295");
    k.filter_index = 0xFFFFFFFFu;
    EXPECT_EQ(ipacl_next_filter(&k), IPACL_E_FAIL);
    EXPECT_STREQ(k.prof_name, "4294967295");
    EXPECT_EQ(k.filter_index, 0xFFFFFFFFu);
}

TEST(Next, NamesStepOneCharacterOrByValue) {
    // Control characters rise to a blank, 0xFF wraps to the first printable;
    // all-digit names step by value (wrapping to 0 first past 32 bits), and
    // the empty name reads as the number 0.
    const char *const steps[] = {
        "abc",        "bbc",       "~bc", "~cc", "\037a", " a", "\377a",      " a",
        "~~~",        "FAIL(~~~)", "99",  "100", "007",   "8",  "4294967295", "FAIL(4294967295)",
        "4294967296", "1",         "1a",  "2a",  "",      "1"};
    for (size_t i = 0; i < std::size(steps); i += 2)
        EXPECT_EQ(next_prof(steps[i]), steps[i + 1]) << steps[i];

    ipacl_prof_key unterminated;
    memset(unterminated.name, 'a', sizeof unterminated.name);
    EXPECT_EQ(ipacl_next_prof(&unterminated), IPACL_E_FAIL);
    EXPECT_EQ(unterminated.name[0], 'a');
}
