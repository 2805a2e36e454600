// Port ranges and port operations.
#pragma once

#include <ipacl/chk.h>
#include <ipacl/enums.h>

#include <cstdio>

#include "chk/message.h"

namespace ipacl {

inline constexpr uint32_t kPortLimit = 65536;  // ports are below
inline constexpr uint32_t kPortMax = kPortLimit - 1;

inline ValueText port_text(uint32_t port) { return ValueText(ipacl_str_port_num, port); }
inline ValueText port_op_text(uint32_t op) { return ValueText(ipacl_str_port_op, op); }

inline uint32_t check_port_num(uint32_t low, uint32_t high, const char *label, char *err) {
    if (low >= kPortLimit)
        return fail_labeled(IPACL_E_BAD_LOW_PORT, label, err,
                            [&](char *e) { sprintf(e, "bad low %s %s", label, port_text(low).s); });
    if (high >= kPortLimit)
        return fail_labeled(IPACL_E_BAD_HIGH_PORT, label, err, [&](char *e) {
            sprintf(e, "bad high %s %s", label, port_text(high).s);
        });
    if (low > high)
        return fail_labeled(IPACL_E_BAD_PORT_RANGE, label, err, [&](char *e) {
            sprintf(e, "%s low %s > high %s", label, port_text(low).s, port_text(high).s);
        });
    return pass(err);
}

inline bool has_ports(uint32_t proto) {
    return proto == IPACL_PROTO_TCP || proto == IPACL_PROTO_UDP;
}

// lt and gt are stored as ranges open at one end: lt from 0, gt up to the
// highest port.
inline bool open_range_fits(uint32_t op, uint32_t low, uint32_t high) {
    if (op == IPACL_PORT_OP_LT) return low == 0 && high < kPortLimit;
    return low < kPortLimit && high == kPortMax;
}

inline uint32_t check_port_op_with_ports(uint32_t op, uint32_t low, uint32_t high,
                                         const char *label, char *err) {
    switch (op) {
        case IPACL_PORT_OP_LT:
        case IPACL_PORT_OP_GT:
            if (open_range_fits(op, low, high)) break;
            return fail_labeled(IPACL_E_BAD_PORT_RANGE, label, err, [&](char *e) {
                sprintf(e, "bad low %s high %s for %s operation %s", port_text(low).s,
                        port_text(high).s, label, port_op_text(op).s);
            });
        case IPACL_PORT_OP_NEQ:
        case IPACL_PORT_OP_EQ:
            if (low == high) break;
            return fail_labeled(IPACL_E_BAD_PORT_RANGE, label, err, [&](char *e) {
                sprintf(e, "low %s != high %s for %s operation %s", port_text(low).s,
                        port_text(high).s, label, port_op_text(op).s);
            });
        case IPACL_PORT_OP_ANY:
        case IPACL_PORT_OP_RANGE:
            break;  // the range itself is ipacl_chk_port_num's business
        default:
            return fail(IPACL_E_BAD_PORT_OP, err, [&](char *e) {
                sprintf(e, "bad %s operation %s", label_text(label), port_op_text(op).s);
            });
    }
    return pass(err);
}

// Protocols without ports take only "any port" over the whole range.
inline uint32_t check_port_op(uint32_t proto, uint32_t op, uint32_t low, uint32_t high,
                              const char *label, char *err) {
    if (has_ports(proto)) return check_port_op_with_ports(op, low, high, label, err);
    if (op == IPACL_PORT_OP_ANY && low == 0 && high == kPortMax) return pass(err);
    return fail(IPACL_E_PORT_NOT_ALLOWED, err, [&](char *e) {
        sprintf(e, "%s operation %s low %s high %s is not allowed for %s", label_text(label),
                port_op_text(op).s, port_text(low).s, port_text(high).s,
                ValueText(ipacl_str_proto, proto).s);
    });
}

}  // namespace ipacl
