/* Chunked memory pool, sync buffers and key successors. */
#ifndef IPACL_MM_H
#define IPACL_MM_H

#include <ipacl/codes.h>
#include <ipacl/records.h>

IPACL_BEGIN_DECLS

IPACL_END_DECLS

#endif
