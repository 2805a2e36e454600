// What the netfilter tests share: filters from the tool's filter language,
// rules written as short text, and private network namespaces.
#pragma once

#include <ipacl/netfilter.h>

#include <string>

namespace nf_test {

// The filter a line of the filter language gives (IPv4 unless `ipv6`);
// a line that does not parse fails the test.
ipacl_filter filter_of(const std::string &line, bool ipv6 = false, uint32_t index = 1);

// An IPv4 rule as one line: CHAIN [-s A/M] [-d A/M] [-i NAME/N] [-o NAME/N]
// [-p P] [-f] [tcp SL:SH DL:DH flags M/C inv I] [udp SL:SH DL:DH inv I]
// [icmp T C1:C2] [tos V] [log L F 'PREFIX'] -j TARGET (N: mask bytes set).
// (IPv6 rules have the library's own text form.)
std::string describe(const ipacl_ipt_rule &rule);

// Output of a shell command (stdout and stderr), without trailing blanks.
std::string run(const std::string &command);

// Moves the process into a new network namespace with its loopback up;
// "" on success, else why not.
std::string enter_private_netns();

// Empties the exported name buffers, as the program starts.
void clear_names();

}  // namespace nf_test
