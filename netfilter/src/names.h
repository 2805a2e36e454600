// Chain and target names: the exported name buffers of libipacl, read with
// their defaults, and the kernel's standard verdicts.
#pragma once

#include <cstdint>

namespace ipacl_nf {

// The buffer's text, or `fallback` when its first byte is 0.
const char *name_or_default(const char *buffer, const char *fallback);

const char *accept_target();
const char *drop_target();

// The built-in chain a direction's ACL chain hangs from: INPUT for in,
// OUTPUT for out; nullptr for any other direction.
const char *builtin_chain_of(uint32_t dir);
// True for the out directions (2, 4): the rule tests the output interface.
bool is_outgoing(uint32_t dir);
// The ACL chain of a direction (exported buffer or default), nullptr for a
// direction without one.
const char *acl_chain_of(uint32_t dir);

// Checks that `name` can be the ACL chain: 1 to 28 characters, not built in.
uint32_t check_acl_chain(const char *name, char *err);

bool is_builtin_chain(const char *name);

// The kernel's standard verdicts by name (ACCEPT, DROP, QUEUE, RETURN).
bool verdict_of_name(const char *name, int32_t *verdict);
// The name of a standard verdict, nullptr for a jump or an unknown one.
const char *name_of_verdict(int32_t verdict);

}  // namespace ipacl_nf
