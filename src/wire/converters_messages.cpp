// The exported converters of requests, responses, configurations,
// confirmations, sync messages and the quen envelope header.
#include <ipacl/wire.h>

#include "wire/convert.h"

IPACL_WIRE_PAIR(access_req)
IPACL_WIRE_PAIR(access_rsp)
IPACL_WIRE_PAIR(prof_req)
IPACL_WIRE_PAIR(if_prof_req)
IPACL_WIRE_PAIR(filter_req)
IPACL_WIRE_PAIR(prof_rsp)
IPACL_WIRE_PAIR(if_prof_rsp)
IPACL_WIRE_PAIR(filter_rsp)
IPACL_WIRE_PAIR(prof_cfg)
IPACL_WIRE_PAIR(if_prof_cfg)
IPACL_WIRE_PAIR(filter_cfg)
IPACL_WIRE_PAIR(cfm)
IPACL_WIRE_PAIR(prof_cfm)
IPACL_WIRE_PAIR(if_prof_cfm)
IPACL_WIRE_PAIR(filter_cfm)

IPACL_WIRE_PAIR(prof_sync)
IPACL_WIRE_PAIR(if_prof_sync)
IPACL_WIRE_PAIR(filter_sync)
IPACL_WIRE_PAIR(prof_sync_op)
IPACL_WIRE_PAIR(if_prof_sync_op)
IPACL_WIRE_PAIR(filter_sync_op)

IPACL_WIRE_PAIR(use_req)
IPACL_WIRE_PAIR(use_rsp)
IPACL_WIRE_PAIR(in_req)
IPACL_WIRE_PAIR(in_rsp)
IPACL_WIRE_PAIR(test_req)
IPACL_WIRE_PAIR(test_rsp)
IPACL_WIRE_PAIR(quen)
