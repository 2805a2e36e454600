/* Text of addresses, masks, indexes, identifiers and times. */
#ifndef IPACL_STR_SCALAR_H
#define IPACL_STR_SCALAR_H

#include <ipacl/codes.h>
#include <ipacl/records.h>

IPACL_BEGIN_DECLS

IPACL_END_DECLS

#endif
