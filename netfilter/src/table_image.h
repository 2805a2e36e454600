// A copy of a family's filter table as the kernel gave it, cut into
// entries and chains.  Built-in chains start at their hook entry and end
// with their policy; a user chain starts with an ERROR entry that carries
// its name and ends with its RETURN entry; an ERROR entry named "ERROR"
// ends the table.
#pragma once

#include "byte_buffer.h"
#include "kernel_socket.h"

#include <linux/netfilter/x_tables.h>
#include <linux/netfilter_ipv4/ip_tables.h>

#include <cstdint>

namespace ipacl_nf {

constexpr uint32_t kNoIndex = 0xFFFFFFFFu;

struct chain_view {
    char name[XT_TABLE_MAXNAMELEN];
    int32_t hook;     // NF_INET_* for a built-in chain, -1 for a user chain
    uint32_t header;  // index of the ERROR entry of a user chain, else kNoIndex
    uint32_t first;   // index of the first rule (== end when there is none)
    uint32_t end;     // index of the policy or RETURN entry
};

class table_image {
  public:
    // Reads the "filter" table of the socket's family.
    uint32_t read(xt_socket &socket, char *err);

    const family_layout &layout() const { return *layout_; }
    const ipt_getinfo &info() const { return info_; }

    uint32_t entry_count() const { return offsets_.size(); }
    const uint8_t *entry(uint32_t index) const;
    uint32_t entry_size(uint32_t index) const;
    xt_counters counters(uint32_t index) const;

    uint32_t chain_count() const { return chains_.size(); }
    const chain_view &chain(uint32_t index) const { return chains_[index]; }
    // Index of the chain named `name`, kNoIndex when there is none.
    uint32_t chain_named(const char *name) const;
    // Index of the chain that holds entry `index`.
    uint32_t chain_of_entry(uint32_t index) const;
    // Index of the entry a jump's verdict (a byte offset) lands on.
    uint32_t entry_at_offset(uint32_t offset) const;
    // The entry a rule jumps to, kNoIndex when it is no jump.
    uint32_t jump_landing(uint32_t index) const;
    // The chain a rule jumps to, kNoIndex when it is no jump.
    uint32_t jump_target(uint32_t index) const;
    // The entry's place in its chain, 1-based (0 for headers and ends).
    uint32_t rule_number(uint32_t index) const;

  private:
    uint32_t cut_entries(char *err);
    uint32_t cut_chains(char *err);
    int32_t hook_starting_at(uint32_t offset) const;

    const family_layout *layout_ = nullptr;
    ipt_getinfo info_{};
    byte_buffer request_;  // ipt_get_entries header and the entries
    grow_array<uint32_t> offsets_;
    grow_array<chain_view> chains_;
};

}  // namespace ipacl_nf
