// Whether a binding's interface, when it is a management interface, is the
// supervisor's own management port.
#pragma once

#include <ipacl/records.h>

#include <cstdint>

namespace ipacl {

// IPACL_OK, IPACL_E_BAD_MGMT_IF or the interface-index service's own code;
// never a message.
uint32_t check_mgmt_port(uint32_t if_index);

}  // namespace ipacl
