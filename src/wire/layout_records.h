// Keys, profiles, bindings, filters, the manager's table rows, usage and
// notice records: fixed layouts, one table each.
#pragma once

#include "wire/layout.h"

namespace ipacl::wire {

// The filter's addresses: family and prefix length around 16 address bytes
// that are already in network order.
IPACL_WIRE_PLAIN(inet_addr, s32(0), copy(4, 16), s32(20));

// ---- keys ----
IPACL_WIRE_PLAIN(prof_key, str(0, 68));
IPACL_WIRE_PLAIN(if_prof_key, s32(0, 2));
IPACL_WIRE_PLAIN(filter_key, str(0, 68), s32(68));
IPACL_WIRE_PLAIN(list_key, rec<Rec::prof_key>(0), s32(68, 2));
IPACL_WIRE_PLAIN(data_key, rec<Rec::filter_key>(0), s32(72, 2));
IPACL_WIRE_PLAIN(group_key, rec<Rec::if_prof_key>(0), s32(8, 2));

// ---- profiles, bindings, filters ----
IPACL_WIRE_PLAIN(prof, str(0, 68), s32(68, 3));
// Network to host only: host to network converts the profile the other way
// round (see prof_info.h).
IPACL_WIRE_PLAIN(prof_info, s32(0), rec<Rec::prof>(4));
// The local flag never crosses: both directions clear it in the destination.
IPACL_WIRE_PLAIN(if_prof, s32(0, 2), str(8, 68), s32(76), zero(80, 1), none(81, 3));
// The 23 words from filter_index to dst_port_op, the two counters, the two
// addresses; the 14-byte tail is the sender's own.
IPACL_WIRE_PLAIN(filter, str(0, 68), s32(68, 23), s64(160, 2), rec<Rec::inet_addr>(176),
                 rec<Rec::inet_addr>(200), none(224, 14));

// ---- the manager's table rows; pointer words travel as they are ----
IPACL_WIRE_PLAIN(data, rec<Rec::filter>(0), s32(238), str(242, 32), s32(274), copy(278, 12));
// The address bytes of a summary line are left alone by both directions.
IPACL_WIRE_PLAIN(data_info, str(0, 68), s32(68, 4), none(84, 16), s32(100, 2), none(108, 16),
                 s32(124, 2), s64(132), s32(140, 2));
IPACL_WIRE_PLAIN(group, rec<Rec::if_prof>(0), s32(84), str(88, 32), s32(120), str(124, 16),
                 copy(140, 20));
IPACL_WIRE_PLAIN(group_info, rec<Rec::if_prof>(0), s32(84, 2));
IPACL_WIRE_PLAIN(intf, s32(0, 3), str(12, 16), s32(28), copy(32, 8));
IPACL_WIRE_PLAIN(intf_info, s32(0), str(4, 16), s32(20, 3));
IPACL_WIRE_PLAIN(list, rec<Rec::prof>(0), s32(80, 2), str(88, 32), s32(120, 2), copy(128, 32),
                 s32(160, IPACL_LIST_SLOTS), s32(1184), copy(1188, 16));
// The IPv6 reference count stays with the side that owns it.
IPACL_WIRE_PLAIN(mgmt, s32(0, 4), copy(16, 12), none(28, 4));

// ---- usage and state ----
IPACL_WIRE_PLAIN(list_use, str(0, 68), s32(68, 4));
IPACL_WIRE_PLAIN(mem_use, s32(0, 3));
IPACL_WIRE_PLAIN(ha, s32(0, 6));

// ---- notices (received only) ----
IPACL_WIRE_PLAIN(port_if_created_info, s32(0), copy(4, 1), s32(5));
IPACL_WIRE_PLAIN(vni_if_chg, s32(0, 2), str(8, 0));
IPACL_WIRE_PLAIN(avm_if_chg, s32(0, 2), str(8, 0));

}  // namespace ipacl::wire
