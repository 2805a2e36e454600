/** @file
 * Enumerations of the coded fields and the text of every value.
 *
 * Each ipacl_str_<enum>(value, dst) writes the value's text into `dst`
 * (at least IPACL_STR_SIZE bytes) and returns the number of characters
 * written.  An unnamed value prints a fallback that shows the number; see
 * each function for its form and for the few that return something else. */
#ifndef IPACL_ENUMS_H
#define IPACL_ENUMS_H

#include <ipacl/common.h>

IPACL_BEGIN_DECLS

/** @{ */
/** State of an installed protocol profile (access list). */
typedef uint32_t ipacl_list_type;
#define IPACL_LIST_TYPE_IDLE 0u
#define IPACL_LIST_TYPE_ACTIVE 1u
#define IPACL_LIST_TYPE_WAITING 2u
/** @} */

/** @{ */
/** Physical layer of a port in a port-created notice. */
typedef uint8_t ipacl_pm_phy_layer;
#define IPACL_PM_PHY_LAYER_FC 1u
#define IPACL_PM_PHY_LAYER_ETHERNET 2u
/** @} */

/** @{ */
/** Event of a vni interface change notice. */
typedef uint32_t ipacl_vni_event;
#define IPACL_VNI_EVENT_CREATED 0u
#define IPACL_VNI_EVENT_REMOVED 1u
/** @} */

/** @{ */
/** Event of an avm interface change notice. */
typedef uint32_t ipacl_avm_event;
#define IPACL_AVM_EVENT_CREATED 1u
#define IPACL_AVM_EVENT_REMOVED 2u
/** @} */

/** @{ */
/** Type-of-service value of a filter; IPACL_TOS_ANY when not set. */
typedef uint32_t ipacl_tos;
#define IPACL_TOS_ANY 0xFFFFFFFFu
#define IPACL_TOS_NORMAL_SERVICE 0u
#define IPACL_TOS_MONETARY_COST 1u
#define IPACL_TOS_RELIABILITY 2u
#define IPACL_TOS_THROUGHPUT 4u
#define IPACL_TOS_DELAY 8u
/** @} */

/** @{ */
/** Request of a test message: engineering debug on, off or queried. */
typedef uint32_t ipacl_test_type;
#define IPACL_TEST_TYPE_ENABLE_ENG_DEBUG 1u
#define IPACL_TEST_TYPE_DISABLE_ENG_DEBUG 2u
#define IPACL_TEST_TYPE_QUERY_ENG_DEBUG 3u
/** @} */

/** @{ */
/** Severity of a log message (syslog levels). */
typedef uint32_t ipacl_syslog;
#define IPACL_SYSLOG_EMERG 0u
#define IPACL_SYSLOG_ALERT 1u
#define IPACL_SYSLOG_CRIT 2u
#define IPACL_SYSLOG_ERR 3u
#define IPACL_SYSLOG_WARNING 4u
#define IPACL_SYSLOG_NOTICE 5u
#define IPACL_SYSLOG_INFO 6u
#define IPACL_SYSLOG_DEBUG 7u
/** @} */

/** @{ */
/** Operation of a sync message from the manager to its standby copy. */
typedef uint32_t ipacl_sync_op;
#define IPACL_SYNC_OP_NONE 0u
#define IPACL_SYNC_OP_ADD 1u
#define IPACL_SYNC_OP_DELETE 2u
#define IPACL_SYNC_OP_DELETE_ALL 3u
#define IPACL_SYNC_OP_RECOVER 4u
/** @} */

/** @{ */
/** Type of a stored (kest) record. */
typedef uint32_t ipacl_kest_type;
#define IPACL_KEST_TYPE_NONE 0u
#define IPACL_KEST_TYPE_LIST 1u
#define IPACL_KEST_TYPE_DATA 2u
#define IPACL_KEST_TYPE_GROUP 3u
/** @} */

/** @{ */
/** High-availability state of a supervisor. */
typedef uint32_t ipacl_sup_state;
#define IPACL_SUP_STATE_NONE 0u
#define IPACL_SUP_STATE_ACTIVE 1u
#define IPACL_SUP_STATE_STANDBY 2u
#define IPACL_SUP_STATE_COLD_STANDBY 3u
#define IPACL_SUP_STATE_OFFLINE 4u
/** @} */

/** @{ */
/** Row status of a record (SNMP RowStatus values). */
typedef uint32_t ipacl_snmp_status;
#define IPACL_SNMP_STATUS_ACTIVE 1u
#define IPACL_SNMP_STATUS_NOT_IN_SERVICE 2u
#define IPACL_SNMP_STATUS_NOT_READY 3u
#define IPACL_SNMP_STATUS_CREATE_AND_GO 4u
#define IPACL_SNMP_STATUS_CREATE_AND_WAIT 5u
#define IPACL_SNMP_STATUS_DESTROY 6u
/** @} */

/** @{ */
/** Selection of a query request: all profiles, one profile, one record, or by interface. */
typedef uint32_t ipacl_query_op;
#define IPACL_QUERY_OP_NONE 0u
#define IPACL_QUERY_OP_ALL_PROFILES 1u
#define IPACL_QUERY_OP_ONE_PROFILE 2u
#define IPACL_QUERY_OP_ONE 4u
#define IPACL_QUERY_OP_MATCHED_IF_INDEX 8u
/** @} */

/** @{ */
/** Type of a protocol profile; IPACL_PROF_TYPE_ANY matches every type (signed in meaning: -1 is
 * "any"). */
typedef uint32_t ipacl_prof_type;
#define IPACL_PROF_TYPE_ANY 0xFFFFFFFFu
#define IPACL_PROF_TYPE_SIMPLE 1u
#define IPACL_PROF_TYPE_EXTENDED 2u
#define IPACL_PROF_TYPE_IPV6 3u
/** @} */

/** @{ */
/** IP precedence of a filter; IPACL_PREC_ANY when not set. */
typedef uint32_t ipacl_prec;
#define IPACL_PREC_ANY 0xFFFFFFFFu
#define IPACL_PREC_ROUTINE 0u
#define IPACL_PREC_PRIORITY 1u
#define IPACL_PREC_IMMEDIATE 2u
#define IPACL_PREC_FLASH 3u
#define IPACL_PREC_OVERRIDE 4u
#define IPACL_PREC_CRITICAL 5u
#define IPACL_PREC_INTERNETWORK 6u
#define IPACL_PREC_NETWORK 7u
/** @} */

/** @{ */
/** Port operation of a filter: any port, lt, gt, neq, eq or range. */
typedef uint32_t ipacl_port_op;
#define IPACL_PORT_OP_ANY 0u
#define IPACL_PORT_OP_LT 1u
#define IPACL_PORT_OP_GT 2u
#define IPACL_PORT_OP_NEQ 3u
#define IPACL_PORT_OP_EQ 4u
#define IPACL_PORT_OP_RANGE 5u
/** @} */

/** @{ */
/** Kind of memory counted in a memory-usage record. */
typedef uint32_t ipacl_mem_type;
#define IPACL_MEM_TYPE_ACCESS_LIST 0u
#define IPACL_MEM_TYPE_ACCESS_INTF 1u
#define IPACL_MEM_TYPE_ACCESS_GROUP 2u
#define IPACL_MEM_TYPE_ACCESS_DATA 3u
#define IPACL_MEM_TYPE_KEST_LIST 4u
#define IPACL_MEM_TYPE_KEST_GROUP 5u
#define IPACL_MEM_TYPE_KEST_DATA 6u
#define IPACL_MEM_TYPE_IF_PROF 7u
#define IPACL_MEM_TYPE_SYNC_PROF 8u
#define IPACL_MEM_TYPE_SYNC_IF_PROF 9u
#define IPACL_MEM_TYPE_SYNC_FILTER 10u
#define IPACL_MEM_TYPE_SYNC_INTF 11u
/** @} */

/** @{ */
/** Operation of an iptables query: chains or rules, all or the matching ones. */
typedef uint32_t ipacl_ipt_op;
#define IPACL_IPT_OP_NONE 0u
#define IPACL_IPT_OP_ALL_CHAINS 1u
#define IPACL_IPT_OP_MATCHED_CHAIN 2u
#define IPACL_IPT_OP_ALL_RULES 16u
#define IPACL_IPT_OP_MATCHED_RULE 32u
#define IPACL_IPT_OP_CLEAR_CHAIN_COUNTERS 256u
#define IPACL_IPT_OP_CLEAR_RULE_COUNTERS 512u
/** @} */

/** @{ */
/** IP protocol numbers with a name of their own. */
typedef uint32_t ipacl_ip_proto;
#define IPACL_IP_PROTO_IP 0u
#define IPACL_IP_PROTO_ICMP 1u
#define IPACL_IP_PROTO_IGMP 2u
#define IPACL_IP_PROTO_IPIP 4u
#define IPACL_IP_PROTO_TCP 6u
#define IPACL_IP_PROTO_EGP 8u
#define IPACL_IP_PROTO_PUP 12u
#define IPACL_IP_PROTO_UDP 17u
#define IPACL_IP_PROTO_IDP 22u
#define IPACL_IP_PROTO_IPV6 41u
#define IPACL_IP_PROTO_RSVP 46u
#define IPACL_IP_PROTO_GRE 47u
#define IPACL_IP_PROTO_ESP 50u
#define IPACL_IP_PROTO_AH 51u
#define IPACL_IP_PROTO_PIM 103u
#define IPACL_IP_PROTO_COMP 108u
#define IPACL_IP_PROTO_RAW 255u
/** @} */

/** @{ */
/** Type of an internal-state request: high-availability state or memory usage. */
typedef uint32_t ipacl_in_type;
#define IPACL_IN_TYPE_NONE 0u
#define IPACL_IN_TYPE_HA_INFO 1u
#define IPACL_IN_TYPE_MEMORY_USAGE 2u
/** @} */

/** @{ */
/** ICMP message type of a filter; IPACL_ICMP_TYPE_ANY when not set. */
typedef uint32_t ipacl_icmp_type;
#define IPACL_ICMP_TYPE_ANY 0xFFFFFFFFu
#define IPACL_ICMP_TYPE_ECHO_REPLY 0u
#define IPACL_ICMP_TYPE_UNREACHABLE 3u
#define IPACL_ICMP_TYPE_REDIRECT 5u
#define IPACL_ICMP_TYPE_ECHO 8u
#define IPACL_ICMP_TYPE_TIME_EXCEEDED 11u
#define IPACL_ICMP_TYPE_TRACEROUTE 30u
/** @} */

/** @{ */
/** Direction of traffic an interface profile applies to. */
typedef uint32_t ipacl_dir;
#define IPACL_DIR_NONE 0u
#define IPACL_DIR_IN 1u
#define IPACL_DIR_OUT 2u
#define IPACL_DIR_IN2 3u
#define IPACL_DIR_OUT2 4u
#define IPACL_DIR_IN_OUT 5u
/** @} */

/** @{ */
/** Operation of a configuration message: add, delete, clear or delete all. */
typedef uint32_t ipacl_conf_op;
#define IPACL_CONF_OP_NONE 0u
#define IPACL_CONF_OP_ADD 1u
#define IPACL_CONF_OP_DELETE 2u
#define IPACL_CONF_OP_CLEAR 3u
#define IPACL_CONF_OP_DELETE_ALL 4u
/** @} */

/** @{ */
/** Message type of the quen interface: get, get-next, set or delete. */
typedef uint32_t ipacl_quen_msg;
#define IPACL_QUEN_MSG_GET 1u
#define IPACL_QUEN_MSG_GET_NEXT 2u
#define IPACL_QUEN_MSG_SET 3u
#define IPACL_QUEN_MSG_DELETE 4u
/** @} */

/** @{ */
/** Key type of a confirmation: interface profile, filter or protocol profile. */
typedef uint32_t ipacl_dalve_type;
#define IPACL_DALVE_TYPE_NONE 0u
#define IPACL_DALVE_TYPE_IF_PROF 1u
#define IPACL_DALVE_TYPE_FILTER 2u
#define IPACL_DALVE_TYPE_PROTO_PROF 3u
/** @} */

/** @{ */
/** Address type of a filter: IPv4 or IPv6. */
typedef uint32_t ipacl_addr_type;
#define IPACL_ADDR_TYPE_NONE 0xFFFFFFFFu
#define IPACL_ADDR_TYPE_IPV4 1u
#define IPACL_ADDR_TYPE_IPV6 2u
/** @} */

/** @{ */
/** Action of a filter: deny or permit. */
typedef uint32_t ipacl_action;
#define IPACL_ACTION_NONE 0xFFFFFFFFu
#define IPACL_ACTION_DENY 1u
#define IPACL_ACTION_PERMIT 2u
/** @} */

/** @{ */
/** Element type of an access response: which manager records it carries. */
typedef uint32_t ipacl_access_type;
#define IPACL_ACCESS_TYPE_NONE 0u
#define IPACL_ACCESS_TYPE_ACCESS_DATA 1u
#define IPACL_ACCESS_TYPE_DATA_INFO 2u
#define IPACL_ACCESS_TYPE_DATA_KEY 3u
#define IPACL_ACCESS_TYPE_ACCESS_GROUP 4u
#define IPACL_ACCESS_TYPE_GROUP_INFO 5u
#define IPACL_ACCESS_TYPE_GROUP_KEY 6u
#define IPACL_ACCESS_TYPE_ACCESS_INTF 7u
#define IPACL_ACCESS_TYPE_INTF_INFO 8u
#define IPACL_ACCESS_TYPE_ACCESS_LIST 9u
#define IPACL_ACCESS_TYPE_LIST_KEY 10u
#define IPACL_ACCESS_TYPE_ACCESS_MGMT 11u
/** @} */

/** @{ */
/** Operation of an access (query) request: which manager tables to read. */
typedef uint32_t ipacl_access_op;
#define IPACL_ACCESS_OP_NONE 0x0u
#define IPACL_ACCESS_OP_MGMT 0x1u
#define IPACL_ACCESS_OP_LISTS_IN_MGMT 0x2u
#define IPACL_ACCESS_OP_INTFS_IN_MGMT 0x4u
#define IPACL_ACCESS_OP_GROUPS_IN_MGMT 0x8u
#define IPACL_ACCESS_OP_LISTS_IN_MGMT_KEST 0x20u
#define IPACL_ACCESS_OP_GROUPS_IN_MGMT_KEST 0x40u
#define IPACL_ACCESS_OP_LISTS 0x100u
#define IPACL_ACCESS_OP_MATCHED_LIST 0x200u
#define IPACL_ACCESS_OP_DATA_IN_LIST 0x400u
#define IPACL_ACCESS_OP_GROUPS_IN_LIST 0x800u
#define IPACL_ACCESS_OP_ACCESS_LISTS_IN_KEST 0x1000u
#define IPACL_ACCESS_OP_MATCHED_LIST_IN_KEST 0x2000u
#define IPACL_ACCESS_OP_DATA_IN_LIST_KEST 0x4000u
#define IPACL_ACCESS_OP_GROUPS_IN_LIST_KEST 0x8000u
#define IPACL_ACCESS_OP_INTFS 0x10000u
#define IPACL_ACCESS_OP_MATCHED_INTF 0x20000u
#define IPACL_ACCESS_OP_GROUPS 0x100000u
#define IPACL_ACCESS_OP_MATCHED_GROUP 0x200000u
#define IPACL_ACCESS_OP_GROUPS_IN_KEST 0x400000u
#define IPACL_ACCESS_OP_MATCHED_GROUP_IN_KEST 0x800000u
#define IPACL_ACCESS_OP_DATA 0x1000000u
#define IPACL_ACCESS_OP_MATCHED_DATA 0x2000000u
#define IPACL_ACCESS_OP_DATA_IN_KEST 0x4000000u
#define IPACL_ACCESS_OP_MATCHED_DATA_IN_KEST 0x8000000u
#define IPACL_ACCESS_OP_DELETE_LIST 0x10000000u
/** @} */

/** @{ */
/** Protocol of a filter: -1 is "any" ("ip" for IPv4, "ipv6" for IPv6). */
typedef uint32_t ipacl_proto;
#define IPACL_PROTO_ANY 0xFFFFFFFFu
#define IPACL_IPV6_PROTO_ANY 0xFFFFFFFFu
#define IPACL_PROTO_IP 0u
#define IPACL_PROTO_ICMP 1u
#define IPACL_PROTO_TCP 6u
#define IPACL_PROTO_UDP 17u
#define IPACL_PROTO_IPV6 41u
#define IPACL_PROTO_ICMP6 58u
/** @} */

/** @{ */
/** TCP and UDP port numbers with a service name. */
typedef uint32_t ipacl_port_num;
#define IPACL_PORT_FTP_DATA 20u
#define IPACL_PORT_FTP 21u
#define IPACL_PORT_SSH 22u
#define IPACL_PORT_TELNET 23u
#define IPACL_PORT_SMTP 25u
#define IPACL_PORT_TACACS_PLUS 49u
#define IPACL_PORT_DNS 53u
#define IPACL_PORT_TACACS_DS 65u
#define IPACL_PORT_TFTP 69u
#define IPACL_PORT_WWW 80u
#define IPACL_PORT_SFTP 115u
#define IPACL_PORT_NTP 123u
#define IPACL_PORT_HTTP 143u
#define IPACL_PORT_SNMP 161u
#define IPACL_PORT_SNMP_TRAP 162u
#define IPACL_PORT_SYSLOG 514u
#define IPACL_PORT_RADIUS 1812u
#define IPACL_PORT_WBEM_HTTP 5988u
#define IPACL_PORT_WBEM_HTTPS 5989u
/** @} */

/** @{ */
/** Flags of an iptables log target. */
typedef uint8_t ipacl_log_flag;
#define IPACL_LOG_FLAG_TCP_SEQ 0x01u
#define IPACL_LOG_FLAG_TCP_OPTIONS 0x02u
#define IPACL_LOG_FLAG_IP_OPTIONS 0x04u
/** @} */

/** @{ */
/** Scalar sentinels (formatted by <ipacl/str_scalar.h>). */
#define IPACL_INDEX_NONE 0u
#define IPACL_ORDER_NONE 0u
#define IPACL_RULE_ID_NONE 0xDEADBEEFu
#define IPACL_ENTRY_ID_NONE 0xDEADBEADu
#define IPACL_ICMP_CODE_ANY 0xFFFFFFFFu
#define IPACL_ADDR_ANY 0u
#define IPACL_MASK_ANY 0xFFFFFFFFu
#define IPACL_IF_INDEX_NONE 0u
/** @} */

/** @{ */
/** Write the text of `value` into `dst` and return the number of characters
 * written.  An unnamed value prints "%xh[<word>]" (the value in hexadecimal
 * and a word naming the enumeration) unless another form is noted beside the
 * declaration in this header. */
IPACL_API uint32_t ipacl_str_pm_phy_layer(uint8_t value, char *dst); /* "%u(phy-layer)" */
IPACL_API uint32_t ipacl_str_vni_event(uint32_t value, char *dst);   /* "%u(vni-event)" */
IPACL_API uint32_t ipacl_str_avm_event(uint32_t value, char *dst);   /* "%u(avm-event)" */
IPACL_API uint32_t ipacl_str_tos(uint32_t value, char *dst);         /* "%u" */
IPACL_API uint32_t ipacl_str_test_type(uint32_t value, char *dst);
IPACL_API uint32_t ipacl_str_syslog(uint32_t value, char *dst);
IPACL_API uint32_t ipacl_str_sync_op(uint32_t value, char *dst);
IPACL_API uint32_t ipacl_str_kest_type(uint32_t value, char *dst);
IPACL_API uint32_t ipacl_str_sup_state(uint32_t value, char *dst);
IPACL_API uint32_t ipacl_str_snmp_status(uint32_t value, char *dst); /* "%xh[rs]" */
IPACL_API uint32_t ipacl_str_query_op(uint32_t value, char *dst);
IPACL_API uint32_t ipacl_str_prof_type(uint32_t value, char *dst); /* "%dh[prof-type]" */
IPACL_API uint32_t ipacl_str_prec(uint32_t value, char *dst);      /* "%u" */
IPACL_API uint32_t ipacl_str_port_op(uint32_t value, char *dst);
IPACL_API uint32_t ipacl_str_mem_type(uint32_t value, char *dst);
IPACL_API uint32_t ipacl_str_ipt_op(uint32_t value, char *dst);
IPACL_API uint32_t ipacl_str_ip_proto(uint32_t value, char *dst);
IPACL_API uint32_t ipacl_str_in_type(uint32_t value, char *dst);
IPACL_API uint32_t ipacl_str_icmp_type(uint32_t value, char *dst); /* "%u" */
IPACL_API uint32_t ipacl_str_dir(uint32_t value, char *dst);
IPACL_API uint32_t ipacl_str_conf_op(uint32_t value, char *dst);
IPACL_API uint32_t ipacl_str_quen_msg(uint32_t value, char *dst);   /* "%xh[quen]" */
IPACL_API uint32_t ipacl_str_dalve_type(uint32_t value, char *dst); /* "%xh[dalve]" */
IPACL_API uint32_t ipacl_str_addr_type(uint32_t value, char *dst);
IPACL_API uint32_t ipacl_str_action(uint32_t value, char *dst);
IPACL_API uint32_t ipacl_str_access_type(uint32_t value, char *dst);
IPACL_API uint32_t ipacl_str_access_op(uint32_t value, char *dst);
IPACL_API uint32_t ipacl_str_port_num(uint32_t value, char *dst);     /* "%u" */
IPACL_API uint32_t ipacl_str_dst_port_num(uint32_t value, char *dst); /* "dst_<name>", "%u" */
/** @} */

/** Prints nothing for an unknown value (the buffer is left as it was). */
IPACL_API void ipacl_str_list_type(uint32_t value, char *dst);

/** @{ */
/** Return the protocol number plus one when a name is printed, the count of
 * characters when the number is printed ("%u"). */
IPACL_API uint32_t ipacl_str_proto(uint32_t value, char *dst);
IPACL_API uint32_t ipacl_str_ipv6_proto(uint32_t value, char *dst);
/** @} */

/** Names of the set bits 0x01, 0x02, 0x04, each followed by a blank; "none"
 * for 0; "%xh[log-flag]" when 0x10, 0x40 or 0x80 is set. */
IPACL_API void ipacl_str_log_flag(uint8_t value, char *dst);

IPACL_END_DECLS

#endif
