// The demo's other processes: started by fork, each signals when its
// endpoint is open, and each is waited for (or, if it hangs, ended) by pid.
#pragma once

#include <sys/types.h>

#include <string>

namespace ipacl_tool::demo {

struct child {
    std::string name;
    pid_t pid = -1;
    int status = -1;  // exit status once reaped; -1 while running or if killed
};

// Runs `body(ready_fd)` in a new process and waits until it writes one byte
// on ready_fd (its endpoint is open) or `timeout_ms` pass.  The body's
// result is the process's exit status.  False (with the child reaped) when
// it never got ready.
bool start_child(child &process, int (*body)(int ready_fd), int timeout_ms);

// Tells the parent that this process is ready.
void signal_ready(int ready_fd);

// Waits up to `timeout_ms` for the child to exit; ends it with SIGKILL
// after that.  True when it exited by itself with status 0.
bool reap_child(child &process, int timeout_ms);

}  // namespace ipacl_tool::demo
