// Where endpoints live: one private directory per user, named by
// IPACL_HOST_DIR, else $XDG_RUNTIME_DIR/ipacl, else /tmp/ipacl-<euid>.
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include "host_internal.h"
#include "ipacl_host.h"

namespace ipacl_host {

int fail(int error) {
    errno = error;
    return -1;
}

namespace {

std::string default_dir() {
    if (const char *dir = getenv("IPACL_HOST_DIR"); dir && *dir) return dir;
    if (const char *run = getenv("XDG_RUNTIME_DIR"); run && *run)
        return std::string(run) + "/ipacl";
    char buf[64];
    snprintf(buf, sizeof buf, "/tmp/ipacl-%u", static_cast<unsigned>(geteuid()));
    return buf;
}

}  // namespace

int check_private_dir(const std::string &dir) {
    struct stat st {};
    if (lstat(dir.c_str(), &st) != 0) return -1;
    // A symbolic link could point anywhere, a group- or world-accessible
    // directory lets other users reach the sockets, and one owned by someone
    // else could be swapped under us: refuse all three.
    if (!S_ISDIR(st.st_mode) || st.st_uid != geteuid() || (st.st_mode & 077) != 0)
        return fail(EACCES);
    return 0;
}

int prepare_dir(std::string &dir) {
    dir = default_dir();
    if (mkdir(dir.c_str(), 0700) == 0) {
        // mkdir honours the umask; make sure the owner can use it.
        if (chmod(dir.c_str(), 0700) != 0) return -1;
    } else if (errno != EEXIST) {
        return -1;
    }
    return check_private_dir(dir);
}

int socket_path(const std::string &dir, const char *name, std::string &path) {
    path = dir + "/" + name;
    if (path.size() >= sizeof(sockaddr_un{}.sun_path)) return fail(ENAMETOOLONG);
    return 0;
}

}  // namespace ipacl_host

extern "C" IPACL_HOST_API int ipacl_host_dir(char *buf, uint32_t size) {
    if (!buf || size == 0) return ipacl_host::fail(EINVAL);
    std::string dir = ipacl_host::default_dir();
    snprintf(buf, size, "%s", dir.c_str());
    return 0;
}
