/** @file
 * Text of addresses, masks, indexes, identifiers and times.
 *
 * Each function writes into a buffer the caller owns and keeps no state.
 * Unless noted, `dst` holds at least IPACL_STR_SIZE (40) bytes and the result
 * is the count of characters written.  None of them fails: a value without a
 * name prints as a number, a bad prefix as "???" or "unknown(<family>)". */
#ifndef IPACL_STR_SCALAR_H
#define IPACL_STR_SCALAR_H

#include <time.h>

#include <ipacl/codes.h>
#include <ipacl/records.h>

IPACL_BEGIN_DECLS

/** IPv4 address in host order: "any" for IPACL_ADDR_ANY (0), else dotted
 * decimal, most significant byte first. */
IPACL_API uint32_t ipacl_str_addr(uint32_t addr, char *dst);

/** IPv4 wildcard mask in host order: "any" for IPACL_MASK_ANY (0xFFFFFFFF),
 * else dotted decimal ("0.0.0.0" for 0). */
IPACL_API uint32_t ipacl_str_mask(uint32_t mask, char *dst);

/** @{ */
/** Formats of ipacl_str_inet_addr. */
#define IPACL_INET_FORMAT_WILDCARD 0 /* IPv4 "address wildcard-mask" */
#define IPACL_INET_FORMAT_PREFIX 1   /* "address/length" */
/** @} */

/** A prefix as text, every write bounded by `size`; returns `dst`.
 * With `any_ok` non-zero an "any" prefix (is_prefix_any) prints "any".
 * IPv4: format 0 "10.1.0.0 0.0.255.255", format 1 "10.1.0.0/16", any other
 * format "???" (and a report to the debug history and debug log).
 * IPv6: "address/length" whatever the format.  Other families:
 * "unknown(<family>)". */
IPACL_API char *ipacl_str_inet_addr(int32_t format, uint32_t any_ok, const ipacl_inet_addr *prefix,
                                    char *dst, uint32_t size);

/** "no-if" for IPACL_IF_INDEX_NONE (0), else the platform's name of the
 * interface (snprintf_if_index with size 40) and its result. */
IPACL_API uint32_t ipacl_str_if_index(uint32_t if_index, char *dst);

/** @{ */
/** Plain numbers with a text for their "none" value: index 0 "no-index",
 * order 0 "no-order", rule id 0xDEADBEEF and entry id 0xDEADBEAD "none",
 * ICMP code 0xFFFFFFFF "any-code". */
IPACL_API uint32_t ipacl_str_index(uint32_t index, char *dst);
IPACL_API uint32_t ipacl_str_order(uint32_t order, char *dst);
IPACL_API uint32_t ipacl_str_rule_id(uint32_t rule_id, char *dst);
IPACL_API uint32_t ipacl_str_entry_id(uint32_t entry_id, char *dst);
IPACL_API uint32_t ipacl_str_icmp_code(uint32_t code, char *dst);
/** @} */

/** Seconds of the current minute, milliseconds and remaining microseconds of
 * the wall clock, "%03u:%03u:%03u" (a stopwatch reading, not a time of day). */
IPACL_API uint32_t ipacl_str_time(char *dst);

/** Local time of day, "hh:mm:ss". */
IPACL_API uint32_t ipacl_str_time_stamp(char *dst);

/** The ctime() text of *t without its newline ("Thu Jan  1 00:00:00 1970"). */
IPACL_API void ipacl_str_date(const time_t *t, char *dst);

/** Makes `s` exactly n characters wide in place: cut when longer, padded with
 * blanks when shorter; `s` must hold n+1 bytes.  For n <= 0 only s[n] is set
 * to NUL. */
IPACL_API void ipacl_str_n(char *s, int32_t n);

/** The first line of `in`, at most 39 characters, into a 40-byte `dst`. */
IPACL_API void ipacl_str_from_line(const char *in, char *dst);

/** 1 when every character is a decimal digit (also for ""), else 0. */
IPACL_API uint32_t ipacl_str_isdigit(const char *s);

/** Decimal value of `s` in wrapping 32-bit arithmetic; characters are not
 * checked (test with ipacl_str_isdigit first); "" gives 0. */
IPACL_API void ipacl_str_toint(const char *s, uint32_t *out);

/** Canonical form of a name for comparisons: its first 29 characters lowered,
 * in a zero-filled 32-byte `dst`. */
IPACL_API void ipacl_str_to_chain(const char *name, char *dst);

IPACL_END_DECLS

#endif
