// Long random runs of allocations and frees (double, foreign, unaligned and
// NULL ones too, and allocations whose chunk cannot be made), each step
// checked against a plain model of the pool that walks its own copy of the
// chunk list: the pointer or code returned, the error text, and every
// chunk's identity, slot area, `used` and bitmap, in list order.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <random>
#include <string>
#include <vector>

#include <ipacl/ipacl.h>

#include "mm/pool_index.h"
#include "platform_double.h"

#if defined(__SANITIZE_ADDRESS__)
#include <sanitizer/lsan_interface.h>
#endif

namespace {

struct ModelChunk {
    const ipacl_mm_chunk *chunk;
    uintptr_t data;
    uint32_t used;
    std::vector<uint8_t> bitmap;
};

std::string text(const char *format, const void *a, const void *b = nullptr) {
    char out[128];
    snprintf(out, sizeof out, format, a, b);
    return out;
}

// The pool as described: first fit over the list, lowest clear bit, at most
// one emptied chunk (the first empty one in list order) released per free.
// Reads the descriptor's geometry at every step, as the pool does.
struct Model {
    const ipacl_mm &pool;
    std::vector<ModelChunk> chunks;

    uintptr_t area() const { return uintptr_t{pool.count} * pool.slot_size; }

    // The first chunk with room, or -1 when a chunk must be made.
    int chunk_with_room() const {
        for (size_t i = 0; i < chunks.size(); ++i)
            if (chunks[i].used < pool.count) return static_cast<int>(i);
        return -1;
    }

    // Lowest clear bit of chunk i taken; 0 when there is none, or when it
    // lies past `count` (given back).
    uintptr_t take(size_t i) {
        ModelChunk &c = chunks[i];
        for (uint32_t bit = 0; bit < pool.bm_size * 8; ++bit) {
            uint8_t &byte = c.bitmap[bit / 8];
            if (byte & (1u << (bit % 8))) continue;
            if (bit >= pool.count) return 0;
            byte = static_cast<uint8_t>(byte | (1u << (bit % 8)));
            ++c.used;
            return c.data + uintptr_t{bit} * pool.slot_size;
        }
        return 0;
    }

    // A free of `at`: the result code, with the expected text in *err.
    ipacl_rc free(uintptr_t at, std::string *err) {
        *err = "";
        for (ModelChunk &c : chunks) {
            if (at < c.data || at - c.data >= area()) continue;
            if ((at - c.data) % pool.slot_size) {
                *err = text("data %p not aligned", reinterpret_cast<void *>(at));
                continue;
            }
            const uintptr_t slot = (at - c.data) / pool.slot_size;
            c.bitmap[slot / 8] = static_cast<uint8_t>(c.bitmap[slot / 8] & ~(1u << (slot % 8)));
            --c.used;
            auto empty = std::find_if(chunks.begin(), chunks.end(),
                                      [](const ModelChunk &m) { return m.used == 0; });
            if (empty != chunks.end()) chunks.erase(empty);
            return IPACL_OK;
        }
        return IPACL_E_FAIL;
    }

    bool holds(uintptr_t at) const {
        return std::any_of(chunks.begin(), chunks.end(), [&](const ModelChunk &c) {
            return at >= c.data && at - c.data < area();
        });
    }
};

void expect_same_list(const ipacl_mm &pool, const Model &model, int step) {
    size_t i = 0;
    uint32_t total = 0;
    for (const ipacl_mm_chunk *c = pool.first; c; c = c->next, ++i) {
        ASSERT_LT(i, model.chunks.size()) << "step " << step;
        const ModelChunk &m = model.chunks[i];
        ASSERT_EQ(c, m.chunk) << "step " << step << " chunk " << i;
        ASSERT_EQ(reinterpret_cast<uintptr_t>(c->data), m.data) << "step " << step;
        ASSERT_EQ(c->used, m.used) << "step " << step << " chunk " << i;
        ASSERT_TRUE(std::equal(m.bitmap.begin(), m.bitmap.end(), c->bitmap)) << "step " << step;
        total += c->used;
    }
    ASSERT_EQ(i, model.chunks.size()) << "step " << step;
    ASSERT_EQ(ipacl_mm_count(&pool), total);
}

bool all_zero(uintptr_t at, size_t n) {
    const auto *b = reinterpret_cast<const uint8_t *>(at);
    return std::all_of(b, b + n, [](uint8_t v) { return v == 0; });
}

struct Script {
    uint32_t count, slot_size, seed;
    int steps;
    int shrink_count_at;  // step at which the caller lowers `count`; -1 never
};

class PoolModel : public testing::TestWithParam<Script> {
  protected:
    void alloc_step(int step);
    void free_step(int step, uintptr_t at);
    uintptr_t pick_pointer();
    void empty_the_pool();

    std::mt19937 rng{GetParam().seed};
    ipacl_mm *pool = ipacl_mm_new(GetParam().count, GetParam().slot_size);
    Model model{*pool, {}};
    std::vector<uintptr_t> live;      // handed out and not freed since
    std::vector<uintptr_t> released;  // freed lately: for double frees
    char err[IPACL_ERR_TEXT_SIZE] = "";
};

void PoolModel::alloc_step(int step) {
    const int room = model.chunk_with_room();
    // When a chunk must be made, sometimes one of its three allocations fails;
    // otherwise count them.
    const uint32_t failing = room < 0 && rng() % 4 == 0 ? 1 + rng() % 3 : 0;
#if defined(__SANITIZE_ADDRESS__)
    if (failing) __lsan_disable();  // the half-made chunk is abandoned
#endif
    ipacl_double::fail_malloc_after(failing ? failing : 1000);
    strcpy(err, "stale");
    void *got = ipacl_mm_alloc(pool, err);
    const uint32_t mallocs = ipacl_double::malloc_calls();
    ipacl_double::fail_malloc_after(0);
#if defined(__SANITIZE_ADDRESS__)
    if (failing) __lsan_enable();
#endif
    static const char *const kNoMem[] = {"no mem for data", "no mem for bitmap",
                                         "no mem for mem chunk"};
    if (failing) {
        ASSERT_EQ(got, nullptr) << "step " << step;
        ASSERT_STREQ(err, kNoMem[failing - 1]) << "step " << step;
        return;
    }
    ASSERT_STREQ(err, "") << "step " << step;
    ASSERT_EQ(mallocs, room < 0 ? 3u : 0u) << "step " << step;
    size_t at = static_cast<size_t>(room);
    if (room < 0) {  // the new chunk is the last one
        const ipacl_mm_chunk *last = pool->first;
        while (last && last->next) last = last->next;
        ASSERT_NE(last, nullptr);
        ASSERT_TRUE(model.chunks.empty() || model.chunks.back().chunk != last) << "step " << step;
        model.chunks.push_back({last, reinterpret_cast<uintptr_t>(last->data), 0,
                                std::vector<uint8_t>(pool->bm_size)});
        at = model.chunks.size() - 1;
    }
    const uintptr_t want = model.take(at);
    ASSERT_EQ(reinterpret_cast<uintptr_t>(got), want) << "step " << step;
    if (!got) return;
    ASSERT_TRUE(all_zero(want, pool->slot_size)) << "step " << step;
    memset(got, 0xA5, pool->slot_size);
    live.push_back(want);
}

void PoolModel::free_step(int step, uintptr_t at) {
    std::string want_err;
    const ipacl_rc want = model.free(at, &want_err);
    strcpy(err, "stale");
    ASSERT_EQ(ipacl_mm_free(pool, reinterpret_cast<void *>(at), err), want) << "step " << step;
    ASSERT_EQ(err, want_err) << "step " << step;
    if (want == IPACL_OK && model.holds(at)) {
        ASSERT_TRUE(all_zero(at, pool->slot_size)) << "step " << step;
    }
}

// A pointer to free: mostly a live one, else one freed before, one inside
// a slot, one just outside a slot area, or a foreign one.
uintptr_t PoolModel::pick_pointer() {
    static const int foreign = 0;
    const uint32_t kind = rng() % 32;
    if (kind == 0 || live.empty()) return reinterpret_cast<uintptr_t>(&foreign);
    if (kind == 1 && !released.empty()) return released[rng() % released.size()];
    if (kind == 2) return live[rng() % live.size()] + 1 + rng() % pool->slot_size;
    if (kind == 3 && !model.chunks.empty()) {
        const ModelChunk &c = model.chunks[rng() % model.chunks.size()];
        return rng() % 2 ? c.data - 1 : c.data + model.area();
    }
    const size_t k = rng() % live.size();
    const uintptr_t p = live[k];
    live[k] = live.back();
    live.pop_back();
    if (released.size() < 64)
        released.push_back(p);
    else
        released[rng() % released.size()] = p;
    return p;
}

// Frees whatever the model has in use, then takes apart by hand what
// double frees left unreachable (a `used` counted below zero).
void PoolModel::empty_the_pool() {
    for (bool freed = true; freed && !model.chunks.empty();) {
        freed = false;
        const ModelChunk &c = model.chunks.front();
        for (uint32_t slot = 0; slot < pool->count && !freed; ++slot)
            if (c.bitmap[slot / 8] & (1u << (slot % 8))) {
                free_step(0, c.data + uintptr_t{slot} * pool->slot_size);
                freed = true;
            }
    }
    for (ipacl_mm_chunk *c = pool->first; c;) {
        ipacl_mm_chunk *next = c->next;
        free(c->data);
        free(c->bitmap);
        free(c);
        c = next;
    }
    free(pool);
}

TEST_P(PoolModel, EveryStepAsTheListWalkSays) {
    ASSERT_NE(pool, nullptr);
    const Script &script = GetParam();
    bool walking = false;  // the index given up after a change of geometry
    for (int step = 0; step < script.steps && !HasFatalFailure(); ++step) {
        if (step == script.shrink_count_at) {
            pool->count -= 1;  // a caller's own change
            walking = pool->first != nullptr;
        }
        // Waves: grow to a few hundred records, then drain to nothing.
        const bool growing = (step / 3000) % 2 == 0;
        const uint32_t roll = rng() % 100;
        if (roll < 2) {
            ipacl_mm *to = roll ? pool : nullptr;
            void *data = roll ? nullptr : pool;
            ASSERT_EQ(ipacl_mm_free(to, data, err), IPACL_E_BAD_ARG) << "step " << step;
            ASSERT_EQ(err, text("bad mem desc %p data %p", to, data)) << "step " << step;
        } else if (roll < (growing ? 60u : 35u)) {
            alloc_step(step);
        } else {
            free_step(step, pick_pointer());
        }
        if (HasFatalFailure()) break;
        expect_same_list(*pool, model, step);
        // The walk would give the same answers; the index must not have
        // been dropped on the way unless the geometry changed.
        walking = walking && pool->first;
        ASSERT_EQ(ipacl::mm::index_of(*pool) != nullptr, pool->first && !walking)
            << "step " << step;
    }
    empty_the_pool();
}

INSTANTIATE_TEST_SUITE_P(
    Geometries, PoolModel,
    testing::Values(Script{4, 16, 1, 24000, -1},    // the small-record chunks
                    Script{32, 12, 2, 24000, -1},   // full bitmap bytes
                    Script{13, 8, 3, 24000, 9000},  // spare bitmap bits; `count` lowered
                    Script{1, 3, 4, 12000, -1},     // one odd-sized slot per chunk
                    Script{0, 8, 5, 2000, -1}));    // chunks that can hold nothing

}  // namespace
