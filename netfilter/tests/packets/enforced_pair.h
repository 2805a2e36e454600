// A netns_pair whose manager enforces filters on its management interface
// through libipacl_netfilter, with the packet counters of the rules read
// back through the library's query.
#pragma once

#include "netns_pair.h"

#include <ipacl/records.h>

#include <cstdint>
#include <initializer_list>
#include <memory>
#include <string>
#include <vector>

namespace ipacl_testbed {

class enforced_pair {
  public:
    // The pair with x_tables reachable in the manager's namespace; on
    // failure nothing, `why` the reason, and `refused` true when the machine
    // or kernel refused (namespaces, or x_tables from this program).
    static std::unique_ptr<enforced_pair> create(std::string &why, bool &refused);

    const netns_pair &pair() const { return *pair_; }
    const netns_side &manager() const { return pair_->manager(); }
    const netns_side &peer() const { return pair_->peer(); }

    // Filters in the language of `ipacl check` become the ACL of `dir` on
    // the manager's interface, all of the family of the first; "" on
    // success, else the parser's or the library's message.
    std::string enforce(std::initializer_list<const char *> filters, uint32_t dir);

    // The packet counters of the ACL chain of `dir`, rule by rule (the
    // implicit deny last), read from the live IPv4 or IPv6 table; the
    // last entry of the IPv4 list is the chain's own counter (packets that
    // returned from its end).
    std::vector<uint64_t> counters4(uint32_t dir) const;
    std::vector<uint64_t> counters6(uint32_t dir) const;

  private:
    std::unique_ptr<netns_pair> pair_;
};

}  // namespace ipacl_testbed
