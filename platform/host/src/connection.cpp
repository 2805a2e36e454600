// Connections between endpoints: SOCK_SEQPACKET keeps each frame whole, so a
// message is one sendmsg and one recvmsg in the common case.
#include <algorithm>
#include <cerrno>
#include <cstring>
#include <sys/epoll.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include "host_internal.h"
#include "ipacl_host.h"

namespace ipacl_host {

namespace {

// A peer that stops reading must not stall us for ever.
constexpr int kSendTimeoutSec = 10;

sockaddr_un unix_address(const std::string &path) {
    sockaddr_un addr{};
    addr.sun_family = AF_UNIX;
    memcpy(addr.sun_path, path.c_str(), path.size() + 1);  // length checked by socket_path
    return addr;
}

int new_socket() { return socket(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0); }

void set_send_timeout(int fd) {
    timeval tv{kSendTimeoutSec, 0};
    setsockopt(fd, SOL_SOCKET, SO_SNDTIMEO, &tv, sizeof tv);
}

void close_keeping_errno(int fd) {
    int saved = errno;
    close(fd);
    errno = saved;
}

// Connects to path; -1 with errno on failure.  A missing socket file and a
// stale one both mean nobody serves the name: ECONNREFUSED.
int connect_to(const std::string &path) {
    int fd = new_socket();
    if (fd < 0) return -1;
    set_send_timeout(fd);  // also bounds a connect to a listener whose backlog is full
    sockaddr_un addr = unix_address(path);
    int rc;
    do rc = connect(fd, reinterpret_cast<sockaddr *>(&addr), sizeof addr);
    while (rc != 0 && errno == EINTR);
    if (rc != 0) {
        if (errno == ENOENT) errno = ECONNREFUSED;
        close_keeping_errno(fd);
        return -1;
    }
    if (!peer_is_same_user(fd)) {
        close(fd);
        return fail(EACCES);
    }
    return fd;
}

int watch(Endpoint &ep, int fd, uint64_t id) {
    epoll_event ev{};
    ev.events = EPOLLIN;
    ev.data.u64 = id;
    return epoll_ctl(ep.epoll_fd, EPOLL_CTL_ADD, fd, &ev);
}

// Stops watching fd and closes it.  The registration belongs to the open
// file, which a child made by fork shares: remove it explicitly, and only in
// the process that made it.
void unwatch_and_close(const Endpoint &ep, int fd) {
    if (ep.owner == getpid()) epoll_ctl(ep.epoll_fd, EPOLL_CTL_DEL, fd, nullptr);
    close(fd);
}

Conn *add_conn(Endpoint &ep, int fd, bool dialled, uint32_t service) {
    Conn c;
    c.fd = fd;
    c.id = ep.next_conn_id++;
    c.dialled = dialled;
    c.dest_service = service;
    if (watch(ep, fd, c.id) != 0) {
        close_keeping_errno(fd);
        return nullptr;
    }
    ep.conns.push_back(std::move(c));
    return &ep.conns.back();
}

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

// Files one well-formed frame into the connection's reassembly.
Rx take_frame(Conn &c, const FrameHeader &h, const uint8_t *bytes, Message &out) {
    if (!c.partial) {
        if (!valid_first(h)) return errno = EPROTO, Rx::Failed;
        c.assembling.head = h;
        c.assembling.payload.assign(bytes, bytes + h.chunk);
        c.assembling.payload.reserve(h.size);
        c.assembling.conn_id = c.id;
    } else {
        size_t have = c.assembling.payload.size();
        if (h.kind != kMore || h.chunk > c.assembling.head.size - have)
            return errno = EPROTO, Rx::Failed;
        c.assembling.payload.insert(c.assembling.payload.end(), bytes, bytes + h.chunk);
    }
    if (c.assembling.payload.size() < c.assembling.head.size) {
        c.partial = true;
        return Rx::Partial;
    }
    c.partial = false;
    out = std::move(c.assembling);
    c.assembling = Message{};
    return Rx::Complete;
}

}  // namespace

int watch_endpoint(Endpoint &ep) {
    ep.epoll_fd = epoll_create1(EPOLL_CLOEXEC);
    return ep.epoll_fd < 0 ? -1 : 0;
}

int listen_on(Endpoint &ep, const std::string &path) {
    int fd = new_socket();
    if (fd < 0) return -1;
    sockaddr_un addr = unix_address(path);
    auto *sa = reinterpret_cast<sockaddr *>(&addr);
    if (bind(fd, sa, sizeof addr) != 0) {
        if (errno != EADDRINUSE) return close_keeping_errno(fd), -1;
        // Someone's socket file: a live endpoint answers, a stale one left
        // by a dead process refuses and may be replaced.
        int probe = connect_to(path);
        if (probe >= 0) {
            close(probe);
            close(fd);
            return fail(EADDRINUSE);
        }
        if (errno != ECONNREFUSED) return close_keeping_errno(fd), -1;
        unlink(path.c_str());
        if (bind(fd, sa, sizeof addr) != 0) return close_keeping_errno(fd), -1;
    }
    struct stat st {};
    if (listen(fd, SOMAXCONN) != 0 || stat(path.c_str(), &st) != 0 ||
        watch(ep, fd, kListenerId) != 0) {
        unlink(path.c_str());
        return close_keeping_errno(fd), -1;
    }
    ep.listen_fd = fd;
    ep.listen_path = path;
    ep.listen_ino = st.st_ino;
    return 0;
}

Conn *find_conn(Endpoint &ep, uint64_t id) {
    for (Conn &c : ep.conns)
        if (c.id == id) return &c;
    return nullptr;
}

std::string service_name(uint32_t service) {
    return service == 0 ? "standby" : "svc-" + std::to_string(service);
}

Conn *dial(Endpoint &ep, uint32_t service, bool &fresh) {
    fresh = false;
    for (Conn &c : ep.conns)
        if (c.dialled && c.dest_service == service) return &c;
    std::string path;
    if (socket_path(ep.dir, service_name(service).c_str(), path) != 0) return nullptr;
    int fd = connect_to(path);
    if (fd < 0) return nullptr;
    fresh = true;
    return add_conn(ep, fd, true, service);
}

int accept_peer(Endpoint &ep) {
    int fd;
    do fd = accept4(ep.listen_fd, nullptr, nullptr, SOCK_CLOEXEC);
    while (fd < 0 && errno == EINTR);
    if (fd < 0) return -1;
    if (!peer_is_same_user(fd)) {
        ++ep.stats.refused_peers;
        close(fd);
        return fail(EACCES);
    }
    set_send_timeout(fd);
    return add_conn(ep, fd, false, 0) ? 0 : -1;
}

void close_conn(Endpoint &ep, uint64_t id) {
    auto it =
        std::find_if(ep.conns.begin(), ep.conns.end(), [id](const Conn &c) { return c.id == id; });
    if (it == ep.conns.end()) return;
    int saved = errno;
    unwatch_and_close(ep, it->fd);
    errno = saved;
    ep.conns.erase(it);
}

void close_all(Endpoint &ep) {
    int saved = errno;
    for (Conn &c : ep.conns) unwatch_and_close(ep, c.fd);
    ep.conns.clear();
    if (ep.listen_fd >= 0) {
        unwatch_and_close(ep, ep.listen_fd);
        // Unregister the name only if it is still ours: a child that
        // inherited the endpoint through fork must not remove its parent's.
        struct stat st {};
        if (ep.owner == getpid() && lstat(ep.listen_path.c_str(), &st) == 0 &&
            st.st_ino == ep.listen_ino)
            unlink(ep.listen_path.c_str());
        ep.listen_fd = -1;
    }
    if (ep.epoll_fd >= 0) close(ep.epoll_fd);
    ep.epoll_fd = -1;
    errno = saved;
}

namespace {

// Small messages go out as one contiguous send(), the cheapest call the
// kernel offers; larger ones as header and payload in place.
constexpr uint32_t kCopyLimit = 4096;

ssize_t send_frame(Conn &c, const FrameHeader &h, const uint8_t *chunk) {
    ssize_t n;
    if (h.chunk <= kCopyLimit) {
        uint8_t frame[sizeof h + kCopyLimit];
        memcpy(frame, &h, sizeof h);
        if (h.chunk) memcpy(frame + sizeof h, chunk, h.chunk);
        do n = send(c.fd, frame, sizeof h + h.chunk, MSG_NOSIGNAL);
        while (n < 0 && errno == EINTR);
        return n;
    }
    iovec iov[2] = {{const_cast<FrameHeader *>(&h), sizeof h},
                    {const_cast<uint8_t *>(chunk), h.chunk}};
    msghdr msg{};
    msg.msg_iov = iov;
    msg.msg_iovlen = 2;
    do n = sendmsg(c.fd, &msg, MSG_NOSIGNAL);
    while (n < 0 && errno == EINTR);
    return n;
}

}  // namespace

int send_message(Conn &c, const FrameHeader &first, const void *payload) {
    const auto *bytes = static_cast<const uint8_t *>(payload);
    uint32_t sent = 0;
    FrameHeader h = first;
    h.magic = kFrameMagic;
    do {
        h.chunk = std::min(h.size - sent, kMaxChunk);
        if (send_frame(c, h, bytes + sent) < 0) {
            // A send timeout surfaces as EAGAIN: the peer stopped reading.
            if (errno == EAGAIN) errno = ETIMEDOUT;
            return -1;
        }
        sent += h.chunk;
        h.kind = kMore;
    } while (sent < h.size);
    return 0;
}

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
        return errno = EPROTO, Rx::Failed;
    memcpy(&h, ep.scratch.data(), sizeof h);
    if (h.magic != kFrameMagic || static_cast<size_t>(n) != sizeof h + h.chunk)
        return errno = EPROTO, Rx::Failed;
    return take_frame(c, h, ep.scratch.data() + sizeof h, out);
}

}  // namespace ipacl_host
