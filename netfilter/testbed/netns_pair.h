// Two private network namespaces joined by one veth pair: a "manager" whose
// end of the pair is its management interface, and a "peer" that sends to
// it.  Only the process that made them holds them (by file descriptor, never
// by a name under /run/netns), so the kernel removes both, with their
// interfaces, when the pair is destroyed or the process ends, even on a
// crash.  Traffic between them never leaves the pair.
#pragma once

#include <memory>
#include <string>
#include <vector>

namespace ipacl_testbed {

struct netns_side {
    int ns_fd = -1;      // the namespace, open for setns()
    std::string ifname;  // its end of the veth pair
    std::string addr4;   // 10.x address on that end
    std::string addr6;   // fd00:: address on that end
    std::string mac;     // fixed link address, so IPv6 needs no neighbour discovery
    // More IPv4 sources on the peer's end, for filters that tell sources
    // apart: 10.201.5.2 and 10.201.0.12 (the subnet is 10.201.0.0/16).
    std::vector<std::string> aliases4;
};

class netns_pair;

struct netns_pair_result {
    std::unique_ptr<netns_pair> pair;  // null on failure
    std::string why;                   // what failed
    // The kernel or the machine refused (no namespaces, no `ip`): a reason
    // to skip.  Otherwise a command of the setup itself failed.
    bool refused = false;
};

class netns_pair {
  public:
    static netns_pair_result create();
    ~netns_pair();
    netns_pair(const netns_pair &) = delete;
    netns_pair &operator=(const netns_pair &) = delete;

    const netns_side &manager() const { return manager_; }
    const netns_side &peer() const { return peer_; }
    // The namespace the process started in.
    int home_fd() const { return home_fd_; }

  private:
    netns_pair() = default;
    bool make_namespaces(std::string &why);
    bool link_and_address(std::string &why, bool &refused);
    bool carries(std::string &why) const;

    int home_fd_ = -1;
    netns_side manager_, peer_;
};

// Moves the calling thread into a namespace and back to `home` at the end of
// the scope.  Sockets made inside stay in that namespace wherever they are
// used afterwards.
class netns_scope {
  public:
    netns_scope(int ns_fd, int home_fd);
    ~netns_scope();
    netns_scope(const netns_scope &) = delete;
    netns_scope &operator=(const netns_scope &) = delete;
    bool entered() const { return entered_; }

  private:
    int home_fd_;
    bool entered_;
};

// Runs a program inside a namespace (a child that enters it and execs), at
// most `timeout_ms`; its exit status, -1 when it could not run or was ended.
// `output` receives what it wrote to stdout and stderr; `input` is its stdin.
int run_in_netns(int ns_fd, const char *const argv[], const std::string &input, std::string &output,
                 int timeout_ms = 5000);

}  // namespace ipacl_testbed
