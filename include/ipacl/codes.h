/* Result codes and the error-text convention.
 *
 * Every fallible function returns a 32-bit code: IPACL_OK, one of the
 * 0x407f00NN codes below, or a platform service's own code passed through.
 * Most take an error-text buffer `err` as their last parameter: NULL means
 * "no text"; on failure exactly one message is written (unbounded sprintf),
 * on success the buffer is cleared to "".  IPACL_ERR_TEXT_SIZE is enough for
 * the longest message with 64-character names. */
#ifndef IPACL_CODES_H
#define IPACL_CODES_H

#include <ipacl/common.h>

IPACL_BEGIN_DECLS

typedef uint32_t ipacl_rc;

#define IPACL_OK 0x00000000u
#define IPACL_E_FAIL 0x407f0002u
#define IPACL_E_BAD_ARG 0x407f0004u
#define IPACL_E_NO_MEM 0x407f0005u
#define IPACL_E_BAD_ACTION 0x407f0008u
#define IPACL_E_BAD_ADDR_TYPE 0x407f0009u
#define IPACL_E_BAD_DIR 0x407f000au
#define IPACL_E_BAD_ESTABLISHED 0x407f000bu
#define IPACL_E_BAD_ICMP_CODE 0x407f000cu
#define IPACL_E_BAD_ICMP_TYPE 0x407f000du
#define IPACL_E_BAD_MGMT_IF 0x407f000eu
#define IPACL_E_BAD_LOG_DENY 0x407f000fu
#define IPACL_E_BAD_HIGH_PORT 0x407f0010u
#define IPACL_E_BAD_LOW_PORT 0x407f0011u
#define IPACL_E_BAD_PORT_OP 0x407f0012u
#define IPACL_E_BAD_PORT_RANGE 0x407f0013u
#define IPACL_E_BAD_PREC 0x407f0014u
#define IPACL_E_BAD_PROF_TYPE 0x407f0015u
#define IPACL_E_BAD_PROTO 0x407f0016u
#define IPACL_E_BAD_TOS 0x407f0017u
#define IPACL_E_BAD_WILDCARD 0x407f0018u
#define IPACL_E_NAME_TOO_LONG 0x407f001cu
#define IPACL_E_NO_NAME 0x407f0022u
#define IPACL_E_ESTABLISHED_NOT_ALLOWED 0x407f0024u
#define IPACL_E_ICMP_CODE_NOT_ALLOWED 0x407f0025u
#define IPACL_E_ICMP_TYPE_NOT_ALLOWED 0x407f0026u
#define IPACL_E_BAD_IF_TYPE 0x407f0028u
#define IPACL_E_PORT_NOT_ALLOWED 0x407f0029u
#define IPACL_E_LOG_DENY_NOT_ALLOWED 0x407f002au
#define IPACL_E_NAME_RESERVED 0x407f002bu
#define IPACL_E_NAME_NOT_ALNUM 0x407f002cu
#define IPACL_E_BAD_RS 0x407f002du
#define IPACL_E_PREC_AND_TOS 0x407f002eu

/* Size of an error-text buffer that holds every message of the library. */
#define IPACL_ERR_TEXT_SIZE 256

/* Writes a single terminating zero at the start of `err` when it is not NULL. */
IPACL_API void ipacl_str_zero(char *err);

IPACL_END_DECLS

#endif
