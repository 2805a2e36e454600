// Reading the fields every native entry has, whatever its family: the
// offsets, the counters, the matches and the target.
#pragma once

#include "kernel_family.h"

#include <linux/netfilter/x_tables.h>

#include <cstdint>
#include <cstring>

namespace ipacl_nf {

inline uint16_t read_u16(const uint8_t *entry, uint32_t at) {
    uint16_t value;
    std::memcpy(&value, entry + at, sizeof value);
    return value;
}

inline uint16_t target_offset(const family_layout &l, const uint8_t *entry) {
    return read_u16(entry, l.target_offset_at);
}
inline uint16_t next_offset(const family_layout &l, const uint8_t *entry) {
    return read_u16(entry, l.next_offset_at);
}

inline xt_counters read_counters(const family_layout &l, const uint8_t *entry) {
    xt_counters counters;
    std::memcpy(&counters, entry + l.counters_at, sizeof counters);
    return counters;
}

inline const xt_entry_target *target_of(const family_layout &l, const uint8_t *entry) {
    return reinterpret_cast<const xt_entry_target *>(entry + target_offset(l, entry));
}

// The verdict of a standard target (name ""): a verdict below 0, or the
// byte offset of a jump.  False for any other target.
inline bool standard_verdict(const family_layout &l, const uint8_t *entry, int32_t *verdict) {
    const xt_entry_target *target = target_of(l, entry);
    if (target->u.user.name[0] != '\0') return false;
    std::memcpy(verdict, target->data, sizeof *verdict);
    return true;
}

// The name an ERROR target carries (a user chain's name, or "ERROR" at the
// table's end); nullptr for any other target.
inline const char *error_name(const family_layout &l, const uint8_t *entry) {
    const xt_entry_target *target = target_of(l, entry);
    if (std::strcmp(target->u.user.name, XT_ERROR_TARGET) != 0) return nullptr;
    return reinterpret_cast<const char *>(target->data);
}

// Calls `visit(const xt_entry_match &)` for each match in kernel order.
template <class Visit>
void for_each_match(const family_layout &l, const uint8_t *entry, Visit visit) {
    uint32_t end = target_offset(l, entry);
    for (uint32_t at = l.entry_size; at + sizeof(xt_entry_match) <= end;) {
        const auto *match = reinterpret_cast<const xt_entry_match *>(entry + at);
        if (match->u.match_size < sizeof(xt_entry_match)) return;
        visit(*match);
        at += match->u.match_size;
    }
}

inline uint32_t match_count(const family_layout &l, const uint8_t *entry) {
    uint32_t count = 0;
    for_each_match(l, entry, [&](const xt_entry_match &) { ++count; });
    return count;
}

}  // namespace ipacl_nf
