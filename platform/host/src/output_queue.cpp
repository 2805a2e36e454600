// Frames out.  Each message is sent straight from the caller's buffer as far
// as the socket takes it without waiting; whatever is left is copied into
// the connection's queue, which the event loop sends as the peer reads.
// Every queued message has a deadline (IPACL_HOST_SEND_DEADLINE_MS from the
// moment it was queued): a peer that has not taken it by then loses its
// connection, so a peer that stops reading costs the others nothing.
#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstring>
#include <poll.h>
#include <sys/epoll.h>
#include <sys/socket.h>
#include <unistd.h>

#include "host_internal.h"
#include "ipacl_host.h"

namespace ipacl_host {

namespace {

// Small frames go out as one contiguous send(), the cheapest call the kernel
// offers; larger ones as header and payload in place.
constexpr uint32_t kCopyLimit = 4096;

ssize_t send_frame(int fd, const FrameHeader &h, const uint8_t *chunk) {
    ssize_t n;
    if (h.chunk <= kCopyLimit) {
        uint8_t frame[sizeof h + kCopyLimit];
        memcpy(frame, &h, sizeof h);
        if (h.chunk) memcpy(frame + sizeof h, chunk, h.chunk);
        do n = send(fd, frame, sizeof h + h.chunk, MSG_NOSIGNAL | MSG_DONTWAIT);
        while (n < 0 && errno == EINTR);
        return n;
    }
    iovec iov[2] = {{const_cast<FrameHeader *>(&h), sizeof h},
                    {const_cast<uint8_t *>(chunk), h.chunk}};
    msghdr msg{};
    msg.msg_iov = iov;
    msg.msg_iovlen = 2;
    do n = sendmsg(fd, &msg, MSG_NOSIGNAL | MSG_DONTWAIT);
    while (n < 0 && errno == EINTR);
    return n;
}

enum class Sent { All, Blocked, Failed };

// Sends frames of `bytes` from `done` on, advancing `h` and `done`, until
// all are gone or the socket is full.  At least one frame is always sent,
// so an empty message still travels.
Sent send_frames(int fd, FrameHeader &h, const uint8_t *bytes, size_t total, size_t &done) {
    do {
        h.chunk = static_cast<uint32_t>(std::min<size_t>(total - done, kMaxChunk));
        if (send_frame(fd, h, bytes + done) < 0)
            return errno == EAGAIN || errno == EWOULDBLOCK ? Sent::Blocked : Sent::Failed;
        done += h.chunk;
        h.kind = kMore;
    } while (done < total);
    return Sent::All;
}

}  // namespace

void watch_output(Endpoint &ep, Conn &c) {
    const bool want = !c.out.empty();
    if (want == c.watching_out || ep.owner != getpid()) return;
    epoll_event ev{};
    ev.events = EPOLLIN | (want ? EPOLLOUT : 0u);
    ev.data.u64 = c.id;
    if (epoll_ctl(ep.epoll_fd, EPOLL_CTL_MOD, c.fd, &ev) == 0) c.watching_out = want;
}

int send_queued(Endpoint &ep, Conn &c, const FrameHeader &head, const void *payload) {
    const auto *bytes = static_cast<const uint8_t *>(payload);
    FrameHeader h = head;
    h.magic = kFrameMagic;
    size_t done = 0;
    if (c.out.empty()) {
        Sent sent = send_frames(c.fd, h, bytes, h.size, done);
        if (sent == Sent::All) return 0;
        if (sent == Sent::Failed) return -1;
    }
    const size_t rest = h.size - done;
    if (!make_room(ep, c, rest)) {
        ++ep.stats.over_limit;
        close_conn(ep, c.id);
        return fail(ENOBUFS);
    }
    OutMessage m;
    m.next = h;
    m.rest.assign(bytes + done, bytes + h.size);
    m.deadline = now_ms() + IPACL_HOST_SEND_DEADLINE_MS;
    c.out.push_back(std::move(m));
    c.out_bytes += rest;
    watch_output(ep, c);
    return 0;
}

bool flush_queue(Endpoint &ep, Conn &c) {
    while (!c.out.empty()) {
        OutMessage &m = c.out.front();
        Sent sent = send_frames(c.fd, m.next, m.rest.data(), m.rest.size(), m.sent);
        if (sent == Sent::Failed) return false;
        if (sent == Sent::Blocked) break;
        c.out_bytes -= m.rest.size();
        c.out.pop_front();
    }
    watch_output(ep, c);
    return true;
}

int64_t expire_queues(Endpoint &ep, int64_t now) {
    int64_t next = INT64_MAX;
    std::vector<uint64_t> late;
    for (auto &[id, c] : ep.conns) {
        if (c.out.empty()) continue;
        if (c.out.front().deadline <= now)
            late.push_back(id);
        else
            next = std::min(next, c.out.front().deadline);
    }
    for (uint64_t id : late) {
        ++ep.stats.send_timeouts;
        close_conn(ep, id);
    }
    return next;
}

int send_now(Endpoint &ep, Conn &c, const FrameHeader &head, const void *payload) {
    const uint64_t id = c.id;
    if (send_queued(ep, c, head, payload) != 0) return -1;
    const int64_t deadline = now_ms() + IPACL_HOST_SEND_DEADLINE_MS;
    for (;;) {
        Conn *conn = find_conn(ep, id);
        if (!conn) return fail(EPIPE);
        if (conn->out.empty()) return 0;
        int64_t left = deadline - now_ms();
        if (left <= 0) return fail(ETIMEDOUT);  // the peer stopped reading
        pollfd p{conn->fd, POLLOUT, 0};
        if (poll(&p, 1, static_cast<int>(left)) < 0 && errno != EINTR) return -1;
        if (!flush_queue(ep, *conn)) return -1;
    }
}

void drain_queues(Endpoint &ep) {
    for (;;) {
        const int64_t now = now_ms();
        const int64_t next_deadline = expire_queues(ep, now);
        if (next_deadline == INT64_MAX) return;
        std::vector<pollfd> fds;
        std::vector<uint64_t> ids;
        for (const auto &[id, c] : ep.conns)
            if (!c.out.empty()) {
                fds.push_back({c.fd, POLLOUT, 0});
                ids.push_back(id);
            }
        int wait = static_cast<int>(std::min<int64_t>(next_deadline - now, INT_MAX));
        if (poll(fds.data(), fds.size(), wait) < 0 && errno != EINTR) return;
        for (size_t i = 0; i < fds.size(); ++i) {
            Conn *c = find_conn(ep, ids[i]);
            if (c && fds[i].revents && !flush_queue(ep, *c)) close_conn(ep, ids[i]);
        }
    }
}

}  // namespace ipacl_host
