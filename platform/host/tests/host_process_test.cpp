// The host platform between real processes: who may connect, many clients
// against one manager, and every way an exchange can go wrong.
#include <gtest/gtest.h>

#include <array>
#include <cerrno>
#include <chrono>
#include <cstring>
#include <poll.h>
#include <string>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

#include <ipacl/ipacl.h>

#include "host_internal.h"
#include "host_test_support.h"
#include "ipacl_host.h"
#include "platform/vel.h"

namespace {

using host_test::ask_stats;
using host_test::echo_manager;
using host_test::EndpointDir;
using host_test::spawn;
using host_test::start_manager;
using host_test::wait_child;
using Area = std::array<uint8_t, IPACL_HOST_HANDLE_AREA>;

bool all_zero(const void *p, size_t n) {
    const auto *b = static_cast<const uint8_t *>(p);
    for (size_t i = 0; i < n; ++i)
        if (b[i]) return false;
    return true;
}

// ------------------------------------------------------------- security --

TEST(HostSecurity, AnotherUserCannotReachTheEndpoints) {
    if (geteuid() != 0) GTEST_SKIP() << "needs root to run a peer as another user";
    EndpointDir dir;
    uint32_t manager;
    ASSERT_EQ(ipacl_host_open(98, 0, &manager), 0);

    // As the directory stands (0700), another user can neither open an
    // endpoint there nor reach the manager's socket.
    pid_t child = spawn([&] {
        if (!host_test::become_nobody()) return 1;
        uint32_t h;
        if (ipacl_host_open(0, 0, &h) == 0 || errno != EACCES) return 2;
        if (host_test::raw_connect(dir.socket("svc-98")) >= 0 || errno != EACCES) return 3;
        return 0;
    });
    EXPECT_EQ(wait_child(child), 0);

    // Loosen the modes as a careless administrator might: the kernel now lets
    // the connection through, and the credential check refuses it.
    ASSERT_EQ(chmod(dir.path().c_str(), 0711), 0);
    ASSERT_EQ(chmod(dir.socket("svc-98").c_str(), 0777), 0);
    child = spawn([&] {
        if (!host_test::become_nobody()) return 1;
        int fd = host_test::raw_connect(dir.socket("svc-98"));
        if (fd < 0) return 2;
        ipacl_host::FrameHeader h{ipacl_host::kFrameMagic, ipacl_host::kRequest, 1, 98, 1, 1, 0, 0};
        send(fd, &h, sizeof h, MSG_NOSIGNAL);
        char buf[64];
        ssize_t n = recv(fd, buf, sizeof buf, 0);  // the manager hangs up
        close(fd);
        return n <= 0 ? 0 : 4;
    });
    Area area;
    EXPECT_NE(ipacl_host_accept(manager, area.data(), 1500), 0);
    EXPECT_EQ(errno, ETIMEDOUT);
    EXPECT_EQ(wait_child(child), 0);
    ipacl_host_stats stats;
    ASSERT_EQ(ipacl_host_stats_get(manager, &stats), 0);
    EXPECT_EQ(stats.refused_peers, 1u);
    EXPECT_EQ(stats.connections, 0u);
    ipacl_host_close(manager);
}

// --------------------------------------------------------------- faults --

TEST(HostFaults, NoManagerRunning) {
    EndpointDir dir;
    uint32_t client;
    ASSERT_EQ(ipacl_host_open(0, 0, &client), 0);
    char err[IPACL_ERR_TEXT_SIZE];
    uint32_t words[4] = {1, 2, 3, 4};
    ipacl_vel_msg req{}, rsp{};
    req.opcode = 1;
    req.payload = words;
    req.size = sizeof words;
    EXPECT_EQ(ipacl_wrap_vel_req_rsp(client, &req, &rsp, err), uint32_t(ECONNREFUSED));
    EXPECT_STREQ(err, ("failed vel_send() " + std::to_string(ECONNREFUSED)).c_str());
    EXPECT_TRUE(all_zero(&rsp, sizeof rsp));
    EXPECT_EQ(ipacl_wrap_vel_send(client, nullptr, &req, err), uint32_t(ECONNREFUSED));
    EXPECT_EQ(ipacl_wrap_vel_standby(client, nullptr, &req, err), uint32_t(ECONNREFUSED));
    ipacl_quen_desc qreq{};
    qreq.opcode = 1;
    qreq.text1 = "acl";
    EXPECT_EQ(ipacl_wrap_quen_req_rsp(client, &qreq, &rsp, err), uint32_t(ECONNREFUSED));
    EXPECT_EQ(ipacl_wrap_quen_send(client, &req, err), uint32_t(ECONNREFUSED));
    ipacl_host_close(client);
}

TEST(HostFaults, ManagerDiesBeforeItAnswers) {
    EndpointDir dir;
    pid_t manager = start_manager([](uint32_t h) {
        Area area;
        if (ipacl_host_accept(h, area.data(), 20000) != 0) return 20;
        vel_drop(h, area.data());
        _exit(0);  // dies holding the request
        return 0;
    });
    ASSERT_GT(manager, 0);
    uint32_t client;
    ASSERT_EQ(ipacl_host_open(0, 0, &client), 0);
    char err[IPACL_ERR_TEXT_SIZE];
    ipacl_vel_msg req{}, rsp{};
    req.opcode = 1;
    auto started = std::chrono::steady_clock::now();
    EXPECT_EQ(ipacl_wrap_vel_req_rsp(client, &req, &rsp, err), uint32_t(ECONNRESET));
    EXPECT_STREQ(err, ("failed vel_recv() " + std::to_string(ECONNRESET)).c_str());
    // Known at once, not after the wait limit.
    EXPECT_LT(std::chrono::steady_clock::now() - started, std::chrono::seconds(5));
    EXPECT_TRUE(all_zero(&rsp, sizeof rsp));
    EXPECT_EQ(wait_child(manager), 0);
    // With the manager gone for good the next request is refused at once.
    EXPECT_EQ(ipacl_wrap_vel_req_rsp(client, &req, &rsp, err), uint32_t(ECONNREFUSED));

    // A new manager under the same name: the client reaches it again.
    manager = start_manager([](uint32_t h) { return echo_manager(h, 1, 20000); });
    ASSERT_GT(manager, 0);
    EXPECT_EQ(ipacl_wrap_vel_req_rsp(client, &req, &rsp, err), 0u) << err;
    vel_drop(client, rsp.handle);
    EXPECT_EQ(wait_child(manager), 0);
    ipacl_host_close(client);
}

TEST(HostFaults, MalformedFramesCostOnlyTheirConnection) {
    EndpointDir dir;
    constexpr uint32_t kGood = 2;
    pid_t manager = start_manager([](uint32_t h) { return echo_manager(h, kGood, 20000); });
    ASSERT_GT(manager, 0);
    using ipacl_host::FrameHeader;
    const FrameHeader ok{ipacl_host::kFrameMagic, ipacl_host::kRequest, 1, 98, 1, 1, 10, 10};
    std::vector<std::vector<uint8_t>> frames;
    auto frame = [&](FrameHeader h, size_t payload) {
        std::vector<uint8_t> f(sizeof h + payload, 0x5a);
        memcpy(f.data(), &h, sizeof h);
        frames.push_back(f);
    };
    frames.push_back({1, 2, 3});  // shorter than a header
    FrameHeader h = ok;
    h.magic = 0x12345678;
    frame(h, 10);  // not ours
    frame(ok, 4);  // truncated payload
    h = ok;
    h.size = IPACL_HOST_MAX_PAYLOAD + 1;
    h.chunk = 0;
    frame(h, 0);  // oversized
    h = ok;
    h.kind = ipacl_host::kMore;
    frame(h, 10);  // continuation first
    h = ok;
    h.kind = 9;
    frame(h, 10);  // unknown kind
    h = ok;
    h.size = h.chunk = 100000;
    frame(h, 100000);  // frame above the limit
    for (const auto &f : frames) {
        int fd = host_test::raw_connect(dir.socket("svc-98"));
        ASSERT_GE(fd, 0);
        ASSERT_EQ(send(fd, f.data(), f.size(), MSG_NOSIGNAL), ssize_t(f.size()));
        pollfd p{fd, POLLIN, 0};
        ASSERT_EQ(poll(&p, 1, 10000), 1);  // the manager hangs up, it does not hang
        char buf[8];
        EXPECT_LE(recv(fd, buf, sizeof buf, 0), 0);
        close(fd);
    }
    uint32_t client;
    ASSERT_EQ(ipacl_host_open(0, 0, &client), 0);
    EXPECT_EQ(host_test::echo_once(client, 7), 0u);
    ipacl_host_stats stats = ask_stats(client);
    EXPECT_EQ(stats.protocol_errors, frames.size());
    EXPECT_EQ(stats.held, 1u);  // only the stats request itself
    EXPECT_EQ(wait_child(manager), 0);
    ipacl_host_close(client);
}

TEST(HostFaults, TruncatedEnvelopesAreRefusedBySize) {
    EndpointDir dir;
    // Answers each enveloped request with a broken envelope: 6 bytes (not
    // even a length word), 50 (shorter than a header), then a whole header
    // whose length word overstates what follows.
    static constexpr uint32_t kAnswerSizes[] = {6, 50, 112 + 4};
    pid_t manager = start_manager([](uint32_t h) {
        for (uint32_t size : kAnswerSizes) {
            Area area;
            if (ipacl_host_accept(h, area.data(), 20000) != 0) return 20;
            void *out = nullptr;
            uint32_t out_size = 0;
            char err[IPACL_ERR_TEXT_SIZE];
            // The request itself is a whole envelope of 112 + 8 bytes.
            if (ipacl_wrap_quen_recv(vel_payload_get(area.data()), vel_payload_size(area.data()),
                                     &out, &out_size, err) != 0 ||
                out_size != 8)
                return 21;
            // Opened as if 10 bytes had been cut off, it is refused.
            if (ipacl_wrap_quen_recv(vel_payload_get(area.data()),
                                     vel_payload_size(area.data()) - 10, &out, &out_size,
                                     err) != IPACL_E_BAD_ARG ||
                strcmp(err, "bad size 8") != 0)
                return 22;
            uint8_t answer[112 + 4] = {};
            answer[7] = 40;  // claims 40 payload bytes, carries 4
            if (vel_send(h, 0xfe000000, 0, 0, answer, size, nullptr, vel_rr_token_get(area.data()),
                         0))
                return 23;
            vel_drop(h, area.data());
        }
        return 0;
    });
    ASSERT_GT(manager, 0);
    uint32_t client;
    ASSERT_EQ(ipacl_host_open(0, 0, &client), 0);
    char err[IPACL_ERR_TEXT_SIZE];
    uint32_t words[2] = {1, 2};
    for (const char *expected :
         {"bas size 0 for opc 42", "bas size 40 for opc 42", "bas size 40 for opc 42"}) {
        ipacl_quen_desc req{};
        ipacl_vel_msg rsp{};
        req.opcode = 42;
        req.payload = words;
        req.size = sizeof words;
        req.text1 = "acl-one";
        EXPECT_EQ(ipacl_wrap_quen_req_rsp(client, &req, &rsp, err), IPACL_E_BAD_ARG);
        EXPECT_STREQ(err, expected);
        EXPECT_EQ(vel_drop(client, rsp.handle), 0);  // the answer was held all the same
    }
    EXPECT_EQ(wait_child(manager), 0);
    ipacl_host_stats stats;
    ipacl_host_stats_get(client, &stats);
    EXPECT_EQ(stats.held, 0u);
    ipacl_host_close(client);
}

TEST(HostFaults, RequesterGoneBeforeTheAnswer) {
    EndpointDir dir;
    int go[2];
    ASSERT_EQ(pipe(go), 0);
    pid_t manager = start_manager([&](uint32_t h) {
        close(go[1]);
        Area area;
        if (ipacl_host_accept(h, area.data(), 20000) != 0) return 20;
        char byte;
        if (read(go[0], &byte, 1) != 0) return 21;  // until the requester has gone
        char err[IPACL_ERR_TEXT_SIZE];
        uint32_t rc = ipacl_wrap_vel_rsp(h, vel_rr_token_get(area.data()), "late", 4, err);
        vel_drop(h, area.data());
        if (rc != EPIPE ||
            strcmp(err, ("failed vel_send_response() " + std::to_string(EPIPE)).c_str()))
            return 22;
        return 0;
    });
    close(go[0]);
    ASSERT_GT(manager, 0);
    pid_t requester = spawn([] {
        uint32_t h;
        if (ipacl_host_open(0, 0, &h) != 0) return 1;
        ipacl_vel_msg req{};
        uint8_t rr[IPACL_HOST_HANDLE_AREA];
        char err[IPACL_ERR_TEXT_SIZE];
        if (ipacl_wrap_vel_send(h, rr, &req, err) != 0) return 2;
        _exit(0);  // gone without waiting or closing
        return 0;
    });
    EXPECT_EQ(wait_child(requester), 0);
    close(go[1]);
    EXPECT_EQ(wait_child(manager), 0);
}

TEST(HostFaults, AChildClosingAnInheritedEndpointLeavesItServing) {
    EndpointDir dir;
    uint32_t manager, client;
    ASSERT_EQ(ipacl_host_open(98, 0, &manager), 0);
    ASSERT_EQ(ipacl_host_open(0, 0, &client), 0);
    ipacl_vel_msg req{};
    char err[IPACL_ERR_TEXT_SIZE];
    ASSERT_EQ(ipacl_wrap_vel_send(client, nullptr, &req, err), 0u);  // a live connection
    pid_t child = spawn([manager, client] {
        return ipacl_host_close(manager) == 0 && ipacl_host_close(client) == 0 ? 0 : 1;
    });
    EXPECT_EQ(wait_child(child), 0);
    struct stat st;
    EXPECT_EQ(stat(dir.socket("svc-98").c_str(), &st), 0);  // still registered
    Area area;
    for (int i = 0; i < 2; ++i) {  // the old connection and a new one
        ASSERT_EQ(ipacl_host_accept(manager, area.data(), 2000), 0) << strerror(errno);
        vel_drop(manager, area.data());
        uint32_t other;
        ASSERT_EQ(ipacl_host_open(0, 0, &other), 0);
        ASSERT_EQ(ipacl_wrap_vel_send(other, nullptr, &req, err), 0u);
        ipacl_host_close(other);
    }
    ipacl_host_close(client);
    ipacl_host_close(manager);
}

TEST(HostFaults, LargeMessagesBetweenProcesses) {
    EndpointDir dir;
    pid_t manager = start_manager([](uint32_t h) { return echo_manager(h, 3, 20000); });
    ASSERT_GT(manager, 0);
    uint32_t client;
    ASSERT_EQ(ipacl_host_open(0, 0, &client), 0);
    char err[IPACL_ERR_TEXT_SIZE];
    for (uint32_t size : {65536u, 65537u, 3u << 20}) {
        std::vector<uint8_t> big(size);
        for (uint32_t i = 0; i < size; ++i) big[i] = static_cast<uint8_t>(i * 31 + (i >> 12));
        ipacl_vel_msg req{}, rsp{};
        req.payload = big.data();
        req.size = size;
        ASSERT_EQ(ipacl_wrap_vel_req_rsp(client, &req, &rsp, err), 0u) << err;
        ASSERT_EQ(rsp.size, size);
        EXPECT_EQ(0, memcmp(rsp.payload, big.data(), size));
        vel_drop(client, rsp.handle);
    }
    EXPECT_EQ(wait_child(manager), 0);
    ipacl_host_close(client);
}

}  // namespace
