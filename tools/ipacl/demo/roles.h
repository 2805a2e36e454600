// The three processes of the demo.  The manager and the standby run in
// children of the demo; each returns its exit status.
#pragma once

namespace ipacl_tool::demo {

int run_manager(int ready_fd);
int run_standby(int ready_fd);
// The client runs in the demo's own process; true when every step went as
// planned.
bool run_client();

}  // namespace ipacl_tool::demo
