// Connections between endpoints: SOCK_SEQPACKET keeps each frame whole, so a
// message is one sendmsg and one recvmsg in the common case.  Sockets stay
// blocking for the caller's own waits (a request to the peer it chose, the
// answer it awaits); the event loop uses MSG_DONTWAIT on each call.
#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/epoll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include "host_internal.h"
#include "ipacl_host.h"

namespace ipacl_host {

namespace {

// Bounds a connect to a listener whose backlog is full.
constexpr int kConnectTimeoutSec = 10;

int new_socket() { return socket(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0); }

// Connects to path; -1 with errno on failure.  A missing socket file and a
// stale one both mean nobody serves the name: ECONNREFUSED.
int connect_to(const std::string &path) {
    int fd = new_socket();
    if (fd < 0) return -1;
    timeval tv{kConnectTimeoutSec, 0};
    setsockopt(fd, SOL_SOCKET, SO_SNDTIMEO, &tv, sizeof tv);
    sockaddr_un addr{};
    addr.sun_family = AF_UNIX;
    path.copy(addr.sun_path, sizeof addr.sun_path - 1);
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
    const uint64_t id = ep.next_conn_id++;
    if (watch(ep, fd, id) != 0) {
        close_keeping_errno(fd);
        return nullptr;
    }
    Conn &c = ep.conns[id];
    c.fd = fd;
    c.id = id;
    c.dialled = dialled;
    c.dest_service = service;
    if (!dialled) ++ep.accepted;
    return &c;
}

int open_spare() { return open("/dev/null", O_RDONLY | O_CLOEXEC); }

void set_listener_events(Endpoint &ep, uint32_t events) {
    epoll_event ev{};
    ev.events = events;
    ev.data.u64 = kListenerId;
    epoll_ctl(ep.epoll_fd, EPOLL_CTL_MOD, ep.listen_fd, &ev);
}

// No descriptor for a new connection: give up the spare one to take the
// connection off the backlog and close it, so the listener stops reporting
// it ready; with no spare left either, rest the listener for a while.
void refuse_without_descriptor(Endpoint &ep) {
    ++ep.stats.descriptor_shortages;
    if (ep.spare_fd >= 0) {
        close(ep.spare_fd);
        int fd = accept4(ep.listen_fd, nullptr, nullptr, SOCK_CLOEXEC);
        bool taken = fd >= 0 || errno == EAGAIN;
        if (fd >= 0) close(fd);
        ep.spare_fd = open_spare();
        if (taken && ep.spare_fd >= 0) return;
    }
    ep.listener_paused_until = now_ms() + kListenerPauseMs;
    set_listener_events(ep, 0);
}

}  // namespace

void close_keeping_errno(int fd) {
    int saved = errno;
    close(fd);
    errno = saved;
}

int watch_endpoint(Endpoint &ep) {
    ep.epoll_fd = epoll_create1(EPOLL_CLOEXEC);
    return ep.epoll_fd < 0 ? -1 : 0;
}

int watch_listener(Endpoint &ep, int fd) {
    ep.spare_fd = open_spare();
    if (ep.spare_fd < 0) return -1;
    return watch(ep, fd, kListenerId);
}

void resume_listener(Endpoint &ep, int64_t now) {
    if (ep.listener_paused_until == 0 || now < ep.listener_paused_until) return;
    if (ep.spare_fd < 0) ep.spare_fd = open_spare();
    ep.listener_paused_until = 0;
    set_listener_events(ep, EPOLLIN);
}

Conn *find_conn(Endpoint &ep, uint64_t id) {
    auto it = ep.conns.find(id);
    return it == ep.conns.end() ? nullptr : &it->second;
}

std::string service_name(uint32_t service) {
    return service == 0 ? "standby" : "svc-" + std::to_string(service);
}

Conn *dial(Endpoint &ep, uint32_t service, bool &fresh) {
    fresh = false;
    for (auto &[id, c] : ep.conns)
        if (c.dialled && c.dest_service == service) return &c;
    std::string path;
    if (socket_path(ep, service_name(service), path) != 0) return nullptr;
    int fd = connect_to(path);
    if (fd < 0) return nullptr;
    fresh = true;
    return add_conn(ep, fd, true, service);
}

void accept_peers(Endpoint &ep) {
    // A bounded batch per turn, so a flood of connections cannot keep the
    // loop from the messages already waiting.
    for (int i = 0; i < 16 && ep.listener_paused_until == 0; ++i) {
        int fd = accept4(ep.listen_fd, nullptr, nullptr, SOCK_CLOEXEC);
        if (fd < 0) {
            const int error = errno;
            if (error == EMFILE || error == ENFILE)
                refuse_without_descriptor(ep);
            else if (error != EINTR && error != ECONNABORTED)
                return;  // EAGAIN: the backlog is empty
            continue;
        }
        if (!peer_is_same_user(fd)) {
            ++ep.stats.refused_peers;
            close(fd);
        } else if (ep.accepted >= IPACL_HOST_MAX_CONNECTIONS) {
            ++ep.stats.over_limit;
            close(fd);
        } else {
            add_conn(ep, fd, false, 0);
        }
    }
}

void close_conn(Endpoint &ep, uint64_t id) {
    auto it = ep.conns.find(id);
    if (it == ep.conns.end()) return;
    Conn &c = it->second;
    int saved = errno;
    unwatch_and_close(ep, c.fd);
    errno = saved;
    if (!c.dialled) --ep.accepted;
    if (c.partial) --ep.partials;
    // Its requests still in the inbox stay there for the caller (a one-way
    // request outlives its sender); their bytes stay counted.
    ep.orphan_bytes += c.held_bytes;
    ep.conns.erase(it);
}

void close_all(Endpoint &ep) {
    int saved = errno;
    for (auto &[id, c] : ep.conns) unwatch_and_close(ep, c.fd);
    ep.conns.clear();
    ep.accepted = ep.partials = 0;
    if (ep.listen_fd >= 0) {
        unwatch_and_close(ep, ep.listen_fd);
        ep.listen_fd = -1;
    }
    release_name(ep);
    for (int *fd : {&ep.spare_fd, &ep.epoll_fd, &ep.dir_fd}) {
        if (*fd >= 0) close(*fd);
        *fd = -1;
    }
    errno = saved;
}

}  // namespace ipacl_host
