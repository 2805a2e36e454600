// Cost of the chunked pool as it grows, against malloc/free in the same run.
// Every figure uses "access data" records (290 bytes, 32 per chunk).
//
// BM_Churn/N: N live records; a step frees one live record chosen at random
// and allocates a new one.  BM_Bulk/N: load N records into an empty pool,
// then free them all in random order.
//
// The pool and the baseline run interleaved, in blocks, on the same
// sequence of picks, so a busy machine slows both alike.  Counters: ns per
// operation of each, and the pool's time divided by the baseline's
// ("per_malloc", "load_per_malloc", "free_per_malloc").
//
// Zeroing: every side hands out all-zero records.  The pool zeroes a slot
// when it is freed (new chunks come zeroed), so the baseline the ratios
// are taken against does the same work in the same phase: malloc to
// allocate, memset then free to free.  That is one zeroing per record's
// life, as with calloc/free, but counted where the pool counts its own:
// with calloc the baseline's zeroing would fall in the bulk load and the
// pool's in the bulk free, flattering the one ratio and burdening the
// other.  It is also the stricter baseline: this C library's calloc takes
// a slower path than malloc for blocks of this size.  Plain calloc/free is
// reported as well: "per_calloc" for the churn, "life_per_calloc" for the
// load and free of BM_Bulk together.
#include <benchmark/benchmark.h>
#include <ipacl/ipacl.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <vector>

namespace {

const uint32_t kRecordSize = ipacl_sizeof_mem(IPACL_MEM_TYPE_ACCESS_DATA);
const uint32_t kPerChunk = ipacl_sizeof_mem_chunk(IPACL_MEM_TYPE_ACCESS_DATA);

// Deterministic picks, the same sequence for the pool and for malloc.
struct Picker {
    uint64_t state = 0x9E3779B97F4A7C15u;
    size_t next(size_t bound) {
        state ^= state << 13;
        state ^= state >> 7;
        state ^= state << 17;
        return static_cast<size_t>(state % bound);
    }
};

struct PoolAllocator {
    ipacl_mm *pool = ipacl_mm_new(kPerChunk, kRecordSize);
    PoolAllocator() = default;
    PoolAllocator(const PoolAllocator &) = delete;
    PoolAllocator &operator=(const PoolAllocator &) = delete;
    ~PoolAllocator() { free(pool); }
    void *get() { return ipacl_mm_alloc(pool, nullptr); }
    void put(void *p) { ipacl_mm_free(pool, p, nullptr); }
};

struct MallocAllocator {
    static void *get() { return malloc(kRecordSize); }
    static void put(void *p) {
        memset(p, 0, kRecordSize);
        benchmark::DoNotOptimize(p);  // the zeroing is not to be dropped before free
        free(p);
    }
};

struct CallocAllocator {
    static void *get() { return calloc(1, kRecordSize); }
    static void put(void *p) { free(p); }
};

// CPU time of this thread: the machine may be shared, so wall time would
// measure the neighbours too.
double cpu_seconds() {
    timespec t{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &t);
    return static_cast<double>(t.tv_sec) + static_cast<double>(t.tv_nsec) * 1e-9;
}

template <typename Allocator>
struct Churn {
    Allocator allocator;
    std::vector<void *> live;
    Picker picker;

    explicit Churn(size_t n) {
        live.reserve(n);
        for (size_t i = 0; i < n; ++i) live.push_back(allocator.get());
    }
    Churn(const Churn &) = delete;
    Churn &operator=(const Churn &) = delete;
    ~Churn() {
        for (void *p : live) allocator.put(p);
    }
    // CPU seconds of `steps` steps.
    double run(int steps) {
        const double start = cpu_seconds();
        for (int i = 0; i < steps; ++i) {
            const size_t k = picker.next(live.size());
            allocator.put(live[k]);
            live[k] = allocator.get();
            benchmark::DoNotOptimize(live[k]);
        }
        return cpu_seconds() - start;
    }
};

void BM_Churn(benchmark::State &state) {
    constexpr int kBlock = 1024;
    const auto n = static_cast<size_t>(state.range(0));
    Churn<MallocAllocator> baseline(n);
    Churn<CallocAllocator> plain(n);
    Churn<PoolAllocator> pool(n);
    double malloc_s = 0;
    double calloc_s = 0;
    double pool_s = 0;
    for (auto _ : state) {
        malloc_s += baseline.run(kBlock);
        calloc_s += plain.run(kBlock);
        pool_s += pool.run(kBlock);
    }
    const double steps = static_cast<double>(state.iterations()) * kBlock;
    state.counters["chunks"] = static_cast<double>((n + kPerChunk - 1) / kPerChunk);
    state.counters["pool_ns"] = pool_s / steps * 1e9;
    state.counters["malloc_ns"] = malloc_s / steps * 1e9;
    state.counters["per_malloc"] = pool_s / malloc_s;
    state.counters["per_calloc"] = pool_s / calloc_s;
}

// CPU seconds to load n records and to free them again in `order`.
template <typename Allocator>
void load_and_free(Allocator &allocator, std::vector<void *> &slots,
                   const std::vector<size_t> &order, double *load_s, double *free_s) {
    double start = cpu_seconds();
    for (void *&slot : slots) slot = allocator.get();
    benchmark::DoNotOptimize(slots.data());
    *load_s += cpu_seconds() - start;
    start = cpu_seconds();
    for (size_t k : order) allocator.put(slots[k]);
    *free_s += cpu_seconds() - start;
}

void BM_Bulk(benchmark::State &state) {
    const auto n = static_cast<size_t>(state.range(0));
    std::vector<size_t> order(n);
    for (size_t i = 0; i < n; ++i) order[i] = i;
    Picker picker;
    for (size_t i = n; i > 1; --i) std::swap(order[i - 1], order[picker.next(i)]);
    std::vector<void *> slots(n);
    MallocAllocator baseline;
    CallocAllocator plain;
    PoolAllocator pool;
    double malloc_load = 0, malloc_free = 0, pool_load = 0, pool_free = 0;
    double calloc_load = 0, calloc_free = 0;
    for (auto _ : state) {
        load_and_free(baseline, slots, order, &malloc_load, &malloc_free);
        load_and_free(plain, slots, order, &calloc_load, &calloc_free);
        load_and_free(pool, slots, order, &pool_load, &pool_free);
    }
    const double ops = static_cast<double>(state.iterations()) * static_cast<double>(n);
    state.counters["pool_load_ns"] = pool_load / ops * 1e9;
    state.counters["pool_free_ns"] = pool_free / ops * 1e9;
    state.counters["malloc_load_ns"] = malloc_load / ops * 1e9;
    state.counters["malloc_free_ns"] = malloc_free / ops * 1e9;
    state.counters["load_per_malloc"] = pool_load / malloc_load;
    state.counters["free_per_malloc"] = pool_free / malloc_free;
    state.counters["life_per_calloc"] = (pool_load + pool_free) / (calloc_load + calloc_free);
}

}  // namespace

BENCHMARK(BM_Churn)->RangeMultiplier(10)->Range(1'000, 1'000'000);
BENCHMARK(BM_Bulk)->RangeMultiplier(10)->Range(1'000, 1'000'000);

BENCHMARK_MAIN();
