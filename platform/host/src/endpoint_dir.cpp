// Where endpoints live: one private directory per user.  It is opened once,
// through descriptors that refuse symbolic links, checked on the open
// descriptor, and from then on every socket inside it is reached through
// that descriptor (/proc/self/fd/N/name), so that nobody can swap the
// directory or a path leading to it between the check and the use.
//
// The candidates, in order: $IPACL_HOST_DIR (when set, the only one);
// $XDG_RUNTIME_DIR/ipacl when XDG_RUNTIME_DIR itself is private to us;
// /tmp/ipacl-<euid>; and when another user has taken that name, the
// fallback ~/.ipacl (home from $HOME, else the password database).
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

#include "c_boundary.h"
#include "host_internal.h"
#include "ipacl_host.h"

namespace ipacl_host {

int fail(int error) {
    errno = error;
    return -1;
}

namespace {

constexpr int kDirFlags = O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC;

// A directory is private when it is ours and nobody else may even look in
// (a symbolic link was already refused by O_NOFOLLOW).
bool is_private(int fd) {
    struct stat st {};
    return fstat(fd, &st) == 0 && S_ISDIR(st.st_mode) && st.st_uid == geteuid() &&
           (st.st_mode & 077) == 0;
}

// A parent that only we (or root) can change, so nobody can rename our
// directory away and put another in its place.
bool is_safe_parent(int fd) {
    struct stat st {};
    return fstat(fd, &st) == 0 && S_ISDIR(st.st_mode) &&
           (st.st_uid == geteuid() || st.st_uid == 0) && (st.st_mode & 022) == 0;
}

// Opens (making it when missing) the directory `name` under parent_fd and
// returns it if it is private; -1 with EACCES otherwise.
int open_private(int parent_fd, const char *name) {
    bool made = mkdirat(parent_fd, name, 0700) == 0;
    if (!made && errno != EEXIST) return -1;
    int fd = openat(parent_fd, name, kDirFlags);
    if (fd < 0) return fail(errno == ELOOP || errno == ENOTDIR ? EACCES : errno);
    // mkdir honours the umask; a directory we just made gets its mode.
    if (made) fchmod(fd, 0700);
    if (is_private(fd)) return fd;
    close(fd);
    return fail(EACCES);
}

// Opens path as a directory (no link at its end), or -1.
int open_plain(const char *path) { return open(path, kDirFlags); }

int from_runtime_dir(const char *run, std::string &dir) {
    int parent = open_plain(run);
    if (parent < 0) return -1;
    int fd = is_private(parent) ? open_private(parent, "ipacl") : fail(EACCES);
    close(parent);
    if (fd >= 0) dir = std::string(run) + "/ipacl";
    return fd;
}

int from_tmp(std::string &dir) {
    char name[32];
    snprintf(name, sizeof name, "ipacl-%u", static_cast<unsigned>(geteuid()));
    int parent = open_plain("/tmp");
    if (parent < 0) return -1;
    int fd = open_private(parent, name);
    close(parent);
    if (fd >= 0) dir = std::string("/tmp/") + name;
    return fd;
}

std::string home_dir() {
    if (const char *home = getenv("HOME"); home && *home == '/') return home;
    const passwd *pw = getpwuid(geteuid());
    return pw && pw->pw_dir ? pw->pw_dir : "";
}

int from_home(std::string &dir) {
    std::string home = home_dir();
    if (home.empty()) return fail(EACCES);
    int parent = open_plain(home.c_str());
    if (parent < 0) return fail(EACCES);
    int fd = is_safe_parent(parent) ? open_private(parent, ".ipacl") : fail(EACCES);
    close(parent);
    if (fd >= 0) dir = home + "/.ipacl";
    return fd;
}

int from_given(const char *path, std::string &dir) {
    if (mkdir(path, 0700) == 0) chmod(path, 0700);
    int fd = open_plain(path);
    if (fd < 0) return fail(errno == ELOOP || errno == ENOTDIR ? EACCES : errno);
    if (!is_private(fd)) {
        close(fd);
        return fail(EACCES);
    }
    dir = path;
    return fd;
}

}  // namespace

int open_dir(std::string &dir) {
    if (const char *given = getenv("IPACL_HOST_DIR"); given && *given)
        return from_given(given, dir);
    if (const char *run = getenv("XDG_RUNTIME_DIR"); run && *run) {
        int fd = from_runtime_dir(run, dir);
        if (fd >= 0) return fd;
    }
    int fd = from_tmp(dir);
    if (fd >= 0 || errno != EACCES) return fd;
    return from_home(dir);  // /tmp/ipacl-<euid> belongs to someone else
}

int socket_path(const Endpoint &ep, const std::string &name, std::string &path) {
    path = "/proc/self/fd/" + std::to_string(ep.dir_fd) + "/" + name;
    return 0;  // always far shorter than sun_path
}

}  // namespace ipacl_host

extern "C" IPACL_HOST_API int ipacl_host_dir(char *buf, uint32_t size) {
    using namespace ipacl_host;
    return c_boundary(-1, [&] {
        if (!buf || size == 0) return fail(EINVAL);
        std::string dir;
        int fd = open_dir(dir);
        if (fd < 0) return -1;
        close(fd);
        snprintf(buf, size, "%s", dir.c_str());
        return 0;
    });
}
