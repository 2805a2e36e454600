// Native x_tables entries of either family, written from a planned rule:
// the ip part, the matches (tcp, udp, icmp or icmp6, tos) and the target.
#pragma once

#include "byte_buffer.h"
#include "kernel_family.h"
#include "rule_plan.h"

#include <cstdint>

namespace ipacl_nf {

enum class target_kind : uint8_t { verdict, jump, log, error };

struct target_desc {
    target_kind kind = target_kind::verdict;
    int32_t verdict = 0;     // verdict: the standard verdict
    const char *name = "";   // jump: the chain; error: the ERROR name
    const char *log_prefix;  // log: the prefix
};

// Appends one entry to `arena` with the tests of `plan` (nullptr: no test)
// and `target`; returns the entry's offset in the arena, or kNoEntry when
// memory runs out.  A jump's verdict is left 0 for the table writer.
constexpr uint32_t kNoEntry = 0xFFFFFFFFu;
uint32_t append_entry(byte_buffer &arena, const family_layout &layout, const rule_plan *plan,
                      const target_desc &target);

// Where a standard target keeps its verdict, from the entry's start.
uint32_t verdict_at(const family_layout &layout, const uint8_t *entry);

}  // namespace ipacl_nf
