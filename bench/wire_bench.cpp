// Cost of host-to-network conversion against a plain copy of the same
// bytes: 1,000 filters one by one, and one filter response holding 1,000
// filters.  Each iteration times the conversion and the copy back to back
// on the thread's CPU clock (so time spent descheduled on a busy machine
// does not count); the reported time is the conversion's, `copy` the
// copy's, and `ratio` conversion time over copy time.
#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstring>
#include <ctime>
#include <vector>

#include <ipacl/ipacl.h>

namespace {

constexpr size_t kFilters = 1000;

ipacl_filter make_filter(uint32_t i) {
    ipacl_filter f;
    std::memset(&f, 0, sizeof f);
    std::snprintf(f.prof_name, sizeof f.prof_name, "acl-%u", i % 64);
    f.filter_index = i;
    f.action = 1 + i % 2;
    f.addr_type = 1;
    f.protocol = 6;
    f.src_port_low = 1024 + i;
    f.src_port_high = 65535;
    f.dst_port_op = 4;
    f.packets = 1000ull * i;
    f.bytes = 64000ull * i;
    f.src_addr.family = 1;
    f.src_addr.prefix_len = 24;
    f.dst_addr.family = 1;
    f.dst_addr.prefix_len = 32;
    return f;
}

double thread_seconds() {
    timespec ts;
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &ts);
    return double(ts.tv_sec) + double(ts.tv_nsec) * 1e-9;
}

template <class Convert, class Copy>
void run(benchmark::State &state, size_t bytes, Convert convert, Copy copy) {
    double convert_s = 0, copy_s = 0;
    for (auto _ : state) {
        double t0 = thread_seconds();
        convert();
        double t1 = thread_seconds();
        copy();
        double t2 = thread_seconds();
        convert_s += t1 - t0;
        copy_s += t2 - t1;
        state.SetIterationTime(t1 - t0);
    }
    state.SetBytesProcessed(int64_t(state.iterations() * bytes));
    state.counters["copy"] = benchmark::Counter(copy_s, benchmark::Counter::kAvgIterations);
    state.counters["ratio"] = convert_s / copy_s;
}

void BM_HtonFilter(benchmark::State &state) {
    std::vector<ipacl_filter> src(kFilters), dst(kFilters), copy(kFilters);
    for (uint32_t i = 0; i < kFilters; ++i) src[i] = make_filter(i);
    run(
        state, kFilters * sizeof(ipacl_filter),
        [&] {
            for (size_t i = 0; i < kFilters; ++i) ipacl_hton_filter(&src[i], &dst[i]);
            benchmark::DoNotOptimize(dst.data());
            benchmark::ClobberMemory();
        },
        [&] {
            std::memcpy(copy.data(), src.data(), kFilters * sizeof(ipacl_filter));
            benchmark::DoNotOptimize(copy.data());
            benchmark::ClobberMemory();
        });
}
BENCHMARK(BM_HtonFilter)->UseManualTime();

void BM_HtonFilterRsp(benchmark::State &state) {
    const size_t size = sizeof(ipacl_filter_rsp) + kFilters * sizeof(ipacl_filter);
    std::vector<uint8_t> src(size), dst(size), copy(size);
    auto *rsp = reinterpret_cast<ipacl_filter_rsp *>(src.data());
    rsp->count = kFilters;
    for (uint32_t i = 0; i < kFilters; ++i) {
        ipacl_filter f = make_filter(i);
        std::memcpy(&src[sizeof(ipacl_filter_rsp) + i * sizeof f], &f, sizeof f);
    }
    run(
        state, size,
        [&] {
            ipacl_hton_filter_rsp(rsp, reinterpret_cast<ipacl_filter_rsp *>(dst.data()));
            benchmark::DoNotOptimize(dst.data());
            benchmark::ClobberMemory();
        },
        [&] {
            std::memcpy(copy.data(), src.data(), size);
            benchmark::DoNotOptimize(copy.data());
            benchmark::ClobberMemory();
        });
}
BENCHMARK(BM_HtonFilterRsp)->UseManualTime();

}  // namespace

BENCHMARK_MAIN();
