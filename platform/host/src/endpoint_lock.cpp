// Owning a served name.  Beside each socket lies "<name>.lock"; the endpoint
// serving the name holds an exclusive flock on it for as long as it lives,
// and the kernel drops that lock when the owner dies however it dies.  So
// whoever gets the lock knows the socket file (if any) is stale and replaces
// it, and nobody else ever touches it: there is no probing, and no window
// between bind and listen in which a second opener could take the name.
//
// The lock file itself is never removed: removing it would let two openers
// lock two different files under the same name.
#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include "host_internal.h"

namespace ipacl_host {

namespace {

int take_lock(const Endpoint &ep, const std::string &name) {
    int fd = openat(ep.dir_fd, (name + ".lock").c_str(), O_RDWR | O_CREAT | O_NOFOLLOW | O_CLOEXEC,
                    0600);
    if (fd < 0) return -1;
    int rc;
    do rc = flock(fd, LOCK_EX | LOCK_NB);
    while (rc != 0 && errno == EINTR);
    if (rc != 0) {
        int error = errno == EWOULDBLOCK ? EADDRINUSE : errno;
        close(fd);
        return fail(error);
    }
    return fd;
}

int bind_listener(const Endpoint &ep, const std::string &name) {
    std::string path;
    if (socket_path(ep, name, path) != 0) return -1;
    int fd = socket(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
    if (fd < 0) return -1;
    sockaddr_un addr{};
    addr.sun_family = AF_UNIX;
    path.copy(addr.sun_path, sizeof addr.sun_path - 1);
    if (bind(fd, reinterpret_cast<sockaddr *>(&addr), sizeof addr) != 0 ||
        listen(fd, SOMAXCONN) != 0) {
        close_keeping_errno(fd);
        return -1;
    }
    return fd;
}

}  // namespace

int claim_name(Endpoint &ep, const std::string &name) {
    int lock = take_lock(ep, name);
    if (lock < 0) return -1;
    // Ours now: a socket file left there belongs to an owner that is gone.
    unlinkat(ep.dir_fd, name.c_str(), 0);
    int fd = bind_listener(ep, name);
    if (fd < 0 || watch_listener(ep, fd) != 0) {
        int error = errno;
        if (fd >= 0) {
            close(fd);
            unlinkat(ep.dir_fd, name.c_str(), 0);
        }
        close(lock);
        return fail(error);
    }
    ep.lock_fd = lock;
    ep.listen_fd = fd;
    ep.listen_name = name;
    return 0;
}

void release_name(Endpoint &ep) {
    if (ep.lock_fd < 0) return;
    // A child that inherited the endpoint through fork shares the lock but
    // does not own the name: only the opener removes the socket file, while
    // it still holds the lock.
    if (ep.owner == getpid()) unlinkat(ep.dir_fd, ep.listen_name.c_str(), 0);
    close(ep.lock_fd);
    ep.lock_fd = -1;
}

}  // namespace ipacl_host
