// Cost of accepting a valid filter and of ordering two names, against the
// cost of formatting one short error message: a valid record should be
// checked faster than a single message can be written.  Each benchmark
// reports "per_snprintf", its CPU time per iteration divided by that of one
// snprintf of a short message (measured once, in CPU time, at start-up).
#include <benchmark/benchmark.h>
#include <ipacl/ipacl.h>

#include <time.h>

#include <cstdio>
#include <cstring>

#include "sample_records.h"

namespace {

// The sample filter with the wildcards and port range of a management list.
ipacl_filter valid_filter() {
    ipacl_filter f = ipacl_sample::filter();
    std::strcpy(f.prof_name, "mgmtAcl12");
    f.src_wildcard = 0x000000FF;
    f.src_port_low = 1024, f.src_port_high = 65535, f.src_port_op = IPACL_PORT_OP_GT;
    f.dst_port_low = 22, f.dst_port_high = 22;
    return f;
}

// One short message, as a check formats it.
int format_message(char *err, const char *value) {
    return snprintf(err, IPACL_ERR_TEXT_SIZE, "bad protocol %s", value);
}

double cpu_ns() {
    timespec t;
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &t);
    return static_cast<double>(t.tv_sec) * 1e9 + static_cast<double>(t.tv_nsec);
}

double snprintf_ns() {
    static const double ns = [] {
        char err[IPACL_ERR_TEXT_SIZE];
        const char *volatile value = "300";
        constexpr int kRounds = 4000000;
        for (int i = 0; i < kRounds / 10; ++i) benchmark::DoNotOptimize(format_message(err, value));
        double start = cpu_ns();
        for (int i = 0; i < kRounds; ++i) {
            benchmark::DoNotOptimize(format_message(err, value));
            benchmark::ClobberMemory();
        }
        return (cpu_ns() - start) / kRounds;
    }();
    return ns;
}

void report_ratio(benchmark::State &state) {
    // Time per iteration over the snprintf time, both in nanoseconds.
    state.counters["per_snprintf"] =
        benchmark::Counter(static_cast<double>(state.iterations()) * snprintf_ns() * 1e-9,
                           benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}

void BM_snprintf_short_message(benchmark::State &state) {
    char err[IPACL_ERR_TEXT_SIZE];
    const char *volatile value = "300";
    for (auto _ : state) {
        benchmark::DoNotOptimize(format_message(err, value));
        benchmark::ClobberMemory();
    }
    report_ratio(state);
}
BENCHMARK(BM_snprintf_short_message);

void BM_chk_quen_filter(benchmark::State &state) {
    ipacl_filter f = valid_filter();
    char err[IPACL_ERR_TEXT_SIZE];
    for (auto _ : state) {
        benchmark::DoNotOptimize(ipacl_chk_quen_filter(&f, err));
        benchmark::ClobberMemory();
    }
    report_ratio(state);
}
BENCHMARK(BM_chk_quen_filter);

void BM_chk_quen_filter_no_buffer(benchmark::State &state) {
    ipacl_filter f = valid_filter();
    for (auto _ : state) benchmark::DoNotOptimize(ipacl_chk_quen_filter(&f, nullptr));
    report_ratio(state);
}
BENCHMARK(BM_chk_quen_filter_no_buffer);

// Names of equal length that differ only in case and in their last letter:
// the slowest path short of all-digit names.
void BM_cmp_name(benchmark::State &state) {
    const char *volatile a = "MgmtAccessList01a";
    const char *volatile b = "mgmtaccesslist01b";
    for (auto _ : state) benchmark::DoNotOptimize(ipacl_cmp_name(a, b));
    report_ratio(state);
}
BENCHMARK(BM_cmp_name);

void BM_cmp_name_digits(benchmark::State &state) {
    const char *volatile a = "20240101";
    const char *volatile b = "20240102";
    for (auto _ : state) benchmark::DoNotOptimize(ipacl_cmp_name(a, b));
    report_ratio(state);
}
BENCHMARK(BM_cmp_name_digits);

}  // namespace

BENCHMARK_MAIN();
