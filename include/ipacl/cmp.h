/* Ordering and equality of names, keys and records. */
#ifndef IPACL_CMP_H
#define IPACL_CMP_H

#include <ipacl/codes.h>
#include <ipacl/records.h>

IPACL_BEGIN_DECLS

IPACL_END_DECLS

#endif
