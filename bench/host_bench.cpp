// One request and its answer through the wrappers and the host platform,
// against a raw Unix-socket ping-pong of the same bytes between two
// processes: the platform's price per round trip.
//
// A round trip between two processes costs mostly the scheduler's two
// wake-ups, and what those cost depends on where the two processes sit: on
// one CPU each is a plain switch; on two, each is a cross-CPU wake-up,
// several times dearer on an idle virtual machine.  Left alone, the
// scheduler does not place a raw pair and a manager pair alike (nor one
// pair alike from run to run), so unpinned figures compare placements, not
// transports.  BM_RoundTrip therefore pins every process (the client here,
// the raw echo server and the manager) to the same CPUs for both kinds:
// cross_cpu:0 puts client and server on one CPU, cross_cpu:1 on two.  It
// runs blocks of raw and wrapped round trips in turn, so both see the same
// load, and reports per round trip the wall time (raw_us, wrap_us,
// ratio_to_raw) and the CPU time both processes spent (cpu_ratio_to_raw,
// from /proc/<pid>/schedstat).  BM_QuenReqRsp is the enveloped exchange,
// unpinned, for its own trend.
#include <benchmark/benchmark.h>

#include <chrono>
#include <sched.h>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <ipacl/ipacl.h>

#include "ipacl_host.h"
#include "platform/vel.h"

namespace {

// The bytes of a filter configuration (count, word, one filter) and of its
// confirmation (count, word, one confirmation element).
constexpr uint32_t kRequestSize = sizeof(ipacl_filter_cfg) + sizeof(ipacl_filter);
constexpr uint32_t kAnswerSize = sizeof(ipacl_filter_cfm) + sizeof(ipacl_cfm);

// CPU time a process has run, in nanoseconds (scheduler statistics).
double cpu_ns(pid_t pid) {
    std::string path = "/proc/" + (pid ? std::to_string(pid) : std::string("self")) + "/schedstat";
    FILE *f = fopen(path.c_str(), "r");
    unsigned long long ns = 0;
    if (f) {
        if (fscanf(f, "%llu", &ns) != 1) ns = 0;
        fclose(f);
    }
    return static_cast<double>(ns);
}

pid_t raw_server = 0, manager = 0;

std::vector<pid_t> &children() {
    static std::vector<pid_t> pids;
    return pids;
}

void stop_children() {
    for (pid_t pid : children()) {
        kill(pid, SIGKILL);
        waitpid(pid, nullptr, 0);
    }
}

pid_t fork_child() {
    if (children().empty()) atexit(stop_children);
    pid_t pid = fork();
    if (pid > 0) children().push_back(pid);
    return pid;
}

// ----------------------------------------------------------------- raw --

int raw_client_fd() {
    static int fd = -1;
    if (fd >= 0) return fd;
    int pair[2];
    if (socketpair(AF_UNIX, SOCK_SEQPACKET, 0, pair) != 0) abort();
    if ((raw_server = fork_child()) == 0) {
        close(pair[0]);
        uint8_t in[kRequestSize + 64], out[kAnswerSize] = {};
        while (recv(pair[1], in, sizeof in, 0) > 0)
            if (send(pair[1], out, sizeof out, 0) < 0) break;
        _exit(0);
    }
    close(pair[1]);
    return fd = pair[0];
}

// CPU time of both ends of the exchange.
double both_cpu_ns(pid_t server) { return cpu_ns(0) + cpu_ns(server); }

// ------------------------------------------------------- host platform --

// A manager that answers every request (plain or enveloped) with a
// confirmation of kAnswerSize bytes.
uint32_t client_handle() {
    static uint32_t handle = 0;
    if (handle) return handle;
    char dir[] = "/tmp/ipacl-host-bench-XXXXXX";
    if (!mkdtemp(dir)) abort();
    setenv("IPACL_HOST_DIR", dir, 1);
    int ready[2];
    if (pipe(ready) != 0) abort();
    if ((manager = fork_child()) == 0) {
        uint32_t h;
        if (ipacl_host_open(IPACL_HOST_SERVICE_ACL, 0, &h) != 0) _exit(1);
        (void)!write(ready[1], "r", 1);
        uint8_t answer[kAnswerSize] = {};
        char err[IPACL_ERR_TEXT_SIZE];
        for (;;) {
            uint8_t area[IPACL_HOST_HANDLE_AREA];
            if (ipacl_host_accept(h, area, 60000) != 0) _exit(0);
            ipacl_host_msg_info info;
            ipacl_host_msg_info_get(area, &info);
            uint32_t token = vel_rr_token_get(area);
            if (info.opcode == 2)
                ipacl_wrap_quen_rsp(h, token, answer, sizeof answer, err);
            else
                ipacl_wrap_vel_rsp(h, token, answer, sizeof answer, err);
            vel_drop(h, area);
        }
    }
    char byte;
    if (read(ready[0], &byte, 1) != 1) abort();
    if (ipacl_host_open(0, 0, &handle) != 0) abort();
    return handle;
}

// ------------------------------------------------------------- pinning --

// The CPUs this process may run on, in order.
std::vector<int> usable_cpus() {
    cpu_set_t set;
    CPU_ZERO(&set);
    std::vector<int> cpus;
    if (sched_getaffinity(0, sizeof set, &set) == 0)
        for (int cpu = 0; cpu < CPU_SETSIZE; ++cpu)
            if (CPU_ISSET(cpu, &set)) cpus.push_back(cpu);
    return cpus;
}

bool pin(pid_t pid, int cpu) {
    cpu_set_t set;
    CPU_ZERO(&set);
    CPU_SET(cpu, &set);
    return sched_setaffinity(pid, sizeof set, &set) == 0;
}

void unpin(pid_t pid, const std::vector<int> &cpus) {
    cpu_set_t set;
    CPU_ZERO(&set);
    for (int cpu : cpus) CPU_SET(cpu, &set);
    sched_setaffinity(pid, sizeof set, &set);
}

// ---------------------------------------------------------- round trips --

enum Placement { kSameCpu = 0, kCrossCpu = 1 };

void raw_round_trip(benchmark::State &state, int fd) {
    uint8_t request[kRequestSize] = {}, answer[kAnswerSize + 64];
    if (send(fd, request, sizeof request, 0) < 0) state.SkipWithError("send");
    if (recv(fd, answer, sizeof answer, 0) != ssize_t(kAnswerSize)) state.SkipWithError("recv");
}

void wrapped_round_trip(benchmark::State &state, uint32_t h) {
    uint8_t request[kRequestSize] = {};
    char err[IPACL_ERR_TEXT_SIZE];
    ipacl_vel_msg req{}, rsp{};
    req.opcode = 1;
    req.payload = request;
    req.size = sizeof request;
    if (ipacl_wrap_vel_req_rsp(h, &req, &rsp, err) != 0 || rsp.size != kAnswerSize)
        state.SkipWithError(err);
    vel_drop(h, rsp.handle);
}

// Blocks of raw and wrapped round trips in turn, every process pinned as
// the placement says.
void BM_RoundTrip(benchmark::State &state) {
    constexpr int kBlock = 500;
    const std::vector<int> cpus = usable_cpus();
    const bool cross = state.range(0) == kCrossCpu;
    if (cpus.empty() || (cross && cpus.size() < 2)) {
        state.SkipWithError("not enough CPUs for this placement");
        return;
    }
    const int fd = raw_client_fd();
    const uint32_t h = client_handle();
    const int client_cpu = cpus[0], server_cpu = cpus[cross ? 1 : 0];
    if (!pin(0, client_cpu) || !pin(raw_server, server_cpu) || !pin(manager, server_cpu)) {
        state.SkipWithError("sched_setaffinity refused");
        return;
    }
    for (int i = 0; i < kBlock; ++i) raw_round_trip(state, fd), wrapped_round_trip(state, h);
    using clock = std::chrono::steady_clock;
    clock::duration raw{}, wrapped{};
    double raw_cpu = 0, wrapped_cpu = 0;
    for (auto _ : state) {
        double c0 = both_cpu_ns(raw_server);
        auto t0 = clock::now();
        for (int i = 0; i < kBlock; ++i) raw_round_trip(state, fd);
        auto t1 = clock::now();
        double c1 = both_cpu_ns(raw_server), c2 = both_cpu_ns(manager);
        for (int i = 0; i < kBlock; ++i) wrapped_round_trip(state, h);
        auto t2 = clock::now();
        wrapped_cpu += both_cpu_ns(manager) - c2;
        raw_cpu += c1 - c0;
        raw += t1 - t0;
        wrapped += t2 - t1;
    }
    for (pid_t pid : {pid_t(0), raw_server, manager}) unpin(pid, cpus);
    double trips = static_cast<double>(state.iterations()) * kBlock;
    state.counters["raw_us"] = std::chrono::duration<double, std::micro>(raw).count() / trips;
    state.counters["wrap_us"] = std::chrono::duration<double, std::micro>(wrapped).count() / trips;
    state.counters["ratio_to_raw"] =
        static_cast<double>(wrapped.count()) / static_cast<double>(raw.count());
    state.counters["cpu_ratio_to_raw"] = wrapped_cpu / raw_cpu;
}
BENCHMARK(BM_RoundTrip)
    ->ArgName("cross_cpu")
    ->Arg(kSameCpu)
    ->Arg(kCrossCpu)
    ->UseRealTime()
    ->MinTime(1.0);

void BM_QuenReqRsp(benchmark::State &state) {
    uint32_t h = client_handle();
    uint8_t request[kRequestSize] = {};
    char err[IPACL_ERR_TEXT_SIZE];
    for (auto _ : state) {
        ipacl_quen_desc req{};
        ipacl_vel_msg rsp{};
        req.opcode = 2;
        req.payload = request;
        req.size = sizeof request;
        req.text1 = "web";
        if (ipacl_wrap_quen_req_rsp(h, &req, &rsp, err) != 0 || rsp.size != kAnswerSize)
            state.SkipWithError(err);
        vel_drop(h, rsp.handle);
    }
}
BENCHMARK(BM_QuenReqRsp)->UseRealTime();

}  // namespace

BENCHMARK_MAIN();
