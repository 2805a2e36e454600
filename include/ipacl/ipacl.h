/** @file
 * The ipacl utility library: records, checks, comparisons, byte order,
 * memory, messaging, text and displays of the IP access-control lists. */
#ifndef IPACL_IPACL_H
#define IPACL_IPACL_H

#include <ipacl/version.h>
#include <ipacl/common.h>
#include <ipacl/codes.h>
#include <ipacl/records.h>
#include <ipacl/enums.h>
#include <ipacl/bm.h>
#include <ipacl/chk.h>
#include <ipacl/cmp.h>
#include <ipacl/wire.h>
#include <ipacl/mm.h>
#include <ipacl/wrap.h>
#include <ipacl/str_scalar.h>
#include <ipacl/str_record.h>
#include <ipacl/show.h>

#endif
