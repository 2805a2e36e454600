#include "table_image.h"

#include "entry_format.h"
#include "nf_error.h"

#include <ipacl/netfilter.h>

#include <linux/netfilter.h>

#include <cstddef>
#include <cstdio>
#include <cstring>

namespace ipacl_nf {
namespace {

constexpr uint32_t kEntriesAt = offsetof(ipt_get_entries, entrytable);
// A table that changes between its size and its entries is read again.
constexpr int kReadAttempts = 3;

uint32_t broken(char *err, const char *what) {
    return fail(err, IPACL_NF_E_KERNEL, "read table: kernel gave a table with %s", what);
}

}  // namespace

uint32_t table_image::read(xt_socket &socket, char *err) {
    layout_ = &socket.layout();
    uint32_t rc = 0;
    for (int attempt = 0; attempt < kReadAttempts; ++attempt) {
        info_ = ipt_getinfo{};
        std::snprintf(info_.name, sizeof info_.name, "filter");
        if ((rc = socket.get_info(&info_, sizeof info_, err))) return rc;
        request_.clear();
        if (!request_.append(kEntriesAt + info_.size))
            return fail(err, IPACL_E_NO_MEM, "no mem for %u bytes of table", info_.size);
        auto *request = reinterpret_cast<ipt_get_entries *>(request_.data());
        std::memcpy(request->name, info_.name, sizeof request->name);
        request->size = info_.size;
        rc = socket.get_entries(request_.data(), request_.size(), err);
        if (rc == 0) break;
    }
    if (rc) return rc;
    if ((rc = cut_entries(err))) return rc;
    return cut_chains(err);
}

const uint8_t *table_image::entry(uint32_t index) const {
    return request_.data() + kEntriesAt + offsets_[index];
}

uint32_t table_image::entry_size(uint32_t index) const {
    return next_offset(*layout_, entry(index));
}

xt_counters table_image::counters(uint32_t index) const {
    return read_counters(*layout_, entry(index));
}

uint32_t table_image::cut_entries(char *err) {
    offsets_.clear();
    for (uint32_t at = 0; at < info_.size;) {
        const uint8_t *e = request_.data() + kEntriesAt + at;
        uint32_t size = next_offset(*layout_, e);
        if (size < layout_->entry_size || at + size > info_.size ||
            target_offset(*layout_, e) + sizeof(xt_entry_target) > size)
            return broken(err, "an entry out of bounds");
        if (!offsets_.push(at)) return fail(err, IPACL_E_NO_MEM, "no mem for the entry list");
        at += size;
    }
    if (offsets_.size() != info_.num_entries) return broken(err, "a wrong entry count");
    return 0;
}

int32_t table_image::hook_starting_at(uint32_t offset) const {
    for (int32_t hook = 0; hook < NF_INET_NUMHOOKS; ++hook)
        if ((info_.valid_hooks & (1u << hook)) && info_.hook_entry[hook] == offset) return hook;
    return -1;
}

uint32_t table_image::cut_chains(char *err) {
    chains_.clear();
    uint32_t open_user = kNoIndex;  // a user chain ends where the next one starts
    for (uint32_t i = 0; i < offsets_.size(); ++i) {
        int32_t hook = hook_starting_at(offsets_[i]);
        const char *error = error_name(*layout_, entry(i));
        if (hook < 0 && !error) continue;
        if (open_user != kNoIndex) chains_[open_user].end = i - 1;
        open_user = kNoIndex;
        chain_view chain{};
        if (hook >= 0) {
            chain.hook = hook;
            chain.header = kNoIndex;
            chain.first = i;
            chain.end = entry_at_offset(info_.underflow[hook]);
            std::snprintf(chain.name, sizeof chain.name, "%s",
                          hook == NF_INET_LOCAL_IN      ? "INPUT"
                          : hook == NF_INET_FORWARD     ? "FORWARD"
                          : hook == NF_INET_LOCAL_OUT   ? "OUTPUT"
                          : hook == NF_INET_PRE_ROUTING ? "PREROUTING"
                                                        : "POSTROUTING");
        } else {
            if (i + 1 == offsets_.size()) break;  // the table's closing entry
            chain.hook = -1;
            chain.header = i;
            chain.first = i + 1;
            chain.end = kNoIndex;
            std::snprintf(chain.name, sizeof chain.name, "%s", error);
        }
        if (!chains_.push(chain)) return fail(err, IPACL_E_NO_MEM, "no mem for the chain list");
        if (hook < 0) open_user = chains_.size() - 1;
    }
    for (uint32_t c = 0; c < chains_.size(); ++c)
        if (chains_[c].end == kNoIndex || chains_[c].end < chains_[c].first)
            return broken(err, "a chain without an end");
    return 0;
}

uint32_t table_image::chain_named(const char *name) const {
    for (uint32_t c = 0; c < chains_.size(); ++c)
        if (std::strncmp(chains_[c].name, name, sizeof chains_[c].name) == 0) return c;
    return kNoIndex;
}

uint32_t table_image::chain_of_entry(uint32_t index) const {
    for (uint32_t c = 0; c < chains_.size(); ++c) {
        uint32_t start = chains_[c].header != kNoIndex ? chains_[c].header : chains_[c].first;
        if (index >= start && index <= chains_[c].end) return c;
    }
    return kNoIndex;
}

uint32_t table_image::entry_at_offset(uint32_t offset) const {
    uint32_t low = 0, high = offsets_.size();
    while (low < high) {
        uint32_t middle = low + (high - low) / 2;
        if (offsets_[middle] < offset)
            low = middle + 1;
        else
            high = middle;
    }
    return low < offsets_.size() && offsets_[low] == offset ? low : kNoIndex;
}

uint32_t table_image::jump_landing(uint32_t index) const {
    int32_t verdict = -1;
    if (!standard_verdict(*layout_, entry(index), &verdict) || verdict < 0) return kNoIndex;
    return entry_at_offset(static_cast<uint32_t>(verdict));
}

uint32_t table_image::jump_target(uint32_t index) const {
    uint32_t landing = jump_landing(index);
    return landing == kNoIndex ? kNoIndex : chain_of_entry(landing);
}

uint32_t table_image::rule_number(uint32_t index) const {
    uint32_t c = chain_of_entry(index);
    if (c == kNoIndex || index < chains_[c].first || index >= chains_[c].end) return 0;
    return index - chains_[c].first + 1;
}

}  // namespace ipacl_nf
