// Apply and remove: one direction's ACL chain rewritten in a single table
// replacement, every other entry kept with its counters.
#include "entry_format.h"
#include "entry_writer.h"
#include "kernel_socket.h"
#include "names.h"
#include "nf_error.h"
#include "rule_plan.h"
#include "table_builder.h"
#include "table_image.h"

#include <ipacl/enums.h>
#include <ipacl/netfilter.h>

#include <cerrno>
#include <cstdio>
#include <cstring>

namespace ipacl_nf {
namespace {

// A replacement refused because the table changed meanwhile is tried again.
constexpr int kReplaceAttempts = 3;

struct apply_job {
    const family_layout *layout = nullptr;
    const char *builtin = nullptr;  // INPUT or OUTPUT
    char chain[IPACL_CHAIN_NAME_SIZE] = {};
    grow_array<rule_plan> plans;
    rule_plan deny;
    bool remove = false;
};

uint32_t plan_all(const ipacl_filter *filters, uint32_t count, uint32_t dir, const char *ifname,
                  apply_job &job, char *err) {
    uint32_t family = job.layout->family;
    if (uint32_t rc = plan_implicit_deny(family, dir, ifname, job.deny, err)) return rc;
    if (!job.plans.append(count)) return fail(err, IPACL_E_NO_MEM, "no mem for %u rules", count);
    for (uint32_t i = 0; i < count; ++i) {
        if (uint32_t rc = plan_rule(&filters[i], family, dir, ifname, job.plans[i], err)) {
            prefix_filter_position(err, i + 1);
            return rc;
        }
    }
    return 0;
}

// Writes a planned rule (and its log twin) into the arena and the builder.
bool add_rule(table_builder &builder, byte_buffer &arena, const family_layout &layout,
              const rule_plan &plan) {
    if (plan.log) {
        target_desc log{target_kind::log, 0, "", plan.log_prefix};
        uint32_t at = append_entry(arena, layout, &plan, log);
        if (at == kNoEntry || !builder.add_new(at, nullptr)) return false;
    }
    target_desc target{target_kind::verdict, 0, plan.target, nullptr};
    if (!verdict_of_name(plan.target, &target.verdict)) target.kind = target_kind::jump;
    uint32_t at = append_entry(arena, layout, &plan, target);
    return at != kNoEntry &&
           builder.add_new(at, target.kind == target_kind::jump ? plan.target : nullptr);
}

bool add_acl_rules(table_builder &builder, byte_buffer &arena, const apply_job &job) {
    for (uint32_t i = 0; i < job.plans.size(); ++i)
        if (!add_rule(builder, arena, *job.layout, job.plans[i])) return false;
    return add_rule(builder, arena, *job.layout, job.deny);
}

// A rule of the built-in chain that only jumps to the ACL chain.
bool is_plain_jump(const table_image &image, uint32_t index, const char *chain) {
    uint32_t target = image.jump_target(index);
    if (target == kNoIndex || std::strcmp(image.chain(target).name, chain) != 0) return false;
    const uint8_t *entry = image.entry(index);
    if (match_count(image.layout(), entry) != 0) return false;
    for (uint32_t i = 0; i < image.layout().ip_size; ++i)
        if (entry[i]) return false;
    return true;
}

bool jumps_to(const table_image &image, uint32_t index, const char *chain) {
    uint32_t target = image.jump_target(index);
    return target != kNoIndex && std::strcmp(image.chain(target).name, chain) == 0;
}

// The built-in chain of the direction: one plain jump to the ACL chain
// first (the old one, with its counters, when there was one), then the rest.
bool copy_builtin(table_builder &builder, byte_buffer &arena, const table_image &image,
                  const chain_view &chain, const apply_job &job) {
    uint32_t old_jump = kNoIndex;
    for (uint32_t e = chain.first; e < chain.end && old_jump == kNoIndex; ++e)
        if (is_plain_jump(image, e, job.chain)) old_jump = e;
    if (old_jump != kNoIndex) {
        if (!builder.add_old(old_jump)) return false;
    } else {
        uint32_t at =
            append_entry(arena, *job.layout, nullptr, {target_kind::jump, 0, "", nullptr});
        if (at == kNoEntry || !builder.add_new(at, job.chain)) return false;
    }
    for (uint32_t e = chain.first; e < chain.end; ++e)
        if (!is_plain_jump(image, e, job.chain) && !builder.add_old(e)) return false;
    return builder.add_old(chain.end);
}

bool copy_chain(table_builder &builder, byte_buffer &arena, const table_image &image,
                const chain_view &chain, const apply_job &job) {
    if (chain.header != kNoIndex && !builder.add_old(chain.header)) return false;
    if (!builder.start_chain(chain.name, chain.hook)) return false;
    bool ok = true;
    if (!job.remove && job.builtin && std::strcmp(chain.name, job.builtin) == 0) {
        ok = copy_builtin(builder, arena, image, chain, job);
    } else if (!job.remove && std::strcmp(chain.name, job.chain) == 0) {
        ok = add_acl_rules(builder, arena, job) && builder.add_old(chain.end);
    } else {
        for (uint32_t e = chain.first; e <= chain.end && ok; ++e)
            if (e == chain.end || !job.remove || !jumps_to(image, e, job.chain))
                ok = builder.add_old(e);
    }
    builder.end_chain();
    return ok;
}

// A user chain that was not there: header, rules, RETURN.
bool add_new_chain(table_builder &builder, byte_buffer &arena, const apply_job &job) {
    uint32_t header =
        append_entry(arena, *job.layout, nullptr, {target_kind::error, 0, job.chain, nullptr});
    if (header == kNoEntry || !builder.add_new(header, nullptr)) return false;
    if (!builder.start_chain(job.chain, -1) || !add_acl_rules(builder, arena, job)) return false;
    int32_t back;
    verdict_of_name("RETURN", &back);
    uint32_t end =
        append_entry(arena, *job.layout, nullptr, {target_kind::verdict, back, "", nullptr});
    if (end == kNoEntry || !builder.add_new(end, nullptr)) return false;
    builder.end_chain();
    return true;
}

bool build(table_builder &builder, byte_buffer &arena, const table_image &image,
           const apply_job &job) {
    for (uint32_t c = 0; c < image.chain_count(); ++c) {
        const chain_view &chain = image.chain(c);
        if (job.remove && std::strcmp(chain.name, job.chain) == 0) continue;
        if (!copy_chain(builder, arena, image, chain, job)) return false;
    }
    if (!job.remove && image.chain_named(job.chain) == kNoIndex &&
        !add_new_chain(builder, arena, job))
        return false;
    return builder.add_old(image.entry_count() - 1);  // the closing ERROR entry
}

uint32_t replace_once(xt_socket &socket, const apply_job &job, bool *changed_meanwhile, char *err) {
    table_image image;
    if (uint32_t rc = image.read(socket, err)) return rc;
    if (job.remove && image.chain_named(job.chain) == kNoIndex) return 0;
    byte_buffer arena;
    table_builder builder(image, arena);
    if (!build(builder, arena, image, job))
        return fail(err, IPACL_E_NO_MEM, "no mem for the new table");
    byte_buffer request;
    grow_array<xt_counters> old_counters;
    if (uint32_t rc = builder.compose(request, old_counters, err)) return rc;
    if (uint32_t rc = socket.replace(request.data(), request.size(), err)) {
        *changed_meanwhile = socket.last_error() == EAGAIN;
        return rc;
    }
    if (uint32_t rc = builder.counters_request(old_counters, request, err)) return rc;
    return socket.add_counters(request.data(), request.size(), err);
}

uint32_t run(apply_job &job, char *err) {
    xt_socket socket(*job.layout);
    if (uint32_t rc = socket.open(err)) return rc;
    uint32_t rc = 0;
    for (int attempt = 0; attempt < kReplaceAttempts; ++attempt) {
        bool changed_meanwhile = false;
        rc = replace_once(socket, job, &changed_meanwhile, err);
        if (!changed_meanwhile) break;
    }
    return rc ? rc : succeed(err);
}

uint32_t prepare(uint32_t family, uint32_t dir, apply_job &job, char *err) {
    job.layout = layout_of(family);
    if (!job.layout) return fail(err, IPACL_E_BAD_ARG, "bad family");
    if (uint32_t rc = ipacl_nf_chain_name(dir, job.chain, err)) return rc;
    if (uint32_t rc = check_acl_chain(job.chain, err)) return rc;
    // One chain for both directions would hold whichever applied last.
    if (std::strcmp(acl_chain_of(IPACL_DIR_IN), acl_chain_of(IPACL_DIR_OUT)) == 0)
        return fail(err, IPACL_NF_E_BAD_CHAIN, "chains in and out are both '%s'", job.chain);
    job.builtin = builtin_chain_of(dir);
    return 0;
}

}  // namespace
}  // namespace ipacl_nf

extern "C" {

IPACL_NF_API uint32_t ipacl_nf_apply(uint32_t family, uint32_t dir, const char *ifname,
                                     const ipacl_filter *filters, uint32_t count, char *err) {
    ipacl_nf::apply_job job;
    if (uint32_t rc = ipacl_nf::prepare(family, dir, job, err)) return rc;
    if (!filters && count > 0) return ipacl_nf::fail(err, IPACL_E_BAD_ARG, "bad filters");
    if (uint32_t rc = ipacl_nf::plan_all(filters, count, dir, ifname, job, err)) return rc;
    return ipacl_nf::run(job, err);
}

IPACL_NF_API uint32_t ipacl_nf_remove(uint32_t family, uint32_t dir, char *err) {
    ipacl_nf::apply_job job;
    if (uint32_t rc = ipacl_nf::prepare(family, dir, job, err)) return rc;
    job.remove = true;
    return ipacl_nf::run(job, err);
}
}
