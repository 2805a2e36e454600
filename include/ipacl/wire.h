/** @file
 * Byte-order converters and message sizes.
 *
 * Every record travels in network order (big-endian) and is kept in host
 * order.  Each record type has a converter pair
 *
 *     void ipacl_hton_<stem>(ipacl_<stem> *src, ipacl_<stem> *dst);
 *     void ipacl_ntoh_<stem>(ipacl_<stem> *src, ipacl_<stem> *dst);
 *
 * source first, destination second.  src and dst may be the same record
 * (conversion in place); otherwise only the fields that the conversion
 * transfers are written into dst, and the fields it leaves alone keep
 * whatever dst held.  Converters never fail, never check a field and never
 * allocate: counts and type words are trusted as they stand, and a count
 * beyond the caller's buffer walks past it.  Texts are copied up to and
 * including their NUL, nothing after it.
 *
 * Counted messages: host to network reads the count from src (host order)
 * on every pass and writes it reversed into dst after the elements; network
 * to host writes the count into dst first and reads it back from there.
 * Both parameters are non-const because in-place conversion passes the same
 * record twice and ipacl_hton_prof_info writes into its source. */
#ifndef IPACL_WIRE_H
#define IPACL_WIRE_H

#include <ipacl/codes.h>
#include <ipacl/records.h>

IPACL_BEGIN_DECLS

/* ---- Keys ---- */
/** @{ */
/** Converts an ipacl_prof_key between host and network byte order. */
IPACL_API void ipacl_hton_prof_key(ipacl_prof_key *src, ipacl_prof_key *dst);
IPACL_API void ipacl_ntoh_prof_key(ipacl_prof_key *src, ipacl_prof_key *dst);
/** @} */
/** @{ */
/** Converts an ipacl_if_prof_key between host and network byte order. */
IPACL_API void ipacl_hton_if_prof_key(ipacl_if_prof_key *src, ipacl_if_prof_key *dst);
IPACL_API void ipacl_ntoh_if_prof_key(ipacl_if_prof_key *src, ipacl_if_prof_key *dst);
/** @} */
/** @{ */
/** Converts an ipacl_filter_key between host and network byte order. */
IPACL_API void ipacl_hton_filter_key(ipacl_filter_key *src, ipacl_filter_key *dst);
IPACL_API void ipacl_ntoh_filter_key(ipacl_filter_key *src, ipacl_filter_key *dst);
/** @} */
/** @{ */
/** Converts an ipacl_list_key between host and network byte order. */
IPACL_API void ipacl_hton_list_key(ipacl_list_key *src, ipacl_list_key *dst);
IPACL_API void ipacl_ntoh_list_key(ipacl_list_key *src, ipacl_list_key *dst);
/** @} */
/** @{ */
/** Converts an ipacl_data_key between host and network byte order. */
IPACL_API void ipacl_hton_data_key(ipacl_data_key *src, ipacl_data_key *dst);
IPACL_API void ipacl_ntoh_data_key(ipacl_data_key *src, ipacl_data_key *dst);
/** @} */
/** @{ */
/** Converts an ipacl_group_key between host and network byte order. */
IPACL_API void ipacl_hton_group_key(ipacl_group_key *src, ipacl_group_key *dst);
IPACL_API void ipacl_ntoh_group_key(ipacl_group_key *src, ipacl_group_key *dst);
/** @} */

/* ---- Profiles, bindings and filters ---- */
/** @{ */
/** Converts an ipacl_prof between host and network byte order. */
IPACL_API void ipacl_hton_prof(ipacl_prof *src, ipacl_prof *dst);
IPACL_API void ipacl_ntoh_prof(ipacl_prof *src, ipacl_prof *dst);
/** @} */
/** @{ */
/** Converts an ipacl_prof_info between host and network byte order.
 * Host to network converts the info word from src to dst but the profile
 * from dst + 4 into src + 4: into a separate buffer it leaves dst's profile
 * as it was and overwrites src's.  Network to host is straightforward. */
IPACL_API void ipacl_hton_prof_info(ipacl_prof_info *src, ipacl_prof_info *dst);
IPACL_API void ipacl_ntoh_prof_info(ipacl_prof_info *src, ipacl_prof_info *dst);
/** @} */
/** @{ */
/** Converts an ipacl_if_prof between host and network byte order.
 * Both directions write 0 into the local flag (byte 80) of dst. */
IPACL_API void ipacl_hton_if_prof(ipacl_if_prof *src, ipacl_if_prof *dst);
IPACL_API void ipacl_ntoh_if_prof(ipacl_if_prof *src, ipacl_if_prof *dst);
/** @} */
/** @{ */
/** Converts an ipacl_filter between host and network byte order.
 * The central record: name, 23 words, two 64-bit counters, two addresses;
 * the 14-byte tail is never touched. */
IPACL_API void ipacl_hton_filter(ipacl_filter *src, ipacl_filter *dst);
IPACL_API void ipacl_ntoh_filter(ipacl_filter *src, ipacl_filter *dst);
/** @} */

/* ---- The manager's table rows ---- */
/** @{ */
/** Converts an ipacl_data between host and network byte order. */
IPACL_API void ipacl_hton_data(ipacl_data *src, ipacl_data *dst);
IPACL_API void ipacl_ntoh_data(ipacl_data *src, ipacl_data *dst);
/** @} */
/** @{ */
/** Converts an ipacl_data_info between host and network byte order.
 * The 16 address bytes of each address are never touched. */
IPACL_API void ipacl_hton_data_info(ipacl_data_info *src, ipacl_data_info *dst);
IPACL_API void ipacl_ntoh_data_info(ipacl_data_info *src, ipacl_data_info *dst);
/** @} */
/** @{ */
/** Converts an ipacl_group between host and network byte order. */
IPACL_API void ipacl_hton_group(ipacl_group *src, ipacl_group *dst);
IPACL_API void ipacl_ntoh_group(ipacl_group *src, ipacl_group *dst);
/** @} */
/** @{ */
/** Converts an ipacl_group_info between host and network byte order. */
IPACL_API void ipacl_hton_group_info(ipacl_group_info *src, ipacl_group_info *dst);
IPACL_API void ipacl_ntoh_group_info(ipacl_group_info *src, ipacl_group_info *dst);
/** @} */
/** @{ */
/** Converts an ipacl_intf between host and network byte order. */
IPACL_API void ipacl_hton_intf(ipacl_intf *src, ipacl_intf *dst);
IPACL_API void ipacl_ntoh_intf(ipacl_intf *src, ipacl_intf *dst);
/** @} */
/** @{ */
/** Converts an ipacl_intf_info between host and network byte order. */
IPACL_API void ipacl_hton_intf_info(ipacl_intf_info *src, ipacl_intf_info *dst);
IPACL_API void ipacl_ntoh_intf_info(ipacl_intf_info *src, ipacl_intf_info *dst);
/** @} */
/** @{ */
/** Converts an ipacl_list between host and network byte order. */
IPACL_API void ipacl_hton_list(ipacl_list *src, ipacl_list *dst);
IPACL_API void ipacl_ntoh_list(ipacl_list *src, ipacl_list *dst);
/** @} */
/** @{ */
/** Converts an ipacl_mgmt between host and network byte order.
 * ipv6_refs is never touched. */
IPACL_API void ipacl_hton_mgmt(ipacl_mgmt *src, ipacl_mgmt *dst);
IPACL_API void ipacl_ntoh_mgmt(ipacl_mgmt *src, ipacl_mgmt *dst);
/** @} */

/* ---- Usage and state ---- */
/** @{ */
/** Converts an ipacl_list_use between host and network byte order. */
IPACL_API void ipacl_hton_list_use(ipacl_list_use *src, ipacl_list_use *dst);
IPACL_API void ipacl_ntoh_list_use(ipacl_list_use *src, ipacl_list_use *dst);
/** @} */
/** @{ */
/** Converts an ipacl_mem_use between host and network byte order. */
IPACL_API void ipacl_hton_mem_use(ipacl_mem_use *src, ipacl_mem_use *dst);
IPACL_API void ipacl_ntoh_mem_use(ipacl_mem_use *src, ipacl_mem_use *dst);
/** @} */
/** @{ */
/** Converts an ipacl_ha between host and network byte order. */
IPACL_API void ipacl_hton_ha(ipacl_ha *src, ipacl_ha *dst);
IPACL_API void ipacl_ntoh_ha(ipacl_ha *src, ipacl_ha *dst);
/** @} */

/* ---- Requests, responses, configurations and confirmations ---- */
/** @{ */
/** Converts an ipacl_access_req between host and network byte order. */
IPACL_API void ipacl_hton_access_req(ipacl_access_req *src, ipacl_access_req *dst);
IPACL_API void ipacl_ntoh_access_req(ipacl_access_req *src, ipacl_access_req *dst);
/** @} */
/** @{ */
/** Converts an ipacl_access_rsp between host and network byte order.
 * Typed arrays: the type word (offset 4) selects the element record; an
 * unknown type converts only the count and type words. */
IPACL_API void ipacl_hton_access_rsp(ipacl_access_rsp *src, ipacl_access_rsp *dst);
IPACL_API void ipacl_ntoh_access_rsp(ipacl_access_rsp *src, ipacl_access_rsp *dst);
/** @} */
/** @{ */
/** Converts an ipacl_prof_req between host and network byte order. */
IPACL_API void ipacl_hton_prof_req(ipacl_prof_req *src, ipacl_prof_req *dst);
IPACL_API void ipacl_ntoh_prof_req(ipacl_prof_req *src, ipacl_prof_req *dst);
/** @} */
/** @{ */
/** Converts an ipacl_if_prof_req between host and network byte order. */
IPACL_API void ipacl_hton_if_prof_req(ipacl_if_prof_req *src, ipacl_if_prof_req *dst);
IPACL_API void ipacl_ntoh_if_prof_req(ipacl_if_prof_req *src, ipacl_if_prof_req *dst);
/** @} */
/** @{ */
/** Converts an ipacl_filter_req between host and network byte order. */
IPACL_API void ipacl_hton_filter_req(ipacl_filter_req *src, ipacl_filter_req *dst);
IPACL_API void ipacl_ntoh_filter_req(ipacl_filter_req *src, ipacl_filter_req *dst);
/** @} */
/** @{ */
/** Converts an ipacl_prof_rsp between host and network byte order. */
IPACL_API void ipacl_hton_prof_rsp(ipacl_prof_rsp *src, ipacl_prof_rsp *dst);
IPACL_API void ipacl_ntoh_prof_rsp(ipacl_prof_rsp *src, ipacl_prof_rsp *dst);
/** @} */
/** @{ */
/** Converts an ipacl_if_prof_rsp between host and network byte order. */
IPACL_API void ipacl_hton_if_prof_rsp(ipacl_if_prof_rsp *src, ipacl_if_prof_rsp *dst);
IPACL_API void ipacl_ntoh_if_prof_rsp(ipacl_if_prof_rsp *src, ipacl_if_prof_rsp *dst);
/** @} */
/** @{ */
/** Converts an ipacl_filter_rsp between host and network byte order. */
IPACL_API void ipacl_hton_filter_rsp(ipacl_filter_rsp *src, ipacl_filter_rsp *dst);
IPACL_API void ipacl_ntoh_filter_rsp(ipacl_filter_rsp *src, ipacl_filter_rsp *dst);
/** @} */
/** @{ */
/** Converts an ipacl_prof_cfg between host and network byte order. */
IPACL_API void ipacl_hton_prof_cfg(ipacl_prof_cfg *src, ipacl_prof_cfg *dst);
IPACL_API void ipacl_ntoh_prof_cfg(ipacl_prof_cfg *src, ipacl_prof_cfg *dst);
/** @} */
/** @{ */
/** Converts an ipacl_if_prof_cfg between host and network byte order. */
IPACL_API void ipacl_hton_if_prof_cfg(ipacl_if_prof_cfg *src, ipacl_if_prof_cfg *dst);
IPACL_API void ipacl_ntoh_if_prof_cfg(ipacl_if_prof_cfg *src, ipacl_if_prof_cfg *dst);
/** @} */
/** @{ */
/** Converts an ipacl_filter_cfg between host and network byte order. */
IPACL_API void ipacl_hton_filter_cfg(ipacl_filter_cfg *src, ipacl_filter_cfg *dst);
IPACL_API void ipacl_ntoh_filter_cfg(ipacl_filter_cfg *src, ipacl_filter_cfg *dst);
/** @} */
/** @{ */
/** Converts an ipacl_cfm between host and network byte order.
 * The key type selects the key at offset 8 (1 interface profile, 2 filter,
 * 3 protocol profile); any other type converts only the two words. */
IPACL_API void ipacl_hton_cfm(ipacl_cfm *src, ipacl_cfm *dst);
IPACL_API void ipacl_ntoh_cfm(ipacl_cfm *src, ipacl_cfm *dst);
/** @} */
/** @{ */
/** Converts an ipacl_prof_cfm between host and network byte order.
 * Confirmation lists: the word at offset 4 is never touched. */
IPACL_API void ipacl_hton_prof_cfm(ipacl_prof_cfm *src, ipacl_prof_cfm *dst);
IPACL_API void ipacl_ntoh_prof_cfm(ipacl_prof_cfm *src, ipacl_prof_cfm *dst);
/** @} */
/** @{ */
/** Converts an ipacl_if_prof_cfm between host and network byte order.
 * The word at offset 4 is never touched. */
IPACL_API void ipacl_hton_if_prof_cfm(ipacl_if_prof_cfm *src, ipacl_if_prof_cfm *dst);
IPACL_API void ipacl_ntoh_if_prof_cfm(ipacl_if_prof_cfm *src, ipacl_if_prof_cfm *dst);
/** @} */
/** @{ */
/** Converts an ipacl_filter_cfm between host and network byte order.
 * The word at offset 4 is never touched. */
IPACL_API void ipacl_hton_filter_cfm(ipacl_filter_cfm *src, ipacl_filter_cfm *dst);
IPACL_API void ipacl_ntoh_filter_cfm(ipacl_filter_cfm *src, ipacl_filter_cfm *dst);
/** @} */

/* ---- Sync messages ---- */
/** @{ */
/** Converts an ipacl_prof_sync between host and network byte order. */
IPACL_API void ipacl_hton_prof_sync(ipacl_prof_sync *src, ipacl_prof_sync *dst);
IPACL_API void ipacl_ntoh_prof_sync(ipacl_prof_sync *src, ipacl_prof_sync *dst);
/** @} */
/** @{ */
/** Converts an ipacl_if_prof_sync between host and network byte order. */
IPACL_API void ipacl_hton_if_prof_sync(ipacl_if_prof_sync *src, ipacl_if_prof_sync *dst);
IPACL_API void ipacl_ntoh_if_prof_sync(ipacl_if_prof_sync *src, ipacl_if_prof_sync *dst);
/** @} */
/** @{ */
/** Converts an ipacl_filter_sync between host and network byte order. */
IPACL_API void ipacl_hton_filter_sync(ipacl_filter_sync *src, ipacl_filter_sync *dst);
IPACL_API void ipacl_ntoh_filter_sync(ipacl_filter_sync *src, ipacl_filter_sync *dst);
/** @} */
/** @{ */
/** Converts an ipacl_prof_sync_op between host and network byte order. */
IPACL_API void ipacl_hton_prof_sync_op(ipacl_prof_sync_op *src, ipacl_prof_sync_op *dst);
IPACL_API void ipacl_ntoh_prof_sync_op(ipacl_prof_sync_op *src, ipacl_prof_sync_op *dst);
/** @} */
/** @{ */
/** Converts an ipacl_if_prof_sync_op between host and network byte order. */
IPACL_API void ipacl_hton_if_prof_sync_op(ipacl_if_prof_sync_op *src, ipacl_if_prof_sync_op *dst);
IPACL_API void ipacl_ntoh_if_prof_sync_op(ipacl_if_prof_sync_op *src, ipacl_if_prof_sync_op *dst);
/** @} */
/** @{ */
/** Converts an ipacl_filter_sync_op between host and network byte order. */
IPACL_API void ipacl_hton_filter_sync_op(ipacl_filter_sync_op *src, ipacl_filter_sync_op *dst);
IPACL_API void ipacl_ntoh_filter_sync_op(ipacl_filter_sync_op *src, ipacl_filter_sync_op *dst);
/** @} */

/* ---- Usage, internal-state and test messages; the quen envelope header ---- */
/** @{ */
/** Converts an ipacl_use_req between host and network byte order. */
IPACL_API void ipacl_hton_use_req(ipacl_use_req *src, ipacl_use_req *dst);
IPACL_API void ipacl_ntoh_use_req(ipacl_use_req *src, ipacl_use_req *dst);
/** @} */
/** @{ */
/** Converts an ipacl_use_rsp between host and network byte order. */
IPACL_API void ipacl_hton_use_rsp(ipacl_use_rsp *src, ipacl_use_rsp *dst);
IPACL_API void ipacl_ntoh_use_rsp(ipacl_use_rsp *src, ipacl_use_rsp *dst);
/** @} */
/** @{ */
/** Converts an ipacl_in_req between host and network byte order. */
IPACL_API void ipacl_hton_in_req(ipacl_in_req *src, ipacl_in_req *dst);
IPACL_API void ipacl_ntoh_in_req(ipacl_in_req *src, ipacl_in_req *dst);
/** @} */
/** @{ */
/** Converts an ipacl_in_rsp between host and network byte order. */
IPACL_API void ipacl_hton_in_rsp(ipacl_in_rsp *src, ipacl_in_rsp *dst);
IPACL_API void ipacl_ntoh_in_rsp(ipacl_in_rsp *src, ipacl_in_rsp *dst);
/** @} */
/** @{ */
/** Converts an ipacl_test_req between host and network byte order.
 * The first word of the test messages is never touched. */
IPACL_API void ipacl_hton_test_req(ipacl_test_req *src, ipacl_test_req *dst);
IPACL_API void ipacl_ntoh_test_req(ipacl_test_req *src, ipacl_test_req *dst);
/** @} */
/** @{ */
/** Converts an ipacl_test_rsp between host and network byte order.
 * The first word is never touched. */
IPACL_API void ipacl_hton_test_rsp(ipacl_test_rsp *src, ipacl_test_rsp *dst);
IPACL_API void ipacl_ntoh_test_rsp(ipacl_test_rsp *src, ipacl_test_rsp *dst);
/** @} */
/** @{ */
/** Converts an ipacl_quen between host and network byte order. */
IPACL_API void ipacl_hton_quen(ipacl_quen *src, ipacl_quen *dst);
IPACL_API void ipacl_ntoh_quen(ipacl_quen *src, ipacl_quen *dst);
/** @} */

/* ---- iptables records ---- */
/** @{ */
/** Converts an ipacl_ipt_entry between host and network byte order. */
IPACL_API void ipacl_hton_ipt_entry(ipacl_ipt_entry *src, ipacl_ipt_entry *dst);
IPACL_API void ipacl_ntoh_ipt_entry(ipacl_ipt_entry *src, ipacl_ipt_entry *dst);
/** @} */
/** @{ */
/** Converts an ipacl_ipt_chain between host and network byte order. */
IPACL_API void ipacl_hton_ipt_chain(ipacl_ipt_chain *src, ipacl_ipt_chain *dst);
IPACL_API void ipacl_ntoh_ipt_chain(ipacl_ipt_chain *src, ipacl_ipt_chain *dst);
/** @} */
/** @{ */
/** Converts an ipacl_rule_info between host and network byte order. */
IPACL_API void ipacl_hton_rule_info(ipacl_rule_info *src, ipacl_rule_info *dst);
IPACL_API void ipacl_ntoh_rule_info(ipacl_rule_info *src, ipacl_rule_info *dst);
/** @} */
/** @{ */
/** Converts an ipacl_ipt_rule between host and network byte order.
 * match_count (offset 178) is trusted, even beyond the three slots. */
IPACL_API void ipacl_hton_ipt_rule(ipacl_ipt_rule *src, ipacl_ipt_rule *dst);
IPACL_API void ipacl_ntoh_ipt_rule(ipacl_ipt_rule *src, ipacl_ipt_rule *dst);
/** @} */
/** @{ */
/** Converts an ipacl_match between host and network byte order.
 * The type word selects the info: 1 tcp, 2 udp, 3 icmp, 9 tos, 10 log;
 * other types leave the info alone. */
IPACL_API void ipacl_hton_match(ipacl_match *src, ipacl_match *dst);
IPACL_API void ipacl_ntoh_match(ipacl_match *src, ipacl_match *dst);
/** @} */
/** @{ */
/** Converts an ipacl_ipt_tcp between host and network byte order. */
IPACL_API void ipacl_hton_ipt_tcp(ipacl_ipt_tcp *src, ipacl_ipt_tcp *dst);
IPACL_API void ipacl_ntoh_ipt_tcp(ipacl_ipt_tcp *src, ipacl_ipt_tcp *dst);
/** @} */
/** @{ */
/** Converts an ipacl_ipt_udp between host and network byte order. */
IPACL_API void ipacl_hton_ipt_udp(ipacl_ipt_udp *src, ipacl_ipt_udp *dst);
IPACL_API void ipacl_ntoh_ipt_udp(ipacl_ipt_udp *src, ipacl_ipt_udp *dst);
/** @} */
/** @{ */
/** Converts an ipacl_ipt_icmp between host and network byte order. */
IPACL_API void ipacl_hton_ipt_icmp(ipacl_ipt_icmp *src, ipacl_ipt_icmp *dst);
IPACL_API void ipacl_ntoh_ipt_icmp(ipacl_ipt_icmp *src, ipacl_ipt_icmp *dst);
/** @} */
/** @{ */
/** Converts an ipacl_ipt_tos between host and network byte order. */
IPACL_API void ipacl_hton_ipt_tos(ipacl_ipt_tos *src, ipacl_ipt_tos *dst);
IPACL_API void ipacl_ntoh_ipt_tos(ipacl_ipt_tos *src, ipacl_ipt_tos *dst);
/** @} */
/** @{ */
/** Converts an ipacl_ipt_log between host and network byte order. */
IPACL_API void ipacl_hton_ipt_log(ipacl_ipt_log *src, ipacl_ipt_log *dst);
IPACL_API void ipacl_ntoh_ipt_log(ipacl_ipt_log *src, ipacl_ipt_log *dst);
/** @} */
/** @{ */
/** Converts an ipacl_ipt_req between host and network byte order. */
IPACL_API void ipacl_hton_ipt_req(ipacl_ipt_req *src, ipacl_ipt_req *dst);
IPACL_API void ipacl_ntoh_ipt_req(ipacl_ipt_req *src, ipacl_ipt_req *dst);
/** @} */
/** @{ */
/** Converts an ipacl_ipt_rsp between host and network byte order.
 * Flags & 3: chain rows; else & 32: rules; else & 16: rule summaries;
 * else no element is converted. */
IPACL_API void ipacl_hton_ipt_rsp(ipacl_ipt_rsp *src, ipacl_ipt_rsp *dst);
IPACL_API void ipacl_ntoh_ipt_rsp(ipacl_ipt_rsp *src, ipacl_ipt_rsp *dst);
/** @} */

/* ---- Notices: network to host only ---- */
/** Converts an ipacl_port_if_created_info from network to host byte order. */
IPACL_API void ipacl_ntoh_port_if_created_info(ipacl_port_if_created_info *src,
                                               ipacl_port_if_created_info *dst);
/** Converts an ipacl_vni_if_chg from network to host byte order. */
IPACL_API void ipacl_ntoh_vni_if_chg(ipacl_vni_if_chg *src, ipacl_vni_if_chg *dst);
/** Converts an ipacl_avm_if_chg from network to host byte order. */
IPACL_API void ipacl_ntoh_avm_if_chg(ipacl_avm_if_chg *src, ipacl_avm_if_chg *dst);

/* ---- Sizes ---- */

/** Element size of an ipacl_access_rsp by access type (1..11), else 0. */
IPACL_API uint32_t ipacl_sizeof_access(uint32_t type);
/** Element size of an ipacl_in_rsp: 1 gives 24, 2 gives 12, else 0. */
IPACL_API uint32_t ipacl_sizeof_in(uint32_t type);
/** Element size of an ipacl_ipt_rsp by the exact operation value: 1 or 2
 * give 74, 16 gives 146, 32 gives 290, anything else (3 included) 0. */
IPACL_API uint32_t ipacl_sizeof_ipt(uint32_t op);
/** Size of a match info: 1 gives 12, 2 gives 10, 3 gives 4, 9 gives 2,
 * 13 gives 32, anything else (10 included) 0. */
IPACL_API uint32_t ipacl_sizeof_ipt_match(uint32_t type);
/** @{ */
/** Key and value sizes of a stored (kest) record by kest type, else 0. */
IPACL_API uint32_t ipacl_sizeof_kest_key(uint32_t type);
IPACL_API uint32_t ipacl_sizeof_kest_val(uint32_t type);
/** @} */
/** Checks the size of a stored value: at least 100 for type 1, 196 for
 * type 2, 104 for type 3.  Clears err first; on failure writes
 * "bad type %u" or "type %s bad size %u" and returns IPACL_E_BAD_ARG. */
IPACL_API uint32_t ipacl_sizeof_kest_chk(uint32_t type, uint32_t size, char *err);

IPACL_END_DECLS

#endif
