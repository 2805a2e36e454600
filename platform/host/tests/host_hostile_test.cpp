// A client of the same user who means harm: forged answers, sizes announced
// and never sent, a reader that stops, a flood of connections, a race for a
// name, a directory taken or swapped, an endless module name.  Each attack
// on a connection runs from a separate process, as an attacker would run it.
#include <gtest/gtest.h>

#include <array>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <sched.h>
#include <sys/file.h>
#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

#include <ipacl/ipacl.h>

#include "host_test_support.h"
#include "platform/tivra.h"
#include "platform/vel.h"

namespace {

using namespace host_test;
using ipacl_host::FrameHeader;
using ipacl_host::kMaxChunk;
using Area = std::array<uint8_t, IPACL_HOST_HANDLE_AREA>;

#if defined(__SANITIZE_ADDRESS__)
constexpr bool kSanitized = true;  // address-space limits and RSS mean nothing here
#else
constexpr bool kSanitized = false;
#endif

// The manager's counters after an attack, which it must have survived.
ipacl_host_stats stop_after_attack(uint32_t client, pid_t manager) {
    ipacl_host_stats stats = ask_stats(client);
    EXPECT_TRUE(stop_manager(client));
    EXPECT_EQ(wait_child(manager), 0) << "the manager must survive the attack";
    ipacl_host_close(client);
    return stats;
}

TEST(HostHostile, ForgedAnswersAreDroppedAndPushNothingOut) {
    EndpointDir dir;
    uint32_t manager, standby;
    ASSERT_EQ(ipacl_host_open(98, 0, &manager), 0);
    ASSERT_EQ(ipacl_host_open(98, IPACL_HOST_STANDBY, &standby), 0);
    char err[IPACL_ERR_TEXT_SIZE];
    const char *texts[2] = {"real one", "real two"};
    uint32_t tokens[2];
    for (int i = 0; i < 2; ++i) {
        ipacl_vel_msg msg{};
        msg.payload = const_cast<char *>(texts[i]);
        msg.size = 9;
        Area rr;
        ASSERT_EQ(ipacl_wrap_vel_standby(manager, rr.data(), &msg, err), 0u) << err;
        tokens[i] = vel_rr_token_get(rr.data());
    }
    ASSERT_EQ(echo_manager(standby, 2, 1000), 0);  // the standby answers both at once
    // Someone connects to the manager and answers every token it can guess.
    pid_t forger = spawn([&] {
        int fd = raw_connect(dir.socket("svc-98"));
        if (fd < 0) return 1;
        for (uint32_t n = 0; n < 100; ++n) {
            uint32_t token = n < 2 ? tokens[n] : n;
            if (!send_frame(fd, frame(ipacl_host::kAnswer, token, 6, 6), "forged")) break;
        }
        return hung_up(fd, 5000) ? 0 : 2;  // cut off for answering unasked
    });
    // The manager's loop meets the forgeries while nothing else comes.
    Area area;
    EXPECT_NE(ipacl_host_accept(manager, area.data(), 1000), 0);
    EXPECT_EQ(wait_child(forger), 0);
    // The real answers, awaited in the other order, are both there.
    for (int i : {1, 0}) {
        uint32_t options[10] = {1, 0, 5, tokens[i]};
        ASSERT_EQ(vel_recv(manager, area.data(), options), 0) << strerror(errno);
        ASSERT_EQ(vel_payload_size(area.data()), 9u);
        EXPECT_STREQ(static_cast<const char *>(vel_payload_get(area.data())), texts[i]);
        vel_drop(manager, area.data());
    }
    ipacl_host_stats stats;
    ASSERT_EQ(ipacl_host_stats_get(manager, &stats), 0);
    EXPECT_GE(stats.forged_answers, 1u);
    EXPECT_EQ(stats.protocol_errors, stats.forged_answers);
    ipacl_host_close(standby);
    ipacl_host_close(manager);
}

// An echo manager whose address space is limited to what it uses at start
// plus `headroom` bytes (not under the sanitizers, which reserve more than
// any limit).  *binds tells whether an allocation of `probe` bytes then
// fails: under an emulator the limit binds the emulator, not this program.
pid_t start_limited_manager(rlim_t headroom, size_t probe, bool *binds) {
    char said = 'n';
    pid_t pid = spawn_ready(
        [&](int ready) {
            uint32_t h;
            if (ipacl_host_open(IPACL_HOST_SERVICE_ACL, 0, &h) != 0) return 10;
            rlim_t size = rlim_t(proc_status_kb(getpid(), "VmSize")) * 1024;
            rlimit as{size + headroom, size + headroom};
            if (!kSanitized && setrlimit(RLIMIT_AS, &as) != 0) return 30;
            void *block = probe ? malloc(probe) : nullptr;
            free(block);
            if (write(ready, block ? "n" : "r", 1) != 1) return 31;
            close(ready);
            return echo_manager(h, ~0u, 30000);
        },
        &said);
    *binds = said == 'r';
    return pid;
}

TEST(HostHostile, MemoryFollowsBytesNotAnnouncements) {
    EndpointDir dir;
    // Room for the caps, not for what the announcements claim.
    bool binds;
    pid_t manager = start_limited_manager(2 * rlim_t(IPACL_HOST_MAX_BUFFERED), 0, &binds);
    ASSERT_GT(manager, 0);
    uint32_t client;
    ASSERT_EQ(ipacl_host_open(0, 0, &client), 0);
    ASSERT_EQ(echo_once(client, 1), 0u);  // connected before the attack
    const long rss_before = proc_status_kb(manager, "VmRSS");

    pid_t attacker = spawn([&] {
        std::vector<int> fds;
        // Real bytes: six connections each sending all but the last frame of
        // the largest message; then a hundred first frames announcing it,
        // header only; then more connections than any endpoint keeps.
        for (int i = 0; i < 106 + int(IPACL_HOST_MAX_CONNECTIONS) + 20; ++i) {
            int fd = raw_connect(dir.socket("svc-98"));
            if (fd < 0 && i < 106) return 1;
            if (fd < 0) continue;
            fds.push_back(fd);
            FrameHeader announce = frame(ipacl_host::kRequest, 1, IPACL_HOST_MAX_PAYLOAD, 0);
            if (i < 6)
                send_request(fd, IPACL_HOST_MAX_PAYLOAD, IPACL_HOST_MAX_PAYLOAD - kMaxChunk);
            else if (i < 106 && !send_frame(fd, announce))
                return 1;
        }
        sleep(1);
        for (int fd : fds) close(fd);
        return 0;
    });
    EXPECT_EQ(wait_child(attacker, 60000), 0);
    EXPECT_EQ(echo_once(client, 2), 0u);  // the modest client kept its connection
    const long hwm = proc_status_kb(manager, "VmHWM");
    EXPECT_GE(stop_after_attack(client, manager).over_limit, 100u - IPACL_HOST_MAX_PARTIAL);
    if (kSanitized) return;  // peak memory means nothing under the sanitizers
    // The caps bound what is kept; the allocator may hold one more message.
    EXPECT_LT(hwm - rss_before,
              long((IPACL_HOST_MAX_BUFFERED + IPACL_HOST_MAX_PAYLOAD) / 1024) + 8 * 1024);
}

TEST(HostHostile, RunningOutOfMemoryCostsOnlyThatConnection) {
    if (kSanitized) GTEST_SKIP() << "the sanitizers reserve more address space than any limit";
    EndpointDir dir;
    // Too little address space left for the largest message.
    bool binds;
    pid_t manager =
        start_limited_manager(IPACL_HOST_MAX_PAYLOAD / 2, IPACL_HOST_MAX_PAYLOAD, &binds);
    ASSERT_GT(manager, 0);
    uint32_t client;
    ASSERT_EQ(ipacl_host_open(0, 0, &client), 0);
    if (binds) {
        ASSERT_EQ(echo_once(client, 1), 0u);
        pid_t attacker = spawn([&] {
            int fd = raw_connect(dir.socket("svc-98"));
            if (!send_request(fd, IPACL_HOST_MAX_PAYLOAD, IPACL_HOST_MAX_PAYLOAD)) return 0;
            return hung_up(fd, 10000) ? 0 : 1;
        });
        EXPECT_EQ(wait_child(attacker, 30000), 0);
        EXPECT_EQ(echo_once(client, 2), 0u);
    }
    EXPECT_GE(stop_after_attack(client, manager).over_limit, binds ? 1u : 0u);
    if (!binds) GTEST_SKIP() << "the address-space limit does not bind here (an emulator?)";
}

TEST(HostHostile, AReaderThatStopsStallsNobody) {
    EndpointDir dir;
    pid_t manager = start_manager([](uint32_t h) { return echo_manager(h, ~0u, 30000); });
    ASSERT_GT(manager, 0);
    // Asks for a large answer, then reads a frame now and then.
    pid_t slow = spawn_ready([&](int asked) {
        int fd = raw_connect(dir.socket("svc-98"));
        if (fd < 0 || !send_request(fd, 4u << 20, 4u << 20)) return 2;
        if (write(asked, "a", 1) != 1) return 3;
        static char frame_bytes[kMaxChunk + 64];
        for (int i = 0; i < 30; ++i) {
            usleep(400 * 1000);
            if (recv(fd, frame_bytes, sizeof frame_bytes, 0) <= 0) return 0;  // cut off
        }
        return 4;
    });
    ASSERT_GT(slow, 0);
    // Meanwhile another client is served as usual, within a short limit.
    uint32_t client;
    ASSERT_EQ(ipacl_host_open(0, 0, &client), 0);
    ASSERT_EQ(ipacl_host_set_wait_unit(client, 200), 0);  // limit 10: 2 s
    for (uint32_t i = 0; i < 20; ++i) EXPECT_EQ(echo_once(client, i), 0u) << i;
    EXPECT_EQ(wait_child(slow, 40000), 0);
    EXPECT_EQ(stop_after_attack(client, manager).send_timeouts, 1u);
}

TEST(HostHostile, NoDescriptorLeftDoesNotSpin) {
    EndpointDir dir;
    pid_t manager = start_manager([](uint32_t h) {
        rlim_t files = rlim_t(open_descriptors() + 6);
        rlimit limit{files, files};
        if (setrlimit(RLIMIT_NOFILE, &limit) != 0) return 30;
        return echo_manager(h, ~0u, 30000);
    });
    ASSERT_GT(manager, 0);
    int release[2];
    ASSERT_EQ(pipe(release), 0);
    pid_t flooder = spawn([&] {
        close(release[1]);
        std::vector<int> fds;
        for (int i = 0; i < 40; ++i)
            if (int fd = raw_connect(dir.socket("svc-98")); fd >= 0) fds.push_back(fd);
        char byte;
        (void)!read(release[0], &byte, 1);
        for (int fd : fds) close(fd);
        return fds.size() == 40 ? 0 : 1;
    });
    close(release[0]);
    // With its descriptors gone the manager must rest, not spin.
    usleep(300 * 1000);
    const long before = cpu_ticks(manager);
    usleep(1500 * 1000);
    const long used = cpu_ticks(manager) - before;
    EXPECT_LT(used, sysconf(_SC_CLK_TCK) / 2) << "ticks used in 1.5 s of waiting";
    close(release[1]);
    EXPECT_EQ(wait_child(flooder), 0);

    // With the flood gone, a new client is served again.
    uint32_t client;
    ASSERT_EQ(ipacl_host_open(0, 0, &client), 0);
    uint32_t rc = 1;
    for (int attempt = 0; attempt < 50 && rc != 0; ++attempt)
        if ((rc = echo_once(client, 7)) != 0) usleep(50 * 1000);
    EXPECT_EQ(rc, 0u);
    EXPECT_GT(stop_after_attack(client, manager).descriptor_shortages, 0u);
}

TEST(HostHostile, OnlyOneOpenerWinsAName) {
    EndpointDir dir;
    // An opener caught between bind and listen: its socket refuses
    // connections, yet the name is taken while it holds the lock.
    int lock = open(dir.socket("svc-98.lock").c_str(), O_RDWR | O_CREAT, 0600);
    ASSERT_EQ(flock(lock, LOCK_EX), 0);
    int bound = bind_socket(dir.socket("svc-98"));
    ASSERT_GE(bound, 0);
    uint32_t h;
    EXPECT_NE(ipacl_host_open(98, 0, &h), 0);
    EXPECT_EQ(errno, EADDRINUSE);
    close(bound);
    close(lock);
    // Its owner gone, the name is free: the stale socket is replaced.
    ASSERT_EQ(ipacl_host_open(98, 0, &h), 0) << strerror(errno);
    ipacl_host_close(h);

    // Openers racing for the name: exactly one wins, and holds it until
    // every other opener has tried.
    int start[2], won[2], end[2];
    ASSERT_TRUE(pipe(start) == 0 && pipe(won) == 0 && pipe(end) == 0);
    std::vector<pid_t> openers;
    for (int i = 0; i < 6; ++i)
        openers.push_back(spawn([&] {
            for (int fd : {start[1], won[0], end[1]}) close(fd);
            char byte;
            (void)!read(start[0], &byte, 1);  // all go at once
            uint32_t mine;
            if (ipacl_host_open(98, 0, &mine) != 0) return errno == EADDRINUSE ? 0 : 1;
            bool told = write(won[1], "w", 1) == 1;
            close(won[1]);
            (void)!read(end[0], &byte, 1);
            return told && ipacl_host_close(mine) == 0 ? 0 : 2;
        }));
    for (int fd : {start[0], start[1], won[1], end[0]}) close(fd);
    std::string winners;
    char bytes[8];
    for (ssize_t n; (n = read(won[0], bytes, sizeof bytes)) > 0;) winners.append(bytes, size_t(n));
    EXPECT_EQ(winners, "w");
    int fd = raw_connect(dir.socket("svc-98"));
    EXPECT_GE(fd, 0) << "the winner is unreachable";
    close(fd);
    close(won[0]);
    close(end[1]);
    for (pid_t pid : openers) EXPECT_EQ(wait_child(pid, 10000), 0);
}

// Another user took /tmp/ipacl-<euid> and the runtime directory is open to
// all: endpoints fall back to ~/.ipacl, and keep using the directory they
// checked after it is swapped.  Runs in a mount namespace of its own with a
// fresh /tmp, so the machine's /tmp is never touched.
TEST(HostHostile, TheDirectoryIsCheckedOnceAndHeld) {
    if (geteuid() != 0) GTEST_SKIP() << "needs root for a private mount namespace";
    pid_t child = spawn([] {
        if (unshare(CLONE_NEWNS) != 0 ||
            mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0 ||
            mount("tmpfs", "/tmp", "tmpfs", 0, "mode=1777") != 0)
            return 100 + errno;
        umask(0);
        unsetenv("IPACL_HOST_DIR");
        const std::string name = "/tmp/ipacl-" + std::to_string(geteuid());
        if (wait_child(spawn([&] { return become_nobody() ? mkdir(name.c_str(), 0777) : 1; })))
            return 1;
        mkdir("/tmp/run", 0777);
        setenv("XDG_RUNTIME_DIR", "/tmp/run", 1);
        mkdir("/tmp/home", 0700);
        setenv("HOME", "/tmp/home", 1);
        pid_t manager = start_manager([](uint32_t h) { return echo_manager(h, 1, 10000); });
        uint32_t client;
        if (manager < 0 || ipacl_host_open(0, 0, &client) != 0) return 2;
        char shown[128];
        if (ipacl_host_dir(shown, sizeof shown) != 0 || std::string(shown) != "/tmp/home/.ipacl")
            return 3;
        struct stat st;
        if (stat("/tmp/run/ipacl", &st) == 0) return 4;
        if (rename("/tmp/home/.ipacl", "/tmp/home/moved") != 0 ||
            mkdir("/tmp/home/.ipacl", 0700) != 0)
            return 5;
        if (echo_once(client, 1) != 0) return 6;
        ipacl_host_close(client);
        if (wait_child(manager) != 0) return 7;
        return stat("/tmp/home/moved/svc-98", &st) == 0 ? 8 : 0;  // removed where it was
    });
    int status = wait_child(child);
    if (status > 100) GTEST_SKIP() << "private /tmp refused: " << strerror(status - 100);
    EXPECT_EQ(status, 0);
}

// However long the module name, a debug line stays within its buffer.
TEST(HostHostile, DebugPrintStaysInItsLine) {
    ipacl_host_debug_set(1);
    for (size_t module_length : {1021u, 5000u}) {
        std::string got = stderr_of([&] {
            zlogf(1, std::string(module_length, 'm').c_str(), 0, "%s",
                  std::string(64 * 1024, 't').c_str());
        });
        ASSERT_FALSE(got.empty());
        EXPECT_LE(got.size(), 1023u) << module_length;
        EXPECT_EQ(got.back(), '\n');
        EXPECT_EQ(got.find_first_not_of('m'), std::min<size_t>(module_length, got.size() - 1));
    }
    ipacl_host_debug_set(0);
}

}  // namespace
