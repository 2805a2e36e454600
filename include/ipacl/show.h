/* Diagnostic displays on standard output. */
#ifndef IPACL_SHOW_H
#define IPACL_SHOW_H

#include <ipacl/codes.h>
#include <ipacl/records.h>

IPACL_BEGIN_DECLS

IPACL_END_DECLS

#endif
