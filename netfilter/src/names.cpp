#include "names.h"

#include "nf_error.h"

#include <ipacl/chk.h>
#include <ipacl/enums.h>
#include <ipacl/netfilter.h>
#include <ipacl/records.h>

#include <linux/netfilter.h>
#include <linux/netfilter/x_tables.h>

#include <cstdio>
#include <cstring>

namespace ipacl_nf {
namespace {

struct verdict_name {
    const char *name;
    int32_t verdict;
};

// What a standard target holds for each verdict: -verdict - 1.
constexpr verdict_name kVerdicts[] = {
    {"ACCEPT", -NF_ACCEPT - 1},
    {"DROP", -NF_DROP - 1},
    {"QUEUE", -NF_QUEUE - 1},
    {"RETURN", XT_RETURN},
};

struct default_name {
    char *buffer;
    uint32_t size;
    const char *fallback;
};

const default_name kDefaults[] = {
    {ipacl_chain_in, IPACL_CHAIN_NAME_SIZE, IPACL_NF_DEFAULT_CHAIN_IN},
    {ipacl_chain_out, IPACL_CHAIN_NAME_SIZE, IPACL_NF_DEFAULT_CHAIN_OUT},
    {ipacl_chain_fwd, IPACL_CHAIN_NAME_SIZE, IPACL_NF_DEFAULT_CHAIN_FWD},
    {ipacl_target_accept, IPACL_TARGET_NAME_SIZE, "ACCEPT"},
    {ipacl_target_drop, IPACL_TARGET_NAME_SIZE, "DROP"},
    {ipacl_target_queue, IPACL_TARGET_NAME_SIZE, "QUEUE"},
    {ipacl_target_return, IPACL_TARGET_NAME_SIZE, "RETURN"},
};

constexpr const char *kBuiltinChains[] = {"INPUT", "FORWARD", "OUTPUT", "PREROUTING",
                                          "POSTROUTING"};

bool is_in(uint32_t dir) { return dir == IPACL_DIR_IN || dir == IPACL_DIR_IN2; }
bool is_out(uint32_t dir) { return dir == IPACL_DIR_OUT || dir == IPACL_DIR_OUT2; }

}  // namespace

const char *name_or_default(const char *buffer, const char *fallback) {
    return buffer[0] ? buffer : fallback;
}

const char *accept_target() { return name_or_default(ipacl_target_accept, "ACCEPT"); }
const char *drop_target() { return name_or_default(ipacl_target_drop, "DROP"); }

const char *builtin_chain_of(uint32_t dir) {
    if (is_in(dir)) return "INPUT";
    if (is_out(dir)) return "OUTPUT";
    return nullptr;
}

bool is_outgoing(uint32_t dir) { return is_out(dir); }

const char *acl_chain_of(uint32_t dir) {
    if (is_in(dir)) return name_or_default(ipacl_chain_in, IPACL_NF_DEFAULT_CHAIN_IN);
    if (is_out(dir)) return name_or_default(ipacl_chain_out, IPACL_NF_DEFAULT_CHAIN_OUT);
    return nullptr;
}

bool is_builtin_chain(const char *name) {
    for (const char *builtin : kBuiltinChains)
        if (std::strcmp(name, builtin) == 0) return true;
    return false;
}

uint32_t check_acl_chain(const char *name, char *err) {
    std::size_t length = strnlen(name, IPACL_CHAIN_NAME_SIZE);
    if (length == 0 || length > IPACL_NF_CHAIN_NAME_MAX)
        return fail(err, IPACL_NF_E_BAD_CHAIN, "chain name '%.*s' must have 1 to %u characters",
                    static_cast<int>(length), name, IPACL_NF_CHAIN_NAME_MAX);
    if (is_builtin_chain(name))
        return fail(err, IPACL_NF_E_BAD_CHAIN, "'%s' is a built-in chain", name);
    return succeed(err);
}

bool verdict_of_name(const char *name, int32_t *verdict) {
    for (const verdict_name &v : kVerdicts)
        if (std::strcmp(name, v.name) == 0) {
            *verdict = v.verdict;
            return true;
        }
    return false;
}

const char *name_of_verdict(int32_t verdict) {
    for (const verdict_name &v : kVerdicts)
        if (v.verdict == verdict) return v.name;
    return nullptr;
}

}  // namespace ipacl_nf

extern "C" {

IPACL_NF_API void ipacl_nf_fill_names(void) {
    for (const ipacl_nf::default_name &name : ipacl_nf::kDefaults)
        if (name.buffer[0] == '\0') std::snprintf(name.buffer, name.size, "%s", name.fallback);
}

IPACL_NF_API uint32_t ipacl_nf_chain_name(uint32_t dir, char *chain, char *err) {
    if (!chain) return ipacl_nf::fail(err, IPACL_E_BAD_ARG, "bad chain buffer");
    if (uint32_t rc = ipacl_chk_dir(dir, err)) return rc;
    const char *name = ipacl_nf::acl_chain_of(dir);
    if (!name) {
        char dir_text[IPACL_STR_SIZE];
        ipacl_str_dir(dir, dir_text);
        return ipacl_nf::fail(err, IPACL_E_BAD_DIR, "no chain for direction %s", dir_text);
    }
    std::snprintf(chain, IPACL_CHAIN_NAME_SIZE, "%.31s", name);
    return ipacl_nf::succeed(err);
}
}
