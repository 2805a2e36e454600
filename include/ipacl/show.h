/** @file
 * Diagnostic displays on standard output.
 *
 * Two styles.  Block displays print one field a line, the label padded with
 * blanks to 24 columns (the high-availability display to 23), framed by the
 * separator "----------------------  " where the record calls for it.  Table
 * displays print one record as one row, each text column cut or padded to
 * its width; when `first` is 1 they first print the column titles and a rule
 * of dashes (any other value prints the row only).
 *
 * Every display prints nothing for a NULL record.  Records are read in host
 * order (convert received ones with the ipacl_ntoh_* functions first); links
 * to the manager's memory print as "%p". */
#ifndef IPACL_SHOW_H
#define IPACL_SHOW_H

#include <ipacl/codes.h>
#include <ipacl/records.h>

IPACL_BEGIN_DECLS

/* ---- records, block style ---------------------------------------------- */

/** Prints a protocol profile. */
IPACL_API void ipacl_show_prof(const ipacl_prof *prof);
/** Prints an interface profile binding. */
IPACL_API void ipacl_show_if_prof(const ipacl_if_prof *if_prof);
/** The port operations and counters follow the first closing separator. */
IPACL_API void ipacl_show_filter(const ipacl_filter *filter);

/** @{ */
/** The manager's access tables; each ends with the display of the record it
 * holds (profile, binding or filter).  The list also prints its filter
 * bitmap and the table of its used entry slots. */
IPACL_API void ipacl_show_access_list(const ipacl_list *list);
IPACL_API void ipacl_show_access_group(const ipacl_group *group);
IPACL_API void ipacl_show_access_intf(const ipacl_intf *intf);
IPACL_API void ipacl_show_access_data(const ipacl_data *data);
IPACL_API void ipacl_show_access_mgmt(const ipacl_mgmt *mgmt);
/** @} */

/* ---- records, table style ---------------------------------------------- */

/** @{ */
/** Print the record as one row of its table, after the column titles when
 * `first` is 1. */
IPACL_API void ipacl_show_list_use(uint32_t first, const ipacl_list_use *use);
IPACL_API void ipacl_show_list_key(uint32_t first, const ipacl_list_key *key);
IPACL_API void ipacl_show_group_key(uint32_t first, const ipacl_group_key *key);
IPACL_API void ipacl_show_group_info(uint32_t first, const ipacl_group_info *info);
IPACL_API void ipacl_show_data_key(uint32_t first, const ipacl_data_key *key);
IPACL_API void ipacl_show_data_info(uint32_t first, const ipacl_data_info *info);
IPACL_API void ipacl_show_intf_info(uint32_t first, const ipacl_intf_info *info);
/** @} */

/* ---- iptables ------------------------------------------------------------ */

/** Chain, rule number and target, the entry, then each match in slot order;
 * matches of an unknown type are skipped, and at most the rule's
 * IPACL_RULE_MATCHES slots are read whatever its match count says. */
IPACL_API void ipacl_show_ipt_rule(const ipacl_ipt_rule *rule);
/** @{ */
/** Addresses, interfaces ("+" where the interface mask is 0), protocol,
 * fragment test and counters, each with "not " when inverted. */
IPACL_API void ipacl_show_ipt_entry(const ipacl_ipt_entry *entry);
IPACL_API void ipacl_show_ipt_tcp(const ipacl_ipt_tcp *tcp);
IPACL_API void ipacl_show_ipt_udp(const ipacl_ipt_udp *udp);
IPACL_API void ipacl_show_ipt_icmp(const ipacl_ipt_icmp *icmp);
IPACL_API void ipacl_show_ipt_tos(const ipacl_ipt_tos *tos);
IPACL_API void ipacl_show_ipt_log(const ipacl_ipt_log *log);
/** @} */

/** `label` (NULL counts as empty), then the names of the set flags among URG,
 * ACK, PSH, RST, SYN, FIN in that order, each followed by a blank and
 * preceded by "!" when `negate` is not 0. */
IPACL_API void ipacl_show_tcp_flags(const char *label, uint8_t flags, uint32_t negate);

/** A rule summary as one row, after the column titles when `first` is 1. */
IPACL_API void ipacl_show_rule_info(uint32_t first, const ipacl_rule_info *info);
/** A chain without a policy (a user chain) prints its entry and name only. */
IPACL_API void ipacl_show_ipt_chain(uint32_t first, const ipacl_ipt_chain *chain);

/* ---- state ------------------------------------------------------------- */

/** `flag` is ignored.  Each flag prints "T" when it is exactly 1, else "F". */
IPACL_API void ipacl_show_ha(uint32_t flag, const ipacl_ha *ha);

/** A parameter list as the manager's message layer keeps it in memory.  It
 * holds real pointers and never travels, so it is a plain C struct, not a
 * packed wire record. */
typedef struct ipacl_param {
    uint32_t token;    /**< printed in decimal */
    uint32_t type;     /**< printed in hexadecimal */
    const void *value; /**< its first 32-bit word is printed in hex; may be NULL */
} ipacl_param;

/** The parameters of one message, as ipacl_show_p prints them. */
typedef struct ipacl_param_list {
    uint8_t count;              /**< number of pointers in `params` */
    ipacl_param *const *params; /**< `count` parameters in order; NULL entries
                                   print their pointer only */
} ipacl_param_list;

/** "# Parameters = <count>", then one row a parameter: its address, token,
 * type and the first word of its value. */
IPACL_API void ipacl_show_p(const ipacl_param_list *params);

IPACL_END_DECLS

#endif
