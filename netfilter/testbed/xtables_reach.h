// Whether this program can use the kernel's x_tables inside a namespace: a
// 32-bit program under a user-mode emulator, or a kernel without
// ip_tables, cannot use the socket options at all.
#pragma once

#include "netns_pair.h"

#include <string>

namespace ipacl_testbed {

// True when the filter table of `side` answers a query; else `why` holds
// the library's message.
bool xtables_reachable(const netns_pair &pair, const netns_side &side, std::string &why);

}  // namespace ipacl_testbed
