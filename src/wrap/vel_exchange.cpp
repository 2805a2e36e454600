#include "wrap/vel_exchange.h"

#include <cstring>

#include "platform/vel.h"
#include "wrap/vel_route.h"

namespace ipacl::wrap {

void begin_exchange(ipacl_vel_rcv_opts &options, uint8_t *req_handle, ipacl_vel_msg *rsp) {
    memset(&options, 0, sizeof options);
    options.mode = 1;
    memset(req_handle, 0, IPACL_VEL_HANDLE_CLEARED);
    // Clear the response descriptor up to its own size and no further: it is
    // the caller's ipacl_vel_msg (48 bytes on a 64-bit host, 40 on a 32-bit
    // one), and a fixed 48 bytes, the size of the larger request descriptor
    // on a 32-bit host, would write past it.
    memset(rsp, 0, sizeof *rsp);
}

uint32_t await_answer(uint32_t handle, ipacl_vel_rcv_opts &options, uint8_t *req_handle,
                      ipacl_vel_msg *rsp, char *err) {
    options.wait_limit = IPACL_VEL_WAIT_LIMIT;
    options.token = vel_rr_token_get(req_handle);
    // The request's own handle area is not needed once its token is known;
    // a failure to release it does not concern the answer.
    vel_drop(handle, req_handle);
    if (vel_recv(handle, rsp->handle, &options) != 0)
        return platform_failure("failed vel_recv() %u", err);
    return IPACL_OK;
}

}  // namespace ipacl::wrap
