#include "host_test_support.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <dirent.h>
#include <ftw.h>
#include <grp.h>
#include <pwd.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>
#include <fstream>
#include <poll.h>
#include <sstream>

#include <ipacl/ipacl.h>

#include "platform/vel.h"

#if defined(__SANITIZE_ADDRESS__)
#include <sanitizer/lsan_interface.h>
#endif

namespace host_test {

namespace {

using Area = std::array<uint8_t, IPACL_HOST_HANDLE_AREA>;
constexpr uint32_t kStatsOpcode = 0xdead;  // answered with the endpoint's counters
constexpr uint32_t kStopOpcode = 0xdeaf;   // answered, then the manager returns 0

sockaddr_un address_of(const std::string &path) {
    sockaddr_un addr{};
    addr.sun_family = AF_UNIX;
    snprintf(addr.sun_path, sizeof addr.sun_path, "%s", path.c_str());
    return addr;
}

// One request and the bytes of its answer; 0 or the wrapper's result.
uint32_t ask(uint32_t client, uint32_t opcode, const void *payload, uint32_t size,
             std::string &answer) {
    ipacl_vel_msg req{}, rsp{};
    req.opcode = opcode;
    req.payload = const_cast<void *>(payload);
    req.size = size;
    char err[IPACL_ERR_TEXT_SIZE];
    uint32_t rc = ipacl_wrap_vel_req_rsp(client, &req, &rsp, err);
    if (rc != 0) return rc;
    answer.assign(static_cast<const char *>(rsp.payload), rsp.size);
    vel_drop(client, rsp.handle);
    return 0;
}

}  // namespace

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

int raw_connect(const std::string &path, int flags) {
    int fd = socket(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC | flags, 0);
    sockaddr_un addr = address_of(path);
    if (connect(fd, reinterpret_cast<sockaddr *>(&addr), sizeof addr) == 0) return fd;
    int saved = errno;
    close(fd);
    errno = saved;
    return -1;
}

bool hung_up(int fd, int timeout_ms) {
    pollfd p{fd, POLLIN, 0};
    char byte;
    return poll(&p, 1, timeout_ms) == 1 && recv(fd, &byte, 1, 0) <= 0;
}

ipacl_host::FrameHeader frame(uint32_t kind, uint32_t token, uint32_t size, uint32_t chunk) {
    return {ipacl_host::kFrameMagic, kind, 1, 98, token, ipacl_host::kAwaited, size, chunk};
}

bool send_frame(int fd, const ipacl_host::FrameHeader &h, const void *payload) {
    std::vector<uint8_t> bytes(sizeof h + h.chunk);
    memcpy(bytes.data(), &h, sizeof h);
    if (h.chunk) memcpy(bytes.data() + sizeof h, payload, h.chunk);
    return send(fd, bytes.data(), bytes.size(), MSG_NOSIGNAL) == ssize_t(bytes.size());
}

bool send_request(int fd, uint32_t size, uint32_t stop_at) {
    static const std::vector<uint8_t> chunk(ipacl_host::kMaxChunk, 0x5a);
    ipacl_host::FrameHeader h = frame(ipacl_host::kRequest, 1, size, 0);
    for (uint32_t sent = 0; sent < stop_at; sent += h.chunk, h.kind = ipacl_host::kMore) {
        h.chunk = std::min(ipacl_host::kMaxChunk, size - sent);
        if (!send_frame(fd, h, chunk.data())) return false;
    }
    return true;
}

int bind_socket(const std::string &path) {
    int fd = socket(AF_UNIX, SOCK_SEQPACKET, 0);
    sockaddr_un addr = address_of(path);
    if (bind(fd, reinterpret_cast<sockaddr *>(&addr), sizeof addr) == 0) return fd;
    close(fd);
    return -1;
}

int open_descriptors() {
    int n = 0;
    DIR *d = opendir("/proc/self/fd");
    while (d && readdir(d)) ++n;
    if (d) closedir(d);
    return n - 3;  // ".", ".." and the directory itself
}

std::string stderr_of(const std::function<void()> &fn) {
    fflush(stderr);
    FILE *capture = tmpfile();
    int saved = dup(STDERR_FILENO);
    dup2(fileno(capture), STDERR_FILENO);
    fn();
    fflush(stderr);
    dup2(saved, STDERR_FILENO);
    close(saved);
    rewind(capture);
    std::string out;
    for (int ch; (ch = fgetc(capture)) != EOF;) out += static_cast<char>(ch);
    fclose(capture);
    return out;
}

pid_t spawn_ready(const std::function<int(int ready_fd)> &body, char *said) {
    int ready[2];
    if (pipe(ready) != 0) return -1;
    pid_t pid = spawn([&] {
        close(ready[0]);
        return body(ready[1]);
    });
    close(ready[1]);
    pollfd p{ready[0], POLLIN, 0};
    char byte;
    bool ok = poll(&p, 1, 20000) == 1 && read(ready[0], &byte, 1) == 1;
    close(ready[0]);
    if (ok && said) *said = byte;
    if (!ok) wait_child(pid, 0);
    return ok ? pid : -1;
}

pid_t start_manager(const std::function<int(uint32_t)> &loop) {
    return spawn_ready([&](int ready) {
        uint32_t h = 0;
        if (ipacl_host_open(IPACL_HOST_SERVICE_ACL, 0, &h) != 0) return 10;
        if (write(ready, "r", 1) != 1) return 11;
        close(ready);
        int rc = loop(h);
        ipacl_host_close(h);
        return rc;
    });
}

int echo_manager(uint32_t h, uint32_t expected, uint32_t idle_ms) {
    char err[IPACL_ERR_TEXT_SIZE];
    for (uint32_t handled = 0; handled < expected; ++handled) {
        Area area;
        ipacl_host_msg_info info;
        if (ipacl_host_accept(h, area.data(), idle_ms) != 0) return 20;
        if (ipacl_host_msg_info_get(area.data(), &info) != 0) return 21;
        void *payload = vel_payload_get(area.data());
        uint32_t size = vel_payload_size(area.data());
        ipacl_host_stats stats{};
        if (info.opcode == kStatsOpcode) {
            ipacl_host_stats_get(h, &stats);
            payload = &stats;
            size = sizeof stats;
        }
        uint32_t rc = ipacl_wrap_vel_rsp(h, vel_rr_token_get(area.data()), payload, size, err);
        vel_drop(h, area.data());
        // A requester may have gone away or been cut off; the manager carries on.
        if (rc != 0 && rc != EPIPE && rc != ENOBUFS) return 22;
        if (info.opcode == kStopOpcode) return 0;
    }
    return 0;
}

ipacl_host_stats ask_stats(uint32_t client) {
    ipacl_host_stats stats{};
    std::string answer;
    if (ask(client, kStatsOpcode, nullptr, 0, answer) == 0 && answer.size() == sizeof stats)
        memcpy(&stats, answer.data(), sizeof stats);
    return stats;
}

uint32_t echo_once(uint32_t client, uint32_t value) {
    std::string answer;
    uint32_t rc = ask(client, 1, &value, sizeof value, answer);
    if (rc != 0) return rc;
    return answer == std::string(reinterpret_cast<const char *>(&value), sizeof value) ? 0 : 0xbad;
}

bool stop_manager(uint32_t client) {
    std::string answer;
    return ask(client, kStopOpcode, nullptr, 0, answer) == 0;
}

long proc_status_kb(pid_t pid, const char *field) {
    std::ifstream in("/proc/" + std::to_string(pid) + "/status");
    std::string key;
    for (std::string line; std::getline(in, line);) {
        std::istringstream words(line);
        long kb = -1;
        if (words >> key >> kb && key == std::string(field) + ":") return kb;
    }
    return -1;
}

long cpu_ticks(pid_t pid) {
    std::ifstream in("/proc/" + std::to_string(pid) + "/stat");
    std::string text((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    // User and system time, fields 14 and 15, follow the parenthesised name.
    long utime = 0, stime = 0;
    sscanf(text.c_str() + text.rfind(')') + 1,
           " %*s %*s %*s %*s %*s %*s %*s %*s %*s %*s %*s %ld %ld", &utime, &stime);
    return utime + stime;
}

uid_t nobody_uid() { return getpwnam("nobody") ? getpwnam("nobody")->pw_uid : 65534; }
gid_t nobody_gid() { return getpwnam("nobody") ? getpwnam("nobody")->pw_gid : 65534; }

bool become_nobody() {
    return setgroups(0, nullptr) == 0 && setgid(nobody_gid()) == 0 && setuid(nobody_uid()) == 0 &&
           geteuid() != 0;
}

}  // namespace host_test
