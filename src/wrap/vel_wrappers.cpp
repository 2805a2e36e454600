// The plain vel wrappers: the payload travels untouched.
#include <ipacl/wrap.h>

#include "platform/vel.h"
#include "wrap/vel_exchange.h"
#include "wrap/vel_route.h"

using namespace ipacl::wrap;

namespace {

// Every plain send clears `err` once it has succeeded.
uint32_t cleared_on_success(uint32_t rc, char *err) {
    if (rc == IPACL_OK) ipacl_str_zero(err);
    return rc;
}

}  // namespace

extern "C" {

uint32_t ipacl_wrap_vel_send(uint32_t handle, void *rr_handle, const ipacl_vel_msg *msg,
                             char *err) {
    return cleared_on_success(
        send_along(kToManager, handle, msg->opcode, msg->payload, msg->size, rr_handle, 0, err),
        err);
}

uint32_t ipacl_wrap_vel_standby(uint32_t handle, void *rr_handle, const ipacl_vel_msg *msg,
                                char *err) {
    return cleared_on_success(
        send_along(kToStandby, handle, msg->opcode, msg->payload, msg->size, rr_handle, 0, err),
        err);
}

uint32_t ipacl_wrap_vel_rsp(uint32_t handle, uint32_t token, const void *payload, uint32_t size,
                            char *err) {
    return cleared_on_success(send_along(kAnswer, handle, 0, payload, size, nullptr, token, err),
                              err);
}

uint32_t ipacl_wrap_vel_req_rsp(uint32_t handle, ipacl_vel_msg *req, ipacl_vel_msg *rsp,
                                char *err) {
    ipacl_vel_rcv_opts options;
    begin_exchange(options, req->handle, rsp);
    uint32_t rc =
        send_along(kToManager, handle, req->opcode, req->payload, req->size, req->handle, 0, err);
    if (rc == IPACL_OK) rc = await_answer(handle, options, req->handle, rsp, err);
    if (rc != IPACL_OK) return rc;
    // A plain answer is handed over as it is; it stays held by rsp->handle.
    rsp->payload = vel_payload_get(rsp->handle);
    rsp->size = vel_payload_size(rsp->handle);
    ipacl_str_zero(err);
    return IPACL_OK;
}

uint32_t ipacl_wrap_vel_recv(void *payload, uint32_t size, void **out_payload, uint32_t *out_size,
                             char *err) {
    // Nothing to check: this keeps plain receivers the same shape as
    // enveloped ones.
    *out_payload = payload;
    *out_size = size;
    ipacl_str_zero(err);
    return IPACL_OK;
}

}  // extern "C"
