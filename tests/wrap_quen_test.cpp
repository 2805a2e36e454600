// The quen envelope against the recording platform double: the envelope's
// bytes, the unpacking of enveloped answers (matching, short, lying about
// their length), one allocation per call, and every failure path.  Under the
// sanitizers a leaked or doubly freed envelope fails the run.
#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

#include <ipacl/ipacl.h>

#include "platform_double.h"
#include "vel_expect.h"

namespace {

using Bytes = std::vector<uint8_t>;
using ipacl_double::fail_send;
using ipacl_double::platform;

class WrapQuen : public ::testing::Test {
  protected:
    void SetUp() override { ipacl_double::reset(); }
    void TearDown() override { ipacl_double::fail_malloc_after(0); }

    // Counts the library's allocations from now on (none is made to fail).
    static void count_mallocs() { ipacl_double::fail_malloc_after(1000000); }
};

using ipacl_double::expect_sent;
using ipacl_double::Sent;

Bytes slice(const Bytes &bytes, size_t at, size_t n) {
    return Bytes(bytes.begin() + at, bytes.begin() + at + n);
}

Bytes text_field(const char *text, size_t size) {
    Bytes field(size, 0);
    memcpy(field.data(), text, strlen(text));
    return field;
}

// An enveloped answer: a header whose length word is `length`, then `tail`.
Bytes answer(uint8_t l0, uint8_t l1, uint8_t l2, uint8_t l3, const Bytes &tail) {
    Bytes bytes(112 + tail.size(), 0);  // operation 0: the answer's own, not looked at
    bytes[4] = l0;
    bytes[5] = l1;
    bytes[6] = l2;
    bytes[7] = l3;
    for (size_t i = 0; i < tail.size(); ++i) bytes[112 + i] = tail[i];
    return bytes;
}

ipacl_quen_desc request(uint32_t opcode, void *payload, uint32_t size, const char *text1,
                        const char *text2) {
    ipacl_quen_desc req;
    memset(&req, 0x5a, sizeof req);
    req.opcode = opcode;
    req.payload = payload;
    req.size = size;
    req.text1 = text1;
    req.text2 = text2;
    return req;
}

TEST_F(WrapQuen, SendWrapsThePayloadInASetEnvelope) {
    uint8_t data[] = {1, 2, 3, 4, 5};
    ipacl_vel_msg msg;
    memset(&msg, 0x5a, sizeof msg);
    msg.opcode = 0x1234;
    msg.payload = data;
    msg.size = sizeof data;
    char err[IPACL_ERR_TEXT_SIZE] = "kept";

    count_mallocs();
    EXPECT_EQ(ipacl_wrap_quen_send(7, &msg, err), 0u);
    EXPECT_EQ(ipacl_double::malloc_calls(), 1u);
    // Success leaves the buffer as it was.
    EXPECT_STREQ(err, "kept");
    EXPECT_EQ(ipacl_wrap_quen_send(7, &msg, nullptr), 0u);

    ASSERT_EQ(platform().sends.size(), 2u);
    const auto &call = platform().sends[0];
    expect_sent(call, {7, 98, 0x1234, 117, nullptr, 0});
    ASSERT_EQ(call.payload.size(), 117u);
    EXPECT_EQ(slice(call.payload, 0, 12), (Bytes{0, 0, 0, 3, 0, 0, 0, 5, 0, 0, 0, 0}));
    EXPECT_EQ(slice(call.payload, 12, 100), Bytes(100, 0));
    EXPECT_EQ(slice(call.payload, 112, 5), (Bytes{1, 2, 3, 4, 5}));
}

TEST_F(WrapQuen, ResponseWrapsThePayloadInAnEnvelopeWithTheToken) {
    Bytes data(300);
    for (size_t i = 0; i < data.size(); ++i) data[i] = static_cast<uint8_t>(i);
    char err[IPACL_ERR_TEXT_SIZE] = "stale";

    count_mallocs();
    EXPECT_EQ(ipacl_wrap_quen_rsp(4, 0x0badcafeu, data.data(), 300, err), 0u);
    EXPECT_EQ(ipacl_double::malloc_calls(), 1u);
    EXPECT_STREQ(err, "");

    ASSERT_EQ(platform().sends.size(), 1u);
    const auto &call = platform().sends[0];
    expect_sent(call, {4, 0, 0, 412, nullptr, 0x0badcafeu});
    ASSERT_EQ(call.payload.size(), 412u);
    EXPECT_EQ(slice(call.payload, 0, 12), (Bytes{0, 0, 0, 0, 0, 0, 1, 0x2c, 0, 0, 0, 0}));
    EXPECT_EQ(slice(call.payload, 12, 100), Bytes(100, 0));
    EXPECT_EQ(slice(call.payload, 112, 300), data);
}

TEST_F(WrapQuen, EmptyPayloadSendsTheBareHeader) {
    ipacl_vel_msg msg;
    memset(&msg, 0, sizeof msg);
    msg.opcode = 1;
    EXPECT_EQ(ipacl_wrap_quen_send(1, &msg, nullptr), 0u);
    EXPECT_EQ(ipacl_wrap_quen_rsp(1, 2, nullptr, 0, nullptr), 0u);
    ASSERT_EQ(platform().sends.size(), 2u);
    expect_sent(platform().sends[0], {1, 98, 1, 112, nullptr, 0});
    expect_sent(platform().sends[1], {1, 0, 0, 112, nullptr, 2});
    Bytes set_header(112, 0);
    set_header[3] = 3;
    EXPECT_EQ(platform().sends[0].payload, set_header);
    EXPECT_EQ(platform().sends[1].payload, Bytes(112, 0));
}

TEST_F(WrapQuen, RequestCarriesTheTextsAndUnpacksTheAnswer) {
    uint8_t data[] = {0xa0, 0xa1};
    ipacl_quen_desc req = request(0x4321, data, 2, "acl-one", "second text");
    memset(req.handle, 0xee, sizeof req.handle);
    ipacl_vel_msg rsp;
    memset(&rsp, 0x33, sizeof rsp);
    platform().rr_token = 0x55667788u;
    platform().answers.push_back(answer(0, 0, 0, 3, {7, 8, 9}));
    char err[IPACL_ERR_TEXT_SIZE] = "stale";

    count_mallocs();
    ASSERT_EQ(ipacl_wrap_quen_req_rsp(6, &req, &rsp, err), 0u);
    EXPECT_EQ(ipacl_double::malloc_calls(), 1u);
    EXPECT_STREQ(err, "");

    ASSERT_EQ(platform().sends.size(), 1u);
    const auto &call = platform().sends[0];
    expect_sent(call, {6, 98, 0x4321, 114, req.handle, 0});
    ASSERT_EQ(call.payload.size(), 114u);
    EXPECT_EQ(slice(call.payload, 0, 12), (Bytes{0, 0, 0, 2, 0, 0, 0, 2, 0, 0, 0, 0}));
    EXPECT_EQ(slice(call.payload, 12, 40), text_field("acl-one", 40));
    EXPECT_EQ(slice(call.payload, 52, 60), text_field("second text", 60));
    EXPECT_EQ(slice(call.payload, 112, 2), (Bytes{0xa0, 0xa1}));
    EXPECT_EQ(Bytes(req.handle, req.handle + 28),
              (Bytes{0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0,    0,    0,
                     0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0xee, 0xee, 0xee}));

    ASSERT_EQ(platform().token_gets.size(), 1u);
    EXPECT_EQ(platform().token_gets[0], static_cast<void *>(req.handle));
    ASSERT_EQ(platform().drops.size(), 1u);
    EXPECT_EQ(platform().drops[0].handle, 6u);
    EXPECT_EQ(platform().drops[0].msg_handle, static_cast<void *>(req.handle));
    ASSERT_EQ(platform().recvs.size(), 1u);
    EXPECT_EQ(platform().recvs[0].handle, 6u);
    EXPECT_EQ(platform().recvs[0].msg_handle, static_cast<void *>(rsp.handle));
    const uint32_t options[10] = {1, 0, 10, 0x55667788u, 0, 0, 0, 0, 0, 0};
    EXPECT_EQ(memcmp(platform().recvs[0].options, options, sizeof options), 0);

    // The answer's payload starts after its header; the answer stays held.
    EXPECT_EQ(rsp.payload, platform().held[0].data() + 112);
    EXPECT_EQ(rsp.size, 3u);
    EXPECT_EQ(rsp.opcode, 0u);
    EXPECT_EQ(memcmp(rsp.payload, "\x07\x08\x09", 3), 0);
}

TEST_F(WrapQuen, RequestTextsStayInsideTheEnvelope) {
    // A first text beyond its field runs on into the second field when there
    // is no second text, but never past the envelope; the payload follows.
    ipacl_vel_msg rsp;
    uint8_t data[] = {1, 2};
    const std::string longest1(39, 'x'), longest2(59, 'y'), overlong(45, 'a'), huge(500, 'b');
    Bytes run_on = text_field(overlong.c_str(), 100);
    struct Case {
        const char *text1, *text2;
        Bytes field1, field2;
    } cases[] = {
        {nullptr, nullptr, Bytes(40, 0), Bytes(60, 0)},
        {"", nullptr, Bytes(40, 0), Bytes(60, 0)},
        {nullptr, "only-two", Bytes(40, 0), text_field("only-two", 60)},
        {longest1.c_str(), longest2.c_str(), text_field(longest1.c_str(), 40),
         text_field(longest2.c_str(), 60)},
        {overlong.c_str(), nullptr, slice(run_on, 0, 40), slice(run_on, 40, 60)},
        {huge.c_str(), huge.c_str(), Bytes(40, 'b'), Bytes(60, 'b')},
    };
    for (const Case &c : cases) {
        ipacl_double::reset();
        platform().answers.push_back(answer(0, 0, 0, 0, {}));
        ipacl_quen_desc req = request(1, data, 2, c.text1, c.text2);
        ASSERT_EQ(ipacl_wrap_quen_req_rsp(1, &req, &rsp, nullptr), 0u);
        const Bytes &sent = platform().sends.at(0).payload;
        ASSERT_EQ(sent.size(), 114u);
        EXPECT_EQ(slice(sent, 12, 40), c.field1);
        EXPECT_EQ(slice(sent, 52, 60), c.field2);
        EXPECT_EQ(slice(sent, 112, 2), (Bytes{1, 2}));
    }
}

TEST_F(WrapQuen, AnswersThatDisagreeWithTheirLength) {
    struct Case {
        Bytes answer;
        uint32_t size;  // expected rsp.size: the length the header states
        const char *text;
    } cases[] = {
        // States 10 bytes, carries 3.
        {answer(0, 0, 0, 10, {1, 2, 3}), 10, "bas size 10 for opc 77"},
        // States 2 bytes, carries 3.
        {answer(0, 0, 0, 2, {1, 2, 3}), 2, "bas size 2 for opc 77"},
        // Shorter than the header.
        {Bytes{0, 0, 0, 0, 0, 0, 0, 0, 0, 0}, 0, "bas size 0 for opc 77"},
        // Shorter than the header, with the length that its size minus the
        // header would give in 32 bits (16 - 112).
        {Bytes{0, 0, 0, 0, 0xff, 0xff, 0xff, 0xa0, 0, 0, 0, 0, 0, 0, 0, 0}, 0xffffffa0u,
         "bas size 4294967200 for opc 77"},
        // Too short even for the length word.
        {Bytes{0, 0, 0}, 0, "bas size 0 for opc 77"},
        {Bytes{}, 0, "bas size 0 for opc 77"},
    };
    for (const Case &c : cases) {
        ipacl_double::reset();
        platform().answers.push_back(c.answer);
        ipacl_quen_desc req = request(77, nullptr, 0, nullptr, nullptr);
        ipacl_vel_msg rsp;
        char err[IPACL_ERR_TEXT_SIZE] = "stale";
        EXPECT_EQ(ipacl_wrap_quen_req_rsp(1, &req, &rsp, err), 0x407f0004u);
        EXPECT_STREQ(err, c.text);
        // The payload and the stated length are handed over all the same.
        EXPECT_EQ(rsp.size, c.size);
        EXPECT_EQ(reinterpret_cast<uintptr_t>(rsp.payload),
                  reinterpret_cast<uintptr_t>(platform().held.at(0).data()) + 112);
        EXPECT_EQ(platform().drops.size(), 1u);

        platform().answers.push_back(c.answer);
        EXPECT_EQ(ipacl_wrap_quen_req_rsp(1, &req, &rsp, nullptr), 0x407f0004u);
    }
}

TEST_F(WrapQuen, FailedRequests) {
    uint8_t data[] = {1, 2, 3};
    ipacl_vel_msg zero;
    memset(&zero, 0, sizeof zero);
    ipacl_vel_msg rsp;
    char err[IPACL_ERR_TEXT_SIZE];
    ipacl_quen_desc req = request(5, data, 3, "t", "u");

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
    for (char *buffer : {err, static_cast<char *>(nullptr)}) {
        memset(&rsp, 0x44, sizeof rsp);
        EXPECT_EQ(ipacl_wrap_quen_req_rsp(1, &req, &rsp, buffer), 32u);
        EXPECT_EQ(memcmp(&rsp, &zero, sizeof rsp), 0);
    }
    EXPECT_STREQ(err, "failed vel_send() 32");
    EXPECT_EQ(platform().sends.size(), 2u);
    EXPECT_TRUE(platform().recvs.empty());
    EXPECT_TRUE(platform().drops.empty());

    // The wait fails.
    ipacl_double::reset();
    platform().recv_rc = -1;
    platform().recv_errno = 62;
    EXPECT_EQ(ipacl_wrap_quen_req_rsp(1, &req, &rsp, err), 62u);
    EXPECT_STREQ(err, "failed vel_recv() 62");
    EXPECT_EQ(ipacl_wrap_quen_req_rsp(1, &req, &rsp, nullptr), 62u);
    EXPECT_EQ(platform().drops.size(), 2u);
}

TEST_F(WrapQuen, FailedSendsAndResponses) {
    uint8_t data[] = {1, 2, 3};
    ipacl_vel_msg msg;
    memset(&msg, 0, sizeof msg);
    msg.opcode = 9;
    msg.payload = data;
    msg.size = 3;
    char err[IPACL_ERR_TEXT_SIZE];

    ipacl_double::fail_malloc_after(1);
    EXPECT_EQ(ipacl_wrap_quen_send(1, &msg, err), 0x407f0005u);
    EXPECT_STREQ(err, "no mem for quen_msg");
    ipacl_double::fail_malloc_after(1);
    EXPECT_EQ(ipacl_wrap_quen_send(1, &msg, nullptr), 0x407f0005u);
    ipacl_double::fail_malloc_after(1);
    EXPECT_EQ(ipacl_wrap_quen_rsp(1, 2, data, 3, err), 0x407f0005u);
    EXPECT_STREQ(err, "no mem for quen_msg");
    ipacl_double::fail_malloc_after(1);
    EXPECT_EQ(ipacl_wrap_quen_rsp(1, 2, data, 3, nullptr), 0x407f0005u);
    EXPECT_TRUE(platform().sends.empty());

    // A payload too large to fit behind the header cannot be enveloped.
    count_mallocs();
    msg.size = 0xffffffa0u;
    EXPECT_EQ(ipacl_wrap_quen_send(1, &msg, err), 0x407f0005u);
    EXPECT_STREQ(err, "no mem for quen_msg");
    EXPECT_EQ(ipacl_wrap_quen_rsp(1, 2, data, 0xffffff91u, nullptr), 0x407f0005u);
    EXPECT_EQ(ipacl_double::malloc_calls(), 0u);
    EXPECT_TRUE(platform().sends.empty());
    msg.size = 3;

    fail_send(28);
    EXPECT_EQ(ipacl_wrap_quen_send(1, &msg, err), 28u);
    EXPECT_STREQ(err, "failed vel_send() 28");
    EXPECT_EQ(ipacl_wrap_quen_send(1, &msg, nullptr), 28u);
    EXPECT_EQ(ipacl_wrap_quen_rsp(1, 2, data, 3, err), 28u);
    EXPECT_STREQ(err, "failed vel_send_response() 28");
    EXPECT_EQ(ipacl_wrap_quen_rsp(1, 2, data, 3, nullptr), 28u);
    EXPECT_EQ(platform().sends.size(), 4u);
}

TEST_F(WrapQuen, ReceiveOpensTheEnvelope) {
    Bytes good = answer(0, 0, 0, 4, {1, 2, 3, 4});
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
        {answer(0, 0, 1, 0, {1, 2, 3, 4}), 256, "bad size 256"},
        {answer(0, 0, 0, 1, {}), 1, "bad size 1"},
        {Bytes{0, 0, 0, 0, 0xff, 0xff, 0xff, 0x98}, 0xffffff98u, "bad size 4294967192"},
        {Bytes{0, 0, 0, 0, 0, 0}, 0, "bad size 0"},
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
