// Helpers for the host platform's tests: a private endpoint directory per
// test, child processes with a bounded wait, and raw frames.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <sys/types.h>
#include <vector>

namespace host_test {

// A fresh private directory, made the endpoint directory of this process
// (IPACL_HOST_DIR) for the life of the object, and removed afterwards.
class EndpointDir {
  public:
    EndpointDir();
    ~EndpointDir();
    const std::string &path() const { return path_; }
    std::string socket(const char *name) const { return path_ + "/" + name; }

  private:
    std::string path_;
};

// Runs body in a child process; the child leaves with body's result (and,
// in sanitized builds, fails with 99 if it leaked).
pid_t spawn(const std::function<int()> &body);
// The child's exit code, -signal if it died of one, or -1000 if it had to be
// killed after timeout_ms.
int wait_child(pid_t pid, int timeout_ms = 60000);

// A raw SOCK_SEQPACKET connection to path, or -1.
int raw_connect(const std::string &path);

// The uid and gid of "nobody".
uid_t nobody_uid();
gid_t nobody_gid();
// Drops to "nobody" for good (child processes only); false on failure.
bool become_nobody();

}  // namespace host_test
