// The query operations of ipacl_ipt_rsp answered from the live IPv4 filter
// table: chain rows, rule summaries, whole rules, and the two counter
// clears (counters are cleared by adding their two's complement, which the
// kernel's 64-bit counters wrap to zero).
#include "entry_reader.h"
#include "entry_format.h"
#include "kernel_socket.h"
#include "names.h"
#include "nf_error.h"
#include "table_image.h"

#include <ipacl/enums.h>
#include <ipacl/netfilter.h>

#include <cstddef>
#include <cstdio>
#include <cstring>

namespace ipacl_nf {
namespace {

constexpr uint32_t kHeaderSize = 12;
constexpr uint32_t kChainRows = IPACL_IPT_OP_ALL_CHAINS | IPACL_IPT_OP_MATCHED_CHAIN;

uint32_t record_size(uint32_t op) {
    if (op & kChainRows) return sizeof(ipacl_ipt_chain);
    if (op & IPACL_IPT_OP_MATCHED_RULE) return sizeof(ipacl_ipt_rule);
    if (op & IPACL_IPT_OP_ALL_RULES) return sizeof(ipacl_rule_info);
    return 0;
}

bool is_known(uint32_t op) {
    switch (op) {
        case IPACL_IPT_OP_ALL_CHAINS:
        case IPACL_IPT_OP_MATCHED_CHAIN:
        case IPACL_IPT_OP_ALL_RULES:
        case IPACL_IPT_OP_MATCHED_RULE:
        case IPACL_IPT_OP_CLEAR_CHAIN_COUNTERS:
        case IPACL_IPT_OP_CLEAR_RULE_COUNTERS:
            return true;
        default:
            return false;
    }
}

struct selection {
    const char *chain;  // nullptr: every chain
    uint32_t rule_num;  // 0: every rule
};

bool selects_chain(const chain_view &chain, const selection &s) {
    return !s.chain || std::strcmp(chain.name, s.chain) == 0;
}

// Calls `visit(entry index)` for each selected rule (not the chain ends).
template <class Visit>
void for_each_rule(const table_image &image, const selection &s, Visit visit) {
    for (uint32_t c = 0; c < image.chain_count(); ++c) {
        const chain_view &chain = image.chain(c);
        if (!selects_chain(chain, s)) continue;
        for (uint32_t e = chain.first; e < chain.end; ++e)
            if (s.rule_num == 0 || image.rule_number(e) == s.rule_num) visit(e);
    }
}

uint32_t check_selection(const table_image &image, const selection &s, uint32_t op, char *err) {
    if (!s.chain) return 0;
    uint32_t c = image.chain_named(s.chain);
    if (c == kNoIndex) return fail(err, IPACL_NF_E_BAD_CHAIN, "no chain '%s'", s.chain);
    const chain_view &chain = image.chain(c);
    bool by_rule = op & (IPACL_IPT_OP_ALL_RULES | IPACL_IPT_OP_MATCHED_RULE |
                         IPACL_IPT_OP_CLEAR_RULE_COUNTERS);
    if (by_rule && s.rule_num > chain.end - chain.first)
        return fail(err, IPACL_NF_E_BAD_CHAIN, "no rule %u in chain '%s'", s.rule_num, s.chain);
    return 0;
}

void chain_row(const table_image &image, uint32_t c, ipacl_ipt_chain &row) {
    const chain_view &chain = image.chain(c);
    std::memset(&row, 0, sizeof row);
    row.entry = c + 1;
    std::snprintf(row.chain, sizeof row.chain, "%s", chain.name);
    if (chain.hook >= 0) read_target_name(image, chain.end, row.policy);
    row.packets = image.counters(chain.end).pcnt;
}

// Appends records while they fit; counts them all.
class record_writer {
  public:
    record_writer(ipacl_ipt_rsp *rsp, uint32_t size, uint32_t record)
        : rsp_(rsp), room_((size - kHeaderSize) / (record ? record : 1)), record_(record) {}

    template <class Record>
    void add(const Record &r) {
        if (written_ < room_)
            std::memcpy(rsp_->records + written_++ * static_cast<std::size_t>(record_), &r,
                        sizeof r);
        ++total_;
    }
    uint32_t written() const { return written_; }
    uint32_t total() const { return total_; }

  private:
    ipacl_ipt_rsp *rsp_;
    uint32_t room_;
    uint32_t record_;
    uint32_t written_ = 0;
    uint32_t total_ = 0;
};

void write_records(const table_image &image, uint32_t op, const selection &s, record_writer &out) {
    if (op & kChainRows) {
        for (uint32_t c = 0; c < image.chain_count(); ++c) {
            if (op == IPACL_IPT_OP_MATCHED_CHAIN && !selects_chain(image.chain(c), s)) continue;
            ipacl_ipt_chain row;
            chain_row(image, c, row);
            out.add(row);
        }
    } else if (op & IPACL_IPT_OP_MATCHED_RULE) {
        for_each_rule(image, s, [&](uint32_t e) {
            ipacl_ipt_rule rule;
            read_ipv4_rule(image, e, rule);
            out.add(rule);
        });
    } else {
        for_each_rule(image, s, [&](uint32_t e) {
            ipacl_rule_info info;
            std::memset(&info, 0, sizeof info);
            info.rule_num = image.rule_number(e);
            read_ipv4_entry(image, e, info.entry);
            read_target_name(image, e, info.target);
            out.add(info);
        });
    }
}

// Marks the entries whose counters the clear operation zeroes.
void mark_cleared(const table_image &image, uint32_t op, const selection &s, bool *marked) {
    if (op == IPACL_IPT_OP_CLEAR_RULE_COUNTERS) {
        for_each_rule(image, s, [&](uint32_t e) { marked[e] = true; });
        return;
    }
    for (uint32_t c = 0; c < image.chain_count(); ++c)
        if (selects_chain(image.chain(c), s)) marked[image.chain(c).end] = true;
}

uint32_t clear_counters(xt_socket &socket, const table_image &image, uint32_t op,
                        const selection &s, char *err) {
    constexpr uint32_t kCountersAt = offsetof(xt_counters_info, counters);
    uint32_t count = image.entry_count();
    byte_buffer request;
    grow_array<bool> marked;
    if (!request.append(kCountersAt + count * sizeof(xt_counters)) || !marked.append(count))
        return fail(err, IPACL_E_NO_MEM, "no mem for the counters");
    mark_cleared(image, op, s, marked.data());
    auto *info = reinterpret_cast<xt_counters_info *>(request.data());
    std::memcpy(info->name, image.info().name, sizeof info->name);
    info->num_counters = count;
    auto *counters = reinterpret_cast<xt_counters *>(request.data() + kCountersAt);
    for (uint32_t e = 0; e < count; ++e) {
        if (!marked[e]) continue;
        xt_counters now = image.counters(e);
        counters[e] = {0 - now.pcnt, 0 - now.bcnt};
    }
    return socket.add_counters(request.data(), request.size(), err);
}

uint32_t answer(uint32_t op, const selection &s, ipacl_ipt_rsp *rsp, uint32_t size, char *err) {
    xt_socket socket(ipv4_layout());
    table_image image;
    if (uint32_t rc = socket.open(err)) return rc;
    if (uint32_t rc = image.read(socket, err)) return rc;
    if (uint32_t rc = check_selection(image, s, op, err)) return rc;
    rsp->flags = op;
    rsp->count = rsp->word8 = 0;
    if (op & (IPACL_IPT_OP_CLEAR_CHAIN_COUNTERS | IPACL_IPT_OP_CLEAR_RULE_COUNTERS)) {
        if (uint32_t rc = clear_counters(socket, image, op, s, err)) return rc;
        return succeed(err);
    }
    record_writer out(rsp, size, record_size(op));
    write_records(image, op, s, out);
    rsp->count = out.written();
    rsp->word8 = out.total();
    if (out.written() < out.total())
        return fail(err, IPACL_NF_E_SHORT_BUFFER, "%u of %u records fit in %u bytes", out.written(),
                    out.total(), size);
    return succeed(err);
}

}  // namespace
}  // namespace ipacl_nf

extern "C" {

IPACL_NF_API uint32_t ipacl_nf_query(uint32_t op, const char *chain, uint32_t rule_num,
                                     ipacl_ipt_rsp *rsp, uint32_t size, char *err) {
    if (!ipacl_nf::is_known(op))
        return ipacl_nf::fail(err, IPACL_E_BAD_ARG, "bad operation %u", op);
    if (!rsp || size < ipacl_nf::kHeaderSize)
        return ipacl_nf::fail(err, IPACL_E_BAD_ARG, "bad response buffer");
    ipacl_nf::selection s{chain && chain[0] ? chain : nullptr, rule_num};
    return ipacl_nf::answer(op, s, rsp, size, err);
}

IPACL_NF_API uint32_t ipacl_nf_rsp_size(uint32_t op, uint32_t count) {
    return ipacl_nf::kHeaderSize + count * ipacl_nf::record_size(op);
}
}
