// Entries of the live table as the library's records: the IPv4 entry
// header, the target's name and the match slots (tcp, udp, icmp or icmp6,
// tos, and the LOG target's parameters), and whole IPv6 rules.
#pragma once

#include "table_image.h"

#include <ipacl/netfilter.h>
#include <ipacl/records.h>

#include <cstdint>

namespace ipacl_nf {

// The name a rule's target shows: a verdict's name, the chain jumped to,
// or the target's own name.
void read_target_name(const table_image &image, uint32_t index, char *name);

// Fills up to IPACL_RULE_MATCHES slots in kernel order; returns the count.
uint32_t read_matches(const table_image &image, uint32_t index, ipacl_match *slots);

void read_ipv4_entry(const table_image &image, uint32_t index, ipacl_ipt_entry &out);
void read_ipv4_rule(const table_image &image, uint32_t index, ipacl_ipt_rule &out);
void read_ipv6_rule(const table_image &image, uint32_t index, ipacl_nf_rule6 &out);

}  // namespace ipacl_nf
