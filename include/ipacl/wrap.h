/* Message wrappers over the vel service and the quen envelope. */
#ifndef IPACL_WRAP_H
#define IPACL_WRAP_H

#include <ipacl/codes.h>
#include <ipacl/records.h>

IPACL_BEGIN_DECLS

IPACL_END_DECLS

#endif
