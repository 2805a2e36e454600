// The vel wrappers and the quen envelope against the recording platform
// double: every argument handed to the platform, the exchange of a request
// and its answer, the envelope's bytes, the unpacking of enveloped answers
// (matching, short, lying about their length), one allocation per call, and
// every failure path.  Under the sanitizers a leaked or doubly freed envelope
// fails the run.
#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <tuple>
#include <vector>

#include <ipacl/ipacl.h>

#include "platform/vel.h"
#include "platform_double.h"

namespace {

using Bytes = std::vector<uint8_t>;
using ipacl_double::platform;

// What a vel_send must have received; the node and the flags never vary.
struct Sent {
    uint32_t handle, service, opcode, size;
    void *rr_handle;
    uint32_t token;
};

void expect_sent(const ipacl_double::VelSendCall &call, const Sent &want) {
    EXPECT_EQ(call.node, 0xfe000000u);
    EXPECT_EQ(call.flags, 0u);
    EXPECT_EQ(call.payload.size(), call.size);
    EXPECT_EQ(
        std::tie(call.handle, call.service, call.opcode, call.size, call.rr_handle, call.token),
        std::tie(want.handle, want.service, want.opcode, want.size, want.rr_handle, want.token));
}

// Makes the next vel_send fail with `code` in errno.
void fail_send(int code) {
    platform().send_rc = -1;
    platform().send_errno = code;
}

class Wrap : public ::testing::Test {
  protected:
    void SetUp() override { ipacl_double::reset(); }
    void TearDown() override { ipacl_double::fail_malloc_after(0); }

    // Counts the library's allocations from now on (none is made to fail).
    static void count_mallocs() { ipacl_double::fail_malloc_after(1000000); }
};

Bytes slice(const Bytes &bytes, size_t at, size_t n) {
    return Bytes(bytes.begin() + at, bytes.begin() + at + n);
}

Bytes text_field(const char *text, size_t size) {
    Bytes field(size, 0);
    memcpy(field.data(), text, strlen(text));
    return field;
}

// An enveloped answer: a header whose length word's last byte is `length`,
// then `tail`.  The answer's operation word is not looked at.
Bytes answer(uint8_t length, const Bytes &tail) {
    Bytes bytes(112 + tail.size(), 0);
    bytes[7] = length;
    for (size_t i = 0; i < tail.size(); ++i) bytes[112 + i] = tail[i];
    return bytes;
}

ipacl_quen_desc request(void *payload, uint32_t size, const char *text1, const char *text2) {
    ipacl_quen_desc req;
    memset(&req, 0x5a, sizeof req);
    req.opcode = 0x4321;
    req.payload = payload;
    req.size = size;
    req.text1 = text1;
    req.text2 = text2;
    return req;
}

ipacl_vel_msg message(uint32_t opcode, void *payload, uint32_t size) {
    ipacl_vel_msg msg;
    memset(&msg, 0x5a, sizeof msg);
    msg.opcode = opcode;
    msg.payload = payload;
    msg.size = size;
    return msg;
}

TEST_F(Wrap, VelSendStandbyAndResponse) {
    uint8_t data[] = {1, 2, 3};
    ipacl_vel_msg msg = message(0x1234, data, sizeof data);
    uint8_t rr[IPACL_VEL_HANDLE_SIZE];
    char err[IPACL_ERR_TEXT_SIZE] = "stale";

    EXPECT_EQ(ipacl_wrap_vel_send(7, rr, &msg, err), 0u);
    EXPECT_STREQ(err, "");
    strcpy(err, "stale");
    EXPECT_EQ(ipacl_wrap_vel_standby(7, nullptr, &msg, err), 0u);
    EXPECT_STREQ(err, "");
    EXPECT_EQ(ipacl_wrap_vel_rsp(3, 0xabcdef01u, data, 2, nullptr), 0u);

    // Standby differs only in the service; a response carries only the token.
    const auto &sends = platform().sends;
    ASSERT_EQ(sends.size(), 3u);
    expect_sent(sends[0], {7, 98, 0x1234, 3, rr, 0});
    expect_sent(sends[1], {7, 0, 0x1234, 3, nullptr, 0});
    expect_sent(sends[2], {3, 0, 0, 2, nullptr, 0xabcdef01u});
    EXPECT_EQ(sends[0].payload, (Bytes{1, 2, 3}));
    EXPECT_EQ(sends[2].payload, (Bytes{1, 2}));

    fail_send(113);
    for (char *buffer : {err, static_cast<char *>(nullptr)}) {
        EXPECT_EQ(ipacl_wrap_vel_send(1, nullptr, &msg, buffer), 113u);
        EXPECT_EQ(ipacl_wrap_vel_standby(1, nullptr, &msg, buffer), 113u);
        if (buffer) {
            EXPECT_STREQ(err, "failed vel_send() 113");
        }
        EXPECT_EQ(ipacl_wrap_vel_rsp(1, 5, nullptr, 0, buffer), 113u);
    }
    EXPECT_STREQ(err, "failed vel_send_response() 113");
}

TEST_F(Wrap, VelRequestWaitsForTheAnswerCarryingItsToken) {
    uint8_t data[] = {4, 5, 6, 7};
    ipacl_vel_msg req = message(0x77, data, sizeof data);
    memset(req.handle, 0xaa, sizeof req.handle);
    ipacl_vel_msg rsp = message(0xffffffffu, data, 99);
    platform().rr_token = 0x01020304u;
    platform().answers.push_back({0xde, 0xad, 0xbe});
    char err[IPACL_ERR_TEXT_SIZE] = "stale";

    ASSERT_EQ(ipacl_wrap_vel_req_rsp(11, &req, &rsp, err), 0u);
    EXPECT_STREQ(err, "");

    // The request goes to the manager with its own handle area to fill; the
    // first 25 bytes of that area were cleared, the last three left alone.
    ASSERT_EQ(platform().sends.size(), 1u);
    expect_sent(platform().sends[0], {11, 98, 0x77, 4, req.handle, 0});
    Bytes handle(25, 0);
    handle.insert(handle.end(), 3, 0xaa);
    EXPECT_EQ(Bytes(req.handle, req.handle + 28), handle);

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
    EXPECT_EQ(rsp.payload, platform().held.at(0).data());
    EXPECT_EQ(rsp.size, 3u);
    EXPECT_EQ(rsp.opcode, 0u);
    EXPECT_EQ(vel_payload_get(rsp.handle), rsp.payload);

    // A plain receive hands over any size.
    void *out = nullptr;
    uint32_t size = 1;
    strcpy(err, "stale");
    EXPECT_EQ(ipacl_wrap_vel_recv(data, 0xffffffffu, &out, &size, err), 0u);
    EXPECT_EQ(out, static_cast<void *>(data));
    EXPECT_EQ(size, 0xffffffffu);
    EXPECT_STREQ(err, "");
    EXPECT_EQ(ipacl_wrap_vel_recv(nullptr, 0, &out, &size, nullptr), 0u);
}

TEST_F(Wrap, VelFailedRequestLeavesTheResponseCleared) {
    uint8_t data[] = {1};
    ipacl_vel_msg req = message(0x10, data, 1);
    // A response descriptor with the caller's other data right behind it.
    struct {
        ipacl_vel_msg rsp;
        uint8_t after[16];
    } frame;
    ipacl_vel_msg zero{};
    char err[IPACL_ERR_TEXT_SIZE];

    fail_send(5);
    memset(&frame, 0xcc, sizeof frame);
    EXPECT_EQ(ipacl_wrap_vel_req_rsp(2, &req, &frame.rsp, err), 5u);
    EXPECT_STREQ(err, "failed vel_send() 5");
    EXPECT_EQ(memcmp(&frame.rsp, &zero, sizeof zero), 0);
    EXPECT_EQ(Bytes(frame.after, frame.after + 16), Bytes(16, 0xcc));
    EXPECT_TRUE(platform().token_gets.empty());
    EXPECT_TRUE(platform().recvs.empty());
    EXPECT_EQ(ipacl_wrap_vel_req_rsp(2, &req, &frame.rsp, nullptr), 5u);

    // The send succeeds, the wait does not: the request is still released.
    ipacl_double::reset();
    platform().recv_rc = -1;
    platform().recv_errno = 110;
    ipacl_vel_msg rsp = message(0x99, data, 1);
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

TEST_F(Wrap, QuenSendAndResponseWrapThePayload) {
    uint8_t data[300];
    for (size_t i = 0; i < sizeof data; ++i) data[i] = static_cast<uint8_t>(i);
    ipacl_vel_msg msg;
    memset(&msg, 0x5a, sizeof msg);
    msg.opcode = 0x1234;
    msg.payload = data;
    msg.size = 5;
    char err[IPACL_ERR_TEXT_SIZE] = "kept";

    count_mallocs();
    EXPECT_EQ(ipacl_wrap_quen_send(7, &msg, err), 0u);
    EXPECT_EQ(ipacl_double::malloc_calls(), 1u);
    EXPECT_STREQ(err, "kept");  // success leaves the buffer as it was
    EXPECT_EQ(ipacl_wrap_quen_rsp(4, 0x0badcafeu, data, 300, err), 0u);
    EXPECT_STREQ(err, "");
    msg.size = 0;
    EXPECT_EQ(ipacl_wrap_quen_send(1, &msg, nullptr), 0u);
    EXPECT_EQ(ipacl_wrap_quen_rsp(1, 2, nullptr, 0, nullptr), 0u);

    const auto &sends = platform().sends;
    ASSERT_EQ(sends.size(), 4u);
    expect_sent(sends[0], {7, 98, 0x1234, 117, nullptr, 0});
    EXPECT_EQ(slice(sends[0].payload, 0, 12), (Bytes{0, 0, 0, 3, 0, 0, 0, 5, 0, 0, 0, 0}));
    EXPECT_EQ(slice(sends[0].payload, 12, 100), Bytes(100, 0));
    EXPECT_EQ(slice(sends[0].payload, 112, 5), Bytes(data, data + 5));
    expect_sent(sends[1], {4, 0, 0, 412, nullptr, 0x0badcafeu});
    EXPECT_EQ(slice(sends[1].payload, 0, 12), (Bytes{0, 0, 0, 0, 0, 0, 1, 0x2c, 0, 0, 0, 0}));
    EXPECT_EQ(slice(sends[1].payload, 112, 300), Bytes(data, data + 300));
    // An empty payload sends the bare header.
    expect_sent(sends[2], {1, 98, 0x1234, 112, nullptr, 0});
    expect_sent(sends[3], {1, 0, 0, 112, nullptr, 2});
    EXPECT_EQ(sends[3].payload, Bytes(112, 0));
}

TEST_F(Wrap, QuenRequestCarriesTheTextsAndUnpacksTheAnswer) {
    uint8_t data[] = {0xa0, 0xa1};
    ipacl_quen_desc req = request(data, 2, "acl-one", "second text");
    memset(req.handle, 0xee, sizeof req.handle);
    ipacl_vel_msg rsp;
    memset(&rsp, 0x33, sizeof rsp);
    platform().rr_token = 0x55667788u;
    platform().answers.push_back(answer(3, {7, 8, 9}));
    char err[IPACL_ERR_TEXT_SIZE] = "stale";

    count_mallocs();
    ASSERT_EQ(ipacl_wrap_quen_req_rsp(6, &req, &rsp, err), 0u);
    EXPECT_EQ(ipacl_double::malloc_calls(), 1u);
    EXPECT_STREQ(err, "");

    ASSERT_EQ(platform().sends.size(), 1u);
    const Bytes &sent = platform().sends[0].payload;
    expect_sent(platform().sends[0], {6, 98, 0x4321, 114, req.handle, 0});
    EXPECT_EQ(slice(sent, 0, 12), (Bytes{0, 0, 0, 2, 0, 0, 0, 2, 0, 0, 0, 0}));
    EXPECT_EQ(slice(sent, 12, 40), text_field("acl-one", 40));
    EXPECT_EQ(slice(sent, 52, 60), text_field("second text", 60));
    EXPECT_EQ(slice(sent, 112, 2), (Bytes{0xa0, 0xa1}));
    EXPECT_EQ(platform().recvs.at(0).options[3], 0x55667788u);  // the exchange as for vel

    // The answer's payload starts after its header; the answer stays held.
    EXPECT_EQ(rsp.payload, platform().held[0].data() + 112);
    EXPECT_EQ(rsp.size, 3u);
    EXPECT_EQ(rsp.opcode, 0u);
}

TEST_F(Wrap, QuenRequestTextsStayInsideTheEnvelope) {
    // A first text beyond its field runs on into the second field when there
    // is no second text, but never past the envelope; the payload follows.
    ipacl_vel_msg rsp;
    uint8_t data[] = {1, 2};
    const std::string overlong(45, 'a'), huge(500, 'b');
    Bytes run_on = text_field(overlong.c_str(), 100);
    struct Case {
        const char *text1, *text2;
        Bytes field1, field2;
    } cases[] = {
        {nullptr, nullptr, Bytes(40, 0), Bytes(60, 0)},
        {overlong.c_str(), nullptr, slice(run_on, 0, 40), slice(run_on, 40, 60)},
        {huge.c_str(), huge.c_str(), Bytes(40, 'b'), Bytes(60, 'b')},
    };
    for (const Case &c : cases) {
        ipacl_double::reset();
        platform().answers.push_back(answer(0, {}));
        ipacl_quen_desc req = request(data, 2, c.text1, c.text2);
        ASSERT_EQ(ipacl_wrap_quen_req_rsp(1, &req, &rsp, nullptr), 0u);
        const Bytes &sent = platform().sends.at(0).payload;
        ASSERT_EQ(sent.size(), 114u);
        EXPECT_EQ(slice(sent, 12, 40), c.field1);
        EXPECT_EQ(slice(sent, 52, 60), c.field2);
        EXPECT_EQ(slice(sent, 112, 2), (Bytes{1, 2}));
    }
}

TEST_F(Wrap, QuenAnswersThatDisagreeWithTheirLength) {
    struct Case {
        Bytes answer;
        uint32_t size;  // expected rsp.size: the length the header states
        const char *text;
    } cases[] = {
        {answer(10, {1, 2, 3}), 10, "bas size 10 for opc 17185"},
        {answer(2, {1, 2, 3}), 2, "bas size 2 for opc 17185"},
        // Shorter than the header, with the length that its size minus the
        // header would give in 32 bits (16 - 112).
        {Bytes{0, 0, 0, 0, 0xff, 0xff, 0xff, 0xa0, 0, 0, 0, 0, 0, 0, 0, 0}, 0xffffffa0u,
         "bas size 4294967200 for opc 17185"},
        {Bytes{0, 0, 0}, 0, "bas size 0 for opc 17185"},  // too short for the length word
    };
    for (const Case &c : cases) {
        ipacl_double::reset();
        platform().answers.push_back(c.answer);
        ipacl_quen_desc req = request(nullptr, 0, nullptr, nullptr);
        ipacl_vel_msg rsp;
        char err[IPACL_ERR_TEXT_SIZE] = "stale";
        EXPECT_EQ(ipacl_wrap_quen_req_rsp(1, &req, &rsp, err), 0x407f0004u);
        EXPECT_STREQ(err, c.text);
        // The payload and the stated length are handed over all the same.
        EXPECT_EQ(rsp.size, c.size);
        EXPECT_EQ(reinterpret_cast<uintptr_t>(rsp.payload),
                  reinterpret_cast<uintptr_t>(platform().held.at(0).data()) + 112);
        platform().answers.push_back(c.answer);
        EXPECT_EQ(ipacl_wrap_quen_req_rsp(1, &req, &rsp, nullptr), 0x407f0004u);
    }
}

TEST_F(Wrap, QuenFailures) {
    uint8_t data[] = {1, 2, 3};
    ipacl_vel_msg zero{}, rsp, msg{};
    msg.opcode = 9;
    msg.payload = data;
    msg.size = 3;
    char err[IPACL_ERR_TEXT_SIZE];
    ipacl_quen_desc req = request(data, 3, "t", "u");

    // No memory for the envelope: nothing is sent, the response is cleared.
    for (char *buffer : {err, static_cast<char *>(nullptr)}) {
        memset(&rsp, 0x44, sizeof rsp);
        ipacl_double::fail_malloc_after(1);
        EXPECT_EQ(ipacl_wrap_quen_req_rsp(1, &req, &rsp, buffer), 0x407f0005u);
        EXPECT_EQ(memcmp(&rsp, &zero, sizeof rsp), 0);
    }
    EXPECT_STREQ(err, "no mem for quen_req_msg");
    EXPECT_TRUE(platform().sends.empty());

    // The send fails: the envelope is freed, nothing is awaited.
    fail_send(32);
    memset(&rsp, 0x44, sizeof rsp);
    EXPECT_EQ(ipacl_wrap_quen_req_rsp(1, &req, &rsp, err), 32u);
    EXPECT_EQ(memcmp(&rsp, &zero, sizeof rsp), 0);
    EXPECT_STREQ(err, "failed vel_send() 32");
    EXPECT_EQ(ipacl_wrap_quen_req_rsp(1, &req, &rsp, nullptr), 32u);
    EXPECT_TRUE(platform().recvs.empty());
    EXPECT_EQ(ipacl_wrap_quen_send(1, &msg, err), 32u);
    EXPECT_EQ(ipacl_wrap_quen_send(1, &msg, nullptr), 32u);
    EXPECT_EQ(ipacl_wrap_quen_rsp(1, 2, data, 3, err), 32u);
    EXPECT_STREQ(err, "failed vel_send_response() 32");
    EXPECT_EQ(ipacl_wrap_quen_rsp(1, 2, data, 3, nullptr), 32u);

    ipacl_double::reset();
    for (char *buffer : {err, static_cast<char *>(nullptr)}) {
        ipacl_double::fail_malloc_after(1);
        EXPECT_EQ(ipacl_wrap_quen_send(1, &msg, buffer), 0x407f0005u);
        ipacl_double::fail_malloc_after(1);
        EXPECT_EQ(ipacl_wrap_quen_rsp(1, 2, data, 3, buffer), 0x407f0005u);
    }
    EXPECT_STREQ(err, "no mem for quen_msg");

    // A payload too large to fit behind the header cannot be enveloped.
    count_mallocs();
    msg.size = 0xffffffa0u;
    strcpy(err, "stale");
    EXPECT_EQ(ipacl_wrap_quen_send(1, &msg, err), 0x407f0005u);
    EXPECT_STREQ(err, "no mem for quen_msg");
    EXPECT_EQ(ipacl_wrap_quen_rsp(1, 2, data, 0xffffff91u, nullptr), 0x407f0005u);
    EXPECT_EQ(ipacl_double::malloc_calls(), 0u);
    EXPECT_TRUE(platform().sends.empty());
}

TEST_F(Wrap, QuenReceiveOpensTheEnvelope) {
    Bytes good = answer(4, {1, 2, 3, 4});
    void *out = nullptr;
    uint32_t size = 0;
    char err[IPACL_ERR_TEXT_SIZE] = "stale";
    EXPECT_EQ(ipacl_wrap_quen_recv(good.data(), 116, &out, &size, err), 0u);
    EXPECT_STREQ(err, "");
    EXPECT_EQ(out, good.data() + 112);
    EXPECT_EQ(size, 4u);

    struct Case {
        Bytes message;
        uint32_t size;
        const char *text;
    } cases[] = {
        {answer(1, {}), 1, "bad size 1"},
        {Bytes{0, 0, 0, 0, 0xff, 0xff, 0xff, 0x98}, 0xffffff98u, "bad size 4294967192"},
    };
    for (Case &c : cases) {
        out = nullptr;
        size = 12345;
        const uint32_t length = static_cast<uint32_t>(c.message.size());
        EXPECT_EQ(ipacl_wrap_quen_recv(c.message.data(), length, &out, &size, err), 0x407f0004u);
        EXPECT_STREQ(err, c.text);
        // Both outputs are set before the check.
        EXPECT_EQ(size, c.size);
        EXPECT_EQ(reinterpret_cast<uintptr_t>(out),
                  reinterpret_cast<uintptr_t>(c.message.data()) + 112);
        EXPECT_EQ(ipacl_wrap_quen_recv(c.message.data(), length, &out, &size, nullptr),
                  0x407f0004u);
    }
}

}  // namespace
