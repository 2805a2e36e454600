// Applying a profile of 1,000 and 10,000 filters to the kernel through
// libipacl_netfilter, against iptables-legacy-restore of the same rules (the
// usual bulk path), alternately in the same run.  BM_ApplyVsRestore reports
// the library's time per apply (manual time), restore_ms, the restore's
// time per run (its fork and exec included, as a user pays them), and
// ratio_to_restore, the library's total over the restore's.
//
// The process enters a fresh network namespace of its own first, so the
// machine's tables are never touched; where it may not, or where the kernel
// has no x_tables for it, or iptables-legacy-restore is missing, it says so
// and exits 0.
#include <benchmark/benchmark.h>

#include <ipacl/enums.h>
#include <ipacl/netfilter.h>

#include <arpa/inet.h>
#include <fcntl.h>
#include <sched.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <cstring>
#include <map>
#include <string>
#include <vector>

namespace {

constexpr const char *interface = "mgmt0";

// Filter i: permit tcp from host 10.H.L.1 to any, destination port eq P.
ipacl_filter bench_filter(uint32_t i) {
    ipacl_filter f{};
    std::strcpy(f.prof_name, "bench");
    f.filter_index = i + 1;
    f.action = IPACL_ACTION_PERMIT;
    f.addr_type = IPACL_ADDR_TYPE_IPV4;
    f.protocol = 6;
    f.src_port_high = 65535;
    f.dst_port_op = IPACL_PORT_OP_EQ;
    f.dst_port_low = f.dst_port_high = 1 + i % 60000;
    f.icmp_type = IPACL_ICMP_TYPE_ANY;
    f.icmp_code = IPACL_ICMP_CODE_ANY;
    f.precedence = IPACL_PREC_ANY;
    f.tos = IPACL_TOS_ANY;
    f.snmp_status = IPACL_SNMP_STATUS_ACTIVE;
    f.src_addr.family = f.dst_addr.family = IPACL_ADDR_TYPE_IPV4;
    f.src_addr.prefix_len = 32;
    uint32_t host = htonl(10u << 24 | (i / 250) << 16 | (i % 250) << 8 | 1);
    std::memcpy(f.src_addr.addr, &host, 4);
    f.src_wildcard = 0;
    f.dst_wildcard = IPACL_MASK_ANY;
    return f;
}

std::string address_of(const ipacl_filter &f) {
    char text[INET_ADDRSTRLEN];
    inet_ntop(AF_INET, f.src_addr.addr, text, sizeof text);
    return text;
}

// The same rules as iptables-legacy-restore reads them: the whole filter
// table, the ACL chain, the jump to it, the filters and the implicit deny.
std::string restore_text(const std::vector<ipacl_filter> &filters) {
    std::string chain = IPACL_NF_DEFAULT_CHAIN_IN;
    std::string text =
        "*filter\n:INPUT ACCEPT [0:0]\n:FORWARD ACCEPT [0:0]\n"
        ":OUTPUT ACCEPT [0:0]\n:" +
        chain + " - [0:0]\n-A INPUT -j " + chain + "\n";
    for (const ipacl_filter &f : filters)
        text += "-A " + chain + " -s " + address_of(f) + "/32 -i " + interface +
                " -p tcp -m tcp --dport " + std::to_string(f.dst_port_low) + " -j ACCEPT\n";
    return text + "-A " + chain + " -i " + interface + " -j DROP\nCOMMIT\n";
}

// One run of iptables-legacy-restore with `text` on its stdin; its status.
int restore(const std::string &text) {
    int in[2];
    if (pipe(in) != 0) return -1;
    pid_t pid = fork();
    if (pid == 0) {
        dup2(in[0], STDIN_FILENO);
        close(in[0]);
        close(in[1]);
        execlp("iptables-legacy-restore", "iptables-legacy-restore", static_cast<char *>(nullptr));
        _exit(127);
    }
    close(in[0]);
    for (size_t done = 0; pid > 0 && done < text.size();) {
        ssize_t n = write(in[1], text.data() + done, text.size() - done);
        if (n <= 0) break;
        done += static_cast<size_t>(n);
    }
    close(in[1]);
    int status = -1;
    if (pid > 0) waitpid(pid, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

void BM_ApplyVsRestore(benchmark::State &state) {
    const auto count = static_cast<uint32_t>(state.range(0));
    std::vector<ipacl_filter> filters;
    for (uint32_t i = 0; i < count; ++i) filters.push_back(bench_filter(i));
    const std::string text = restore_text(filters);
    char err[IPACL_NF_ERR_TEXT_SIZE];
    using clock = std::chrono::steady_clock;
    double apply_s = 0, restore_s = 0;
    for (auto _ : state) {
        auto start = clock::now();
        uint32_t rc = ipacl_nf_apply(IPACL_ADDR_TYPE_IPV4, IPACL_DIR_IN, interface, filters.data(),
                                     count, err);
        double apply = std::chrono::duration<double>(clock::now() - start).count();
        if (rc != IPACL_OK) {
            state.SkipWithError(err);
            return;
        }
        start = clock::now();
        if (restore(text) != 0) {
            state.SkipWithError("iptables-legacy-restore failed");
            return;
        }
        restore_s += std::chrono::duration<double>(clock::now() - start).count();
        apply_s += apply;
        state.SetIterationTime(apply);
    }
    double runs = static_cast<double>(state.iterations());
    state.counters["restore_ms"] = restore_s * 1e3 / runs;
    state.counters["ratio_to_restore"] = apply_s / restore_s;
}
BENCHMARK(BM_ApplyVsRestore)->Arg(1000)->Arg(10000)->UseManualTime()->Unit(benchmark::kMillisecond);

// Why this process cannot run the benchmark, or "".
std::string cannot_run() {
    if (unshare(CLONE_NEWNET) != 0)
        return std::string("cannot enter a fresh network namespace: ") + std::strerror(errno);
    char err[IPACL_NF_ERR_TEXT_SIZE] = {};
    std::vector<uint8_t> rsp(ipacl_nf_rsp_size(IPACL_IPT_OP_MATCHED_CHAIN, 1));
    uint32_t rc = ipacl_nf_query(IPACL_IPT_OP_MATCHED_CHAIN, "INPUT", 0,
                                 reinterpret_cast<ipacl_ipt_rsp *>(rsp.data()),
                                 static_cast<uint32_t>(rsp.size()), err);
    if (rc != IPACL_OK) return err;
    if (restore("*filter\nCOMMIT\n") != 0)
        return "iptables-legacy-restore (Debian package iptables) did not run";
    return "";
}

}  // namespace

int main(int argc, char **argv) {
    std::string why = cannot_run();
    if (!why.empty()) {
        std::printf("netfilter_bench: skipped: %s\n", why.c_str());
        return 0;
    }
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
