/** @file
 * Shared definitions of every ipacl header: export marker, C linkage guards,
 * compile-time layout checks. */
#ifndef IPACL_COMMON_H
#define IPACL_COMMON_H

#include <stddef.h>
#include <stdint.h>

/** Marks a declaration as exported by the shared library (empty for users). */
#if defined(IPACL_BUILDING)
#define IPACL_API __attribute__((visibility("default")))
#else
#define IPACL_API
#endif

/** @{ */
/** Opens and closes C linkage around the declarations when compiled as C++,
 * and asserts at compile time in either language. */
#ifdef __cplusplus
#define IPACL_BEGIN_DECLS extern "C" {
#define IPACL_END_DECLS }
#define IPACL_STATIC_ASSERT(cond, msg) static_assert(cond, msg)
#else
#define IPACL_BEGIN_DECLS
#define IPACL_END_DECLS
#define IPACL_STATIC_ASSERT(cond, msg) _Static_assert(cond, msg)
#endif
/** @} */

/** Lays a record out without padding, the same on every build. */
#define IPACL_PACKED __attribute__((packed))

/** @{ */
/** Layout checks: every wire record keeps its size and field offsets on every
 * build (x86_64 and i386 alike). */
#define IPACL_CHECK_SIZE(type, size) IPACL_STATIC_ASSERT(sizeof(type) == (size), "size of " #type)
#define IPACL_CHECK_OFF(type, field, off) \
    IPACL_STATIC_ASSERT(offsetof(type, field) == (off), "offset of " #type "." #field)
/** @} */

#endif
