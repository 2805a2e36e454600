#include "table_builder.h"

#include "entry_format.h"
#include "entry_writer.h"
#include "nf_error.h"

#include <ipacl/netfilter.h>

#include <cstddef>
#include <cstring>

namespace ipacl_nf {
namespace {

constexpr uint32_t kEntriesAt = offsetof(ipt_replace, entries);

}  // namespace

table_builder::table_builder(const table_image &image, const byte_buffer &arena)
    : image_(image), arena_(arena) {}

bool table_builder::start_chain(const char *name, int32_t hook) {
    return chains_.push({name, hook, pieces_.size(), kNoIndex});
}

void table_builder::end_chain() { chains_[chains_.size() - 1].end = pieces_.size() - 1; }

bool table_builder::add_old(uint32_t index) {
    piece p{index, 0, nullptr, kNoIndex};
    uint32_t chain = image_.jump_target(index);
    if (chain != kNoIndex) {
        uint32_t landing = image_.jump_landing(index);
        if (landing == image_.chain(chain).first)
            p.jump = image_.chain(chain).name;
        else
            p.jump_old = landing;
    }
    return pieces_.push(p);
}

bool table_builder::add_new(uint32_t arena_offset, const char *jump) {
    return pieces_.push({kNoIndex, arena_offset, jump, kNoIndex});
}

const uint8_t *table_builder::bytes(const piece &p) const {
    return p.old_index == kNoIndex ? arena_.data() + p.arena_offset : image_.entry(p.old_index);
}

uint32_t table_builder::size(const piece &p) const {
    return next_offset(image_.layout(), bytes(p));
}

uint32_t table_builder::head_offset(const char *name, const grow_array<uint32_t> &offsets) const {
    for (uint32_t c = 0; c < chains_.size(); ++c)
        if (std::strcmp(chains_[c].name, name) == 0) return offsets[chains_[c].head];
    return kNoIndex;
}

// Writes the verdict of every jump: the new offset of the chain's first
// rule, or of the very entry a jump into a chain's middle landed on.
uint32_t table_builder::resolve_jumps(uint8_t *entries, const grow_array<uint32_t> &offsets,
                                      char *err) const {
    grow_array<uint32_t> piece_of_old;
    if (!piece_of_old.append(image_.entry_count()))
        return fail(err, IPACL_E_NO_MEM, "no mem for the entry map");
    for (uint32_t i = 0; i < image_.entry_count(); ++i) piece_of_old[i] = kNoIndex;
    for (uint32_t p = 0; p < pieces_.size(); ++p)
        if (pieces_[p].old_index != kNoIndex) piece_of_old[pieces_[p].old_index] = p;

    for (uint32_t p = 0; p < pieces_.size(); ++p) {
        const piece &item = pieces_[p];
        uint32_t target = kNoIndex;
        if (item.jump) {
            target = head_offset(item.jump, offsets);
            if (target == kNoIndex)
                return fail(err, IPACL_NF_E_BAD_CHAIN, "target '%s': no such chain", item.jump);
        } else if (item.jump_old != kNoIndex) {
            uint32_t landing = piece_of_old[item.jump_old];
            if (landing == kNoIndex)
                return fail(err, IPACL_NF_E_BAD_CHAIN, "rule %u jumps into a removed chain",
                            image_.rule_number(item.old_index));
            target = offsets[landing];
        } else {
            continue;
        }
        uint8_t *entry = entries + offsets[p];
        int32_t verdict = static_cast<int32_t>(target);
        std::memcpy(entry + verdict_at(image_.layout(), entry), &verdict, sizeof verdict);
    }
    return 0;
}

uint32_t table_builder::compose(byte_buffer &request, grow_array<xt_counters> &old_counters,
                                char *err) {
    grow_array<uint32_t> offsets;
    if (!offsets.append(pieces_.size())) return fail(err, IPACL_E_NO_MEM, "no mem for offsets");
    uint32_t total = 0;
    for (uint32_t p = 0; p < pieces_.size(); ++p) {
        offsets[p] = total;
        total += size(pieces_[p]);
    }
    old_counters.clear();
    request.clear();
    if (!old_counters.append(image_.entry_count()) || !request.append(kEntriesAt + total))
        return fail(err, IPACL_E_NO_MEM, "no mem for %u bytes of table", total);

    uint8_t *entries = request.data() + kEntriesAt;
    for (uint32_t p = 0; p < pieces_.size(); ++p) {
        std::memcpy(entries + offsets[p], bytes(pieces_[p]), size(pieces_[p]));
        // The kernel counts anew; what was counted goes back in afterwards.
        std::memset(entries + offsets[p] + image_.layout().counters_at, 0, sizeof(xt_counters));
        std::memset(entries + offsets[p] + image_.layout().comefrom_at, 0, sizeof(uint32_t));
    }
    if (uint32_t rc = resolve_jumps(entries, offsets, err)) return rc;

    auto *replace = reinterpret_cast<ipt_replace *>(request.data());
    std::memcpy(replace->name, image_.info().name, sizeof replace->name);
    replace->valid_hooks = image_.info().valid_hooks;
    replace->num_entries = pieces_.size();
    replace->size = total;
    replace->num_counters = image_.entry_count();
    replace->counters = old_counters.data();
    for (uint32_t c = 0; c < chains_.size(); ++c) {
        if (chains_[c].hook < 0) continue;
        replace->hook_entry[chains_[c].hook] = offsets[chains_[c].head];
        replace->underflow[chains_[c].hook] = offsets[chains_[c].end];
    }
    return 0;
}

uint32_t table_builder::counters_request(const grow_array<xt_counters> &old_counters,
                                         byte_buffer &request, char *err) const {
    constexpr uint32_t kCountersAt = offsetof(xt_counters_info, counters);
    request.clear();
    if (!request.append(kCountersAt + pieces_.size() * sizeof(xt_counters)))
        return fail(err, IPACL_E_NO_MEM, "no mem for the counters");
    auto *info = reinterpret_cast<xt_counters_info *>(request.data());
    std::memcpy(info->name, image_.info().name, sizeof info->name);
    info->num_counters = pieces_.size();
    auto *counters = reinterpret_cast<xt_counters *>(request.data() + kCountersAt);
    for (uint32_t p = 0; p < pieces_.size(); ++p)
        if (pieces_[p].old_index != kNoIndex) counters[p] = old_counters[pieces_[p].old_index];
    return 0;
}

}  // namespace ipacl_nf
