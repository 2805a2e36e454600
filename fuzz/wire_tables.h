// The converter pairs of each wire fuzz target, in selector order.  The
// targets expand these lists into their tables and make_seeds into its
// seeds, so a seed's selector byte always names the record it holds.
#pragma once

// One entry a line; clang-format would fold the lists into staircases.
// clang-format off

// PAIR(stem): both converters; NTOH(stem): network-to-host only.
#define WIRE_RECORD_PAIRS(PAIR, NTOH) \
    PAIR(prof_key)                    \
    PAIR(if_prof_key)                 \
    PAIR(filter_key)                  \
    PAIR(list_key)                    \
    PAIR(data_key)                    \
    PAIR(group_key)                   \
    PAIR(prof)                        \
    PAIR(prof_info)                   \
    PAIR(if_prof)                     \
    PAIR(filter)                      \
    PAIR(data)                        \
    PAIR(data_info)                   \
    PAIR(group)                       \
    PAIR(group_info)                  \
    PAIR(intf)                        \
    PAIR(intf_info)                   \
    PAIR(list)                        \
    PAIR(mgmt)                        \
    PAIR(list_use)                    \
    PAIR(mem_use)                     \
    PAIR(ha)                          \
    NTOH(port_if_created_info)        \
    NTOH(vni_if_chg)                  \
    NTOH(avm_if_chg)

#define WIRE_MESSAGE_PAIRS(PAIR, NTOH) \
    PAIR(access_req)                   \
    PAIR(access_rsp)                   \
    PAIR(prof_req)                     \
    PAIR(if_prof_req)                  \
    PAIR(filter_req)                   \
    PAIR(prof_rsp)                     \
    PAIR(if_prof_rsp)                  \
    PAIR(filter_rsp)                   \
    PAIR(prof_cfg)                     \
    PAIR(if_prof_cfg)                  \
    PAIR(filter_cfg)                   \
    PAIR(cfm)                          \
    PAIR(prof_cfm)                     \
    PAIR(if_prof_cfm)                  \
    PAIR(filter_cfm)                   \
    PAIR(prof_sync)                    \
    PAIR(if_prof_sync)                 \
    PAIR(filter_sync)                  \
    PAIR(prof_sync_op)                 \
    PAIR(if_prof_sync_op)              \
    PAIR(filter_sync_op)               \
    PAIR(use_req)                      \
    PAIR(use_rsp)                      \
    PAIR(in_req)                       \
    PAIR(in_rsp)                       \
    PAIR(test_req)                     \
    PAIR(test_rsp)                     \
    PAIR(quen)

#define WIRE_IPT_PAIRS(PAIR, NTOH) \
    PAIR(ipt_entry)                \
    PAIR(ipt_chain)                \
    PAIR(rule_info)                \
    PAIR(ipt_rule)                 \
    PAIR(match)                    \
    PAIR(ipt_tcp)                  \
    PAIR(ipt_udp)                  \
    PAIR(ipt_icmp)                 \
    PAIR(ipt_tos)                  \
    PAIR(ipt_log)                  \
    PAIR(ipt_req)                  \
    PAIR(ipt_rsp)

// clang-format on
