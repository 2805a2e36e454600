// Frames in: each frame is checked against its header before anything is
// kept, and a message's buffer grows with the bytes that really arrived
// (never to what the first frame announces), within the caps.
#include <algorithm>
#include <cerrno>
#include <cstring>
#include <new>
#include <sys/socket.h>

#include "host_internal.h"
#include "ipacl_host.h"

namespace ipacl_host {

namespace {

int set_receive_timeout(Conn &c, int64_t wait_ms) {
    if (c.rcvtimeo_ms == wait_ms) return 0;
    // SO_RCVTIMEO of zero would mean "for ever": wait at least 1 ms.
    int64_t ms = std::max<int64_t>(wait_ms, 1);
    timeval tv{static_cast<time_t>(ms / 1000), static_cast<suseconds_t>((ms % 1000) * 1000)};
    if (setsockopt(c.fd, SOL_SOCKET, SO_RCVTIMEO, &tv, sizeof tv) != 0) return -1;
    c.rcvtimeo_ms = wait_ms;
    return 0;
}

bool valid_first(const FrameHeader &h) {
    return (h.kind == kRequest || h.kind == kAnswer) && h.size <= IPACL_HOST_MAX_PAYLOAD &&
           h.chunk <= h.size && h.chunk <= kMaxChunk;
}

Rx refuse(int error) {
    errno = error;
    return Rx::Failed;
}

Rx start_message(Endpoint &ep, Conn &c, const FrameHeader &h, const uint8_t *bytes) {
    if (!valid_first(h)) return refuse(EPROTO);
    const bool more_to_come = h.chunk < h.size;
    if (more_to_come && ep.partials >= IPACL_HOST_MAX_PARTIAL) return refuse(ENOBUFS);
    if (!make_room(ep, c, h.chunk)) return refuse(ENOBUFS);
    c.assembling.head = h;
    c.assembling.payload.assign(bytes, bytes + h.chunk);
    c.assembling.conn_id = c.id;
    if (more_to_come) {
        c.partial = true;
        ++ep.partials;
    }
    return Rx::Partial;
}

Rx continue_message(Endpoint &ep, Conn &c, const FrameHeader &h, const uint8_t *bytes) {
    std::vector<uint8_t> &payload = c.assembling.payload;
    const size_t have = payload.size();
    if (h.kind != kMore || h.chunk > c.assembling.head.size - have) return refuse(EPROTO);
    if (have + h.chunk > payload.capacity()) {
        // Doubling keeps the copies few; the announced size only caps it.
        size_t room = std::min<size_t>(std::max(2 * payload.capacity(), have + h.chunk),
                                       c.assembling.head.size);
        if (!make_room(ep, c, room - payload.capacity())) return refuse(ENOBUFS);
        payload.reserve(room);
    }
    payload.insert(payload.end(), bytes, bytes + h.chunk);
    return Rx::Partial;
}

// Files one well-formed frame into the connection's reassembly.
Rx take_frame(Endpoint &ep, Conn &c, const FrameHeader &h, const uint8_t *bytes, Message &out) {
    Rx rx;
    try {
        rx = c.partial ? continue_message(ep, c, h, bytes) : start_message(ep, c, h, bytes);
    } catch (const std::bad_alloc &) {
        return refuse(ENOMEM);
    }
    if (rx != Rx::Partial || c.assembling.payload.size() < c.assembling.head.size) return rx;
    if (c.partial) --ep.partials;
    c.partial = false;
    out = std::move(c.assembling);
    c.assembling = Message{};
    return Rx::Complete;
}

}  // namespace

Rx receive_frame(Endpoint &ep, Conn &c, int64_t wait_ms, Message &out) {
    int flags = 0;
    if (wait_ms < 0)
        flags = MSG_DONTWAIT;
    else if (set_receive_timeout(c, wait_ms) != 0)
        return Rx::Failed;
    // MSG_TRUNC makes recv report a frame's whole length, so one too long
    // for the buffer is seen rather than silently cut.
    ssize_t n;
    do n = recv(c.fd, ep.scratch.data(), ep.scratch.size(), flags | MSG_TRUNC);
    while (n < 0 && errno == EINTR);
    if (n == 0) return Rx::Closed;
    if (n < 0) {
        if (errno == EAGAIN || errno == EWOULDBLOCK) return Rx::Again;
        if (errno == ECONNRESET) return Rx::Closed;
        return Rx::Failed;
    }
    FrameHeader h;
    if (static_cast<size_t>(n) > ep.scratch.size() || static_cast<size_t>(n) < sizeof h)
        return refuse(EPROTO);
    memcpy(&h, ep.scratch.data(), sizeof h);
    if (h.magic != kFrameMagic || static_cast<size_t>(n) != sizeof h + h.chunk)
        return refuse(EPROTO);
    return take_frame(ep, c, h, ep.scratch.data() + sizeof h, out);
}

}  // namespace ipacl_host
