#include "netns_pair.h"

#include "probes.h"

#include <fcntl.h>
#include <sched.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

namespace ipacl_testbed {
namespace {

int open_current_netns() { return open("/proc/thread-self/ns/net", O_RDONLY | O_CLOEXEC); }

std::string failed(const char *what) { return std::string(what) + ": " + std::strerror(errno); }

// A fresh namespace, made by the calling thread, which then returns home.
int new_netns(int home_fd, std::string &why) {
    if (unshare(CLONE_NEWNET) != 0) {
        why = failed("unshare(CLONE_NEWNET)");
        return -1;
    }
    int fd = open_current_netns();
    if (fd < 0) why = failed("open /proc/thread-self/ns/net");
    if (setns(home_fd, CLONE_NEWNET) != 0) {
        why = failed("setns back to the starting namespace");
        if (fd >= 0) close(fd);
        return -1;
    }
    return fd;
}

void fill_side(netns_side &side, const char *prefix, int host) {
    side.ifname = prefix + std::to_string(getpid());
    side.addr4 = "10.201.0." + std::to_string(host);
    side.addr6 = "fd00:201::" + std::to_string(host);
    side.mac = "02:00:0a:c9:00:0" + std::to_string(host);
}

// The commands that bring one end up with its addresses.  Without a
// link-local address and with the neighbour fixed, the end sends no router
// or neighbour solicitations of its own.
std::string setup_script(const netns_side &self, const netns_side &other) {
    std::string aliases;
    for (const std::string &alias : self.aliases4)
        aliases += "addr add " + alias + "/16 dev " + self.ifname + "\n";
    return "link set lo up\n"
           "link set " +
           self.ifname +
           " addrgenmode none\n"
           "link set " +
           self.ifname +
           " up\n"
           "addr add " +
           self.addr4 + "/16 dev " + self.ifname +
           "\n"
           "addr add " +
           self.addr6 + "/64 dev " + self.ifname +
           " nodad\n"
           "neigh replace " +
           other.addr6 + " lladdr " + other.mac + " dev " + self.ifname +
           " nud permanent\n"
           "neigh replace " +
           other.addr4 + " lladdr " + other.mac + " dev " + self.ifname + " nud permanent\n" +
           aliases;
}

bool run_ip(int ns_fd, const char *const argv[], const std::string &script, std::string &why,
            bool &refused) {
    std::string output;
    int status = run_in_netns(ns_fd, argv, script, output);
    if (status == 0) return true;
    // 126: the namespace could not be entered; 127: no `ip` (iproute2).
    refused = status == 126 || status == 127;
    why = "ip (status " + std::to_string(status) + "): " + output;
    while (!why.empty() && why.back() == '\n') why.pop_back();
    return false;
}

}  // namespace

netns_pair_result netns_pair::create() {
    netns_pair_result result;
    result.pair.reset(new netns_pair);
    result.refused = true;
    if (!result.pair->make_namespaces(result.why) ||
        !result.pair->link_and_address(result.why, result.refused) ||
        !result.pair->carries(result.why))
        result.pair.reset();
    else
        result.refused = false;
    return result;
}

bool netns_pair::make_namespaces(std::string &why) {
    home_fd_ = open_current_netns();
    if (home_fd_ < 0) {
        why = failed("open /proc/thread-self/ns/net");
        return false;
    }
    fill_side(manager_, "mg", 1);
    fill_side(peer_, "pr", 2);
    peer_.aliases4 = {"10.201.5.2", "10.201.0.12"};
    manager_.ns_fd = new_netns(home_fd_, why);
    if (manager_.ns_fd < 0) return false;
    peer_.ns_fd = new_netns(home_fd_, why);
    return peer_.ns_fd >= 0;
}

bool netns_pair::link_and_address(std::string &why, bool &refused) {
    // Made inside the manager's namespace with its peer end placed straight
    // into the peer's, so no interface ever appears in the starting one.
    std::string peer_ns =
        "/proc/" + std::to_string(getpid()) + "/fd/" + std::to_string(peer_.ns_fd);
    const char *add[] = {"ip",
                         "link",
                         "add",
                         manager_.ifname.c_str(),
                         "address",
                         manager_.mac.c_str(),
                         "type",
                         "veth",
                         "peer",
                         "name",
                         peer_.ifname.c_str(),
                         "address",
                         peer_.mac.c_str(),
                         "netns",
                         peer_ns.c_str(),
                         nullptr};
    if (!run_ip(manager_.ns_fd, add, "", why, refused)) return false;
    const char *batch[] = {"ip", "-batch", "-", nullptr};
    return run_ip(manager_.ns_fd, batch, setup_script(manager_, peer_), why, refused) &&
           run_ip(peer_.ns_fd, batch, setup_script(peer_, manager_), why, refused);
}

bool netns_pair::carries(std::string &why) const {
    // A link that was just set up drops what it is given until the kernel
    // has activated it (asynchronously, within about a second).
    constexpr int attempts = 20;
    for (int i = 0; i < attempts; ++i) {
        if (udp_probe(*this, peer_, manager_, {.port = 9}) == 1 &&
            udp_probe(*this, manager_, peer_, {.port = 9}) == 1)
            return true;
        usleep(20000);
    }
    why = "the veth pair carries no packets";
    return false;
}

netns_pair::~netns_pair() {
    // Closing the last reference removes each namespace and its interfaces.
    for (int fd : {manager_.ns_fd, peer_.ns_fd, home_fd_})
        if (fd >= 0) close(fd);
}

netns_scope::netns_scope(int ns_fd, int home_fd)
    : home_fd_(home_fd), entered_(setns(ns_fd, CLONE_NEWNET) == 0) {}

netns_scope::~netns_scope() {
    if (entered_) setns(home_fd_, CLONE_NEWNET);
}

}  // namespace ipacl_testbed
