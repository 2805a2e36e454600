/** @file
 * Result codes and the error-text convention.
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

/** Result code of every fallible function: IPACL_OK, an IPACL_E_* code or a
 * platform service's own code. */
typedef uint32_t ipacl_rc;

/** Success. */
#define IPACL_OK 0x00000000u
/** The operation failed: nothing found, no room left, or no valid result. */
#define IPACL_E_FAIL 0x407f0002u
/** An argument is out of range or missing. */
#define IPACL_E_BAD_ARG 0x407f0004u
/** Memory could not be allocated. */
#define IPACL_E_NO_MEM 0x407f0005u
/** The action is neither deny nor permit. */
#define IPACL_E_BAD_ACTION 0x407f0008u
/** The address type, or an address family that does not agree with it. */
#define IPACL_E_BAD_ADDR_TYPE 0x407f0009u
/** The direction is out of range. */
#define IPACL_E_BAD_DIR 0x407f000au
/** The established flag is neither 0 nor 1. */
#define IPACL_E_BAD_ESTABLISHED 0x407f000bu
/** The ICMP code is out of range or given without a type. */
#define IPACL_E_BAD_ICMP_CODE 0x407f000cu
/** The ICMP type is out of range. */
#define IPACL_E_BAD_ICMP_TYPE 0x407f000du
/** A management interface that is not the supervisor's own. */
#define IPACL_E_BAD_MGMT_IF 0x407f000eu
/** The log-deny flag is out of range. */
#define IPACL_E_BAD_LOG_DENY 0x407f000fu
/** The high port is out of range. */
#define IPACL_E_BAD_HIGH_PORT 0x407f0010u
/** The low port is out of range or above the high port. */
#define IPACL_E_BAD_LOW_PORT 0x407f0011u
/** The port operation is unknown or does not fit the protocol. */
#define IPACL_E_BAD_PORT_OP 0x407f0012u
/** The port range does not fit the port operation. */
#define IPACL_E_BAD_PORT_RANGE 0x407f0013u
/** The precedence is out of range. */
#define IPACL_E_BAD_PREC 0x407f0014u
/** The profile type is not one that may be configured. */
#define IPACL_E_BAD_PROF_TYPE 0x407f0015u
/** The protocol is out of range. */
#define IPACL_E_BAD_PROTO 0x407f0016u
/** The type of service is out of range. */
#define IPACL_E_BAD_TOS 0x407f0017u
/** The wildcard mask is not a run of zeros followed by ones. */
#define IPACL_E_BAD_WILDCARD 0x407f0018u
/** The name is longer than allowed. */
#define IPACL_E_NAME_TOO_LONG 0x407f001cu
/** The name is empty. */
#define IPACL_E_NO_NAME 0x407f0022u
/** Established is set for a protocol other than TCP. */
#define IPACL_E_ESTABLISHED_NOT_ALLOWED 0x407f0024u
/** An ICMP code is set for a protocol other than ICMP. */
#define IPACL_E_ICMP_CODE_NOT_ALLOWED 0x407f0025u
/** An ICMP type is set for a protocol other than ICMP. */
#define IPACL_E_ICMP_TYPE_NOT_ALLOWED 0x407f0026u
/** The interface is of a type that may not carry a profile. */
#define IPACL_E_BAD_IF_TYPE 0x407f0028u
/** A port is set for a protocol without ports. */
#define IPACL_E_PORT_NOT_ALLOWED 0x407f0029u
/** Log-deny is set on a permit. */
#define IPACL_E_LOG_DENY_NOT_ALLOWED 0x407f002au
/** The name is a reserved word. */
#define IPACL_E_NAME_RESERVED 0x407f002bu
/** The name holds characters other than letters and digits. */
#define IPACL_E_NAME_NOT_ALNUM 0x407f002cu
/** The row status is not the one required. */
#define IPACL_E_BAD_RS 0x407f002du
/** Both precedence and type of service are set. */
#define IPACL_E_PREC_AND_TOS 0x407f002eu

/** Size of an error-text buffer that holds every message of the library. */
#define IPACL_ERR_TEXT_SIZE 256

/** Writes a single terminating zero at the start of `err` when it is not NULL. */
IPACL_API void ipacl_str_zero(char *err);

IPACL_END_DECLS

#endif
