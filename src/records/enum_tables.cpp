// Texts of the coded fields, keyed by the constants of enums.h.  The
// fallback forms differ from one enumeration to the next on purpose.
#include <ipacl/enums.h>

#include "base/value_text.h"

namespace ipacl {
namespace {

constexpr EnumName kPmPhyLayer[] = {{IPACL_PM_PHY_LAYER_FC, "FC"},
                                    {IPACL_PM_PHY_LAYER_ETHERNET, "ETHERNET"}};
constexpr EnumName kVniEvent[] = {{IPACL_VNI_EVENT_CREATED, "created"},
                                  {IPACL_VNI_EVENT_REMOVED, "removed"}};
constexpr EnumName kAvmEvent[] = {{IPACL_AVM_EVENT_CREATED, "created"},
                                  {IPACL_AVM_EVENT_REMOVED, "removed"}};
constexpr EnumName kTos[] = {{IPACL_TOS_ANY, "any-tos"},
                             {IPACL_TOS_NORMAL_SERVICE, "normal-service"},
                             {IPACL_TOS_MONETARY_COST, "monetary-cost"},
                             {IPACL_TOS_RELIABILITY, "reliability"},
                             {IPACL_TOS_THROUGHPUT, "throughput"},
                             {IPACL_TOS_DELAY, "delay"}};
constexpr EnumName kTestType[] = {{IPACL_TEST_TYPE_ENABLE_ENG_DEBUG, "enable eng debug"},
                                  {IPACL_TEST_TYPE_DISABLE_ENG_DEBUG, "disable eng debug"},
                                  {IPACL_TEST_TYPE_QUERY_ENG_DEBUG, "query eng debug"}};
constexpr EnumName kSyslog[] = {
    {IPACL_SYSLOG_EMERG, "LOG_EMERG"},     {IPACL_SYSLOG_ALERT, "LOG_ALERT"},
    {IPACL_SYSLOG_CRIT, "LOG_CRIT"},       {IPACL_SYSLOG_ERR, "LOG_ERR"},
    {IPACL_SYSLOG_WARNING, "LOG_WARNING"}, {IPACL_SYSLOG_NOTICE, "LOG_NOTICE"},
    {IPACL_SYSLOG_INFO, "LOG_INFO"},       {IPACL_SYSLOG_DEBUG, "LOG_DEBUG"}};
constexpr EnumName kSyncOp[] = {{IPACL_SYNC_OP_NONE, "no-sync-op"},
                                {IPACL_SYNC_OP_ADD, "add"},
                                {IPACL_SYNC_OP_DELETE, "delete"},
                                {IPACL_SYNC_OP_DELETE_ALL, "delete-all"},
                                {IPACL_SYNC_OP_RECOVER, "recover"}};
constexpr EnumName kKestType[] = {{IPACL_KEST_TYPE_NONE, "no-kest"},
                                  {IPACL_KEST_TYPE_LIST, "list"},
                                  {IPACL_KEST_TYPE_DATA, "data"},
                                  {IPACL_KEST_TYPE_GROUP, "group"}};
constexpr EnumName kSupState[] = {{IPACL_SUP_STATE_NONE, "no-state"},
                                  {IPACL_SUP_STATE_ACTIVE, "active"},
                                  {IPACL_SUP_STATE_STANDBY, "standby"},
                                  {IPACL_SUP_STATE_COLD_STANDBY, "cold-standby"},
                                  {IPACL_SUP_STATE_OFFLINE, "offline"}};
constexpr EnumName kSnmpStatus[] = {{IPACL_SNMP_STATUS_ACTIVE, "active"},
                                    {IPACL_SNMP_STATUS_NOT_IN_SERVICE, "not-in-srv"},
                                    {IPACL_SNMP_STATUS_NOT_READY, "not-ready"},
                                    {IPACL_SNMP_STATUS_CREATE_AND_GO, "create+go"},
                                    {IPACL_SNMP_STATUS_CREATE_AND_WAIT, "create+wait"},
                                    {IPACL_SNMP_STATUS_DESTROY, "destroy"}};
constexpr EnumName kQueryOp[] = {{IPACL_QUERY_OP_NONE, "no-query-op"},
                                 {IPACL_QUERY_OP_ALL_PROFILES, "query all profiles"},
                                 {IPACL_QUERY_OP_ONE_PROFILE, "query one profile"},
                                 {IPACL_QUERY_OP_ONE, "query one"},
                                 {IPACL_QUERY_OP_MATCHED_IF_INDEX, "query matched if-index"}};
constexpr EnumName kProfType[] = {{IPACL_PROF_TYPE_ANY, "any-prof-type"},
                                  {IPACL_PROF_TYPE_SIMPLE, "simple"},
                                  {IPACL_PROF_TYPE_EXTENDED, "extended"},
                                  {IPACL_PROF_TYPE_IPV6, "ipv6"}};
constexpr EnumName kPrec[] = {
    {IPACL_PREC_ANY, "any-prec"},      {IPACL_PREC_ROUTINE, "routine"},
    {IPACL_PREC_PRIORITY, "priority"}, {IPACL_PREC_IMMEDIATE, "immediate"},
    {IPACL_PREC_FLASH, "flash"},       {IPACL_PREC_OVERRIDE, "override"},
    {IPACL_PREC_CRITICAL, "critical"}, {IPACL_PREC_INTERNETWORK, "internetwork"},
    {IPACL_PREC_NETWORK, "network"}};
constexpr EnumName kPortOp[] = {{IPACL_PORT_OP_ANY, "any-port-op"}, {IPACL_PORT_OP_LT, "lt"},
                                {IPACL_PORT_OP_GT, "gt"},           {IPACL_PORT_OP_NEQ, "neq"},
                                {IPACL_PORT_OP_EQ, "eq"},           {IPACL_PORT_OP_RANGE, "range"}};
constexpr EnumName kMemType[] = {
    {IPACL_MEM_TYPE_ACCESS_LIST, "access list"},   {IPACL_MEM_TYPE_ACCESS_INTF, "access intf"},
    {IPACL_MEM_TYPE_ACCESS_GROUP, "access group"}, {IPACL_MEM_TYPE_ACCESS_DATA, "access data"},
    {IPACL_MEM_TYPE_KEST_LIST, "kest list"},       {IPACL_MEM_TYPE_KEST_GROUP, "kest group"},
    {IPACL_MEM_TYPE_KEST_DATA, "kest data"},       {IPACL_MEM_TYPE_IF_PROF, "if prof"},
    {IPACL_MEM_TYPE_SYNC_PROF, "sync prof"},       {IPACL_MEM_TYPE_SYNC_IF_PROF, "sync if prof"},
    {IPACL_MEM_TYPE_SYNC_FILTER, "sync filter"},   {IPACL_MEM_TYPE_SYNC_INTF, "sync intf"}};
constexpr EnumName kIptOp[] = {{IPACL_IPT_OP_NONE, "no-ipt-op"},
                               {IPACL_IPT_OP_ALL_CHAINS, "query all chains"},
                               {IPACL_IPT_OP_MATCHED_CHAIN, "query matched chain"},
                               {IPACL_IPT_OP_ALL_RULES, "query all rules"},
                               {IPACL_IPT_OP_MATCHED_RULE, "query matched rule"},
                               {IPACL_IPT_OP_CLEAR_CHAIN_COUNTERS, "clear chain counters"},
                               {IPACL_IPT_OP_CLEAR_RULE_COUNTERS, "clear rule counters"}};
constexpr EnumName kIpProto[] = {
    {IPACL_IP_PROTO_IP, "ip"},     {IPACL_IP_PROTO_ICMP, "icmp"}, {IPACL_IP_PROTO_IGMP, "igmp"},
    {IPACL_IP_PROTO_IPIP, "ipip"}, {IPACL_IP_PROTO_TCP, "tcp"},   {IPACL_IP_PROTO_EGP, "egp"},
    {IPACL_IP_PROTO_PUP, "pup"},   {IPACL_IP_PROTO_UDP, "udp"},   {IPACL_IP_PROTO_IDP, "idp"},
    {IPACL_IP_PROTO_IPV6, "ipv6"}, {IPACL_IP_PROTO_RSVP, "rsvp"}, {IPACL_IP_PROTO_GRE, "gre"},
    {IPACL_IP_PROTO_ESP, "esp"},   {IPACL_IP_PROTO_AH, "ah"},     {IPACL_IP_PROTO_PIM, "pim"},
    {IPACL_IP_PROTO_COMP, "comp"}, {IPACL_IP_PROTO_RAW, "raw"}};
constexpr EnumName kInType[] = {{IPACL_IN_TYPE_NONE, "no-in-type"},
                                {IPACL_IN_TYPE_HA_INFO, "ha info"},
                                {IPACL_IN_TYPE_MEMORY_USAGE, "memory usage"}};
constexpr EnumName kIcmpType[] = {{IPACL_ICMP_TYPE_ANY, "any-icmp"},
                                  {IPACL_ICMP_TYPE_ECHO_REPLY, "echo-reply"},
                                  {IPACL_ICMP_TYPE_UNREACHABLE, "unreachable"},
                                  {IPACL_ICMP_TYPE_REDIRECT, "redirect"},
                                  {IPACL_ICMP_TYPE_ECHO, "echo"},
                                  {IPACL_ICMP_TYPE_TIME_EXCEEDED, "time-exceeded"},
                                  {IPACL_ICMP_TYPE_TRACEROUTE, "traceroute"}};
// "in" and "out" each have two numbers.
constexpr EnumName kDir[] = {{IPACL_DIR_NONE, "no-dir"}, {IPACL_DIR_IN, "in"},
                             {IPACL_DIR_OUT, "out"},     {IPACL_DIR_IN2, "in"},
                             {IPACL_DIR_OUT2, "out"},    {IPACL_DIR_IN_OUT, "in+out"}};
constexpr EnumName kConfOp[] = {{IPACL_CONF_OP_NONE, "no-conf-op"},
                                {IPACL_CONF_OP_ADD, "add"},
                                {IPACL_CONF_OP_DELETE, "delete"},
                                {IPACL_CONF_OP_CLEAR, "clear"},
                                {IPACL_CONF_OP_DELETE_ALL, "delete-all"}};
constexpr EnumName kQuenMsg[] = {{IPACL_QUEN_MSG_GET, "get"},
                                 {IPACL_QUEN_MSG_GET_NEXT, "get-next"},
                                 {IPACL_QUEN_MSG_SET, "set"},
                                 {IPACL_QUEN_MSG_DELETE, "delete"}};
constexpr EnumName kDalveType[] = {{IPACL_DALVE_TYPE_NONE, "no-dalve"},
                                   {IPACL_DALVE_TYPE_IF_PROF, "interface profile"},
                                   {IPACL_DALVE_TYPE_FILTER, "filter"},
                                   {IPACL_DALVE_TYPE_PROTO_PROF, "protocol profile"}};
constexpr EnumName kAddrType[] = {{IPACL_ADDR_TYPE_NONE, "no-addr-type"},
                                  {IPACL_ADDR_TYPE_IPV4, "ipV4"},
                                  {IPACL_ADDR_TYPE_IPV6, "ipV6"}};
constexpr EnumName kAction[] = {
    {IPACL_ACTION_NONE, "no-action"}, {IPACL_ACTION_DENY, "deny"}, {IPACL_ACTION_PERMIT, "permit"}};
constexpr EnumName kAccessType[] = {{IPACL_ACCESS_TYPE_NONE, "no-access-type"},
                                    {IPACL_ACCESS_TYPE_ACCESS_DATA, "access-data"},
                                    {IPACL_ACCESS_TYPE_DATA_INFO, "data-info"},
                                    {IPACL_ACCESS_TYPE_DATA_KEY, "data-key"},
                                    {IPACL_ACCESS_TYPE_ACCESS_GROUP, "access-group"},
                                    {IPACL_ACCESS_TYPE_GROUP_INFO, "group-info"},
                                    {IPACL_ACCESS_TYPE_GROUP_KEY, "group-key"},
                                    {IPACL_ACCESS_TYPE_ACCESS_INTF, "access-intf"},
                                    {IPACL_ACCESS_TYPE_INTF_INFO, "intf-info"},
                                    {IPACL_ACCESS_TYPE_ACCESS_LIST, "access-list"},
                                    {IPACL_ACCESS_TYPE_LIST_KEY, "list-key"},
                                    {IPACL_ACCESS_TYPE_ACCESS_MGMT, "access-mgmt"}};
constexpr EnumName kAccessOp[] = {
    {IPACL_ACCESS_OP_NONE, "no-access-op"},
    {IPACL_ACCESS_OP_MGMT, "query mgmt"},
    {IPACL_ACCESS_OP_LISTS_IN_MGMT, "query lists in mgmt"},
    {IPACL_ACCESS_OP_INTFS_IN_MGMT, "query intfs in mgmt"},
    {IPACL_ACCESS_OP_GROUPS_IN_MGMT, "query groups in mgmt"},
    {IPACL_ACCESS_OP_LISTS_IN_MGMT_KEST, "query lists in mgmt kest"},
    {IPACL_ACCESS_OP_GROUPS_IN_MGMT_KEST, "query groups in mgmt kest"},
    {IPACL_ACCESS_OP_LISTS, "query lists"},
    {IPACL_ACCESS_OP_MATCHED_LIST, "query matched list"},
    {IPACL_ACCESS_OP_DATA_IN_LIST, "query data in list"},
    {IPACL_ACCESS_OP_GROUPS_IN_LIST, "query groups in list"},
    {IPACL_ACCESS_OP_ACCESS_LISTS_IN_KEST, "query access lists in kest"},
    {IPACL_ACCESS_OP_MATCHED_LIST_IN_KEST, "query matched list in kest"},
    {IPACL_ACCESS_OP_DATA_IN_LIST_KEST, "query data in list kest"},
    {IPACL_ACCESS_OP_GROUPS_IN_LIST_KEST, "query groups in list kest"},
    {IPACL_ACCESS_OP_INTFS, "query intfs"},
    {IPACL_ACCESS_OP_MATCHED_INTF, "query matched intf"},
    {IPACL_ACCESS_OP_GROUPS, "query groups"},
    {IPACL_ACCESS_OP_MATCHED_GROUP, "query matched group"},
    {IPACL_ACCESS_OP_GROUPS_IN_KEST, "query groups in kest"},
    {IPACL_ACCESS_OP_MATCHED_GROUP_IN_KEST, "query matched group in kest"},
    {IPACL_ACCESS_OP_DATA, "query data"},
    {IPACL_ACCESS_OP_MATCHED_DATA, "query matched data"},
    {IPACL_ACCESS_OP_DATA_IN_KEST, "query data in kest"},
    {IPACL_ACCESS_OP_MATCHED_DATA_IN_KEST, "query matched data in kest"},
    {IPACL_ACCESS_OP_DELETE_LIST, "delete list"}};
constexpr EnumName kListType[] = {{IPACL_LIST_TYPE_IDLE, "idle"},
                                  {IPACL_LIST_TYPE_ACTIVE, "active"},
                                  {IPACL_LIST_TYPE_WAITING, "waiting"}};

}  // namespace
}  // namespace ipacl

using namespace ipacl;

extern "C" {

uint32_t ipacl_str_pm_phy_layer(uint8_t v, char *d) {
    return value_text(kPmPhyLayer, v, d, "%u(phy-layer)");
}
uint32_t ipacl_str_vni_event(uint32_t v, char *d) {
    return value_text(kVniEvent, v, d, "%u(vni-event)");
}
uint32_t ipacl_str_avm_event(uint32_t v, char *d) {
    return value_text(kAvmEvent, v, d, "%u(avm-event)");
}
uint32_t ipacl_str_tos(uint32_t v, char *d) { return value_text(kTos, v, d, "%u"); }
uint32_t ipacl_str_test_type(uint32_t v, char *d) {
    return value_text(kTestType, v, d, "%xh[test-type]");
}
uint32_t ipacl_str_syslog(uint32_t v, char *d) { return value_text(kSyslog, v, d, "%xh[syslog]"); }
uint32_t ipacl_str_sync_op(uint32_t v, char *d) {
    return value_text(kSyncOp, v, d, "%xh[sync-op]");
}
uint32_t ipacl_str_kest_type(uint32_t v, char *d) {
    return value_text(kKestType, v, d, "%xh[kest-type]");
}
uint32_t ipacl_str_sup_state(uint32_t v, char *d) {
    return value_text(kSupState, v, d, "%xh[sup-state]");
}
uint32_t ipacl_str_snmp_status(uint32_t v, char *d) {
    return value_text(kSnmpStatus, v, d, "%xh[rs]");
}
uint32_t ipacl_str_query_op(uint32_t v, char *d) {
    return value_text(kQueryOp, v, d, "%xh[query-op]");
}
uint32_t ipacl_str_prof_type(uint32_t v, char *d) {
    return value_text(kProfType, v, d, "%dh[prof-type]", NumberForm::signed_number);
}
uint32_t ipacl_str_prec(uint32_t v, char *d) { return value_text(kPrec, v, d, "%u"); }
uint32_t ipacl_str_port_op(uint32_t v, char *d) {
    return value_text(kPortOp, v, d, "%xh[port-op]");
}
uint32_t ipacl_str_mem_type(uint32_t v, char *d) {
    return value_text(kMemType, v, d, "%xh[mem-type]");
}
uint32_t ipacl_str_ipt_op(uint32_t v, char *d) { return value_text(kIptOp, v, d, "%xh[ipt-op]"); }
uint32_t ipacl_str_ip_proto(uint32_t v, char *d) {
    return value_text(kIpProto, v, d, "%xh[ip-proto]");
}
uint32_t ipacl_str_in_type(uint32_t v, char *d) {
    return value_text(kInType, v, d, "%xh[in-type]");
}
uint32_t ipacl_str_icmp_type(uint32_t v, char *d) { return value_text(kIcmpType, v, d, "%u"); }
uint32_t ipacl_str_dir(uint32_t v, char *d) { return value_text(kDir, v, d, "%xh[dir]"); }
uint32_t ipacl_str_conf_op(uint32_t v, char *d) {
    return value_text(kConfOp, v, d, "%xh[conf-op]");
}
uint32_t ipacl_str_quen_msg(uint32_t v, char *d) { return value_text(kQuenMsg, v, d, "%xh[quen]"); }
uint32_t ipacl_str_dalve_type(uint32_t v, char *d) {
    return value_text(kDalveType, v, d, "%xh[dalve]");
}
uint32_t ipacl_str_addr_type(uint32_t v, char *d) {
    return value_text(kAddrType, v, d, "%xh[addr-type]");
}
uint32_t ipacl_str_action(uint32_t v, char *d) { return value_text(kAction, v, d, "%xh[action]"); }
uint32_t ipacl_str_access_type(uint32_t v, char *d) {
    return value_text(kAccessType, v, d, "%xh[access-type]");
}
uint32_t ipacl_str_access_op(uint32_t v, char *d) {
    return value_text(kAccessOp, v, d, "%xh[access-op]");
}

// The list state has no fallback: an unknown value leaves the buffer as it was.
void ipacl_str_list_type(uint32_t v, char *d) {
    if (const char *text = enum_find(kListType, v)) snprintf(d, kTextSize, "%s", text);
}

}  // extern "C"
