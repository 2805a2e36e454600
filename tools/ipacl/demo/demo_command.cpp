// ipacl demo: a manager, its standby and a client as three processes over
// the host platform, in a private endpoint directory that is removed after.
#include "../commands.h"
#include "children.h"
#include "management_net.h"
#include "narrator.h"
#include "roles.h"

#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>

namespace ipacl_tool {
namespace {

constexpr int ready_timeout_ms = 5000;
constexpr int exit_timeout_ms = 5000;

// A fresh directory of our own for the endpoints, so that the demo never
// meets a real manager or another demo.
bool make_endpoint_dir(std::string &dir) {
    const char *tmp = std::getenv("TMPDIR");
    std::string pattern = std::string(tmp && *tmp ? tmp : "/tmp") + "/ipacl-demo-XXXXXX";
    if (mkdtemp(pattern.data()) == nullptr) {
        std::perror("ipacl demo: endpoint directory");
        return false;
    }
    dir = pattern;
    return setenv("IPACL_HOST_DIR", dir.c_str(), 1) == 0;
}

int run_demo() {
    using namespace demo;
    std::printf(
        "ipacl demo: the road of one request, live\n"
        "A client, an ACL manager and its standby copy, three processes talking\n"
        "through the host platform's message service.\n");
    std::string dir;
    if (!make_endpoint_dir(dir)) return exit_refused;
    std::string why;
    bool enforcing = open_management_net(why);
    if (enforcing)
        std::printf(
            "The manager enforces the filters it accepts on its management interface %s\n"
            "(%s), in a private network namespace; the client is at %s.\n",
            management_interface().c_str(), manager_address().c_str(), client_address().c_str());
    else
        std::printf("No enforcement here (%s); the filters stay in the manager.\n", why.c_str());

    child standby{"standby"}, manager{"manager"};
    bool started = start_child(standby, run_standby, ready_timeout_ms) &&
                   start_child(manager, run_manager, ready_timeout_ms);
    bool ok = false;
    if (started) {
        std::printf(
            "\n  manager   pid %d, serves service 98\n"
            "  standby   pid %d, registered as the standby copy\n"
            "  client    pid %d (this process)\n"
            "  endpoints %s\n",
            static_cast<int>(manager.pid), static_cast<int>(standby.pid),
            static_cast<int>(getpid()), dir.c_str());
        flush();
        ok = run_client();
    } else {
        std::fprintf(stderr, "ipacl demo: the manager or the standby did not start\n");
    }

    int wait_ms = ok ? exit_timeout_ms : 500;
    bool manager_done = reap_child(manager, wait_ms);
    bool standby_done = reap_child(standby, wait_ms);
    close_management_net();
    std::error_code ignored;
    std::filesystem::remove_all(dir, ignored);
    bool removed = !std::filesystem::exists(dir, ignored);

    heading("Cleanup");
    std::printf("  manager   %s\n  standby   %s\n  endpoints %s\n",
                manager_done ? "exited with status 0" : "failed or was ended",
                standby_done ? "exited with status 0" : "failed or was ended",
                removed ? "closed, directory removed" : "directory could not be removed");
    if (enforcing) std::printf("  network   namespaces and veth pair removed\n");
    ok = ok && manager_done && standby_done && removed;
    std::printf("\nipacl demo: %s\n", ok ? "every step went as expected" : "FAILED");
    return ok ? exit_ok : exit_refused;
}

}  // namespace

void add_demo_command(CLI::App &app, int &status) {
    CLI::App *sub = app.add_subcommand(
        "demo",
        "Run a manager, its standby and a client as real processes and follow a handful of "
        "filters, valid and invalid, from the client's check to the standby's copy");
    sub->callback([&status] { status = run_demo(); });
}

}  // namespace ipacl_tool
