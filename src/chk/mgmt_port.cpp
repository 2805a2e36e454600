#include "chk/mgmt_port.h"

#include <ipacl/codes.h>

#include "platform/if_index.h"

namespace ipacl {
namespace {
constexpr uint8_t kMgmtIfType = 5;
constexpr uint32_t kMgmtPort = 0;
}  // namespace

// An interface of the management type is accepted only when it is exactly
// the port that the service builds from its first field with port 0, and its
// second field is 0.
uint32_t check_mgmt_port(uint32_t if_index) {
    uint8_t type = 0;
    if (int rc = if_index_get_type(if_index, &type)) return static_cast<uint32_t>(rc);
    if (type != kMgmtIfType) return IPACL_OK;

    uint8_t first = 0, second = 0;
    if (int rc = if_index_mgmt_sup_get_fields(if_index, &first, &second))
        return static_cast<uint32_t>(rc);
    if (second != 0) return IPACL_E_BAD_MGMT_IF;

    uint32_t own_port = 0;
    if (int rc = if_index_mgmt_sup_port_init(&own_port, first, kMgmtPort))
        return static_cast<uint32_t>(rc);
    return own_port == if_index ? IPACL_OK : IPACL_E_BAD_MGMT_IF;
}

}  // namespace ipacl
