#include "str/record/port_spec.h"

#include <cstdio>

#include <ipacl/enums.h>
#include <ipacl/records.h>

namespace ipacl {
namespace {

constexpr uint32_t kPortMax = 65535;

// Operator 0 ("any-port-op") leaves the condition to the bounds.
uint32_t derived_op(uint32_t low, uint32_t high) {
    if (low == 0 && (high == 0 || high == kPortMax)) return IPACL_PORT_OP_ANY;
    if (low == high) return IPACL_PORT_OP_EQ;
    if (low == 0) return IPACL_PORT_OP_LT;
    if (high == kPortMax) return IPACL_PORT_OP_GT;
    return IPACL_PORT_OP_RANGE;
}

constexpr bool shows_low(uint32_t op) {
    return op >= IPACL_PORT_OP_GT && op <= IPACL_PORT_OP_RANGE;
}
constexpr bool shows_high(uint32_t op) {
    return op == IPACL_PORT_OP_LT || op == IPACL_PORT_OP_RANGE;
}

// Appends " <port name>" at `out + len`.
uint32_t append_port(char *out, uint32_t len, uint32_t port) {
    char name[IPACL_STR_SIZE];
    ipacl_str_port_num(port, name);
    return len + static_cast<uint32_t>(snprintf(out + len, kPortSpecSize - len, " %s", name));
}

}  // namespace

char *str_port_spec(uint32_t op, uint32_t low, uint32_t high, char *out) {
    if (op == IPACL_PORT_OP_ANY) op = derived_op(low, high);
    if (op == IPACL_PORT_OP_ANY) return nullptr;
    uint32_t len = ipacl_str_port_op(op, out);
    if (shows_low(op)) len = append_port(out, len, low);
    if (shows_high(op)) append_port(out, len, high);
    return out;
}

}  // namespace ipacl
