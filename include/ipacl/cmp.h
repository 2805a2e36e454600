/** @file
 * Ordering and equality of names, keys and records.
 *
 * Ordering functions (ipacl_cmp_THING) return IPACL_CMP_LT, _GT or _EQ;
 * equality functions (ipacl_cmp_eq_THING) return IPACL_CMP_NE or _EQ.
 * None returns 0.
 *
 * Keys: ipacl_prof_key, ipacl_filter_key and ipacl_if_prof_key are the
 * leading fields of ipacl_prof, ipacl_filter and ipacl_if_prof.  The ordering
 * of records reads only those leading fields, so a key may be passed where
 * the record is asked for (cast its pointer), and ipacl_cmp_eq_if_prof takes
 * a key or (cast) a binding. */
#ifndef IPACL_CMP_H
#define IPACL_CMP_H

#include <ipacl/codes.h>
#include <ipacl/records.h>

IPACL_BEGIN_DECLS

/** Answer of the ordering and equality functions; never 0. */
typedef uint32_t ipacl_cmp_result;
/** A sorts before b. */
#define IPACL_CMP_LT 1u
/** A sorts after b. */
#define IPACL_CMP_GT 2u
/** A and b differ. */
#define IPACL_CMP_NE 3u
/** A and b are equal (or sort together). */
#define IPACL_CMP_EQ 4u

/** Names: the shorter sorts first; names of equal length compare by their
 * first 29 characters, case ignored, all-digit names by value. */
IPACL_API ipacl_cmp_result ipacl_cmp_name(const char *a, const char *b);

/** By name (a profile or its key). */
IPACL_API ipacl_cmp_result ipacl_cmp_prof(const ipacl_prof *a, const ipacl_prof *b);

/** By profile name, then filter_index (a filter or its key). */
IPACL_API ipacl_cmp_result ipacl_cmp_filter(const ipacl_filter *a, const ipacl_filter *b);

/** Unsigned order. */
IPACL_API ipacl_cmp_result ipacl_cmp_index(uint32_t a, uint32_t b);

/** By if_index, then direction (a binding or its key). */
IPACL_API ipacl_cmp_result ipacl_cmp_if_prof(const ipacl_if_prof *a, const ipacl_if_prof *b);

/** @{ */
/** Whole names, case ignored. */
IPACL_API ipacl_cmp_result ipacl_cmp_eq_name(const char *a, const char *b);
IPACL_API ipacl_cmp_result ipacl_cmp_eq_prof(const ipacl_prof *a, const ipacl_prof *b);
/** @} */

/** @{ */
/** Exact texts, case counts (two names for one test). */
IPACL_API ipacl_cmp_result ipacl_cmp_eq_if_name(const char *a, const char *b);
IPACL_API ipacl_cmp_result ipacl_cmp_eq_chain_name(const char *a, const char *b);
/** @} */

/** @{ */
/** Plain equality of numbers (three names for one test: directions 1 and 3
 * differ although both print as "in"). */
IPACL_API ipacl_cmp_result ipacl_cmp_eq_dir(uint32_t a, uint32_t b);
IPACL_API ipacl_cmp_result ipacl_cmp_eq_if_index(uint32_t a, uint32_t b);
IPACL_API ipacl_cmp_result ipacl_cmp_eq_index(uint32_t a, uint32_t b);
/** @} */

/** Same if_index and direction (a key or a binding). */
IPACL_API ipacl_cmp_result ipacl_cmp_eq_if_prof(const ipacl_if_prof_key *a,
                                                const ipacl_if_prof_key *b);

/** Same profile name (case ignored), if_index and direction. */
IPACL_API ipacl_cmp_result ipacl_cmp_eq_if_prof_field(const ipacl_if_prof *a,
                                                      const ipacl_if_prof *b);

/** Protocols of a filter of the given address family: equal, or one is the
 * wildcard -1 and the other the family's "any" protocol (0 for IPv4, 41 for
 * IPv6). */
IPACL_API ipacl_cmp_result ipacl_cmp_eq_proto(uint32_t a, uint32_t b, uint32_t family);

/** Same match: profile name (case ignored), prefixes, action, protocol, ports,
 * flags, ICMP, precedence, tos and fragments.  Index, order, log-deny, row
 * status, port operations, counters and wildcard words are not compared. */
IPACL_API ipacl_cmp_result ipacl_cmp_eq_filter_field(const ipacl_filter *a, const ipacl_filter *b);

/** 1 when the prefix stands for any address (length 0, address all zero);
 * an unknown family answers 1 and is reported to the debug history/log. */
IPACL_API uint32_t is_prefix_any(const ipacl_inet_addr *prefix);

/** Lowers strlen(text) characters of `text` into `out`, whose first 68 bytes
 * (IPACL_NAME_SIZE) are cleared first. */
IPACL_API void ipacl_str_to_lower(const char *text, char *out);

IPACL_END_DECLS

#endif
