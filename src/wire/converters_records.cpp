// The exported converters of keys, profiles, bindings, filters, the
// manager's table rows, usage and notice records.
#include <ipacl/wire.h>

#include "wire/convert.h"

IPACL_WIRE_PAIR(prof_key)
IPACL_WIRE_PAIR(if_prof_key)
IPACL_WIRE_PAIR(filter_key)
IPACL_WIRE_PAIR(list_key)
IPACL_WIRE_PAIR(data_key)
IPACL_WIRE_PAIR(group_key)

IPACL_WIRE_PAIR(prof)
IPACL_WIRE_PAIR(prof_info)
IPACL_WIRE_PAIR(if_prof)
IPACL_WIRE_PAIR(filter)

IPACL_WIRE_PAIR(data)
IPACL_WIRE_PAIR(data_info)
IPACL_WIRE_PAIR(group)
IPACL_WIRE_PAIR(group_info)
IPACL_WIRE_PAIR(intf)
IPACL_WIRE_PAIR(intf_info)
IPACL_WIRE_PAIR(list)
IPACL_WIRE_PAIR(mgmt)

IPACL_WIRE_PAIR(list_use)
IPACL_WIRE_PAIR(mem_use)
IPACL_WIRE_PAIR(ha)

// Notices only ever arrive.
IPACL_WIRE_NTOH(port_if_created_info)
IPACL_WIRE_NTOH(vni_if_chg)
IPACL_WIRE_NTOH(avm_if_chg)
