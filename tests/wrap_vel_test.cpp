// The plain vel wrappers against the recording platform double: every
// argument handed to the platform, the exchange of a request and its answer,
// and every failure path with and without an error buffer.
#include <gtest/gtest.h>

#include <cstring>
#include <vector>

#include <ipacl/ipacl.h>

#include "platform/vel.h"
#include "platform_double.h"
#include "vel_expect.h"

namespace {

using Bytes = std::vector<uint8_t>;
using ipacl_double::fail_send;
using ipacl_double::platform;

class WrapVel : public ::testing::Test {
  protected:
    void SetUp() override { ipacl_double::reset(); }
};

using ipacl_double::expect_sent;
using ipacl_double::Sent;

ipacl_vel_msg message(uint32_t opcode, void *payload, uint32_t size) {
    ipacl_vel_msg msg;
    memset(&msg, 0x5a, sizeof msg);
    msg.opcode = opcode;
    msg.payload = payload;
    msg.size = size;
    return msg;
}

TEST_F(WrapVel, SendAndStandbyDifferOnlyInTheService) {
    uint8_t data[] = {1, 2, 3};
    ipacl_vel_msg msg = message(0x1234, data, sizeof data);
    uint8_t rr[IPACL_VEL_HANDLE_SIZE];
    char err[IPACL_ERR_TEXT_SIZE] = "stale";

    EXPECT_EQ(ipacl_wrap_vel_send(7, rr, &msg, err), 0u);
    EXPECT_STREQ(err, "");
    strcpy(err, "stale");
    EXPECT_EQ(ipacl_wrap_vel_standby(7, nullptr, &msg, err), 0u);
    EXPECT_STREQ(err, "");

    const auto &sends = platform().sends;
    ASSERT_EQ(sends.size(), 2u);
    expect_sent(sends[0], {7, 98, 0x1234, 3, rr, 0});
    expect_sent(sends[1], {7, 0, 0x1234, 3, nullptr, 0});
    EXPECT_EQ(sends[0].payload, (Bytes{1, 2, 3}));
    EXPECT_EQ(sends[1].payload, (Bytes{1, 2, 3}));
    // The payload is passed through untouched, never copied or converted.
    EXPECT_EQ(data[0], 1);
}

TEST_F(WrapVel, ResponseCarriesOnlyTheToken) {
    uint8_t data[] = {9, 8};
    char err[IPACL_ERR_TEXT_SIZE] = "stale";
    EXPECT_EQ(ipacl_wrap_vel_rsp(3, 0xabcdef01u, data, sizeof data, err), 0u);
    EXPECT_STREQ(err, "");

    ASSERT_EQ(platform().sends.size(), 1u);
    expect_sent(platform().sends[0], {3, 0, 0, 2, nullptr, 0xabcdef01u});
    EXPECT_EQ(platform().sends[0].payload, (Bytes{9, 8}));
}

TEST_F(WrapVel, FailedSendsReturnErrnoWithTheirMessage) {
    ipacl_vel_msg msg = message(1, nullptr, 0);
    char err[IPACL_ERR_TEXT_SIZE];
    fail_send(113);

    EXPECT_EQ(ipacl_wrap_vel_send(1, nullptr, &msg, err), 113u);
    EXPECT_STREQ(err, "failed vel_send() 113");
    EXPECT_EQ(ipacl_wrap_vel_standby(1, nullptr, &msg, err), 113u);
    EXPECT_STREQ(err, "failed vel_send() 113");
    EXPECT_EQ(ipacl_wrap_vel_rsp(1, 5, nullptr, 0, err), 113u);
    EXPECT_STREQ(err, "failed vel_send_response() 113");

    // Without a buffer the result is the same.
    EXPECT_EQ(ipacl_wrap_vel_send(1, nullptr, &msg, nullptr), 113u);
    EXPECT_EQ(ipacl_wrap_vel_standby(1, nullptr, &msg, nullptr), 113u);
    EXPECT_EQ(ipacl_wrap_vel_rsp(1, 5, nullptr, 0, nullptr), 113u);
    // A success without a buffer is fine too.
    platform().send_rc = 0;
    EXPECT_EQ(ipacl_wrap_vel_send(1, nullptr, &msg, nullptr), 0u);
    EXPECT_EQ(ipacl_wrap_vel_rsp(1, 5, nullptr, 0, nullptr), 0u);
}

TEST_F(WrapVel, RequestWaitsForTheAnswerCarryingItsToken) {
    uint8_t data[] = {4, 5, 6, 7};
    ipacl_vel_msg req = message(0x77, data, sizeof data);
    memset(req.handle, 0xaa, sizeof req.handle);
    ipacl_vel_msg rsp = message(0xffffffffu, data, 99);
    platform().rr_token = 0x01020304u;
    platform().answers.push_back({0xde, 0xad, 0xbe});
    char err[IPACL_ERR_TEXT_SIZE] = "stale";

    ASSERT_EQ(ipacl_wrap_vel_req_rsp(11, &req, &rsp, err), 0u);
    EXPECT_STREQ(err, "");

    // The request goes to the manager with its own handle area to fill.
    ASSERT_EQ(platform().sends.size(), 1u);
    expect_sent(platform().sends[0], {11, 98, 0x77, 4, req.handle, 0});
    EXPECT_EQ(platform().sends[0].payload, (Bytes{4, 5, 6, 7}));
    // The first 25 bytes of the request's handle area were cleared; the
    // last three are left alone.
    EXPECT_EQ(Bytes(req.handle, req.handle + 28),
              (Bytes{0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0,    0,    0,
                     0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0xaa, 0xaa, 0xaa}));

    // Its token is read and its handle area released before the receive.
    ASSERT_EQ(platform().token_gets.size(), 1u);
    EXPECT_EQ(platform().token_gets[0], static_cast<void *>(req.handle));
    ASSERT_EQ(platform().drops.size(), 1u);
    EXPECT_EQ(platform().drops[0].handle, 11u);
    EXPECT_EQ(platform().drops[0].msg_handle, static_cast<void *>(req.handle));
    ASSERT_EQ(platform().recvs.size(), 1u);
    const auto &recv = platform().recvs[0];
    EXPECT_EQ(recv.handle, 11u);
    EXPECT_EQ(recv.msg_handle, static_cast<void *>(rsp.handle));
    const uint32_t options[10] = {1, 0, 10, 0x01020304u, 0, 0, 0, 0, 0, 0};
    EXPECT_EQ(memcmp(recv.options, options, sizeof options), 0);

    // The answer is handed over as it arrived and stays held by rsp.handle.
    ASSERT_EQ(platform().held.size(), 1u);
    EXPECT_EQ(rsp.payload, platform().held[0].data());
    EXPECT_EQ(rsp.size, 3u);
    EXPECT_EQ(rsp.opcode, 0u);
    EXPECT_EQ(vel_payload_get(rsp.handle), rsp.payload);
}

TEST_F(WrapVel, FailedRequestLeavesTheResponseCleared) {
    uint8_t data[] = {1};
    ipacl_vel_msg req = message(0x10, data, 1);
    ipacl_vel_msg rsp = message(0x99, data, 1);
    ipacl_vel_msg zero;
    memset(&zero, 0, sizeof zero);
    char err[IPACL_ERR_TEXT_SIZE];

    fail_send(5);
    EXPECT_EQ(ipacl_wrap_vel_req_rsp(2, &req, &rsp, err), 5u);
    EXPECT_STREQ(err, "failed vel_send() 5");
    EXPECT_EQ(memcmp(&rsp, &zero, sizeof rsp), 0);
    EXPECT_TRUE(platform().token_gets.empty());
    EXPECT_TRUE(platform().drops.empty());
    EXPECT_TRUE(platform().recvs.empty());
    rsp = message(0x99, data, 1);
    EXPECT_EQ(ipacl_wrap_vel_req_rsp(2, &req, &rsp, nullptr), 5u);
    EXPECT_EQ(memcmp(&rsp, &zero, sizeof rsp), 0);

    // The send succeeds, the wait does not: the request is still released.
    ipacl_double::reset();
    platform().recv_rc = -1;
    platform().recv_errno = 110;
    rsp = message(0x99, data, 1);
    EXPECT_EQ(ipacl_wrap_vel_req_rsp(2, &req, &rsp, err), 110u);
    EXPECT_STREQ(err, "failed vel_recv() 110");
    EXPECT_EQ(platform().drops.size(), 1u);
    EXPECT_EQ(memcmp(&rsp, &zero, sizeof rsp), 0);
    EXPECT_EQ(ipacl_wrap_vel_req_rsp(2, &req, &rsp, nullptr), 110u);

    // A failure to release the request's handle area does not matter.
    ipacl_double::reset();
    platform().drop_rc = -1;
    platform().drop_errno = 9;
    platform().answers.push_back({1, 2});
    EXPECT_EQ(ipacl_wrap_vel_req_rsp(2, &req, &rsp, nullptr), 0u);
    EXPECT_EQ(rsp.size, 2u);
}

TEST_F(WrapVel, ResponseClearingStopsAtTheDescriptor) {
    // A response descriptor with the caller's other data right behind it.
    struct {
        ipacl_vel_msg rsp;
        uint8_t after[16];
    } frame;
    memset(&frame, 0xcc, sizeof frame);
    ipacl_vel_msg req = message(1, nullptr, 0);
    fail_send(1);
    ipacl_wrap_vel_req_rsp(1, &req, &frame.rsp, nullptr);
    EXPECT_EQ(Bytes(frame.after, frame.after + 16), Bytes(16, 0xcc));
}

TEST_F(WrapVel, ReceiveHandsOverAnySize) {
    uint8_t data[4];
    void *out = nullptr;
    uint32_t size = 1;
    char err[IPACL_ERR_TEXT_SIZE] = "stale";
    EXPECT_EQ(ipacl_wrap_vel_recv(data, 0xffffffffu, &out, &size, err), 0u);
    EXPECT_EQ(out, static_cast<void *>(data));
    EXPECT_EQ(size, 0xffffffffu);
    EXPECT_STREQ(err, "");
    EXPECT_EQ(ipacl_wrap_vel_recv(nullptr, 0, &out, &size, nullptr), 0u);
    EXPECT_EQ(out, nullptr);
    EXPECT_EQ(size, 0u);
}

}  // namespace
