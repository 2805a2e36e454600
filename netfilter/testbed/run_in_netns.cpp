// A program run inside a namespace: a child enters it and execs, the parent
// feeds its stdin, collects its output and waits a bounded time.
#include "netns_pair.h"

#include <fcntl.h>
#include <poll.h>
#include <sched.h>
#include <signal.h>
#include <sys/wait.h>
#include <time.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

namespace ipacl_testbed {
namespace {

long now_ms() {
    timespec t{};
    clock_gettime(CLOCK_MONOTONIC, &t);
    return t.tv_sec * 1000L + t.tv_nsec / 1000000L;
}

[[noreturn]] void exec_child(int ns_fd, const char *const argv[], int in_fd, int out_fd) {
    if (setns(ns_fd, CLONE_NEWNET) != 0) {
        dprintf(out_fd, "setns: %s\n", std::strerror(errno));
        _exit(126);
    }
    dup2(in_fd, STDIN_FILENO);
    dup2(out_fd, STDOUT_FILENO);
    dup2(out_fd, STDERR_FILENO);
    execvp(argv[0], const_cast<char *const *>(argv));
    dprintf(STDERR_FILENO, "%s: %s\n", argv[0], std::strerror(errno));
    _exit(127);
}

// Reads the child's output until it closes it or the deadline passes.
void collect(int fd, long deadline, std::string &output) {
    char buf[4096];
    for (;;) {
        long left = deadline - now_ms();
        if (left <= 0) return;
        pollfd p{fd, POLLIN, 0};
        if (poll(&p, 1, static_cast<int>(left)) <= 0) return;
        ssize_t n = read(fd, buf, sizeof buf);
        if (n <= 0) return;
        output.append(buf, static_cast<size_t>(n));
    }
}

int reap(pid_t pid, long deadline) {
    int status = 0;
    for (;;) {
        pid_t done = waitpid(pid, &status, WNOHANG);
        if (done == pid) return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
        if (done < 0 || now_ms() >= deadline) break;
        usleep(5000);
    }
    kill(pid, SIGKILL);
    waitpid(pid, &status, 0);
    return -1;
}

}  // namespace

int run_in_netns(int ns_fd, const char *const argv[], const std::string &input, std::string &output,
                 int timeout_ms) {
    int in[2], out[2];
    if (pipe2(in, O_CLOEXEC) != 0) return -1;
    if (pipe2(out, O_CLOEXEC) != 0) {
        close(in[0]);
        close(in[1]);
        return -1;
    }
    pid_t pid = fork();
    if (pid == 0) exec_child(ns_fd, argv, in[0], out[1]);
    close(in[0]);
    close(out[1]);
    if (pid > 0 && !input.empty()) {
        // Small scripts only: they fit the pipe, so this never blocks.
        ssize_t ignored = write(in[1], input.data(), input.size());
        (void)ignored;
    }
    close(in[1]);
    long deadline = now_ms() + timeout_ms;
    if (pid > 0) collect(out[0], deadline, output);
    close(out[0]);
    return pid > 0 ? reap(pid, deadline) : -1;
}

}  // namespace ipacl_testbed
