// The successor of a profile name in the manager's get-next order.
#pragma once

#include <cstddef>

#include <ipacl/codes.h>

namespace ipacl {

// Steps the NUL-terminated name held in `capacity` bytes in place.  IPACL_OK,
// or IPACL_E_FAIL with the name unchanged when it has no successor.
ipacl_rc ipacl_next_name(char *name, size_t capacity);

}  // namespace ipacl
