// Texts of the coded fields.  Each table lists its values in numeric order;
// the fallback forms differ from one enumeration to the next on purpose.
#include <ipacl/enums.h>

#include "records/enum_text.h"

namespace ipacl {
namespace {

constexpr EnumName kPmPhyLayer[] = {{1, "FC"}, {2, "ETHERNET"}};
constexpr EnumName kVniEvent[] = {{0, "created"}, {1, "removed"}};
constexpr EnumName kAvmEvent[] = {{1, "created"}, {2, "removed"}};
constexpr EnumName kTos[] = {{0xFFFFFFFFu, "any-tos"}, {0, "normal-service"}, {1, "monetary-cost"},
                             {2, "reliability"},       {4, "throughput"},     {8, "delay"}};
constexpr EnumName kTestType[] = {
    {1, "enable eng debug"}, {2, "disable eng debug"}, {3, "query eng debug"}};
constexpr EnumName kSyslog[] = {{0, "LOG_EMERG"}, {1, "LOG_ALERT"},   {2, "LOG_CRIT"},
                                {3, "LOG_ERR"},   {4, "LOG_WARNING"}, {5, "LOG_NOTICE"},
                                {6, "LOG_INFO"},  {7, "LOG_DEBUG"}};
constexpr EnumName kSyncOp[] = {
    {0, "no-sync-op"}, {1, "add"}, {2, "delete"}, {3, "delete-all"}, {4, "recover"}};
constexpr EnumName kKestType[] = {{0, "no-kest"}, {1, "list"}, {2, "data"}, {3, "group"}};
constexpr EnumName kSupState[] = {
    {0, "no-state"}, {1, "active"}, {2, "standby"}, {3, "cold-standby"}, {4, "offline"}};
constexpr EnumName kSnmpStatus[] = {{1, "active"},    {2, "not-in-srv"},  {3, "not-ready"},
                                    {4, "create+go"}, {5, "create+wait"}, {6, "destroy"}};
constexpr EnumName kQueryOp[] = {{0, "no-query-op"},
                                 {1, "query all profiles"},
                                 {2, "query one profile"},
                                 {4, "query one"},
                                 {8, "query matched if-index"}};
constexpr EnumName kProfType[] = {
    {0xFFFFFFFFu, "any-prof-type"}, {1, "simple"}, {2, "extended"}, {3, "ipv6"}};
constexpr EnumName kPrec[] = {{0xFFFFFFFFu, "any-prec"}, {0, "routine"},      {1, "priority"},
                              {2, "immediate"},          {3, "flash"},        {4, "override"},
                              {5, "critical"},           {6, "internetwork"}, {7, "network"}};
constexpr EnumName kPortOp[] = {{0, "any-port-op"}, {1, "lt"}, {2, "gt"},
                                {3, "neq"},         {4, "eq"}, {5, "range"}};
constexpr EnumName kMemType[] = {{0, "access list"},  {1, "access intf"},  {2, "access group"},
                                 {3, "access data"},  {4, "kest list"},    {5, "kest group"},
                                 {6, "kest data"},    {7, "if prof"},      {8, "sync prof"},
                                 {9, "sync if prof"}, {10, "sync filter"}, {11, "sync intf"}};
constexpr EnumName kIptOp[] = {{0, "no-ipt-op"},
                               {1, "query all chains"},
                               {2, "query matched chain"},
                               {16, "query all rules"},
                               {32, "query matched rule"},
                               {256, "clear chain counters"},
                               {512, "clear rule counters"}};
constexpr EnumName kIpProto[] = {{0, "ip"},     {1, "icmp"}, {2, "igmp"}, {4, "ipip"}, {6, "tcp"},
                                 {8, "egp"},    {12, "pup"}, {17, "udp"}, {22, "idp"}, {41, "ipv6"},
                                 {46, "rsvp"},  {47, "gre"}, {50, "esp"}, {51, "ah"},  {103, "pim"},
                                 {108, "comp"}, {255, "raw"}};
constexpr EnumName kInType[] = {{0, "no-in-type"}, {1, "ha info"}, {2, "memory usage"}};
constexpr EnumName kIcmpType[] = {
    {0xFFFFFFFFu, "any-icmp"}, {0, "echo-reply"}, {3, "unreachable"}, {5, "redirect"}, {8, "echo"},
    {11, "time-exceeded"},     {30, "traceroute"}};
// "in" and "out" each have two numbers.
constexpr EnumName kDir[] = {{0, "no-dir"}, {1, "in"},  {2, "out"},
                             {3, "in"},     {4, "out"}, {5, "in+out"}};
constexpr EnumName kConfOp[] = {
    {0, "no-conf-op"}, {1, "add"}, {2, "delete"}, {3, "clear"}, {4, "delete-all"}};
constexpr EnumName kQuenMsg[] = {{1, "get"}, {2, "get-next"}, {3, "set"}, {4, "delete"}};
constexpr EnumName kDalveType[] = {
    {0, "no-dalve"}, {1, "interface profile"}, {2, "filter"}, {3, "protocol profile"}};
constexpr EnumName kAddrType[] = {{0xFFFFFFFFu, "no-addr-type"}, {1, "ipV4"}, {2, "ipV6"}};
constexpr EnumName kAction[] = {{0xFFFFFFFFu, "no-action"}, {1, "deny"}, {2, "permit"}};
constexpr EnumName kAccessType[] = {
    {0, "no-access-type"}, {1, "access-data"}, {2, "data-info"}, {3, "data-key"},
    {4, "access-group"},   {5, "group-info"},  {6, "group-key"}, {7, "access-intf"},
    {8, "intf-info"},      {9, "access-list"}, {10, "list-key"}, {11, "access-mgmt"}};
constexpr EnumName kAccessOp[] = {{0x0, "no-access-op"},
                                  {0x1, "query mgmt"},
                                  {0x2, "query lists in mgmt"},
                                  {0x4, "query intfs in mgmt"},
                                  {0x8, "query groups in mgmt"},
                                  {0x20, "query lists in mgmt kest"},
                                  {0x40, "query groups in mgmt kest"},
                                  {0x100, "query lists"},
                                  {0x200, "query matched list"},
                                  {0x400, "query data in list"},
                                  {0x800, "query groups in list"},
                                  {0x1000, "query access lists in kest"},
                                  {0x2000, "query matched list in kest"},
                                  {0x4000, "query data in list kest"},
                                  {0x8000, "query groups in list kest"},
                                  {0x10000, "query intfs"},
                                  {0x20000, "query matched intf"},
                                  {0x100000, "query groups"},
                                  {0x200000, "query matched group"},
                                  {0x400000, "query groups in kest"},
                                  {0x800000, "query matched group in kest"},
                                  {0x1000000, "query data"},
                                  {0x2000000, "query matched data"},
                                  {0x4000000, "query data in kest"},
                                  {0x8000000, "query matched data in kest"},
                                  {0x10000000, "delete list"}};
constexpr EnumName kListType[] = {{0, "idle"}, {1, "active"}, {2, "waiting"}};

}  // namespace
}  // namespace ipacl

using namespace ipacl;

extern "C" {

uint32_t ipacl_str_pm_phy_layer(uint8_t v, char *d) {
    return enum_text(kPmPhyLayer, v, d, "%u(phy-layer)");
}
uint32_t ipacl_str_vni_event(uint32_t v, char *d) {
    return enum_text(kVniEvent, v, d, "%u(vni-event)");
}
uint32_t ipacl_str_avm_event(uint32_t v, char *d) {
    return enum_text(kAvmEvent, v, d, "%u(avm-event)");
}
uint32_t ipacl_str_tos(uint32_t v, char *d) { return enum_text(kTos, v, d, "%u"); }
uint32_t ipacl_str_test_type(uint32_t v, char *d) {
    return enum_text(kTestType, v, d, "%xh[test-type]");
}
uint32_t ipacl_str_syslog(uint32_t v, char *d) { return enum_text(kSyslog, v, d, "%xh[syslog]"); }
uint32_t ipacl_str_sync_op(uint32_t v, char *d) { return enum_text(kSyncOp, v, d, "%xh[sync-op]"); }
uint32_t ipacl_str_kest_type(uint32_t v, char *d) {
    return enum_text(kKestType, v, d, "%xh[kest-type]");
}
uint32_t ipacl_str_sup_state(uint32_t v, char *d) {
    return enum_text(kSupState, v, d, "%xh[sup-state]");
}
uint32_t ipacl_str_snmp_status(uint32_t v, char *d) {
    return enum_text(kSnmpStatus, v, d, "%xh[rs]");
}
uint32_t ipacl_str_query_op(uint32_t v, char *d) {
    return enum_text(kQueryOp, v, d, "%xh[query-op]");
}
uint32_t ipacl_str_prof_type(uint32_t v, char *d) {
    return enum_text(kProfType, v, d, "%dh[prof-type]", true);
}
uint32_t ipacl_str_prec(uint32_t v, char *d) { return enum_text(kPrec, v, d, "%u"); }
uint32_t ipacl_str_port_op(uint32_t v, char *d) { return enum_text(kPortOp, v, d, "%xh[port-op]"); }
uint32_t ipacl_str_mem_type(uint32_t v, char *d) {
    return enum_text(kMemType, v, d, "%xh[mem-type]");
}
uint32_t ipacl_str_ipt_op(uint32_t v, char *d) { return enum_text(kIptOp, v, d, "%xh[ipt-op]"); }
uint32_t ipacl_str_ip_proto(uint32_t v, char *d) {
    return enum_text(kIpProto, v, d, "%xh[ip-proto]");
}
uint32_t ipacl_str_in_type(uint32_t v, char *d) { return enum_text(kInType, v, d, "%xh[in-type]"); }
uint32_t ipacl_str_icmp_type(uint32_t v, char *d) { return enum_text(kIcmpType, v, d, "%u"); }
uint32_t ipacl_str_dir(uint32_t v, char *d) { return enum_text(kDir, v, d, "%xh[dir]"); }
uint32_t ipacl_str_conf_op(uint32_t v, char *d) { return enum_text(kConfOp, v, d, "%xh[conf-op]"); }
uint32_t ipacl_str_quen_msg(uint32_t v, char *d) { return enum_text(kQuenMsg, v, d, "%xh[quen]"); }
uint32_t ipacl_str_dalve_type(uint32_t v, char *d) {
    return enum_text(kDalveType, v, d, "%xh[dalve]");
}
uint32_t ipacl_str_addr_type(uint32_t v, char *d) {
    return enum_text(kAddrType, v, d, "%xh[addr-type]");
}
uint32_t ipacl_str_action(uint32_t v, char *d) { return enum_text(kAction, v, d, "%xh[action]"); }
uint32_t ipacl_str_access_type(uint32_t v, char *d) {
    return enum_text(kAccessType, v, d, "%xh[access-type]");
}
uint32_t ipacl_str_access_op(uint32_t v, char *d) {
    return enum_text(kAccessOp, v, d, "%xh[access-op]");
}

// The list state has no fallback: an unknown value leaves the buffer as it was.
void ipacl_str_list_type(uint32_t v, char *d) {
    if (const char *text = enum_find(kListType, v)) snprintf(d, kStrSize, "%s", text);
}

}  // extern "C"
