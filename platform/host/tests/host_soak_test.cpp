// One manager, eight well-behaved clients of a thousand requests each, run
// alone, then beside a hostile client that forges answers, announces the
// largest messages and sends none, asks for a large answer it never reads and
// opens connections until the manager has no descriptor left.  Every answer
// must carry its own bytes, memory stay within the caps, and nothing hang.
#include <gtest/gtest.h>

#include <chrono>
#include <poll.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <unistd.h>
#include <vector>

#include "host_test_support.h"

namespace {

using namespace host_test;

constexpr uint32_t kClients = 8, kRequests = 1000;

// A client: one warm-up request, then, once `go` gives it a byte, the rest.
int well_behaved(uint32_t c, int ready_fd, int go_fd) {
    uint32_t h;
    if (ipacl_host_open(0, 0, &h) != 0 || echo_once(h, c) != 0) return 30;
    if (write(ready_fd, "r", 1) != 1) return 31;
    char byte;
    (void)!read(go_fd, &byte, 1);
    for (uint32_t i = 0; i < kRequests; ++i)
        if (echo_once(h, c << 16 | i) != 0) return 32;
    ipacl_host_close(h);
    return 0;
}

// Rounds of every attack until `stop` closes; writes to `armed` after the
// first round.
int hostile(const std::string &path, int stop_fd, int armed_fd) {
    // A 1 MiB answer asked for and never read, until its deadline passes.
    int slow = raw_connect(path);
    if (slow < 0 || !send_request(slow, 1u << 20, 1u << 20)) return 2;
    std::vector<int> announced;
    for (uint32_t round = 0;; ++round) {
        pollfd stop{stop_fd, POLLIN, 0};
        if (poll(&stop, 1, 0) == 1) break;
        // Answers to every token it can guess.
        if (int fd = raw_connect(path, SOCK_NONBLOCK); fd >= 0) {
            for (uint32_t token = 1; token <= 64; ++token)
                send_frame(fd, frame(ipacl_host::kAnswer, token, 0, 0));
            close(fd);
        }
        // The largest messages, announced and never sent.
        for (int fd : announced) close(fd);
        announced.clear();
        for (int i = 0; i < 20; ++i)
            if (int fd = raw_connect(path, SOCK_NONBLOCK); fd >= 0) {
                send_frame(fd, frame(ipacl_host::kRequest, 1, IPACL_HOST_MAX_PAYLOAD, 0));
                announced.push_back(fd);
            }
        // Connections until the manager runs out of descriptors.
        std::vector<int> flood;
        for (int fd; flood.size() < 200 && (fd = raw_connect(path, SOCK_NONBLOCK)) >= 0;)
            flood.push_back(fd);
        usleep(50 * 1000);
        for (int fd : flood) close(fd);
        if (round == 0 && write(armed_fd, "a", 1) != 1) return 1;
    }
    for (int fd : announced) close(fd);
    close(slow);
    return 0;
}

// Runs the eight clients once; `armed` (when given) starts after they are
// connected and before they begin.  Returns the seconds the run took.
double run_clients(const std::function<void()> &armed) {
    int ready[2], go[2];
    if (pipe(ready) != 0 || pipe(go) != 0) return -1;
    std::vector<pid_t> clients;
    for (uint32_t c = 0; c < kClients; ++c)
        clients.push_back(spawn([&, c] {
            close(go[1]);
            return well_behaved(c, ready[1], go[0]);
        }));
    close(ready[1]);
    close(go[0]);
    char byte;
    for (uint32_t c = 0; c < kClients; ++c) EXPECT_EQ(read(ready[0], &byte, 1), 1);
    close(ready[0]);
    if (armed) armed();
    auto started = std::chrono::steady_clock::now();
    // One byte each rather than closing: `armed` may have forked a holder.
    const std::string bytes(kClients, 'g');
    EXPECT_EQ(write(go[1], bytes.data(), bytes.size()), ssize_t(kClients));
    close(go[1]);
    for (pid_t pid : clients) EXPECT_EQ(wait_child(pid, 120000), 0);
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - started).count();
}

TEST(HostSoak, EightClientsBesideAHostileOne) {
    EndpointDir dir;
    pid_t manager = start_manager([](uint32_t h) {
        // Room for the eight clients and a few more: the flood finds the end.
        rlim_t files = rlim_t(open_descriptors()) + kClients + 12;
        rlimit limit{files, files};
        if (setrlimit(RLIMIT_NOFILE, &limit) != 0) return 30;
        return echo_manager(h, ~0u, 60000);
    });
    ASSERT_GT(manager, 0);
    const long rss_start = proc_status_kb(manager, "VmRSS");
    const double alone = run_clients(nullptr);

    int stop[2];
    ASSERT_EQ(pipe(stop), 0);
    pid_t attacker = -1;
    const double beside = run_clients([&] {
        attacker = spawn_ready([&](int armed) {
            close(stop[1]);
            return hostile(dir.socket("svc-98"), stop[0], armed);
        });
        close(stop[0]);
    });

    // Let the unread answer's deadline pass, then call off the attack.
    uint32_t client;
    ASSERT_EQ(ipacl_host_open(0, 0, &client), 0);
    for (int i = 0; i < 100 && ask_stats(client).send_timeouts == 0; ++i) usleep(100 * 1000);
    close(stop[1]);
    EXPECT_EQ(wait_child(attacker, 30000), 0);
    const ipacl_host_stats stats = ask_stats(client);
    const long hwm = proc_status_kb(manager, "VmHWM");
    EXPECT_TRUE(stop_manager(client));
    EXPECT_EQ(wait_child(manager, 30000), 0);
    ipacl_host_close(client);

    EXPECT_GT(stats.forged_answers, 0u);
    EXPECT_GT(stats.over_limit, 0u);
    EXPECT_GT(stats.descriptor_shortages, 0u);
    EXPECT_GT(stats.send_timeouts, 0u);
    printf("soak: %u answers alone in %.2f s, beside the hostile client in %.2f s\n",
           kClients * kRequests, alone, beside);
    printf("soak: manager RSS at start %ld KiB, peak %ld KiB\n", rss_start, hwm);
#if !defined(__SANITIZE_ADDRESS__)
    EXPECT_LT(hwm - rss_start, long(IPACL_HOST_MAX_BUFFERED / 1024));
#endif
}

}  // namespace
