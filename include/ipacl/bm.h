/* Bitmaps and prefix masks. */
#ifndef IPACL_BM_H
#define IPACL_BM_H

#include <ipacl/codes.h>
#include <ipacl/records.h>

IPACL_BEGIN_DECLS

IPACL_END_DECLS

#endif
