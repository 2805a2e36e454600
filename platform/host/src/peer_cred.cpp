// The credential check every connection passes, on both ends: whatever the
// file modes say, a peer running as another user is refused.
#include <sys/socket.h>
#include <unistd.h>

#include "host_internal.h"

namespace ipacl_host {

bool peer_is_same_user(int fd) {
    struct ucred cred {};
    socklen_t len = sizeof cred;
    if (getsockopt(fd, SOL_SOCKET, SO_PEERCRED, &cred, &len) != 0 || len != sizeof cred)
        return false;
    return cred.uid == geteuid();
}

}  // namespace ipacl_host
