// The request-response exchange shared by the plain and the enveloped
// request: prepare the descriptors, send (done by the caller, plain or
// enveloped), then wait for the answer that carries the request's token.
#pragma once

#include <cstdint>

#include <ipacl/wrap.h>

namespace ipacl::wrap {

// Clears the receive options (mode 1), the first IPACL_VEL_HANDLE_CLEARED
// bytes of the request's handle area and the whole response descriptor.
void begin_exchange(ipacl_vel_rcv_opts &options, uint8_t *req_handle, ipacl_vel_msg *rsp);

// After a successful send through req_handle: takes the request's token,
// releases the request's handle area and receives the answer into
// rsp->handle.  Returns 0, or errno with "failed vel_recv() %u".
uint32_t await_answer(uint32_t handle, ipacl_vel_rcv_opts &options, uint8_t *req_handle,
                      ipacl_vel_msg *rsp, char *err);

}  // namespace ipacl::wrap
