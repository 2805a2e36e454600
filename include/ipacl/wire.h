/* Byte-order converters and message sizes. */
#ifndef IPACL_WIRE_H
#define IPACL_WIRE_H

#include <ipacl/codes.h>
#include <ipacl/records.h>

IPACL_BEGIN_DECLS

IPACL_END_DECLS

#endif
