// Cost of the chunked pool as it grows.  Each benchmark fills a pool of
// "access data" records (290 bytes, 32 per chunk) to N live records, then
// churns: free one live record chosen at random and allocate a new one.
// Allocation and free both walk the chunk list, so their cost grows with N
// / 32; the same churn with malloc/free of 290 bytes is the baseline, and
// "per_malloc" is the pool's time per churn step divided by malloc's.
#include <benchmark/benchmark.h>
#include <ipacl/ipacl.h>

#include <cstdint>
#include <cstdlib>
#include <ctime>
#include <map>
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
    ~PoolAllocator() { free(pool); }
    void *get() { return ipacl_mm_alloc(pool, nullptr); }
    void put(void *p) { ipacl_mm_free(pool, p, nullptr); }
};

// The pool hands out zeroed slots; so does this baseline.
struct MallocAllocator {
    void *get() { return calloc(1, kRecordSize); }
    void put(void *p) { free(p); }
};

template <typename Allocator>
struct Churn {
    Allocator allocator;
    std::vector<void *> live;
    Picker picker;

    explicit Churn(size_t n) {
        live.reserve(n);
        for (size_t i = 0; i < n; ++i) live.push_back(allocator.get());
    }
    ~Churn() {
        for (void *p : live) allocator.put(p);
    }
    void step() {
        const size_t i = picker.next(live.size());
        allocator.put(live[i]);
        live[i] = allocator.get();
        benchmark::DoNotOptimize(live[i]);
    }
};

// CPU time of this thread: the machine may be shared, so wall time would
// measure the neighbours too.
double cpu_seconds() {
    timespec t{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &t);
    return static_cast<double>(t.tv_sec) + static_cast<double>(t.tv_nsec) * 1e-9;
}

// CPU seconds per malloc churn step at n live records, measured once per n.
double malloc_step_seconds(size_t n) {
    static std::map<size_t, double> measured;
    auto it = measured.find(n);
    if (it != measured.end()) return it->second;
    Churn<MallocAllocator> churn(n);
    constexpr int kSteps = 2'000'000;
    const double start = cpu_seconds();
    for (int i = 0; i < kSteps; ++i) churn.step();
    return measured[n] = (cpu_seconds() - start) / kSteps;
}

void BM_PoolChurn(benchmark::State &state) {
    const auto n = static_cast<size_t>(state.range(0));
    const double baseline = malloc_step_seconds(n);
    Churn<PoolAllocator> churn(n);
    const double start = cpu_seconds();
    for (auto _ : state) churn.step();
    const double per_step = (cpu_seconds() - start) / static_cast<double>(state.iterations());
    state.counters["chunks"] = static_cast<double>((n + kPerChunk - 1) / kPerChunk);
    state.counters["per_malloc"] = per_step / baseline;
}

void BM_MallocChurn(benchmark::State &state) {
    Churn<MallocAllocator> churn(static_cast<size_t>(state.range(0)));
    for (auto _ : state) churn.step();
}

}  // namespace

BENCHMARK(BM_PoolChurn)->Arg(1'000)->Arg(10'000)->Arg(100'000);
BENCHMARK(BM_MallocChurn)->Arg(1'000)->Arg(10'000)->Arg(100'000);

BENCHMARK_MAIN();
