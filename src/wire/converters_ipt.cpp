// The exported converters of the iptables records and query messages.
#include <ipacl/wire.h>

#include "wire/convert.h"

IPACL_WIRE_PAIR(ipt_entry)
IPACL_WIRE_PAIR(ipt_chain)
IPACL_WIRE_PAIR(rule_info)
IPACL_WIRE_PAIR(ipt_rule)
IPACL_WIRE_PAIR(match)
IPACL_WIRE_PAIR(ipt_tcp)
IPACL_WIRE_PAIR(ipt_udp)
IPACL_WIRE_PAIR(ipt_icmp)
IPACL_WIRE_PAIR(ipt_tos)
IPACL_WIRE_PAIR(ipt_log)
IPACL_WIRE_PAIR(ipt_req)
IPACL_WIRE_PAIR(ipt_rsp)
