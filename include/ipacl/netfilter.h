/* libipacl_netfilter: filters enforced as rules of the Linux kernel's
 * x_tables ("filter" table of ip_tables and ip6_tables), and the live table
 * read back into the library's iptables query records.
 *
 * Linux only; a library of its own beside libipacl (link ipacl_netfilter and
 * ipacl, or use pkg-config ipacl-netfilter).  It speaks to the kernel only
 * through the x_tables socket options of a raw socket (table info, entries,
 * replace, add counters); every call that touches the kernel needs
 * CAP_NET_RAW and CAP_NET_ADMIN in the caller's network namespace.
 *
 * Entries are laid out as the build target's kernel interface wants them
 * (XT_ALIGN of the target: 8 bytes on x86_64, 4 on i386), while the query
 * records keep the 32-bit layout of <ipacl/records.h> on every build.  A
 * 32-bit program on a 64-bit kernel is served by the kernel's compat
 * layer; under a user-mode emulator such as qemu-i386 the socket options do
 * not reach the kernel ("Protocol not available") and every call that
 * touches it returns IPACL_NF_E_UNAVAILABLE; translation works everywhere.
 *
 * Result codes and messages follow the rest of the library: every function
 * returns IPACL_OK or a code, and writes exactly one message into `err`
 * (the last parameter; NULL allowed; IPACL_NF_ERR_TEXT_SIZE bytes hold every
 * message) on failure, or clears it to "" on success.  A filter that fails
 * the library's own filter checks comes back with that check's code and
 * message unchanged (the 0x407f00NN codes of <ipacl/codes.h>); the codes
 * below, 0x407f01NN, are this library's own and never overlap them.
 *
 * ------------------------------------------------------------------------
 * How a filter becomes a rule
 *
 * Every filter is first checked with ipacl_chk_filter (the manager's chain:
 * name, action and log-deny, address types, protocol, port numbers and
 * operations, established, ICMP, precedence and tos).  That chain does not
 * test the IPv4 wildcard words, so every wildcard, contiguous or not, is
 * kept exactly (x_tables masks need not be contiguous).  Then:
 *
 *   action      permit: target ipacl_target_accept.  deny: target
 *               ipacl_target_drop.  deny with log_deny 1: the same rule
 *               twice in a row, first with the LOG target (level warning,
 *               no log flags, prefix "CHAIN FILTER-INDEX deny: " with the
 *               chain name cut to 20 characters), then with the drop
 *               target.  In an ipacl_ipt_rule this shows as target DROP
 *               plus a log match slot (type 10)
 *               holding the LOG parameters; read back, the kernel's two
 *               entries come back as two rules, the first with target "LOG"
 *               and its log slot.
 *   protocol    the any protocol of the family, -1, and 0 (ip) on IPv4 or
 *               41 (ipv6) on IPv6: no protocol test (kernel protocol 0).
 *               Any other number: that protocol.  0 on IPv6:
 *               IPACL_NF_E_UNSUPPORTED.
 *   source,     IPv4: the mask is the complement of the wildcard word
 *   destination (src_wildcard / dst_wildcard, host order), the address is
 *               src_addr / dst_addr masked by it; prefix_len is not read.
 *               IPv6: the mask is prefix_len leading ones (0..128, else
 *               IPACL_NF_E_UNSUPPORTED), the address masked by it.
 *   ports       tcp (6) and udp (17) only, one tcp or udp match, each port
 *               condition an inclusive range: eq P: P..P; neq P: P..P with
 *               the match's invert flag for that port; lt P (bounds 0..P):
 *               0..P-1; gt P (bounds P..65535): P+1..65535; range L H:
 *               L..H.  Operator 0 reads the bounds as the library's filter
 *               text does: 0..0 or 0..65535 no test, L == H eq, 0..P lt,
 *               P..65535 gt, else range.  lt 0 and gt 65535 match no port:
 *               IPACL_NF_E_UNSUPPORTED.
 *   established tcp only: the tcp match tests that ACK or RST is set
 *               (flag mask ACK|RST, compare 0, flags inverted).
 *   icmp        protocol 1 on IPv4 ("icmp" match), 58 on IPv6 ("icmp6"
 *               match): type with code low..high = code..code, or 0..255
 *               when the code is not set.  Protocol 1 on an IPv6 filter or
 *               58 on an IPv4 one with a type: IPACL_NF_E_UNSUPPORTED.
 *   precedence  the "tos" match (revision 1) on the IPv4 TOS byte or the
 *   tos         IPv6 traffic class: precedence p: mask 0xe0, value p << 5;
 *               tos t: mask 0x1e, value t << 1.  In an ipacl_ipt_rule the
 *               tos slot (type 9) holds the value byte.
 *   fragments   1, IPv4: the entry's fragment flag (non-first fragments only);
 *               above 1: IPACL_NF_E_UNSUPPORTED;
 *               with ports, established or an ICMP type the rule could
 *               never match, so that is IPACL_NF_E_UNSUPPORTED.  IPv6 has no
 *               such flag: IPACL_NF_E_UNSUPPORTED.
 *   interface   direction in (1, 3): input interface; out (2, 4): output
 *               interface; 5 and above: IPACL_E_BAD_DIR with the message of
 *               ipacl_chk_dir; 0 (no-dir): IPACL_E_BAD_DIR "no chain for
 *               direction no-dir".  The name as given, matched exactly (mask
 *               over the name and its terminating zero); a trailing "+"
 *               matches every name that starts with what precedes it.
 *               NULL or "" means every interface.  16 characters or more:
 *               IPACL_NF_E_UNSUPPORTED.
 *   not used    filter_index (only in the LOG prefix), order_position,
 *               src_word, dst_word, snmp_status, packets, bytes, tail.
 *
 * Names.  Chains: direction in uses ipacl_chain_in, out ipacl_chain_out;
 * ipacl_chain_fwd is read by nothing here.  Targets: ipacl_target_accept,
 * ipacl_target_drop.  Each of these exported buffers is only read; when its
 * first byte is 0 the default stands in for it (IPACL_NF_DEFAULT_CHAIN_IN
 * "ipacl-in", IPACL_NF_DEFAULT_CHAIN_OUT "ipacl-out", IPACL_NF_DEFAULT_CHAIN_FWD
 * "ipacl-fwd", "ACCEPT", "DROP", "QUEUE", "RETURN").  ipacl_nf_fill_names
 * writes those defaults into the empty buffers for a program that wants to
 * show them.  A target named ACCEPT, DROP, QUEUE or RETURN is the kernel's
 * verdict; any other target name jumps to the user chain of that name,
 * which must exist.  Chain names hold 1 to 28 characters (the kernel's
 * limit for a user chain); a built-in chain name (INPUT, OUTPUT, FORWARD)
 * is refused as an ACL chain.
 *
 * After the last filter.  A profile is an access list: what no filter
 * matched is dropped.  The ACL chain is a user chain of the filter table
 * that holds, in order, one rule per filter (two for deny with log) and a
 * last rule "interface -> DROP" (the implicit deny; with no interface it
 * drops everything that reaches it).  The built-in chain of the direction
 * (INPUT for in, OUTPUT for out) jumps to the ACL chain in its first rule,
 * with no other test, so traffic on other interfaces returns from the ACL
 * chain untouched.  Apply creates the chain and the jump when they are
 * missing and keeps one jump only.
 *
 * Records read back (ipacl_nf_query) are those of <ipacl/records.h>, in host
 * order, as ipacl_hton_ipt_rsp and the ipacl_show_ipt_* displays read them;
 * the entry's target_offset and next_offset are those of the running
 * kernel's layout.
 * ------------------------------------------------------------------------ */
#ifndef IPACL_NETFILTER_H
#define IPACL_NETFILTER_H

#include <ipacl/codes.h>
#include <ipacl/common.h>
#include <ipacl/records.h>

#if defined(IPACL_NF_BUILDING)
#define IPACL_NF_API __attribute__((visibility("default")))
#else
#define IPACL_NF_API
#endif

IPACL_BEGIN_DECLS

/* ---- result codes of this library (never 0x407f00NN) ------------------ */

/* The filter is valid but x_tables cannot express it exactly.
 * Messages: "fragments cannot be matched on IPv6 filters";
 * "protocol ip is not allowed for IPv6 filters (ipv6 is any)";
 * "%s lt 0 matches no port", "%s gt 65535 matches no port" ("source port",
 * "dest port"); "bad fragments %u";
 * "fragments cannot be combined with %s" ("ports", "established",
 * "icmp type"); "icmp type needs protocol icmp6 on IPv6 filters";
 * "icmp type needs protocol icmp on IPv4 filters";
 * "bad IPv6 prefix length %u"; "interface name '%s' is too long";
 * prefixed by "filter %u: " (1-based position) when it comes from apply. */
#define IPACL_NF_E_UNSUPPORTED 0x407f0101u
/* A chain or target name the kernel cannot take, or an unknown chain.
 * Messages: "chain name '%s' must have 1 to 28 characters";
 * "'%s' is a built-in chain"; "chains in and out are both '%s'" (apply,
 * remove); "no chain '%s'"; "target '%s': no such
 * chain"; "no rule %u in chain '%s'". */
#define IPACL_NF_E_BAD_CHAIN 0x407f0102u
/* The caller may not use the table: no CAP_NET_RAW for the socket, or no
 * CAP_NET_ADMIN for the socket options.
 * Message: "%s: permission denied (needs %s)" (the operation: "open
 * socket", "read table", "replace table", "add counters"; the capability). */
#define IPACL_NF_E_PERMISSION 0x407f0103u
/* No x_tables for this family in the kernel, or the socket options are
 * not passed through (e.g. a 32-bit program under a user-mode emulator).
 * Message: "%s: %s unavailable: %s" (operation, "ip_tables" or
 * "ip6_tables", strerror). */
#define IPACL_NF_E_UNAVAILABLE 0x407f0104u
/* The kernel refused a request (a replace it rejects, an unknown match
 * or target, a table that changed under us).  Nothing was changed.
 * Message: "%s: kernel refused: %s" (operation, strerror). */
#define IPACL_NF_E_KERNEL 0x407f0105u
/* The caller's buffer is too small; what fits was written.
 * Message: "%u of %u records fit in %u bytes" or "text needs %u bytes,
 * buffer holds %u". */
#define IPACL_NF_E_SHORT_BUFFER 0x407f0106u
/* Also returned: IPACL_E_BAD_ARG (NULL record or buffer, unknown family or
 * operation; "bad %s" with the argument's name), IPACL_E_NO_MEM (no memory
 * for the table copy; "no mem for %u bytes of table"), IPACL_E_BAD_DIR and
 * every code of the filter checks. */

/* An error buffer of this size holds every message of this library,
 * including a filter check's message behind the "filter %u: " prefix. */
#define IPACL_NF_ERR_TEXT_SIZE 512

#define IPACL_NF_DEFAULT_CHAIN_IN "ipacl-in"
#define IPACL_NF_DEFAULT_CHAIN_OUT "ipacl-out"
#define IPACL_NF_DEFAULT_CHAIN_FWD "ipacl-fwd"
/* Longest user chain name the kernel takes. */
#define IPACL_NF_CHAIN_NAME_MAX 28

/* ---- names ------------------------------------------------------------- */

/* Copies the default into each of the seven exported name buffers whose
 * first byte is 0; leaves filled ones alone.  Cannot fail. */
IPACL_NF_API void ipacl_nf_fill_names(void);

/* The chain of a direction (1, 3: in; 2, 4: out) as apply uses it: the
 * exported buffer or its default, copied into `chain` (IPACL_CHAIN_NAME_SIZE
 * bytes).  IPACL_E_BAD_DIR for any other direction (message of
 * ipacl_chk_dir, or "no chain for direction %s" for 0). */
IPACL_NF_API uint32_t ipacl_nf_chain_name(uint32_t dir, char *chain, char *err);

/* ---- translation (pure: no kernel, no state) --------------------------- */

/* One IPv4 filter, the direction it is bound in and the kernel interface
 * name, as one rule of the ACL chain: `out` gets chain, entry (addresses,
 * masks, interface and its mask, protocol, fragment flag, invert flags),
 * target and up to three matches (tcp or udp or icmp; tos; log), counters
 * and offsets 0, rule_num 0.  Codes: IPACL_OK; the filter checks' codes;
 * IPACL_E_BAD_ADDR_TYPE "translate: not an IPv4 filter" for an IPv6
 * filter; IPACL_E_BAD_DIR; IPACL_NF_E_UNSUPPORTED; IPACL_NF_E_BAD_CHAIN;
 * IPACL_E_BAD_ARG for NULL f or out.  `out` is written only on success. */
IPACL_NF_API uint32_t ipacl_nf_translate(const ipacl_filter *f, uint32_t dir, const char *ifname,
                                         ipacl_ipt_rule *out, char *err);

/* A rule of ip6_tables in the library's own form: the fields of
 * struct ip6t_ip6 that a filter can set, the target and matches as in
 * ipacl_ipt_rule (match types 1 tcp, 2 udp, 3 icmp6 with the ipacl_ipt_icmp
 * layout, 9 tos, 10 log), and the counters.  A plain C struct in host
 * order; not a wire record. */
typedef struct ipacl_nf_rule6 {
    char chain[IPACL_CHAIN_NAME_SIZE];
    uint32_t rule_num; /* 1-based position in the chain, 0 when unplaced */
    uint8_t src[16];   /* network order, already masked */
    uint8_t dst[16];
    uint8_t src_mask[16];
    uint8_t dst_mask[16];
    char in_if[16];
    char out_if[16];
    uint8_t in_if_mask[16];
    uint8_t out_if_mask[16];
    uint16_t proto;    /* 0: any */
    uint8_t flags;     /* 0x01: a protocol is tested (IP6T_F_PROTO) */
    uint8_t inv_flags; /* as ipacl_ipt_entry's inv_flags */
    char target[IPACL_TARGET_NAME_SIZE];
    uint32_t match_count;
    ipacl_match matches[IPACL_RULE_MATCHES];
    uint64_t packets;
    uint64_t bytes;
} ipacl_nf_rule6;

/* The IPv6 twin of ipacl_nf_translate, with the same codes;
 * IPACL_E_BAD_ADDR_TYPE "translate: not an IPv6 filter" for an IPv4 one. */
IPACL_NF_API uint32_t ipacl_nf_translate6(const ipacl_filter *f, uint32_t dir, const char *ifname,
                                          ipacl_nf_rule6 *out, char *err);

/* ---- apply ------------------------------------------------------------- */

/* Replaces the rules of the ACL chain of `dir` in the filter table of
 * `family` (IPACL_ADDR_TYPE_IPV4: ip_tables, IPACL_ADDR_TYPE_IPV6:
 * ip6_tables) with the `count` filters in order (each of that family),
 * bound to interface `ifname` (NULL or "" for every interface), followed by
 * the implicit deny; creates the chain and the jump from the built-in chain
 * when missing.  One table replacement: the kernel holds the old rules or
 * the new ones, never a mix; every other chain and rule keeps its counters
 * (read before, added back after).  Every filter is translated before the
 * kernel is touched: a filter that fails leaves the table untouched and
 * reports "filter %u: " (its 1-based position) before the message of the
 * check or translation.  count 0 leaves the implicit deny alone.
 * Codes: IPACL_OK, those of translation, IPACL_NF_E_PERMISSION,
 * IPACL_NF_E_UNAVAILABLE, IPACL_NF_E_KERNEL, IPACL_E_NO_MEM,
 * IPACL_E_BAD_ARG ("bad family", filters NULL with count > 0). */
IPACL_NF_API uint32_t ipacl_nf_apply(uint32_t family, uint32_t dir, const char *ifname,
                                     const ipacl_filter *filters, uint32_t count, char *err);

/* Removes the ACL chain of `dir` from the filter table of `family`, and the
 * jumps to it, in one replacement (counters of the rest kept).  A chain that
 * is not there is not an error.  Codes as for apply. */
IPACL_NF_API uint32_t ipacl_nf_remove(uint32_t family, uint32_t dir, char *err);

/* ---- query (IPv4 filter table) ---------------------------------------- */

/* Answers one operation of ipacl_ipt_op from the live IPv4 filter table into
 * `rsp` (`size` bytes, at least 12), in host order:
 *   IPACL_IPT_OP_ALL_CHAINS (1): one ipacl_ipt_chain per chain, in table
 *       order; entry = 1-based number of the chain in the table; policy =
 *       the verdict name of a built-in chain's policy ("ACCEPT", "DROP"),
 *       empty for a user chain; packets = the policy's packet counter (for
 *       a user chain the packets that reached its end and returned).
 *   IPACL_IPT_OP_MATCHED_CHAIN (2): the row of chain `chain` only (NULL
 *       or "": every row).
 *   IPACL_IPT_OP_ALL_RULES (16): an ipacl_rule_info per rule of `chain`
 *       (NULL or "": of every chain, in table order); rule_num > 0
 *       selects the rule of that number, as for 32.
 *   IPACL_IPT_OP_MATCHED_RULE (32): an ipacl_ipt_rule per rule of `chain`
 *       (NULL or "": every chain); rule_num > 0 selects the rule of that
 *       number (in each chain selected).
 *   IPACL_IPT_OP_CLEAR_CHAIN_COUNTERS (256): zeroes the counters of the
 *       chain rows (policies and user-chain ends) of `chain`, or of all.
 *   IPACL_IPT_OP_CLEAR_RULE_COUNTERS (512): zeroes the counters of the rules
 *       of `chain` (or of all chains; rule_num > 0: that rule only).
 * In a rule: rule_num is the 1-based position in its chain; target is the
 * verdict name, the user chain jumped to, or the target's own name ("LOG");
 * matches tcp, udp, icmp, tos and the LOG target's parameters fill slots of
 * types 1, 2, 3, 9 and 10 in the kernel's order; any other match fills a
 * slot of type 0 (displays skip it); at most three slots.
 * rsp->count = records written, rsp->flags = op, rsp->word8 = records the
 * operation has in all (0 for the clear operations, which write no records).
 * Codes: IPACL_OK, IPACL_NF_E_SHORT_BUFFER (count < word8: enlarge to
 * 12 + word8 x record size and ask again), IPACL_NF_E_BAD_CHAIN,
 * IPACL_E_BAD_ARG ("bad operation %u", "bad response buffer"),
 * IPACL_NF_E_PERMISSION, IPACL_NF_E_UNAVAILABLE, IPACL_NF_E_KERNEL. */
IPACL_NF_API uint32_t ipacl_nf_query(uint32_t op, const char *chain, uint32_t rule_num,
                                     ipacl_ipt_rsp *rsp, uint32_t size, char *err);

/* Size of an ipacl_ipt_rsp of `count` records of the kind `op` selects
 * (the converters' rule: 74 for ops 1/2, 290 for 32, 146 for 16). */
IPACL_NF_API uint32_t ipacl_nf_rsp_size(uint32_t op, uint32_t count);

/* ---- IPv6 rules --------------------------------------------------------- */

/* The rules of `chain` in the IPv6 filter table (NULL or "": every chain)
 * as records; `*count` in: room in `rules`, out: rules there are.  Codes as
 * for query; IPACL_NF_E_SHORT_BUFFER when there are more than room. */
IPACL_NF_API uint32_t ipacl_nf_rules6(const char *chain, ipacl_nf_rule6 *rules, uint32_t *count,
                                      char *err);

/* One IPv6 rule as one line of text (no newline) into `text` (`size`
 * bytes), the tool's own listing form:
 *   CHAIN RULE TARGET PROTO SOURCE DESTINATION [in IF] [out IF]
 *         [sport OP ...] [dport OP ...] [established] [icmp6 T C-C]
 *         [tos 0xV] [log "PREFIX"] packets N bytes M
 * PROTO is "ip" (any) or the protocol as ipacl_str_proto writes it;
 * SOURCE/DESTINATION "any", "ADDR/LEN", or "ADDR/MASK" for a mask that is
 * not a prefix; ports "eq P", "neq P", "range L H"; a "not " before a
 * field the rule inverts.  Codes: IPACL_OK, IPACL_NF_E_SHORT_BUFFER,
 * IPACL_E_BAD_ARG. */
IPACL_NF_API uint32_t ipacl_nf_str_rule6(const ipacl_nf_rule6 *rule, char *text, uint32_t size,
                                         char *err);

IPACL_END_DECLS

#endif
