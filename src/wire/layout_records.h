// Keys, profiles, bindings, filters, the manager's table rows, usage and
// notice records: fixed layouts, one table each.
#pragma once

#include "wire/layout.h"

namespace ipacl::wire {

// Members of the record each table describes; named so only while the
// tables are written.
#define at(member) IPACL_WIRE_AT(member)
#define through(first, last) IPACL_WIRE_THROUGH(first, last)

// The filter's addresses: family and prefix length around 16 address bytes
// that are already in network order.
IPACL_WIRE_PLAIN(inet_addr, s32(at(family)), copy(at(addr)), s32(at(prefix_len)));

// ---- keys ----
IPACL_WIRE_PLAIN(prof_key, str(at(name)));
IPACL_WIRE_PLAIN(if_prof_key, s32(at(if_index), 2));
IPACL_WIRE_PLAIN(filter_key, str(at(prof_name)), s32(at(filter_index)));
IPACL_WIRE_PLAIN(list_key, rec<Rec::prof_key>(at(name)), s32(at(creation_time), 2));
IPACL_WIRE_PLAIN(data_key, rec<Rec::filter_key>(at(filter_key)), s32(at(creation_time), 2));
IPACL_WIRE_PLAIN(group_key, rec<Rec::if_prof_key>(at(if_index)), s32(at(creation_time), 2));

// ---- profiles, bindings, filters ----
IPACL_WIRE_PLAIN(prof, str(at(name)), s32(at(prof_type), 3));
// Network to host only: host to network converts the profile the other way
// round (see prof_info.h).
IPACL_WIRE_PLAIN(prof_info, s32(at(info)), rec<Rec::prof>(at(prof)));
// The local flag never crosses: both directions clear it in the destination.
IPACL_WIRE_PLAIN(if_prof, s32(at(if_index), 2), str(at(prof_name)), s32(at(snmp_status)),
                 zero(at(local_flag)), none(at(spare)));
// The 23 words from filter_index to dst_port_op, the two counters, the two
// addresses; the tail is the sender's own.
IPACL_WIRE_PLAIN(filter, str(at(prof_name)), s32(at(filter_index), 23), s64(at(packets), 2),
                 rec<Rec::inet_addr>(at(src_addr)), rec<Rec::inet_addr>(at(dst_addr)),
                 none(at(tail)));

// ---- the manager's table rows; pointer words travel as they are ----
IPACL_WIRE_PLAIN(data, rec<Rec::filter>(at(filter)), s32(at(creation_time)), str(at(chain)),
                 s32(at(rule_id)), copy(through(access_list, next_data)));
// The address bytes of a summary line are left alone by both directions.
IPACL_WIRE_PLAIN(data_info, str(at(prof_name)), s32(at(filter_index), 4), none(at(src_addr)),
                 s32(at(src_prefix_len), 2), none(at(dst_addr)), s32(at(dst_prefix_len), 2),
                 s64(at(packets)), s32(at(info_word_2), 2));
IPACL_WIRE_PLAIN(group, rec<Rec::if_prof>(at(binding)), s32(at(creation_time)), str(at(chain)),
                 s32(at(rule_id)), str(at(kernel_if)),
                 copy(through(access_list, next_global_group)));
IPACL_WIRE_PLAIN(group_info, rec<Rec::if_prof>(at(binding)), s32(at(creation_time), 2));
IPACL_WIRE_PLAIN(intf, s32(at(if_index), 3), str(at(kernel_if)), s32(at(marker)),
                 copy(through(this_intf, next_intf)));
IPACL_WIRE_PLAIN(intf_info, s32(at(if_index)), str(at(kernel_if)), s32(at(marker), 3));
IPACL_WIRE_PLAIN(list, rec<Rec::prof>(at(prof)), s32(at(creation_time), 2), str(at(chain)),
                 s32(at(data_count), 2), copy(at(filter_bitmap)),
                 s32(at(filter_index_by_entry), IPACL_LIST_SLOTS), s32(at(max_filter_index)),
                 copy(through(access_data, next_list)));
// The IPv6 reference count stays with the side that owns it.
IPACL_WIRE_PLAIN(mgmt, s32(at(creation_time), 4), copy(through(access_list, access_group)),
                 none(at(ipv6_refs)));

// ---- usage and state ----
IPACL_WIRE_PLAIN(list_use, str(at(name)), s32(at(filter_count), 4));
IPACL_WIRE_PLAIN(mem_use, s32(at(mem_type), 3));
IPACL_WIRE_PLAIN(ha, s32(at(sup_state), 6));

// ---- notices (received only) ----
IPACL_WIRE_PLAIN(port_if_created_info, s32(at(word0)), copy(at(byte4)), s32(at(word5)));
IPACL_WIRE_PLAIN(vni_if_chg, s32(at(word0), 2), str(at(text)));
IPACL_WIRE_PLAIN(avm_if_chg, s32(at(word0), 2), str(at(text)));

#undef at
#undef through

}  // namespace ipacl::wire
