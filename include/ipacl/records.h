/* Access-control records and messages.
 *
 * One packed layout serves in memory (host order) and on the wire (network
 * order); the converters in <ipacl/wire.h> move between the two.  Pointer
 * fields are 32-bit addresses of the manager's own memory and mean nothing
 * to a receiver.  Every size and offset is checked at compile time. */
#ifndef IPACL_RECORDS_H
#define IPACL_RECORDS_H

#include <ipacl/common.h>

IPACL_BEGIN_DECLS

#define IPACL_NAME_SIZE 68        /* protocol profile (access-list) name */
#define IPACL_CHAIN_NAME_SIZE 32  /* iptables chain name */
#define IPACL_TARGET_NAME_SIZE 30 /* iptables target name */
#define IPACL_KERNEL_IF_SIZE 16   /* kernel interface name */
#define IPACL_STR_SIZE 40         /* smallest buffer for an ipacl_str_* text */

/* ---- shared sub-record ------------------------------------------------- */

typedef struct ipacl_inet_addr {
    uint32_t family;  /* 1 IPv4, 2 IPv6 */
    uint8_t addr[16]; /* network order; IPv4 in the first 4 bytes */
    uint32_t prefix_len;
} IPACL_PACKED ipacl_inet_addr;

/* ---- keys ------------------------------------------------------------- */

typedef struct ipacl_prof_key {
    char name[IPACL_NAME_SIZE];
} IPACL_PACKED ipacl_prof_key;

typedef struct ipacl_if_prof_key {
    uint32_t if_index;
    uint32_t direction; /* ipacl_dir */
} IPACL_PACKED ipacl_if_prof_key;

typedef struct ipacl_filter_key {
    char prof_name[IPACL_NAME_SIZE];
    uint32_t filter_index;
} IPACL_PACKED ipacl_filter_key;

typedef struct ipacl_list_key {
    char name[IPACL_NAME_SIZE];
    uint32_t creation_time;
    uint32_t list_type; /* ipacl_list_type */
} IPACL_PACKED ipacl_list_key;

typedef struct ipacl_data_key {
    ipacl_filter_key filter_key;
    uint32_t creation_time;
    uint32_t rule_id;
} IPACL_PACKED ipacl_data_key;

typedef struct ipacl_group_key {
    uint32_t if_index;
    uint32_t direction; /* ipacl_dir */
    uint32_t creation_time;
    uint32_t rule_id;
} IPACL_PACKED ipacl_group_key;

/* ---- profiles, bindings, filters -------------------------------------- */

typedef struct ipacl_prof {
    char name[IPACL_NAME_SIZE];
    uint32_t prof_type; /* ipacl_prof_type */
    uint32_t last_filter_index;
    uint32_t snmp_status; /* ipacl_snmp_status */
} IPACL_PACKED ipacl_prof;

typedef struct ipacl_prof_info {
    uint32_t info;
    ipacl_prof prof;
} IPACL_PACKED ipacl_prof_info;

typedef struct ipacl_if_prof {
    uint32_t if_index;
    uint32_t direction; /* ipacl_dir */
    char prof_name[IPACL_NAME_SIZE];
    uint32_t snmp_status; /* ipacl_snmp_status */
    uint8_t local_flag;   /* both converters write 0 here */
    uint8_t spare[3];
} IPACL_PACKED ipacl_if_prof;

typedef struct ipacl_filter {
    char prof_name[IPACL_NAME_SIZE];
    uint32_t filter_index;
    uint32_t order_position;
    uint32_t action;    /* ipacl_action */
    uint32_t addr_type; /* ipacl_addr_type */
    uint32_t src_word;
    uint32_t src_wildcard; /* host order, 0...01...1 */
    uint32_t dst_word;
    uint32_t dst_wildcard;
    uint32_t protocol;
    uint32_t src_port_low;
    uint32_t src_port_high;
    uint32_t dst_port_low;
    uint32_t dst_port_high;
    uint32_t established;
    uint32_t icmp_type;
    uint32_t icmp_code;
    uint32_t precedence;
    uint32_t tos;
    uint32_t log_deny;
    uint32_t fragments;
    uint32_t snmp_status; /* ipacl_snmp_status */
    uint32_t src_port_op; /* ipacl_port_op */
    uint32_t dst_port_op; /* ipacl_port_op */
    uint64_t packets;
    uint64_t bytes;
    ipacl_inet_addr src_addr;
    ipacl_inet_addr dst_addr;
    uint8_t tail[14]; /* never converted */
} IPACL_PACKED ipacl_filter;

/* ---- the manager's access tables -------------------------------------- */

typedef struct ipacl_data {
    ipacl_filter filter;
    uint32_t creation_time;
    char chain[IPACL_CHAIN_NAME_SIZE];
    uint32_t rule_id;
    uint32_t access_list;
    uint32_t this_data;
    uint32_t next_data;
} IPACL_PACKED ipacl_data;

/* The two addresses are split so that their 16 address bytes, which neither
 * converter touches, stand on their own. */
typedef struct ipacl_data_info {
    char prof_name[IPACL_NAME_SIZE];
    uint32_t filter_index;
    uint32_t order;
    uint32_t info_word_1;
    uint32_t src_family;
    uint8_t src_addr[16];
    uint32_t src_prefix_len;
    uint32_t dst_family;
    uint8_t dst_addr[16];
    uint32_t dst_prefix_len;
    uint32_t protocol;
    uint64_t packets;
    uint32_t info_word_2;
    uint32_t rule_id;
} IPACL_PACKED ipacl_data_info;

typedef struct ipacl_group {
    ipacl_if_prof binding;
    uint32_t creation_time;
    char chain[IPACL_CHAIN_NAME_SIZE];
    uint32_t rule_id;
    char kernel_if[IPACL_KERNEL_IF_SIZE];
    uint32_t access_list;
    uint32_t access_intf;
    uint32_t this_group;
    uint32_t next_group;
    uint32_t next_global_group;
} IPACL_PACKED ipacl_group;

typedef struct ipacl_group_info {
    ipacl_if_prof binding;
    uint32_t creation_time;
    uint32_t rule_id;
} IPACL_PACKED ipacl_group_info;

typedef struct ipacl_intf {
    uint32_t if_index;
    uint32_t creation_time;
    uint32_t rule_id;
    char kernel_if[IPACL_KERNEL_IF_SIZE];
    uint32_t marker;
    uint32_t this_intf;
    uint32_t next_intf;
} IPACL_PACKED ipacl_intf;

typedef struct ipacl_intf_info {
    uint32_t if_index;
    char kernel_if[IPACL_KERNEL_IF_SIZE];
    uint32_t marker;
    uint32_t creation_time;
    uint32_t rule_id;
} IPACL_PACKED ipacl_intf_info;

#define IPACL_LIST_SLOTS 256

typedef struct ipacl_list {
    ipacl_prof prof;
    uint32_t creation_time;
    uint32_t list_type; /* ipacl_list_type */
    char chain[IPACL_CHAIN_NAME_SIZE];
    uint32_t data_count;
    uint32_t group_count;
    uint8_t filter_bitmap[IPACL_LIST_SLOTS / 8];
    uint32_t filter_index_by_entry[IPACL_LIST_SLOTS];
    uint32_t max_filter_index;
    uint32_t access_data;
    uint32_t access_group;
    uint32_t this_list;
    uint32_t next_list;
} IPACL_PACKED ipacl_list;

typedef struct ipacl_mgmt {
    uint32_t creation_time;
    uint32_t list_count;
    uint32_t intf_count;
    uint32_t group_count;
    uint32_t access_list;
    uint32_t access_intf;
    uint32_t access_group;
    int32_t ipv6_refs; /* never converted */
} IPACL_PACKED ipacl_mgmt;

/* ---- usage and state records ------------------------------------------ */

typedef struct ipacl_list_use {
    char name[IPACL_NAME_SIZE];
    uint32_t filter_count;
    uint32_t if_count;
    uint32_t snmp_status; /* ipacl_snmp_status */
    uint32_t creation_time;
} IPACL_PACKED ipacl_list_use;

typedef struct ipacl_mem_use {
    uint32_t mem_type; /* ipacl_mem_type */
    uint32_t size;
    uint32_t record_count;
} IPACL_PACKED ipacl_mem_use;

typedef struct ipacl_ha {
    uint32_t sup_state; /* ipacl_sup_state */
    uint32_t switching_over;
    uint32_t started_stateful;
    uint32_t started_stateless;
    uint32_t standby_sup_existed;
    uint32_t just_sent_heartbeat;
} IPACL_PACKED ipacl_ha;

/* ---- notice records (received only) ----------------------------------- */

typedef struct ipacl_port_if_created_info {
    uint32_t word0;
    uint8_t byte4;
    uint32_t word5; /* unaligned */
} IPACL_PACKED ipacl_port_if_created_info;

typedef struct ipacl_vni_if_chg {
    uint32_t word0;
    uint32_t word4;
    char text[]; /* NUL-terminated */
} IPACL_PACKED ipacl_vni_if_chg;

typedef ipacl_vni_if_chg ipacl_avm_if_chg;

/* ---- iptables records (Linux netfilter layouts of a 32-bit host) ------ */

typedef struct ipacl_ipt_entry {
    uint32_t src; /* network order */
    uint32_t dst;
    uint32_t src_mask;
    uint32_t dst_mask;
    char in_if[IPACL_KERNEL_IF_SIZE];
    char out_if[IPACL_KERNEL_IF_SIZE];
    uint8_t in_if_mask[IPACL_KERNEL_IF_SIZE];
    uint8_t out_if_mask[IPACL_KERNEL_IF_SIZE];
    uint16_t proto;
    uint8_t flags;
    uint8_t inv_flags;
    uint32_t nfcache;
    uint16_t target_offset;
    uint16_t next_offset;
    uint32_t comefrom;
    uint64_t packets;
    uint64_t bytes;
} IPACL_PACKED ipacl_ipt_entry;

typedef struct ipacl_ipt_chain {
    uint32_t entry;
    char chain[IPACL_CHAIN_NAME_SIZE];
    char policy[IPACL_TARGET_NAME_SIZE];
    uint64_t packets; /* unaligned */
} IPACL_PACKED ipacl_ipt_chain;

typedef struct ipacl_rule_info {
    uint32_t rule_num;
    ipacl_ipt_entry entry;
    char target[IPACL_TARGET_NAME_SIZE];
} IPACL_PACKED ipacl_rule_info;

typedef struct ipacl_ipt_tcp {
    uint16_t src_port_low;
    uint16_t src_port_high;
    uint16_t dst_port_low;
    uint16_t dst_port_high;
    uint8_t option;
    uint8_t flag_mask;
    uint8_t flag_cmp;
    uint8_t inv_flags;
} IPACL_PACKED ipacl_ipt_tcp;

typedef struct ipacl_ipt_udp {
    uint16_t src_port_low;
    uint16_t src_port_high;
    uint16_t dst_port_low;
    uint16_t dst_port_high;
    uint8_t inv_flags;
    uint8_t pad;
} IPACL_PACKED ipacl_ipt_udp;

typedef struct ipacl_ipt_icmp {
    uint8_t icmp_type;
    uint8_t code_low;
    uint8_t code_high;
    uint8_t inv_flags;
} IPACL_PACKED ipacl_ipt_icmp;

typedef struct ipacl_ipt_tos {
    uint8_t tos; /* precedence in bits 7..5, TOS in bits 4..1 */
    uint8_t invert;
} IPACL_PACKED ipacl_ipt_tos;

typedef struct ipacl_ipt_log {
    uint8_t level;     /* syslog level */
    uint8_t log_flags; /* ipacl_log_flag */
    char prefix[IPACL_TARGET_NAME_SIZE];
} IPACL_PACKED ipacl_ipt_log;

/* Match types of ipacl_match.type */
#define IPACL_MATCH_TCP 1u
#define IPACL_MATCH_UDP 2u
#define IPACL_MATCH_ICMP 3u
#define IPACL_MATCH_TOS 9u
#define IPACL_MATCH_LOG 10u

typedef union ipacl_match_info {
    ipacl_ipt_tcp tcp;
    ipacl_ipt_udp udp;
    ipacl_ipt_icmp icmp;
    ipacl_ipt_tos tos;
    ipacl_ipt_log log;
    uint8_t raw[32];
} IPACL_PACKED ipacl_match_info;

typedef struct ipacl_match {
    uint32_t type;
    ipacl_match_info info;
} IPACL_PACKED ipacl_match;

#define IPACL_RULE_MATCHES 3

typedef struct ipacl_ipt_rule {
    char chain[IPACL_CHAIN_NAME_SIZE];
    uint32_t rule_num;
    ipacl_ipt_entry entry;
    char target[IPACL_TARGET_NAME_SIZE];
    uint32_t match_count; /* unaligned */
    ipacl_match matches[IPACL_RULE_MATCHES];
} IPACL_PACKED ipacl_ipt_rule;

/* ---- messages ---------------------------------------------------------- */
/* Header words that this library only carries are named word<offset>. */

typedef struct ipacl_access_req {
    uint32_t word0;
    uint32_t word4;
    uint32_t word8;
    char name[IPACL_NAME_SIZE];
    uint32_t word80;
    uint32_t word84;
    uint32_t word88;
} IPACL_PACKED ipacl_access_req;

typedef struct ipacl_access_rsp {
    uint32_t count;
    uint32_t access_type; /* ipacl_access_type: selects the records */
    uint8_t records[];
} IPACL_PACKED ipacl_access_rsp;

typedef struct ipacl_prof_req {
    uint32_t word0;
    uint32_t word4;
    ipacl_prof_key key;
} IPACL_PACKED ipacl_prof_req;

typedef struct ipacl_if_prof_req {
    uint32_t word0;
    uint32_t word4;
    ipacl_if_prof_key key;
} IPACL_PACKED ipacl_if_prof_req;

typedef struct ipacl_filter_req {
    uint32_t word0;
    uint32_t word4;
    ipacl_filter_key key;
} IPACL_PACKED ipacl_filter_req;

typedef struct ipacl_prof_rsp {
    uint32_t count;
    uint32_t word4;
    uint32_t word8;
    ipacl_prof profs[];
} IPACL_PACKED ipacl_prof_rsp;

typedef struct ipacl_if_prof_rsp {
    uint32_t count;
    uint32_t word4;
    ipacl_if_prof if_profs[];
} IPACL_PACKED ipacl_if_prof_rsp;

typedef struct ipacl_filter_rsp {
    uint32_t count;
    uint32_t word4;
    uint32_t word8;
    ipacl_filter filters[];
} IPACL_PACKED ipacl_filter_rsp;

typedef struct ipacl_prof_cfg {
    uint32_t count;
    uint32_t word4;
    ipacl_prof profs[];
} IPACL_PACKED ipacl_prof_cfg;

typedef struct ipacl_if_prof_cfg {
    uint32_t count;
    uint32_t word4;
    ipacl_if_prof if_profs[];
} IPACL_PACKED ipacl_if_prof_cfg;

typedef struct ipacl_filter_cfg {
    uint32_t count;
    uint32_t word4;
    ipacl_filter filters[];
} IPACL_PACKED ipacl_filter_cfg;

typedef union ipacl_cfm_key {
    ipacl_if_prof_key if_prof; /* key type 1 */
    ipacl_filter_key filter;   /* key type 2 */
    ipacl_prof_key prof;       /* key type 3 */
    uint8_t raw[72];
} IPACL_PACKED ipacl_cfm_key;

typedef struct ipacl_cfm {
    uint32_t key_type; /* ipacl_dalve_type */
    uint32_t result;
    ipacl_cfm_key key;
} IPACL_PACKED ipacl_cfm;

typedef struct ipacl_prof_cfm {
    uint32_t count;
    uint32_t word4; /* never converted */
    ipacl_cfm cfms[];
} IPACL_PACKED ipacl_prof_cfm;

typedef ipacl_prof_cfm ipacl_if_prof_cfm;
typedef ipacl_prof_cfm ipacl_filter_cfm;

typedef struct ipacl_prof_sync {
    uint32_t word0;
    uint32_t word4;
    ipacl_prof prof;
} IPACL_PACKED ipacl_prof_sync;

typedef struct ipacl_if_prof_sync {
    uint32_t word0;
    uint32_t word4;
    ipacl_if_prof if_prof;
} IPACL_PACKED ipacl_if_prof_sync;

typedef struct ipacl_filter_sync {
    uint32_t word0;
    uint32_t word4;
    ipacl_filter filter;
} IPACL_PACKED ipacl_filter_sync;

typedef struct ipacl_prof_sync_op {
    uint32_t word0;
    uint32_t word4;
    ipacl_prof prof;
    uint32_t count;
    ipacl_filter_key keys[];
} IPACL_PACKED ipacl_prof_sync_op;

typedef struct ipacl_if_prof_sync_op {
    uint32_t word0;
    uint32_t word4;
    ipacl_if_prof if_prof;
    uint32_t count;
    ipacl_prof_info infos[];
} IPACL_PACKED ipacl_if_prof_sync_op;

typedef struct ipacl_filter_sync_op {
    uint32_t word0;
    uint32_t word4;
    ipacl_filter filter;
    uint32_t count; /* unaligned */
    ipacl_filter_key keys[];
} IPACL_PACKED ipacl_filter_sync_op;

typedef struct ipacl_use_req {
    uint32_t word0;
    char name[]; /* NUL-terminated list name */
} IPACL_PACKED ipacl_use_req;

typedef struct ipacl_use_rsp {
    uint32_t count;
    ipacl_list_use uses[];
} IPACL_PACKED ipacl_use_rsp;

typedef struct ipacl_in_req {
    uint32_t word0;
    uint32_t word4;
} IPACL_PACKED ipacl_in_req;

typedef struct ipacl_in_rsp {
    uint32_t count;
    uint32_t in_type; /* ipacl_in_type: selects the records */
    uint8_t records[];
} IPACL_PACKED ipacl_in_rsp;

typedef struct ipacl_test_req {
    uint32_t word0; /* never converted */
    uint32_t word4;
    uint8_t data[40];
} IPACL_PACKED ipacl_test_req;

typedef struct ipacl_test_rsp {
    uint32_t word0; /* never converted */
    uint32_t word4;
    uint32_t word8;
} IPACL_PACKED ipacl_test_rsp;

typedef struct ipacl_ipt_req {
    uint32_t word0;
    uint32_t word4;
    char chain[IPACL_CHAIN_NAME_SIZE];
    uint32_t word40;
    uint32_t word44;
} IPACL_PACKED ipacl_ipt_req;

typedef struct ipacl_ipt_rsp {
    uint32_t count;
    uint32_t flags; /* ipacl_ipt_op: selects the records */
    uint32_t word8;
    uint8_t records[];
} IPACL_PACKED ipacl_ipt_rsp;

#define IPACL_QUEN_SIZE 112
#define IPACL_QUEN_TEXT1_SIZE 40
#define IPACL_QUEN_TEXT2_SIZE 60

typedef struct ipacl_quen {
    uint32_t op;     /* ipacl_quen_msg */
    uint32_t length; /* payload bytes after the header */
    uint32_t reserved;
    char text1[IPACL_QUEN_TEXT1_SIZE];
    char text2[IPACL_QUEN_TEXT2_SIZE];
} IPACL_PACKED ipacl_quen;

/* ---- exported iptables names, zero-filled at load, filled by the user -- */

IPACL_API extern char ipacl_chain_in[IPACL_CHAIN_NAME_SIZE];
IPACL_API extern char ipacl_chain_out[IPACL_CHAIN_NAME_SIZE];
IPACL_API extern char ipacl_chain_fwd[IPACL_CHAIN_NAME_SIZE];
IPACL_API extern char ipacl_target_accept[IPACL_TARGET_NAME_SIZE];
IPACL_API extern char ipacl_target_drop[IPACL_TARGET_NAME_SIZE];
IPACL_API extern char ipacl_target_queue[IPACL_TARGET_NAME_SIZE];
IPACL_API extern char ipacl_target_return[IPACL_TARGET_NAME_SIZE];

IPACL_END_DECLS

#include <ipacl/records_layout.h>

#endif
