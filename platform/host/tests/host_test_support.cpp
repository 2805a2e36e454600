#include "host_test_support.h"

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <ftw.h>
#include <grp.h>
#include <pwd.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>

#if defined(__SANITIZE_ADDRESS__)
#include <sanitizer/lsan_interface.h>
#endif

namespace host_test {

EndpointDir::EndpointDir() {
    char tmpl[] = "/tmp/ipacl-host-test-XXXXXX";
    if (mkdtemp(tmpl)) path_ = tmpl;  // mkdtemp makes it 0700
    setenv("IPACL_HOST_DIR", path_.c_str(), 1);
}

EndpointDir::~EndpointDir() {
    unsetenv("IPACL_HOST_DIR");
    if (path_.empty()) return;
    nftw(
        path_.c_str(),
        [](const char *p, const struct stat *, int, struct FTW *) { return remove(p); }, 8,
        FTW_DEPTH | FTW_PHYS);
}

pid_t spawn(const std::function<int()> &body) {
    fflush(nullptr);
    pid_t pid = fork();
    if (pid != 0) return pid;
    int rc = body();
#if defined(__SANITIZE_ADDRESS__)
    if (__lsan_do_recoverable_leak_check()) rc = 99;
#endif
    fflush(nullptr);
    _exit(rc);
}

int wait_child(pid_t pid, int timeout_ms) {
    for (int waited = 0;; waited += 5) {
        int status = 0;
        pid_t done = waitpid(pid, &status, WNOHANG);
        if (done == pid) return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
        if (done < 0) return -2000;
        if (waited >= timeout_ms) {
            kill(pid, SIGKILL);
            waitpid(pid, &status, 0);
            return -1000;
        }
        usleep(5000);
    }
}

int raw_connect(const std::string &path) {
    int fd = socket(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0);
    sockaddr_un addr{};
    addr.sun_family = AF_UNIX;
    snprintf(addr.sun_path, sizeof addr.sun_path, "%s", path.c_str());
    if (connect(fd, reinterpret_cast<sockaddr *>(&addr), sizeof addr) != 0) {
        int saved = errno;
        close(fd);
        errno = saved;
        return -1;
    }
    return fd;
}

uid_t nobody_uid() {
    const passwd *pw = getpwnam("nobody");
    return pw ? pw->pw_uid : 65534;
}

gid_t nobody_gid() {
    const passwd *pw = getpwnam("nobody");
    return pw ? pw->pw_gid : 65534;
}

bool become_nobody() {
    gid_t gid = nobody_gid();
    return setgroups(0, nullptr) == 0 && setgid(gid) == 0 && setuid(nobody_uid()) == 0 &&
           geteuid() != 0;
}

}  // namespace host_test
