/** @file
 * Field checks and whole-record check chains.
 *
 * Every check returns IPACL_OK or an IPACL_E_* code (a platform code where
 * noted) and takes the error-text buffer `err` last: NULL means no text; on
 * failure exactly one message is written, without a length bound; on success
 * the buffer is cleared to "".  Nothing else is written and no input is
 * changed.
 *
 * Buffer size: IPACL_ERR_TEXT_SIZE (256) holds every message when names are
 * at most 64 characters and every other inserted text (port labels, values'
 * texts) at most 40 characters.  The longest message is the port operation
 * refusal of ipacl_chk_port_op, "%s operation %s low %s high %s is not
 * allowed for %s": 42 fixed characters and five texts, 242 characters and
 * the terminator at most.  Names are printed whole: a longer name (refused by
 * ipacl_chk_name, or one that ipacl_chk_name_rsv finds not alphanumeric)
 * needs correspondingly more room.
 *
 * Values that may be -1 ("not set") are passed as uint32_t and compared as
 * signed where their range includes -1 (protocol, precedence, tos). */
#ifndef IPACL_CHK_H
#define IPACL_CHK_H

#include <ipacl/codes.h>
#include <ipacl/records.h>

IPACL_BEGIN_DECLS

/** @{ */
/** Largest lengths of the names checked. */
#define IPACL_NAME_MAX_LEN 64u
#define IPACL_CHAIN_NAME_MAX_LEN 31u
/** @} */

/** @{ */
/** Port labels that the record chains pass to the port checks. */
#define IPACL_LABEL_SRC_PORT "source port"
#define IPACL_LABEL_DST_PORT "dest port"
/** @} */

/* ---- Field checks ---- */

/** Protocol -1 (any) to 255. */
IPACL_API uint32_t ipacl_chk_proto(uint32_t proto, char *err);

/** Action deny (1) or permit (2); log-deny 0 or 1 with deny, not 1 with
 * permit. */
IPACL_API uint32_t ipacl_chk_action(uint32_t action, uint32_t log_deny, char *err);

/** Established 0 or 1 with TCP, 0 with any other protocol. */
IPACL_API uint32_t ipacl_chk_tcp(uint32_t proto, uint32_t established, char *err);

/** Not both set; precedence -1 to 7; tos -1 to 15. */
IPACL_API uint32_t ipacl_chk_prec_tos(uint32_t prec, uint32_t tos, char *err);

/** Ports below 65536, low not above high.  Messages only with a `label`
 * (such as IPACL_LABEL_SRC_PORT): without one the code comes with no text. */
IPACL_API uint32_t ipacl_chk_port_num(uint32_t low, uint32_t high, const char *label, char *err);

/** The port operation against the protocol and the range: TCP and UDP take
 * every operation (lt needs low 0, gt high 65535, eq and neq low = high);
 * other protocols only "any port" over 0..65535.  The range messages need a
 * `label`, the others only `err`. */
IPACL_API uint32_t ipacl_chk_port_op(uint32_t proto, uint32_t op, uint32_t low, uint32_t high,
                                     const char *label, char *err);

/** "eq <port>" of TCP or UDP must name a service port.  Other operations return
 * 0 without touching `err`; without `label` or `err` the check passes. */
IPACL_API uint32_t ipacl_chk_proto_port(uint32_t proto, uint32_t op, uint32_t port,
                                        const char *label, char *err);

/** @{ */
/** 1 when low > high or every port of low..high is a TCP (UDP) service port,
 * else 0. */
IPACL_API uint32_t ipacl_chk_tcp_port(uint32_t low, uint32_t high);
IPACL_API uint32_t ipacl_chk_udp_port(uint32_t low, uint32_t high);
/** @} */

/** ICMP type and code (0xFFFFFFFF: not set) only for ICMP (1) and ICMPv6 (58),
 * below 256, a code only with a type. */
IPACL_API uint32_t ipacl_chk_icmp(uint32_t proto, uint32_t type, uint32_t code, char *err);

/** Wildcard mask in host order: zeros, then ones (clears `err` first). */
IPACL_API uint32_t ipacl_chk_mask(uint32_t wildcard, char *err);

/** The filter's address type is IPv4 or IPv6 and both prefixes are of that
 * family.  Give it a buffer: its messages are its answer (NULL gets none). */
IPACL_API uint32_t ipacl_chk_addr_type(const ipacl_filter *filter, char *err);

/** @{ */
/** Direction 0 to 4 (5, in+out, is refused); two names for one check. */
IPACL_API uint32_t ipacl_chk_dir(uint32_t dir, char *err);
IPACL_API uint32_t ipacl_chk_quen_dir(uint32_t dir, char *err);
/** @} */

/** Profile type extended (2) only. */
IPACL_API uint32_t ipacl_chk_prof_type(uint32_t prof_type, char *err);

/** Row status `given` must be the `required` one. */
IPACL_API uint32_t ipacl_chk_rs(uint32_t given, uint32_t required, char *err);

/** @{ */
/** Name of 1 to 64 characters; chain name of 1 to 31. */
IPACL_API uint32_t ipacl_chk_name(const char *name, char *err);
IPACL_API uint32_t ipacl_chk_chain_name(const char *name, char *err);
/** @} */

/** Name of letters and digits only, and not a reserved word (case ignored).
 * The empty name passes. */
IPACL_API uint32_t ipacl_chk_name_rsv(const char *name, char *err);

/** Interface of a type that may carry a profile; a failure of the platform's
 * interface-index service is returned as the service's own code. */
IPACL_API uint32_t ipacl_chk_if_index(uint32_t if_index, char *err);

/** @{ */
/** Record chains: the first failing field check decides.
 *
 * Filters:  ipacl_chk_filter      held by the manager (no wildcard checks);
 *           ipacl_chk_quen_filter from the quen interface (every check);
 *           ipacl_chk_cli_filter  typed by an operator (reserved words, no
 *                                 name length, protocol, address types,
 *                                 precedence or tos);
 *           ipacl_chk_gen_filter  IPv4 with wildcards (name, action,
 *                                 protocol, wildcards only).
 * ipacl_chk_filter and ipacl_chk_quen_filter check the address types with
 * ipacl_chk_addr_type: give them a buffer. */
IPACL_API uint32_t ipacl_chk_filter(const ipacl_filter *filter, char *err);
IPACL_API uint32_t ipacl_chk_quen_filter(const ipacl_filter *filter, char *err);
IPACL_API uint32_t ipacl_chk_cli_filter(const ipacl_filter *filter, char *err);
IPACL_API uint32_t ipacl_chk_gen_filter(const ipacl_filter *filter, char *err);
/** @} */

/** @{ */
/** Profiles: plain checks name and type, quen name and reserved words. */
IPACL_API uint32_t ipacl_chk_prof(const ipacl_prof *prof, char *err);
IPACL_API uint32_t ipacl_chk_quen_prof(const ipacl_prof *prof, char *err);
/** @} */

/** @{ */
/** Bindings: plain and generic (one chain) check direction and name; the
 * command line only the reserved words; quen direction, name, reserved words
 * and, for a management interface, that it is the supervisor's own
 * management port (IPACL_E_BAD_MGMT_IF or a platform code, without text). */
IPACL_API uint32_t ipacl_chk_if_prof(const ipacl_if_prof *if_prof, char *err);
IPACL_API uint32_t ipacl_chk_gen_if_prof(const ipacl_if_prof *if_prof, char *err);
IPACL_API uint32_t ipacl_chk_cli_if_prof(const ipacl_if_prof *if_prof, char *err);
IPACL_API uint32_t ipacl_chk_quen_if_prof(const ipacl_if_prof *if_prof, char *err);
/** @} */

IPACL_END_DECLS

#endif
