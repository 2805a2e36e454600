#include "wrap/vel_route.h"

#include <cerrno>
#include <cstdio>

#include "platform/vel.h"

namespace ipacl::wrap {

uint32_t platform_failure(const char *format, char *err) {
    // Read errno before anything else in this path can change it.
    const uint32_t code = static_cast<uint32_t>(errno);
    if (err) sprintf(err, format, code);
    return code;
}

uint32_t send_along(const Route &route, uint32_t handle, uint32_t opcode, const void *payload,
                    uint32_t size, void *rr_handle, uint32_t token, char *err) {
    const int rc =
        vel_send(handle, IPACL_VEL_NODE, route.service, opcode, payload, size, rr_handle, token, 0);
    return rc == 0 ? IPACL_OK : platform_failure(route.send_failure, err);
}

}  // namespace ipacl::wrap
