// vel_recv and the manager's receive calls built on the same machinery.
#include <cerrno>
#include <cstring>

#include "c_boundary.h"
#include "host_internal.h"
#include "ipacl_host.h"
#include "platform/vel.h"

namespace ipacl_host {

namespace {

enum RecvMode : uint32_t { kAnyIncoming = 0, kAnswerToToken = 1 };
constexpr int64_t kLongestWaitMs = int64_t(1) << 40;  // effectively for ever

int64_t wait_limit_ms(const Endpoint &ep, uint32_t units) {
    int64_t ms = static_cast<int64_t>(units) * ep.wait_unit_ms;
    return ms < kLongestWaitMs ? ms : kLongestWaitMs;
}

}  // namespace

}  // namespace ipacl_host

using namespace ipacl_host;

extern "C" {

IPACL_HOST_API int vel_recv(uint32_t handle, void *msg_handle, void *options) {
    return c_boundary(-1, [&] {
        Endpoint *ep = find_endpoint(handle);
        if (!ep) return fail(EBADF);
        if (!msg_handle || !options) return fail(EINVAL);
        uint32_t words[10];
        memcpy(words, options, sizeof words);
        const int64_t wait_ms = wait_limit_ms(*ep, words[2]);
        switch (words[0]) {
            case kAnswerToToken:
                return await_answer(*ep, words[3], wait_ms, msg_handle);
            case kAnyIncoming:
                return accept_message(*ep, msg_handle, wait_ms);
            default:
                return fail(EINVAL);
        }
    });
}

IPACL_HOST_API int ipacl_host_accept(uint32_t handle, void *msg_handle, uint32_t timeout_ms) {
    return c_boundary(-1, [&] {
        Endpoint *ep = find_endpoint(handle);
        if (!ep) return fail(EBADF);
        if (!msg_handle) return fail(EINVAL);
        return accept_message(*ep, msg_handle, timeout_ms);
    });
}

IPACL_HOST_API int ipacl_host_serve(uint32_t handle, ipacl_host_handler handler, void *context,
                                    uint32_t timeout_ms, uint32_t limit) {
    if (!handler) return fail(EINVAL);
    for (uint32_t handled = 0;;) {
        uint8_t area[IPACL_HOST_HANDLE_AREA];
        if (ipacl_host_accept(handle, area, timeout_ms) != 0) return -1;
        int stop = handler(handle, area, context);
        vel_drop(handle, area);
        if (stop || (limit && ++handled >= limit)) return 0;
    }
}

}  // extern "C"
