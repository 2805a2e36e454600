/** @file
 * Access-control records and messages.
 *
 * One packed layout serves in memory (host order) and on the wire (network
 * order); the converters in <ipacl/wire.h> move between the two.  Pointer
 * fields are 32-bit addresses of the manager's own memory and mean nothing
 * to a receiver.  Every size and offset is checked at compile time. */
#ifndef IPACL_RECORDS_H
#define IPACL_RECORDS_H

#include <ipacl/common.h>

IPACL_BEGIN_DECLS

#define IPACL_NAME_SIZE 68        /**< protocol profile (access-list) name */
#define IPACL_CHAIN_NAME_SIZE 32  /**< iptables chain name */
#define IPACL_TARGET_NAME_SIZE 30 /**< iptables target name */
#define IPACL_KERNEL_IF_SIZE 16   /**< kernel interface name */
#define IPACL_STR_SIZE 40         /**< smallest buffer for an ipacl_str_* text */

/* ---- shared sub-record ------------------------------------------------- */

/** An IPv4 or IPv6 prefix: family, address and prefix length. */
typedef struct ipacl_inet_addr {
    uint32_t family;     /**< 1 IPv4, 2 IPv6 */
    uint8_t addr[16];    /**< network order; IPv4 in the first 4 bytes */
    uint32_t prefix_len; /**< prefix length in bits */
} IPACL_PACKED ipacl_inet_addr;

/* ---- keys ------------------------------------------------------------- */

/** Key of a protocol profile: its name. */
typedef struct ipacl_prof_key {
    char name[IPACL_NAME_SIZE]; /**< protocol profile (access-list) name */
} IPACL_PACKED ipacl_prof_key;

/** Key of an interface profile binding: interface and direction. */
typedef struct ipacl_if_prof_key {
    uint32_t if_index;  /**< interface index */
    uint32_t direction; /**< ipacl_dir */
} IPACL_PACKED ipacl_if_prof_key;

/** Key of a filter: its profile name and its index there. */
typedef struct ipacl_filter_key {
    char prof_name[IPACL_NAME_SIZE]; /**< name of the protocol profile */
    uint32_t filter_index;           /**< index of the filter in its profile */
} IPACL_PACKED ipacl_filter_key;

/** Key of an installed protocol profile (access list). */
typedef struct ipacl_list_key {
    char name[IPACL_NAME_SIZE]; /**< protocol profile (access-list) name */
    uint32_t creation_time;     /**< time the record was created */
    uint32_t list_type;         /**< ipacl_list_type */
} IPACL_PACKED ipacl_list_key;

/** Key of an installed filter (access data). */
typedef struct ipacl_data_key {
    ipacl_filter_key filter_key; /**< key of the filter */
    uint32_t creation_time;      /**< time the record was created */
    uint32_t rule_id;            /**< iptables rule id (IPACL_RULE_ID_NONE when none) */
} IPACL_PACKED ipacl_data_key;

/** Key of an installed binding (access group). */
typedef struct ipacl_group_key {
    uint32_t if_index;      /**< interface index */
    uint32_t direction;     /**< ipacl_dir */
    uint32_t creation_time; /**< time the record was created */
    uint32_t rule_id;       /**< iptables rule id (IPACL_RULE_ID_NONE when none) */
} IPACL_PACKED ipacl_group_key;

/* ---- profiles, bindings, filters -------------------------------------- */

/** A protocol profile (access list): name, type and row status. */
typedef struct ipacl_prof {
    char name[IPACL_NAME_SIZE]; /**< protocol profile (access-list) name */
    uint32_t prof_type;         /**< ipacl_prof_type */
    uint32_t last_filter_index; /**< the last filter index of the profile */
    uint32_t snmp_status;       /**< ipacl_snmp_status */
} IPACL_PACKED ipacl_prof;

/** A protocol profile with an information word. */
typedef struct ipacl_prof_info {
    uint32_t info;   /**< information word */
    ipacl_prof prof; /**< the protocol profile */
} IPACL_PACKED ipacl_prof_info;

/** An interface profile binding: a profile applied to an interface in one direction. */
typedef struct ipacl_if_prof {
    uint32_t if_index;               /**< interface index */
    uint32_t direction;              /**< ipacl_dir */
    char prof_name[IPACL_NAME_SIZE]; /**< name of the protocol profile */
    uint32_t snmp_status;            /**< ipacl_snmp_status */
    uint8_t local_flag;              /**< both converters write 0 here */
    uint8_t spare[3];                /**< padding */
} IPACL_PACKED ipacl_if_prof;

/** A filter: one permit or deny rule of a protocol profile. */
typedef struct ipacl_filter {
    char prof_name[IPACL_NAME_SIZE]; /**< name of the protocol profile */
    uint32_t filter_index;           /**< index of the filter in its profile */
    uint32_t order_position;         /**< position of the filter in its profile */
    uint32_t action;                 /**< ipacl_action */
    uint32_t addr_type;              /**< ipacl_addr_type */
    uint32_t src_word;               /**< IPv4 source address, host order */
    uint32_t src_wildcard;           /**< host order, 0...01...1 */
    uint32_t dst_word;               /**< IPv4 destination address, host order */
    uint32_t dst_wildcard;           /**< destination wildcard mask, host order */
    uint32_t protocol;               /**< IP protocol; -1 for any */
    uint32_t src_port_low;           /**< lowest source port */
    uint32_t src_port_high;          /**< highest source port */
    uint32_t dst_port_low;           /**< lowest destination port */
    uint32_t dst_port_high;          /**< highest destination port */
    uint32_t established;            /**< 1: established TCP connections only */
    uint32_t icmp_type;              /**< ICMP type; IPACL_ICMP_TYPE_ANY when not set */
    uint32_t icmp_code;              /**< ICMP code; IPACL_ICMP_CODE_ANY when not set */
    uint32_t precedence;             /**< ipacl_prec */
    uint32_t tos;                    /**< ipacl_tos */
    uint32_t log_deny;               /**< 1: log denied packets */
    uint32_t fragments;              /**< 1: matches non-initial fragments */
    uint32_t snmp_status;            /**< ipacl_snmp_status */
    uint32_t src_port_op;            /**< ipacl_port_op */
    uint32_t dst_port_op;            /**< ipacl_port_op */
    uint64_t packets;                /**< packets counted */
    uint64_t bytes;                  /**< bytes counted */
    ipacl_inet_addr src_addr;        /**< source prefix */
    ipacl_inet_addr dst_addr;        /**< destination prefix */
    uint8_t tail[14];                /**< never converted */
} IPACL_PACKED ipacl_filter;

/* ---- the manager's access tables -------------------------------------- */

/** An installed filter in the manager's access tables (access data). */
typedef struct ipacl_data {
    ipacl_filter filter;               /**< the filter */
    uint32_t creation_time;            /**< time the record was created */
    char chain[IPACL_CHAIN_NAME_SIZE]; /**< iptables chain name */
    uint32_t rule_id;                  /**< iptables rule id (IPACL_RULE_ID_NONE when none) */
    uint32_t access_list;              /**< address of the access list in the manager's memory */
    uint32_t this_data;                /**< address of this record */
    uint32_t next_data;                /**< address of the next access data */
} IPACL_PACKED ipacl_data;

/** Summary of an installed filter.
 *
 * The two addresses are split so that their 16 address bytes, which neither
 * converter touches, stand on their own. */
typedef struct ipacl_data_info {
    char prof_name[IPACL_NAME_SIZE]; /**< name of the protocol profile */
    uint32_t filter_index;           /**< index of the filter in its profile */
    uint32_t order;                  /**< position of the filter in its profile */
    uint32_t info_word_1;            /**< carried, not interpreted */
    uint32_t src_family;             /**< source address family */
    uint8_t src_addr[16];            /**< source address bytes, never converted */
    uint32_t src_prefix_len;         /**< source prefix length */
    uint32_t dst_family;             /**< destination address family */
    uint8_t dst_addr[16];            /**< destination address bytes, never converted */
    uint32_t dst_prefix_len;         /**< destination prefix length */
    uint32_t protocol;               /**< IP protocol; -1 for any */
    uint64_t packets;                /**< packets counted */
    uint32_t info_word_2;            /**< carried, not interpreted */
    uint32_t rule_id;                /**< iptables rule id (IPACL_RULE_ID_NONE when none) */
} IPACL_PACKED ipacl_data_info;

/** An installed binding in the manager's access tables (access group). */
typedef struct ipacl_group {
    ipacl_if_prof binding;                /**< the interface profile binding */
    uint32_t creation_time;               /**< time the record was created */
    char chain[IPACL_CHAIN_NAME_SIZE];    /**< iptables chain name */
    uint32_t rule_id;                     /**< iptables rule id (IPACL_RULE_ID_NONE when none) */
    char kernel_if[IPACL_KERNEL_IF_SIZE]; /**< kernel interface name */
    uint32_t access_list;                 /**< address of the access list in the manager's memory */
    uint32_t access_intf;                 /**< address of an access intf in the manager's memory */
    uint32_t this_group;                  /**< address of this record */
    uint32_t next_group;                  /**< address of the next group of the list */
    uint32_t next_global_group;           /**< address of the next group of all lists */
} IPACL_PACKED ipacl_group;

/** Summary of an installed binding. */
typedef struct ipacl_group_info {
    ipacl_if_prof binding;  /**< the interface profile binding */
    uint32_t creation_time; /**< time the record was created */
    uint32_t rule_id;       /**< iptables rule id (IPACL_RULE_ID_NONE when none) */
} IPACL_PACKED ipacl_group_info;

/** An interface in the manager's access tables (access intf). */
typedef struct ipacl_intf {
    uint32_t if_index;                    /**< interface index */
    uint32_t creation_time;               /**< time the record was created */
    uint32_t rule_id;                     /**< iptables rule id (IPACL_RULE_ID_NONE when none) */
    char kernel_if[IPACL_KERNEL_IF_SIZE]; /**< kernel interface name */
    uint32_t marker;                      /**< marker word */
    uint32_t this_intf;                   /**< address of this record */
    uint32_t next_intf;                   /**< address of the next interface */
} IPACL_PACKED ipacl_intf;

/** Summary of an interface in the access tables. */
typedef struct ipacl_intf_info {
    uint32_t if_index;                    /**< interface index */
    char kernel_if[IPACL_KERNEL_IF_SIZE]; /**< kernel interface name */
    uint32_t marker;                      /**< marker word */
    uint32_t creation_time;               /**< time the record was created */
    uint32_t rule_id;                     /**< iptables rule id (IPACL_RULE_ID_NONE when none) */
} IPACL_PACKED ipacl_intf_info;

/** Entry slots of an installed protocol profile (filters it can hold). */
#define IPACL_LIST_SLOTS 256

/** An installed protocol profile in the manager's access tables (access list). */
typedef struct ipacl_list {
    ipacl_prof prof;                                  /**< the installed protocol profile */
    uint32_t creation_time;                           /**< time the record was created */
    uint32_t list_type;                               /**< ipacl_list_type */
    char chain[IPACL_CHAIN_NAME_SIZE];                /**< iptables chain of the list */
    uint32_t data_count;                              /**< number of installed filters */
    uint32_t group_count;                             /**< number of installed bindings */
    uint8_t filter_bitmap[IPACL_LIST_SLOTS / 8];      /**< entry slots in use */
    uint32_t filter_index_by_entry[IPACL_LIST_SLOTS]; /**< filter index held by each entry slot */
    uint32_t max_filter_index;                        /**< highest filter index installed */
    uint32_t access_data;  /**< address of an access data in the manager's memory */
    uint32_t access_group; /**< address of an access group in the manager's memory */
    uint32_t this_list;    /**< address of this record */
    uint32_t next_list;    /**< address of the next access list */
} IPACL_PACKED ipacl_list;

/** The manager's summary: creation time, table sizes and table heads. */
typedef struct ipacl_mgmt {
    uint32_t creation_time; /**< time the record was created */
    uint32_t list_count;    /**< number of access lists */
    uint32_t intf_count;    /**< number of interfaces */
    uint32_t group_count;   /**< number of installed bindings */
    uint32_t access_list;   /**< address of the access list in the manager's memory */
    uint32_t access_intf;   /**< address of an access intf in the manager's memory */
    uint32_t access_group;  /**< address of an access group in the manager's memory */
    int32_t ipv6_refs;      /**< never converted */
} IPACL_PACKED ipacl_mgmt;

/* ---- usage and state records ------------------------------------------ */

/** Usage of an access list: its filters and interfaces. */
typedef struct ipacl_list_use {
    char name[IPACL_NAME_SIZE]; /**< name of the access list */
    uint32_t filter_count;      /**< number of filters */
    uint32_t if_count;          /**< number of interfaces bound */
    uint32_t snmp_status;       /**< ipacl_snmp_status */
    uint32_t creation_time;     /**< time the record was created */
} IPACL_PACKED ipacl_list_use;

/** Memory usage of one kind of record. */
typedef struct ipacl_mem_use {
    uint32_t mem_type;     /**< ipacl_mem_type */
    uint32_t size;         /**< bytes in use */
    uint32_t record_count; /**< number of records */
} IPACL_PACKED ipacl_mem_use;

/** High-availability state of the manager's supervisor. */
typedef struct ipacl_ha {
    uint32_t sup_state;           /**< ipacl_sup_state */
    uint32_t switching_over;      /**< 1 while switching over */
    uint32_t started_stateful;    /**< 1 when started stateful */
    uint32_t started_stateless;   /**< 1 when started stateless */
    uint32_t standby_sup_existed; /**< 1 when a standby supervisor existed */
    uint32_t just_sent_heartbeat; /**< 1 right after a heartbeat was sent */
} IPACL_PACKED ipacl_ha;

/* ---- notice records (received only) ----------------------------------- */

/** Notice that a port interface was created. */
typedef struct ipacl_port_if_created_info {
    uint32_t word0; /**< carried, not interpreted */
    uint8_t byte4;  /**< carried, not interpreted */
    uint32_t word5; /**< carried, not interpreted (unaligned) */
} IPACL_PACKED ipacl_port_if_created_info;

/** Notice that a vni interface changed, with its name. */
typedef struct ipacl_vni_if_chg {
    uint32_t word0; /**< carried, not interpreted */
    uint32_t word4; /**< carried, not interpreted */
    char text[];    /**< NUL-terminated */
} IPACL_PACKED ipacl_vni_if_chg;

/** An avm interface change notice: the same layout as a vni one. */
typedef ipacl_vni_if_chg ipacl_avm_if_chg;

/* ---- iptables records (Linux netfilter layouts of a 32-bit host) ------ */

/** An iptables rule entry: addresses, interfaces, protocol and counters. */
typedef struct ipacl_ipt_entry {
    uint32_t src;                              /**< source address, network order */
    uint32_t dst;                              /**< destination address */
    uint32_t src_mask;                         /**< source mask */
    uint32_t dst_mask;                         /**< destination mask */
    char in_if[IPACL_KERNEL_IF_SIZE];          /**< input interface name */
    char out_if[IPACL_KERNEL_IF_SIZE];         /**< output interface name */
    uint8_t in_if_mask[IPACL_KERNEL_IF_SIZE];  /**< input interface mask */
    uint8_t out_if_mask[IPACL_KERNEL_IF_SIZE]; /**< output interface mask */
    uint16_t proto;                            /**< protocol; 0 for any */
    uint8_t flags;                             /**< entry flags */
    uint8_t inv_flags;                         /**< which tests are inverted */
    uint32_t nfcache;                          /**< netfilter cache bits */
    uint16_t target_offset;                    /**< offset of the target */
    uint16_t next_offset;                      /**< offset of the next entry */
    uint32_t comefrom;                         /**< netfilter back pointer */
    uint64_t packets;                          /**< packets counted */
    uint64_t bytes;                            /**< bytes counted */
} IPACL_PACKED ipacl_ipt_entry;

/** A row of the iptables chain list: chain, policy and counter. */
typedef struct ipacl_ipt_chain {
    uint32_t entry;                      /**< entry number of the chain */
    char chain[IPACL_CHAIN_NAME_SIZE];   /**< iptables chain name */
    char policy[IPACL_TARGET_NAME_SIZE]; /**< policy target of a built-in chain; empty for a user
                                            chain */
    uint64_t packets;                    /**< packets counted (unaligned) */
} IPACL_PACKED ipacl_ipt_chain;

/** Summary of an iptables rule: number, entry and target. */
typedef struct ipacl_rule_info {
    uint32_t rule_num;                   /**< rule number in its chain */
    ipacl_ipt_entry entry;               /**< rule entry */
    char target[IPACL_TARGET_NAME_SIZE]; /**< target name */
} IPACL_PACKED ipacl_rule_info;

/** The iptables tcp match: port ranges, option and flags. */
typedef struct ipacl_ipt_tcp {
    uint16_t src_port_low;  /**< lowest source port */
    uint16_t src_port_high; /**< highest source port */
    uint16_t dst_port_low;  /**< lowest destination port */
    uint16_t dst_port_high; /**< highest destination port */
    uint8_t option;         /**< TCP option number */
    uint8_t flag_mask;      /**< TCP flags tested */
    uint8_t flag_cmp;       /**< TCP flags that must be set */
    uint8_t inv_flags;      /**< which tests are inverted */
} IPACL_PACKED ipacl_ipt_tcp;

/** The iptables udp match: port ranges. */
typedef struct ipacl_ipt_udp {
    uint16_t src_port_low;  /**< lowest source port */
    uint16_t src_port_high; /**< highest source port */
    uint16_t dst_port_low;  /**< lowest destination port */
    uint16_t dst_port_high; /**< highest destination port */
    uint8_t inv_flags;      /**< which tests are inverted */
    uint8_t pad;            /**< padding */
} IPACL_PACKED ipacl_ipt_udp;

/** The iptables icmp match: type and range of codes. */
typedef struct ipacl_ipt_icmp {
    uint8_t icmp_type; /**< ICMP type */
    uint8_t code_low;  /**< lowest ICMP code */
    uint8_t code_high; /**< highest ICMP code */
    uint8_t inv_flags; /**< which tests are inverted */
} IPACL_PACKED ipacl_ipt_icmp;

/** The iptables tos match. */
typedef struct ipacl_ipt_tos {
    uint8_t tos;    /**< precedence in bits 7..5, TOS in bits 4..1 */
    uint8_t invert; /**< 1: the test is inverted */
} IPACL_PACKED ipacl_ipt_tos;

/** The iptables log target: level, flags and prefix. */
typedef struct ipacl_ipt_log {
    uint8_t level;                       /**< syslog level */
    uint8_t log_flags;                   /**< ipacl_log_flag */
    char prefix[IPACL_TARGET_NAME_SIZE]; /**< log prefix */
} IPACL_PACKED ipacl_ipt_log;

/** @{ */
/** Match types of ipacl_match.type */
#define IPACL_MATCH_TCP 1u
#define IPACL_MATCH_UDP 2u
#define IPACL_MATCH_ICMP 3u
#define IPACL_MATCH_TOS 9u
#define IPACL_MATCH_LOG 10u
/** @} */

/** The data of an iptables match, by match type. */
typedef union ipacl_match_info {
    ipacl_ipt_tcp tcp;   /**< tcp match */
    ipacl_ipt_udp udp;   /**< udp match */
    ipacl_ipt_icmp icmp; /**< icmp match */
    ipacl_ipt_tos tos;   /**< tos match */
    ipacl_ipt_log log;   /**< log target */
    uint8_t raw[32];     /**< the bytes as they are */
} IPACL_PACKED ipacl_match_info;

/** An iptables match: its type (IPACL_MATCH_*) and data. */
typedef struct ipacl_match {
    uint32_t type;         /**< match type (IPACL_MATCH_*) */
    ipacl_match_info info; /**< match data */
} IPACL_PACKED ipacl_match;

/** Match slots of an iptables rule record. */
#define IPACL_RULE_MATCHES 3

/** An iptables rule with its chain, entry, target and matches. */
typedef struct ipacl_ipt_rule {
    char chain[IPACL_CHAIN_NAME_SIZE];       /**< iptables chain name */
    uint32_t rule_num;                       /**< rule number in its chain */
    ipacl_ipt_entry entry;                   /**< rule entry */
    char target[IPACL_TARGET_NAME_SIZE];     /**< target name */
    uint32_t match_count;                    /**< matches in use (unaligned) */
    ipacl_match matches[IPACL_RULE_MATCHES]; /**< the matches */
} IPACL_PACKED ipacl_ipt_rule;

/* ---- messages ---------------------------------------------------------- */
/* Header words that this library only carries are named word<offset>. */

/** Access (query) request: reads the manager's tables. */
typedef struct ipacl_access_req {
    uint32_t word0;             /**< carried, not interpreted */
    uint32_t word4;             /**< carried, not interpreted */
    uint32_t word8;             /**< carried, not interpreted */
    char name[IPACL_NAME_SIZE]; /**< protocol profile (access-list) name */
    uint32_t word80;            /**< carried, not interpreted */
    uint32_t word84;            /**< carried, not interpreted */
    uint32_t word88;            /**< carried, not interpreted */
} IPACL_PACKED ipacl_access_req;

/** Access response: an array of manager records of one access type. */
typedef struct ipacl_access_rsp {
    uint32_t count;       /**< number of elements that follow */
    uint32_t access_type; /**< ipacl_access_type: selects the records */
    uint8_t records[];    /**< the elements */
} IPACL_PACKED ipacl_access_rsp;

/** Request for a protocol profile. */
typedef struct ipacl_prof_req {
    uint32_t word0;     /**< carried, not interpreted */
    uint32_t word4;     /**< carried, not interpreted */
    ipacl_prof_key key; /**< the key */
} IPACL_PACKED ipacl_prof_req;

/** Request for an interface profile binding. */
typedef struct ipacl_if_prof_req {
    uint32_t word0;        /**< carried, not interpreted */
    uint32_t word4;        /**< carried, not interpreted */
    ipacl_if_prof_key key; /**< the key */
} IPACL_PACKED ipacl_if_prof_req;

/** Request for a filter. */
typedef struct ipacl_filter_req {
    uint32_t word0;       /**< carried, not interpreted */
    uint32_t word4;       /**< carried, not interpreted */
    ipacl_filter_key key; /**< the key */
} IPACL_PACKED ipacl_filter_req;

/** Response with protocol profiles. */
typedef struct ipacl_prof_rsp {
    uint32_t count;     /**< number of elements that follow */
    uint32_t word4;     /**< carried, not interpreted */
    uint32_t word8;     /**< carried, not interpreted */
    ipacl_prof profs[]; /**< protocol profiles */
} IPACL_PACKED ipacl_prof_rsp;

/** Response with interface profile bindings. */
typedef struct ipacl_if_prof_rsp {
    uint32_t count;           /**< number of elements that follow */
    uint32_t word4;           /**< carried, not interpreted */
    ipacl_if_prof if_profs[]; /**< interface profile bindings */
} IPACL_PACKED ipacl_if_prof_rsp;

/** Response with filters. */
typedef struct ipacl_filter_rsp {
    uint32_t count;         /**< number of elements that follow */
    uint32_t word4;         /**< carried, not interpreted */
    uint32_t word8;         /**< carried, not interpreted */
    ipacl_filter filters[]; /**< filters */
} IPACL_PACKED ipacl_filter_rsp;

/** Configuration request for protocol profiles. */
typedef struct ipacl_prof_cfg {
    uint32_t count;     /**< number of elements that follow */
    uint32_t word4;     /**< carried, not interpreted */
    ipacl_prof profs[]; /**< protocol profiles */
} IPACL_PACKED ipacl_prof_cfg;

/** Configuration request for interface profile bindings. */
typedef struct ipacl_if_prof_cfg {
    uint32_t count;           /**< number of elements that follow */
    uint32_t word4;           /**< carried, not interpreted */
    ipacl_if_prof if_profs[]; /**< interface profile bindings */
} IPACL_PACKED ipacl_if_prof_cfg;

/** Configuration request for filters. */
typedef struct ipacl_filter_cfg {
    uint32_t count;         /**< number of elements that follow */
    uint32_t word4;         /**< carried, not interpreted */
    ipacl_filter filters[]; /**< filters */
} IPACL_PACKED ipacl_filter_cfg;

/** The key a confirmation is about, by key type. */
typedef union ipacl_cfm_key {
    ipacl_if_prof_key if_prof; /**< key type 1 */
    ipacl_filter_key filter;   /**< key type 2 */
    ipacl_prof_key prof;       /**< key type 3 */
    uint8_t raw[72];           /**< the bytes as they are */
} IPACL_PACKED ipacl_cfm_key;

/** Confirmation of one key: its type, the result and the key. */
typedef struct ipacl_cfm {
    uint32_t key_type; /**< ipacl_dalve_type */
    uint32_t result;   /**< result code */
    ipacl_cfm_key key; /**< the key */
} IPACL_PACKED ipacl_cfm;

/** A list of confirmations. */
typedef struct ipacl_prof_cfm {
    uint32_t count;   /**< number of elements that follow */
    uint32_t word4;   /**< never converted */
    ipacl_cfm cfms[]; /**< confirmations */
} IPACL_PACKED ipacl_prof_cfm;

/** Interface profile confirmations: the layout of ipacl_prof_cfm. */
typedef ipacl_prof_cfm ipacl_if_prof_cfm;
/** Filter confirmations: the layout of ipacl_prof_cfm. */
typedef ipacl_prof_cfm ipacl_filter_cfm;

/** Sync of a protocol profile to the standby copy. */
typedef struct ipacl_prof_sync {
    uint32_t word0;  /**< carried, not interpreted */
    uint32_t word4;  /**< carried, not interpreted */
    ipacl_prof prof; /**< the protocol profile */
} IPACL_PACKED ipacl_prof_sync;

/** Sync of an interface profile binding to the standby copy. */
typedef struct ipacl_if_prof_sync {
    uint32_t word0;        /**< carried, not interpreted */
    uint32_t word4;        /**< carried, not interpreted */
    ipacl_if_prof if_prof; /**< the interface profile binding */
} IPACL_PACKED ipacl_if_prof_sync;

/** Sync of a filter to the standby copy. */
typedef struct ipacl_filter_sync {
    uint32_t word0;      /**< carried, not interpreted */
    uint32_t word4;      /**< carried, not interpreted */
    ipacl_filter filter; /**< the filter */
} IPACL_PACKED ipacl_filter_sync;

/** Sync of a protocol profile with the keys of its filters. */
typedef struct ipacl_prof_sync_op {
    uint32_t word0;          /**< carried, not interpreted */
    uint32_t word4;          /**< carried, not interpreted */
    ipacl_prof prof;         /**< the protocol profile */
    uint32_t count;          /**< number of elements that follow */
    ipacl_filter_key keys[]; /**< filter keys */
} IPACL_PACKED ipacl_prof_sync_op;

/** Sync of an interface profile binding with profile infos. */
typedef struct ipacl_if_prof_sync_op {
    uint32_t word0;          /**< carried, not interpreted */
    uint32_t word4;          /**< carried, not interpreted */
    ipacl_if_prof if_prof;   /**< the interface profile binding */
    uint32_t count;          /**< number of elements that follow */
    ipacl_prof_info infos[]; /**< profile infos */
} IPACL_PACKED ipacl_if_prof_sync_op;

/** Sync of a filter with filter keys. */
typedef struct ipacl_filter_sync_op {
    uint32_t word0;          /**< carried, not interpreted */
    uint32_t word4;          /**< carried, not interpreted */
    ipacl_filter filter;     /**< the filter */
    uint32_t count;          /**< number of keys that follow (unaligned) */
    ipacl_filter_key keys[]; /**< filter keys */
} IPACL_PACKED ipacl_filter_sync_op;

/** Request for the usage of an access list. */
typedef struct ipacl_use_req {
    uint32_t word0; /**< carried, not interpreted */
    char name[];    /**< NUL-terminated list name */
} IPACL_PACKED ipacl_use_req;

/** Response with access list usages. */
typedef struct ipacl_use_rsp {
    uint32_t count;        /**< number of elements that follow */
    ipacl_list_use uses[]; /**< list usages */
} IPACL_PACKED ipacl_use_rsp;

/** Request for internal state. */
typedef struct ipacl_in_req {
    uint32_t word0; /**< carried, not interpreted */
    uint32_t word4; /**< carried, not interpreted */
} IPACL_PACKED ipacl_in_req;

/** Response with internal state records of one type. */
typedef struct ipacl_in_rsp {
    uint32_t count;    /**< number of elements that follow */
    uint32_t in_type;  /**< ipacl_in_type: selects the records */
    uint8_t records[]; /**< the elements */
} IPACL_PACKED ipacl_in_rsp;

/** Test request. */
typedef struct ipacl_test_req {
    uint32_t word0;   /**< never converted */
    uint32_t word4;   /**< carried, not interpreted */
    uint8_t data[40]; /**< test data */
} IPACL_PACKED ipacl_test_req;

/** Test response. */
typedef struct ipacl_test_rsp {
    uint32_t word0; /**< never converted */
    uint32_t word4; /**< carried, not interpreted */
    uint32_t word8; /**< carried, not interpreted */
} IPACL_PACKED ipacl_test_rsp;

/** Query of iptables chains or rules. */
typedef struct ipacl_ipt_req {
    uint32_t word0;                    /**< carried, not interpreted */
    uint32_t word4;                    /**< carried, not interpreted */
    char chain[IPACL_CHAIN_NAME_SIZE]; /**< iptables chain name */
    uint32_t word40;                   /**< carried, not interpreted */
    uint32_t word44;                   /**< carried, not interpreted */
} IPACL_PACKED ipacl_ipt_req;

/** Response to an iptables query: chain rows, rules or rule summaries. */
typedef struct ipacl_ipt_rsp {
    uint32_t count;    /**< number of elements that follow */
    uint32_t flags;    /**< ipacl_ipt_op: selects the records */
    uint32_t word8;    /**< carried, not interpreted */
    uint8_t records[]; /**< the elements */
} IPACL_PACKED ipacl_ipt_rsp;

#define IPACL_QUEN_SIZE 112      /**< size of the quen envelope header */
#define IPACL_QUEN_TEXT1_SIZE 40 /**< size of its first text */
#define IPACL_QUEN_TEXT2_SIZE 60 /**< size of its second text */

/** Header of the quen envelope; the payload follows it. */
typedef struct ipacl_quen {
    uint32_t op;                       /**< ipacl_quen_msg */
    uint32_t length;                   /**< payload bytes after the header */
    uint32_t reserved;                 /**< reserved */
    char text1[IPACL_QUEN_TEXT1_SIZE]; /**< first text */
    char text2[IPACL_QUEN_TEXT2_SIZE]; /**< second text */
} IPACL_PACKED ipacl_quen;

/* ---- exported iptables names, zero-filled at load, filled by the user -- */

/** Name of the iptables chain of incoming packets. */
IPACL_API extern char ipacl_chain_in[IPACL_CHAIN_NAME_SIZE];
/** Name of the iptables chain of outgoing packets. */
IPACL_API extern char ipacl_chain_out[IPACL_CHAIN_NAME_SIZE];
/** Name of the iptables chain of forwarded packets. */
IPACL_API extern char ipacl_chain_fwd[IPACL_CHAIN_NAME_SIZE];
/** Name of the iptables target that accepts a packet. */
IPACL_API extern char ipacl_target_accept[IPACL_TARGET_NAME_SIZE];
/** Name of the iptables target that drops a packet. */
IPACL_API extern char ipacl_target_drop[IPACL_TARGET_NAME_SIZE];
/** Name of the iptables target that queues a packet to user space. */
IPACL_API extern char ipacl_target_queue[IPACL_TARGET_NAME_SIZE];
/** Name of the iptables target that returns from a chain. */
IPACL_API extern char ipacl_target_return[IPACL_TARGET_NAME_SIZE];

IPACL_END_DECLS

#include <ipacl/records_layout.h>

#endif
