// Block displays of a protocol profile, a binding and a filter.
#include <ipacl/enums.h>
#include <ipacl/show.h>

#include "show/block.h"

namespace {

using namespace ipacl::show;

constexpr Row kProf[] = {
    kSeparator,
    field("Protocol Profile", offsetof(ipacl_prof, name), profile_name),
    field("Profile Type", offsetof(ipacl_prof, prof_type), named<ipacl_str_prof_type>),
    field("Last Filter Index", offsetof(ipacl_prof, last_filter_index), number<uint32_t>),
    field("SNMP Status", offsetof(ipacl_prof, snmp_status), named<ipacl_str_snmp_status>),
    kSeparator,
};

constexpr Row kIfProf[] = {
    kSeparator,
    field("Interface", offsetof(ipacl_if_prof, if_index), if_index_and_hex),
    field("Direction", offsetof(ipacl_if_prof, direction), named<ipacl_str_dir>),
    field("Protocol Profile", offsetof(ipacl_if_prof, prof_name), profile_name),
    field("SNMP Status", offsetof(ipacl_if_prof, snmp_status), named<ipacl_str_snmp_status>),
    kSeparator,
};

// The port operations and the counters stand after the first closing
// separator, below the fields of the filter proper.
constexpr Row kFilter[] = {
    kSeparator,
    field("Protocol Profile", offsetof(ipacl_filter, prof_name), profile_name),
    field("Filter Index", offsetof(ipacl_filter, filter_index), number<uint32_t>),
    field("Order Position (N/A)", offsetof(ipacl_filter, order_position), number<uint32_t>),
    field("Action", offsetof(ipacl_filter, action), named<ipacl_str_action>),
    field("Address Type", offsetof(ipacl_filter, addr_type), named<ipacl_str_addr_type>),
    field("Protocol", offsetof(ipacl_filter, protocol), named<ipacl_str_proto>),
    field("Source Address", offsetof(ipacl_filter, src_addr), prefix<IPACL_STR_SIZE>),
    field("Destination Address", offsetof(ipacl_filter, dst_addr), prefix<IPACL_STR_SIZE>),
    field("Source Port Low", offsetof(ipacl_filter, src_port_low), named<ipacl_str_port_num>),
    field("Source Port High", offsetof(ipacl_filter, src_port_high), named<ipacl_str_port_num>),
    field("Destination Port Low", offsetof(ipacl_filter, dst_port_low), named<ipacl_str_port_num>),
    field("Destination Port High", offsetof(ipacl_filter, dst_port_high),
          named<ipacl_str_port_num>),
    field("ICMP Type", offsetof(ipacl_filter, icmp_type), named<ipacl_str_icmp_type>),
    field("ICMP Code", offsetof(ipacl_filter, icmp_code), named<ipacl_str_icmp_code>),
    field("Precedence", offsetof(ipacl_filter, precedence), named<ipacl_str_prec>),
    field("TOS", offsetof(ipacl_filter, tos), named<ipacl_str_tos>),
    field("Established", offsetof(ipacl_filter, established), true_or_false),
    field("Log Deny", offsetof(ipacl_filter, log_deny), true_or_false),
    field("Fragments", offsetof(ipacl_filter, fragments), true_or_false),
    field("SNMP Status", offsetof(ipacl_filter, snmp_status), named<ipacl_str_snmp_status>),
    kSeparator,
    field("Source Port Operation", offsetof(ipacl_filter, src_port_op), named<ipacl_str_port_op>),
    field("Dest Port Operation", offsetof(ipacl_filter, dst_port_op), named<ipacl_str_port_op>),
    field("Number Packets", offsetof(ipacl_filter, packets), number<uint64_t>),
    field("Number Bytes", offsetof(ipacl_filter, bytes), number<uint64_t>),
    kSeparator,
};

}  // namespace

extern "C" {

void ipacl_show_prof(const ipacl_prof *prof) {
    if (prof != nullptr) print_block(prof, kProf);
}

void ipacl_show_if_prof(const ipacl_if_prof *if_prof) {
    if (if_prof != nullptr) print_block(if_prof, kIfProf);
}

void ipacl_show_filter(const ipacl_filter *filter) {
    if (filter != nullptr) print_block(filter, kFilter);
}

}  // extern "C"
