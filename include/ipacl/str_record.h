/* One-line text of profiles, bindings and filters. */
#ifndef IPACL_STR_RECORD_H
#define IPACL_STR_RECORD_H

#include <ipacl/codes.h>
#include <ipacl/records.h>

IPACL_BEGIN_DECLS

IPACL_END_DECLS

#endif
