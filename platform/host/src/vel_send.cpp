// vel_send: an answer goes back on the connection its request came from,
// through that connection's queue; a request or a standby update goes to the
// endpoint registered under the destination's name, dialled on first use
// and redialled once if the peer restarted since.
#include <cerrno>

#include "c_boundary.h"
#include "host_internal.h"
#include "ipacl_host.h"
#include "platform/vel.h"

namespace ipacl_host {

namespace {

bool peer_went_away(int error) {
    return error == EPIPE || error == ECONNRESET || error == ENOTCONN || error == ECONNREFUSED;
}

int send_answer(Endpoint &ep, uint32_t token, uint32_t opcode, const void *payload, uint32_t size) {
    auto asked = ep.asked.find(token);
    if (asked == ep.asked.end()) return fail(ENOENT);
    const Asked who = asked->second;
    ep.asked.erase(asked);
    Conn *c = find_conn(ep, who.conn_id);
    if (!c) return fail(EPIPE);  // the requester went away
    FrameHeader h{kFrameMagic, kAnswer, opcode, 0, who.peer_token, 0, size, 0};
    if (send_queued(ep, *c, h, payload) != 0) {
        close_conn(ep, who.conn_id);
        return -1;
    }
    enforce_endpoint_cap(ep);
    return 0;
}

int send_request(Endpoint &ep, uint32_t service, uint32_t opcode, const void *payload,
                 uint32_t size, void *rr_handle) {
    FrameHeader h{kFrameMagic, kRequest, opcode, service, 0, rr_handle ? kAwaited : 0u, size, 0};
    for (int attempt = 0;; ++attempt) {
        bool fresh = false;
        Conn *c = dial(ep, service, fresh);
        if (!c) return -1;
        const uint64_t conn_id = c->id;
        h.token = issue_token(ep, conn_id, rr_handle != nullptr);
        if (send_now(ep, *c, h, payload) == 0) {
            if (rr_handle) area_set_sent(rr_handle, h.token);
            return 0;
        }
        int error = errno;
        ep.awaiting.erase(h.token);
        close_conn(ep, conn_id);
        // A connection made earlier may lead to a peer that has since
        // restarted: dial again once.  A fresh one failing is final.
        if (fresh || attempt > 0 || !peer_went_away(error)) return fail(error);
    }
}

}  // namespace

}  // namespace ipacl_host

using namespace ipacl_host;

extern "C" IPACL_HOST_API int vel_send(uint32_t handle, uint32_t node, uint32_t service,
                                       uint32_t opcode, const void *payload, uint32_t size,
                                       void *rr_handle, uint32_t token, uint32_t flags) {
    (void)node;  // the host is a single node
    return c_boundary(-1, [&] {
        Endpoint *ep = find_endpoint(handle);
        if (!ep) return fail(EBADF);
        if (flags != 0 || (!payload && size != 0)) return fail(EINVAL);
        if (size > IPACL_HOST_MAX_PAYLOAD) return fail(EMSGSIZE);
        if (token != 0) return send_answer(*ep, token, opcode, payload, size);
        return send_request(*ep, service, opcode, payload, size, rr_handle);
    });
}
