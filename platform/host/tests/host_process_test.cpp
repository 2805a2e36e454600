// The host platform between real processes: who may connect, and every way
// an exchange can go wrong.
#include <gtest/gtest.h>

#include <array>
#include <cerrno>
#include <chrono>
#include <cstring>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

#include <ipacl/ipacl.h>

#include "host_test_support.h"
#include "platform/vel.h"

namespace {

using namespace host_test;
using ipacl_host::FrameHeader;
using Area = std::array<uint8_t, IPACL_HOST_HANDLE_AREA>;

// Even with the modes loosened as a careless administrator might, the kernel
// letting the connection through, the credential check refuses it.
TEST(HostSecurity, AnotherUserCannotReachTheEndpoints) {
    if (geteuid() != 0) GTEST_SKIP() << "needs root to run a peer as another user";
    EndpointDir dir;
    uint32_t manager;
    ASSERT_EQ(ipacl_host_open(98, 0, &manager), 0);
    ASSERT_EQ(chmod(dir.path().c_str(), 0711), 0);
    ASSERT_EQ(chmod(dir.socket("svc-98").c_str(), 0777), 0);
    pid_t child = spawn([&] {
        if (!become_nobody()) return 1;
        int fd = raw_connect(dir.socket("svc-98"));
        if (fd < 0) return 2;
        send_frame(fd, frame(ipacl_host::kRequest, 1, 0, 0));
        return hung_up(fd, 5000) ? 0 : 3;
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

TEST(HostFaults, ARestartedManagerIsRedialledAndADeadOneReported) {
    EndpointDir dir;
    uint32_t client;
    ASSERT_EQ(ipacl_host_open(0, 0, &client), 0);
    // Messages of one frame, two frames and more than a socket holds.
    pid_t manager = start_manager([](uint32_t h) { return echo_manager(h, 3, 20000); });
    ASSERT_GT(manager, 0);
    char err[IPACL_ERR_TEXT_SIZE];
    ipacl_vel_msg req{}, rsp{};
    for (uint32_t size : {65536u, 65537u, 3u << 20}) {
        std::vector<uint8_t> big(size);
        for (uint32_t i = 0; i < size; ++i) big[i] = static_cast<uint8_t>(i * 31 + (i >> 12));
        req.payload = big.data();
        req.size = size;
        ASSERT_EQ(ipacl_wrap_vel_req_rsp(client, &req, &rsp, err), 0u) << err;
        ASSERT_EQ(rsp.size, size);
        EXPECT_EQ(0, memcmp(rsp.payload, big.data(), size));
        vel_drop(client, rsp.handle);
    }
    EXPECT_EQ(wait_child(manager), 0);

    // The connection to the old manager is found dead and the request
    // redialled to a new one, which dies holding it: known at once.
    manager = start_manager([](uint32_t h) {
        Area area;
        if (ipacl_host_accept(h, area.data(), 20000) != 0) return 20;
        _exit(0);
        return 0;
    });
    ASSERT_GT(manager, 0);
    req = {};
    auto started = std::chrono::steady_clock::now();
    EXPECT_EQ(ipacl_wrap_vel_req_rsp(client, &req, &rsp, err), uint32_t(ECONNRESET));
    EXPECT_LT(std::chrono::steady_clock::now() - started, std::chrono::seconds(5));
    EXPECT_EQ(wait_child(manager), 0);
    // With the manager gone for good the next request is refused at once.
    EXPECT_EQ(ipacl_wrap_vel_req_rsp(client, &req, &rsp, err), uint32_t(ECONNREFUSED));
    ipacl_host_close(client);
}

TEST(HostFaults, MalformedFramesCostOnlyTheirConnection) {
    EndpointDir dir;
    uint32_t manager;
    ASSERT_EQ(ipacl_host_open(98, 0, &manager), 0);
    const FrameHeader ok = frame(ipacl_host::kRequest, 1, 10, 10);
    std::vector<std::vector<uint8_t>> frames{{1, 2, 3}};  // shorter than a header
    auto add = [&](FrameHeader h, size_t payload) {
        std::vector<uint8_t> f(sizeof h + payload, 0x5a);
        memcpy(f.data(), &h, sizeof h);
        frames.push_back(f);
    };
    FrameHeader h = ok;
    h.magic = 0x12345678;
    add(h, 10);                                                             // not ours
    add(ok, 4);                                                             // truncated payload
    add(frame(ipacl_host::kRequest, 1, IPACL_HOST_MAX_PAYLOAD + 1, 0), 0);  // oversized
    add(frame(ipacl_host::kMore, 1, 10, 10), 10);                           // continuation first
    add(frame(ipacl_host::kRequest, 1, 100000, 100000), 100000);            // frame above the limit
    Area area;
    for (const auto &f : frames) {
        int fd = raw_connect(dir.socket("svc-98"));
        ASSERT_GE(fd, 0);
        ASSERT_EQ(send(fd, f.data(), f.size(), MSG_NOSIGNAL), ssize_t(f.size()));
        EXPECT_NE(ipacl_host_accept(manager, area.data(), 200), 0);  // nothing to take
        EXPECT_TRUE(hung_up(fd, 5000));
        close(fd);
    }
    ipacl_host_stats stats;
    ASSERT_EQ(ipacl_host_stats_get(manager, &stats), 0);
    EXPECT_EQ(stats.protocol_errors, frames.size());
    EXPECT_EQ(stats.connections, 0u);
    ipacl_host_close(manager);
}

// Children come and go: one closing the endpoints it inherited unregisters
// nothing and cuts no connection; one gone before its answer costs only
// that answer.
TEST(HostFaults, ChildrenComingAndGoingLeaveTheManagerServing) {
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
    ASSERT_EQ(ipacl_host_accept(manager, area.data(), 2000), 0) << strerror(errno);
    vel_drop(manager, area.data());

    pid_t requester = spawn([] {
        uint32_t h;
        ipacl_vel_msg req{};
        uint8_t rr[IPACL_HOST_HANDLE_AREA];
        char err[IPACL_ERR_TEXT_SIZE];
        if (ipacl_host_open(0, 0, &h) != 0 || ipacl_wrap_vel_send(h, rr, &req, err) != 0) return 1;
        _exit(0);  // gone without waiting or closing
        return 0;
    });
    EXPECT_EQ(wait_child(requester), 0);
    ASSERT_EQ(ipacl_host_accept(manager, area.data(), 2000), 0) << strerror(errno);
    EXPECT_EQ(ipacl_wrap_vel_rsp(manager, vel_rr_token_get(area.data()), "late", 4, err),
              uint32_t(EPIPE));
    vel_drop(manager, area.data());
    ipacl_host_close(client);
    ipacl_host_close(manager);
}

}  // namespace
