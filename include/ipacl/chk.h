/* Field checks and whole-record check chains. */
#ifndef IPACL_CHK_H
#define IPACL_CHK_H

#include <ipacl/codes.h>
#include <ipacl/records.h>

IPACL_BEGIN_DECLS

IPACL_END_DECLS

#endif
