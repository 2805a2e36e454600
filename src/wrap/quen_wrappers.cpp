// The enveloped wrappers: the payload travels behind a quen header.
#include <ipacl/wrap.h>

#include <cstdio>

#include "platform/vel.h"
#include "wrap/quen_envelope.h"
#include "wrap/vel_exchange.h"

using namespace ipacl::wrap;

extern "C" {

uint32_t ipacl_wrap_quen_send(uint32_t handle, const ipacl_vel_msg *msg, char *err) {
    // Unlike every other wrapper, success leaves `err` as it was.
    return send_envelope(kQuenSet, handle,
                         {msg->opcode, msg->payload, msg->size, nullptr, nullptr, nullptr, 0}, err);
}

uint32_t ipacl_wrap_quen_req_rsp(uint32_t handle, ipacl_quen_desc *req, ipacl_vel_msg *rsp,
                                 char *err) {
    ipacl_vel_rcv_opts options;
    begin_exchange(options, req->handle, rsp);
    uint32_t rc = send_envelope(
        kQuenRequest, handle,
        {req->opcode, req->payload, req->size, req->text1, req->text2, req->handle, 0}, err);
    if (rc == IPACL_OK) rc = await_answer(handle, options, req->handle, rsp, err);
    if (rc != IPACL_OK) return rc;

    // The answer stays held by rsp->handle; its payload and stated length
    // are handed over even when they disagree with what arrived.
    const Opened answer =
        open_envelope(vel_payload_get(rsp->handle), vel_payload_size(rsp->handle));
    rsp->payload = answer.payload;
    rsp->size = answer.length;
    if (!answer.consistent) {
        // "bas" is how this message has always read; clients match it as it is.
        if (err) sprintf(err, "bas size %u for opc %u", answer.length, req->opcode);
        return IPACL_E_BAD_ARG;
    }
    ipacl_str_zero(err);
    return IPACL_OK;
}

uint32_t ipacl_wrap_quen_rsp(uint32_t handle, uint32_t token, const void *payload, uint32_t size,
                             char *err) {
    const uint32_t rc = send_envelope(kQuenAnswer, handle,
                                      {0, payload, size, nullptr, nullptr, nullptr, token}, err);
    if (rc == IPACL_OK) ipacl_str_zero(err);
    return rc;
}

uint32_t ipacl_wrap_quen_recv(void *payload, uint32_t size, void **out_payload, uint32_t *out_size,
                              char *err) {
    const Opened message = open_envelope(payload, size);
    *out_payload = message.payload;
    *out_size = message.length;
    if (!message.consistent) {
        if (err) sprintf(err, "bad size %u", message.length);
        return IPACL_E_BAD_ARG;
    }
    ipacl_str_zero(err);
    return IPACL_OK;
}

}  // extern "C"
