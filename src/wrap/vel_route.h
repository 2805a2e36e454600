// Where a message goes and how a failed send reads: the one vel_send call
// behind every wrapper, plain or enveloped.
#pragma once

#include <cstdint>

#include <ipacl/wrap.h>

namespace ipacl::wrap {

struct Route {
    uint32_t service;          // destination service of vel_send
    const char *send_failure;  // message of a failed send, filled with errno
};

// Requests to the ACL manager.
inline constexpr Route kToManager{IPACL_VEL_SERVICE_ACL, "failed vel_send() %u"};
// Updates for the standby copy: the same call with no destination service.
inline constexpr Route kToStandby{IPACL_VEL_SERVICE_NONE, "failed vel_send() %u"};
// Answers to a request, identified by its token alone.
inline constexpr Route kAnswer{IPACL_VEL_SERVICE_NONE, "failed vel_send_response() %u"};

// One vel_send along `route`.  Returns 0 without touching `err` (each caller
// decides whether success clears it), or errno with the route's message.
uint32_t send_along(const Route &route, uint32_t handle, uint32_t opcode, const void *payload,
                    uint32_t size, void *rr_handle, uint32_t token, char *err);

// Writes `format` filled with the current errno into `err` (when given) and
// returns that errno.
uint32_t platform_failure(const char *format, char *err);

}  // namespace ipacl::wrap
