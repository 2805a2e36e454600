// Helpers for the host platform's tests: a private endpoint directory, child
// processes with a bounded wait, raw peers and a manager that echoes.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <sys/types.h>

#include "host_internal.h"
#include "ipacl_host.h"

namespace host_test {

// A fresh private directory, made the endpoint directory of this process
// (IPACL_HOST_DIR) for the life of the object, and removed afterwards.
class EndpointDir {
  public:
    EndpointDir();
    ~EndpointDir();
    const std::string &path() const { return path_; }
    std::string socket(const std::string &name) const { return path_ + "/" + name; }

  private:
    std::string path_;
};

// Runs body in a child process; the child leaves with body's result (and,
// in sanitized builds, fails with 99 if it leaked).
pid_t spawn(const std::function<int()> &body);
// The child's exit code, -signal if it died of one, or -1000 if it had to be
// killed after timeout_ms.
int wait_child(pid_t pid, int timeout_ms = 60000);
// Runs body in a child and returns once the child wrote a byte to the
// descriptor body is given (stored in *said); -1 when none came.
pid_t spawn_ready(const std::function<int(int ready_fd)> &body, char *said = nullptr);

// A raw SOCK_SEQPACKET connection to path, with extra socket flags; or -1.
int raw_connect(const std::string &path, int flags = 0);
// True when the peer hangs up on fd within timeout_ms.
bool hung_up(int fd, int timeout_ms);
// The header of a frame a raw peer sends to service 98, awaiting an answer.
ipacl_host::FrameHeader frame(uint32_t kind, uint32_t token, uint32_t size, uint32_t chunk);
// Sends one frame: h and h.chunk bytes of payload; false once cut off.
bool send_frame(int fd, const ipacl_host::FrameHeader &h, const void *payload = nullptr);
// Sends, in frames of the largest chunk, a request of `size` bytes up to the
// frame that would start at stop_at; false once cut off.
bool send_request(int fd, uint32_t size, uint32_t stop_at);
// A SOCK_SEQPACKET socket bound to path but not listening, or -1.
int bind_socket(const std::string &path);
// Descriptors this process has open.
int open_descriptors();
// What was written to standard error while fn ran.
std::string stderr_of(const std::function<void()> &fn);

// A manager process serving 98 with `loop` once registered; -1 if it failed.
pid_t start_manager(const std::function<int(uint32_t)> &loop);
// Answers every request with its own payload (a stats request with the
// endpoint's counters) until `expected` were handled, a stop request came or
// nothing came for idle_ms.
int echo_manager(uint32_t h, uint32_t expected, uint32_t idle_ms);
// The counters of the manager `client` talks to (zero when it cannot ask).
ipacl_host_stats ask_stats(uint32_t client);
// One request carrying value; 0 when the answer carried the same bytes.
uint32_t echo_once(uint32_t client, uint32_t value);
// Asks the manager to stop; true when it answered.
bool stop_manager(uint32_t client);

// A line of /proc/<pid>/status in KiB ("VmHWM", "VmSize", ...), -1 if none.
long proc_status_kb(pid_t pid, const char *field);
// CPU time the process used so far, in clock ticks.
long cpu_ticks(pid_t pid);

uid_t nobody_uid();
gid_t nobody_gid();
// Drops to "nobody" for good (child processes only); false on failure.
bool become_nobody();

}  // namespace host_test
