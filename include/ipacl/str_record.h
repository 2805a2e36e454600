/** @file
 * One-line text of profiles, bindings and filters.
 *
 * Each formatter writes one line into `dst`, a buffer owned by the caller.
 * Except for ipacl_str_filter_ipv6 the line is not bounded: the long form
 * of a filter stays below 512 characters, every other line below 200.
 * Every field reads as its ipacl_str_* text; a profile name that is empty
 * prints as '' so that the line keeps its number of words.
 *
 * The `_net` twins take the record in network byte order, convert a local
 * copy and format that; the caller's record is never modified.
 *
 * A NULL `dst` writes nothing; a NULL record writes an empty line.  Both
 * return 0. */
#ifndef IPACL_STR_RECORD_H
#define IPACL_STR_RECORD_H

#include <ipacl/codes.h>
#include <ipacl/records.h>

IPACL_BEGIN_DECLS

/** @{ */
/** "prof <name>" */
IPACL_API void ipacl_str_prof_key(const ipacl_prof_key *key, char *dst);
IPACL_API void ipacl_str_prof_key_net(const ipacl_prof_key *key, char *dst);
/** @} */

/** @{ */
/** "<row status> prof <name> <profile type> <index>"; returns the count of
 * characters written. */
IPACL_API uint32_t ipacl_str_prof(const ipacl_prof *prof, char *dst);
IPACL_API uint32_t ipacl_str_prof_net(const ipacl_prof *prof, char *dst);
/** @} */

/** @{ */
/** "<interface> <direction>" */
IPACL_API uint32_t ipacl_str_if_prof_key(const ipacl_if_prof_key *key, char *dst);
IPACL_API uint32_t ipacl_str_if_prof_key_net(const ipacl_if_prof_key *key, char *dst);
/** @} */

/** @{ */
/** "<row status> <interface>(0x<index>) <direction> prof <name>" */
IPACL_API uint32_t ipacl_str_if_prof(const ipacl_if_prof *if_prof, char *dst);
IPACL_API uint32_t ipacl_str_if_prof_net(const ipacl_if_prof *if_prof, char *dst);
/** @} */

/** @{ */
/** "prof <name> <index>" */
IPACL_API uint32_t ipacl_str_filter_key(const ipacl_filter_key *key, char *dst);
IPACL_API uint32_t ipacl_str_filter_key_net(const ipacl_filter_key *key, char *dst);
/** @} */

/** @{ */
/** The long form, a dump of every field whether it applies or not:
 * "<rs> prof <name> <index> <order> <action> <proto> s-ip <prefix>
 *  d-ip <prefix> <op> s-port <low>:<high> <op> d-port <low>:<high>
 *  <icmp type>:<icmp code> est:<T|F> <prec> <tos> log:<T|F> frag:<T|F>"
 * on one line.  `dst` must hold 512 bytes. */
IPACL_API uint32_t ipacl_str_filter(const ipacl_filter *filter, char *dst);
IPACL_API uint32_t ipacl_str_filter_net(const ipacl_filter *filter, char *dst);
/** @} */

/** The command form of an IPv6 filter ("permit tcp any 2001:db8::/32 eq www
 * established"): only what the filter sets, never more than `size` bytes.
 * Returns IPACL_OK; IPACL_E_BAD_ARG for a NULL filter or `dst` or a size of
 * 0 or less (nothing written); IPACL_E_NO_MEM when a part does not fit, with
 * the text written so far left in `dst`.  A part that fills the space left
 * exactly is accepted although the terminator cut its last character. */
IPACL_API ipacl_rc ipacl_str_filter_ipv6(const ipacl_filter *filter, char *dst, int32_t size);

IPACL_END_DECLS

#endif
