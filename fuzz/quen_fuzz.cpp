// The quen envelope with arbitrary bytes from a peer.
//
// ipacl_wrap_quen_recv, and ipacl_wrap_quen_req_rsp with the platform's
// receive answering the same bytes (each in an exact-size block):
//  - no read outside the received bytes;
//  - the payload pointer is the byte after the 112-byte header and the size
//    the header's big-endian length word;
//  - success only when the bytes hold a whole header and the length word
//    names exactly the bytes behind it; otherwise IPACL_E_BAD_ARG with
//    "bad size %u" / "bas size %u for opc %u" filled with the length word;
//  - a failed send or receive returns errno with its message and leaves the
//    response descriptor cleared.
// The envelopes that ipacl_wrap_quen_send, _req_rsp and _rsp hand to the
// platform: operation, length, reserved word, both text fields (zero behind
// the text) and the payload byte for byte, with the destination, opcode and
// token each wrapper must use.
#include <ipacl/wrap.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <vector>

#include "fuzz_support.h"
#include "platform/vel.h"
#include "platform_stub.h"

namespace {

constexpr uint32_t kHandle = 0x11;
constexpr size_t kHeader = IPACL_QUEN_SIZE;

uint32_t be32(const uint8_t *p) {
    return uint32_t(p[0]) << 24 | uint32_t(p[1]) << 16 | uint32_t(p[2]) << 8 | p[3];
}

std::vector<uint8_t> text_of(fuzz::Reader &in, size_t max) {
    size_t n = in.u8() % (max + 1);
    std::vector<uint8_t> t(n + 1, 0);
    for (size_t i = 0; i < n; ++i) {
        t[i] = in.u8();
        if (t[i] == 0) t[i] = 'a';
    }
    return t;
}

void expect_text(const char *err, const char *want, const char *who) {
    FUZZ_CHECK(std::strcmp(err, want) == 0, "%s: text \"%s\", expected \"%s\"", who, err, want);
}

// The envelope last handed to vel_send.
void check_envelope(const char *who, uint32_t op, const std::vector<uint8_t> &payload,
                    const char *text1, const char *text2) {
    const auto &s = fuzz_platform::state();
    const std::vector<uint8_t> &e = s.last_payload;
    FUZZ_CHECK(e.size() == kHeader + payload.size(), "%s sent %zu bytes for a payload of %zu", who,
               e.size(), payload.size());
    FUZZ_CHECK(be32(&e[0]) == op && be32(&e[4]) == payload.size() && be32(&e[8]) == 0,
               "%s header words %08x %08x %08x", who, be32(&e[0]), be32(&e[4]), be32(&e[8]));
    uint8_t t1[IPACL_QUEN_TEXT1_SIZE] = {}, t2[IPACL_QUEN_TEXT2_SIZE] = {};
    if (text1) std::memcpy(t1, text1, std::strlen(text1));
    if (text2) std::memcpy(t2, text2, std::strlen(text2));
    FUZZ_CHECK(std::memcmp(&e[12], t1, sizeof t1) == 0 && std::memcmp(&e[52], t2, sizeof t2) == 0,
               "%s text fields", who);
    FUZZ_CHECK(payload.empty() || std::memcmp(&e[kHeader], payload.data(), payload.size()) == 0,
               "%s payload bytes", who);
    FUZZ_CHECK(s.last_node == IPACL_VEL_NODE, "%s node 0x%x", who, s.last_node);
}

// Checks the unpacked answer common to receive and request-response.
void check_unpacked(const char *who, uint32_t rc, const uint8_t *p, size_t n,
                    const void *out_payload, uint32_t out_size) {
    FUZZ_CHECK(out_payload == p + kHeader, "%s: payload pointer not behind the header", who);
    if (n >= 8)
        FUZZ_CHECK(out_size == be32(p + 4), "%s: size %u, length word %u", who, out_size,
                   be32(p + 4));
    FUZZ_CHECK(rc == IPACL_OK || rc == IPACL_E_BAD_ARG, "%s: 0x%x", who, rc);
    if (rc == IPACL_OK)
        FUZZ_CHECK(
            n >= kHeader && out_size == n - kHeader,
            "%s accepted %zu bytes whose length word says %u: the payload is not inside them", who,
            n, out_size);
    else if (n >= kHeader)
        FUZZ_CHECK(out_size != n - kHeader, "%s refused a consistent envelope", who);
}

void check_recv(const std::vector<uint8_t> &bytes) {
    size_t n = bytes.size();
    uint8_t *p = static_cast<uint8_t *>(std::malloc(n ? n : 1));
    if (n) std::memcpy(p, bytes.data(), n);
    void *out = nullptr;
    uint32_t out_size = 0;
    char err[IPACL_ERR_TEXT_SIZE];
    std::memset(err, 'X', sizeof err);
    uint32_t rc = ipacl_wrap_quen_recv(p, uint32_t(n), &out, &out_size, err);
    check_unpacked("ipacl_wrap_quen_recv", rc, p, n, out, out_size);
    char want[64] = "";
    if (rc != IPACL_OK) std::snprintf(want, sizeof want, "bad size %u", out_size);
    expect_text(err, want, "ipacl_wrap_quen_recv");
    FUZZ_CHECK(ipacl_wrap_quen_recv(p, uint32_t(n), &out, &out_size, nullptr) == rc,
               "ipacl_wrap_quen_recv without a buffer");
    std::free(p);
}

void check_req_rsp(uint8_t ctl, int err_no, uint32_t opcode, const std::vector<uint8_t> &payload,
                   const char *text1, const char *text2, const std::vector<uint8_t> &answer) {
    auto &s = fuzz_platform::state();
    s.send_rc = (ctl & 1) ? -1 : 0;
    s.recv_rc = (ctl & 2) ? -1 : 0;
    s.send_errno = s.recv_errno = err_no;
    s.answer = answer;

    ipacl_quen_desc *req = static_cast<ipacl_quen_desc *>(std::malloc(sizeof *req));
    std::memset(req, 0x5A, sizeof *req);
    req->opcode = opcode;
    req->payload = const_cast<uint8_t *>(payload.data());
    req->size = uint32_t(payload.size());
    req->text1 = text1;
    req->text2 = text2;
    ipacl_vel_msg *rsp = static_cast<ipacl_vel_msg *>(std::malloc(sizeof *rsp));
    std::memset(rsp, 0x5A, sizeof *rsp);
    char err[IPACL_ERR_TEXT_SIZE];
    std::memset(err, 'X', sizeof err);

    uint32_t rc = ipacl_wrap_quen_req_rsp(kHandle, req, rsp, err);
    const char *who = "ipacl_wrap_quen_req_rsp";
    check_envelope(who, 2, payload, text1, text2);
    FUZZ_CHECK(s.last_service == IPACL_VEL_SERVICE_ACL && s.last_opcode == opcode &&
                   s.last_token == 0 && s.last_had_rr,
               "%s send arguments", who);
    char want[96];
    if (ctl & 3) {
        std::snprintf(want, sizeof want,
                      (ctl & 1) ? "failed vel_send() %u" : "failed vel_recv() %u",
                      unsigned(err_no));
        FUZZ_CHECK(rc == uint32_t(err_no), "%s returned 0x%x for errno %d", who, rc, err_no);
        expect_text(err, want, who);
        static const ipacl_vel_msg zero{};
        FUZZ_CHECK(std::memcmp(rsp, &zero, sizeof zero) == 0,
                   "%s left the response set after a failure", who);
        FUZZ_CHECK(s.held == 0, "%s holds an answer after a failure", who);
    } else {
        FUZZ_CHECK(s.last_wait_limit == IPACL_VEL_WAIT_LIMIT && s.last_wait_token == s.token,
                   "%s receive options", who);
        FUZZ_CHECK(s.held == 1, "%s: %d answers held", who, s.held);
        // The answer block the stub handed over.
        const uint8_t *p = static_cast<const uint8_t *>(vel_payload_get(rsp->handle));
        check_unpacked(who, rc, p, answer.size(), rsp->payload, rsp->size);
        if (rc == IPACL_OK)
            std::snprintf(want, sizeof want, "%s", "");
        else
            std::snprintf(want, sizeof want, "bas size %u for opc %u", rsp->size, opcode);
        expect_text(err, want, who);
        vel_drop(kHandle, rsp->handle);
        FUZZ_CHECK(s.held == 0, "the answer was not released by dropping the response handle");
    }
    std::free(rsp);
    std::free(req);
}

void check_send_and_rsp(uint8_t ctl, int err_no, uint32_t opcode, uint32_t token,
                        const std::vector<uint8_t> &payload) {
    auto &s = fuzz_platform::state();
    s.send_rc = (ctl & 4) ? -1 : 0;
    s.send_errno = err_no;
    char want[64];

    ipacl_vel_msg msg{};
    msg.opcode = opcode;
    msg.payload = const_cast<uint8_t *>(payload.data());
    msg.size = uint32_t(payload.size());
    char err[IPACL_ERR_TEXT_SIZE];
    std::memset(err, 'X', sizeof err);
    err[sizeof err - 1] = 0;
    uint32_t rc = ipacl_wrap_quen_send(kHandle, &msg, err);
    check_envelope("ipacl_wrap_quen_send", 3, payload, nullptr, nullptr);
    FUZZ_CHECK(s.last_service == IPACL_VEL_SERVICE_ACL && s.last_opcode == opcode &&
                   s.last_token == 0 && !s.last_had_rr,
               "ipacl_wrap_quen_send send arguments");
    if (ctl & 4) {
        FUZZ_CHECK(rc == uint32_t(err_no), "ipacl_wrap_quen_send returned 0x%x", rc);
        std::snprintf(want, sizeof want, "failed vel_send() %u", unsigned(err_no));
        expect_text(err, want, "ipacl_wrap_quen_send");
    } else {
        FUZZ_CHECK(rc == IPACL_OK, "ipacl_wrap_quen_send returned 0x%x", rc);
        // Success leaves the buffer as it was.
        FUZZ_CHECK(err[0] == 'X' && std::strlen(err) == sizeof err - 1,
                   "ipacl_wrap_quen_send touched err");
    }

    std::memset(err, 'X', sizeof err);
    rc = ipacl_wrap_quen_rsp(kHandle, token, payload.data(), uint32_t(payload.size()), err);
    check_envelope("ipacl_wrap_quen_rsp", 0, payload, nullptr, nullptr);
    FUZZ_CHECK(s.last_service == IPACL_VEL_SERVICE_NONE && s.last_opcode == 0 &&
                   s.last_token == token && !s.last_had_rr,
               "ipacl_wrap_quen_rsp send arguments");
    if (ctl & 4) {
        FUZZ_CHECK(rc == uint32_t(err_no), "ipacl_wrap_quen_rsp returned 0x%x", rc);
        std::snprintf(want, sizeof want, "failed vel_send_response() %u", unsigned(err_no));
        expect_text(err, want, "ipacl_wrap_quen_rsp");
    } else {
        FUZZ_CHECK(rc == IPACL_OK && err[0] == 0, "ipacl_wrap_quen_rsp returned 0x%x", rc);
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    fuzz_platform::reset();
    fuzz::Reader in(data, size);
    uint8_t ctl = in.u8();
    int err_no = 1 + in.u8() % 130;
    uint32_t opcode = in.u32();
    uint32_t token = in.u32();
    std::vector<uint8_t> t1 = text_of(in, IPACL_QUEN_TEXT1_SIZE - 1);
    std::vector<uint8_t> t2 = text_of(in, IPACL_QUEN_TEXT2_SIZE - 1);
    std::vector<uint8_t> payload(in.u8());
    payload.reserve(1);  // a real (never NULL) pointer even for no payload
    in.bytes(payload.data(), payload.size());
    std::vector<uint8_t> answer(in.rest(), in.rest() + in.left());

    const char *text1 = (ctl & 8) ? nullptr : reinterpret_cast<const char *>(t1.data());
    const char *text2 = (ctl & 16) ? nullptr : reinterpret_cast<const char *>(t2.data());

    check_recv(answer);
    check_req_rsp(ctl, err_no, opcode, payload, text1, text2, answer);
    check_send_and_rsp(ctl, err_no, opcode, token, payload);
    fuzz_platform::reset();
    return 0;
}
