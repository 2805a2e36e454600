#include "children.h"

#include <poll.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <cstdio>
#include <thread>

namespace ipacl_tool::demo {

bool start_child(child &process, int (*body)(int ready_fd), int timeout_ms) {
    int pipe_fds[2];
    if (pipe(pipe_fds) != 0) return false;
    std::fflush(stdout);  // the child must not print what the parent buffered
    std::fflush(stderr);
    pid_t pid = fork();
    if (pid < 0) {
        close(pipe_fds[0]);
        close(pipe_fds[1]);
        return false;
    }
    if (pid == 0) {
        close(pipe_fds[0]);
        int status = body(pipe_fds[1]);
        std::fflush(stdout);
        std::fflush(stderr);
        _exit(status);
    }
    close(pipe_fds[1]);
    process.pid = pid;
    pollfd ready{pipe_fds[0], POLLIN, 0};
    char byte = 0;
    bool ok = poll(&ready, 1, timeout_ms) == 1 && read(pipe_fds[0], &byte, 1) == 1;
    close(pipe_fds[0]);
    if (!ok) reap_child(process, 0);
    return ok;
}

void signal_ready(int ready_fd) {
    char byte = 1;
    if (write(ready_fd, &byte, 1) != 1) std::perror("ipacl demo: ready signal");
    close(ready_fd);
}

bool reap_child(child &process, int timeout_ms) {
    if (process.pid <= 0) return process.status == 0;
    auto deadline = std::chrono::steady_clock::now() + std::chrono::milliseconds(timeout_ms);
    int raw = 0;
    for (;;) {
        pid_t done = waitpid(process.pid, &raw, WNOHANG);
        if (done == process.pid) break;
        if (done < 0 && errno != EINTR) {
            process.pid = -1;
            return false;
        }
        if (std::chrono::steady_clock::now() >= deadline) {
            kill(process.pid, SIGKILL);
            waitpid(process.pid, &raw, 0);
            process.pid = -1;
            process.status = -1;
            return false;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    process.pid = -1;
    process.status = WIFEXITED(raw) ? WEXITSTATUS(raw) : -1;
    return process.status == 0;
}

}  // namespace ipacl_tool::demo
