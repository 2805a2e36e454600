// The four filter chains.  They differ on purpose: the manager's own check
// skips the wildcards, the command line skips what the operator cannot get
// wrong there (name length, protocol range, address types, precedence and
// tos), the generic chain looks only at name, action, protocol and
// wildcards, and the quen chain runs everything.
#include <ipacl/chk.h>

#include "chk/action.h"
#include "chk/addr_type.h"
#include "chk/chain.h"
#include "chk/icmp.h"
#include "chk/mask.h"
#include "chk/name.h"
#include "chk/name_rsv.h"
#include "chk/ports.h"
#include "chk/prec_tos.h"
#include "chk/range_rules.h"
#include "chk/tcp.h"

namespace ipacl {
namespace {

// Each step is one field check over the fields it names.
namespace step {

uint32_t name(const ipacl_filter &f, char *err) {
    return check_name<kListNameRule>(f.prof_name, err);
}
uint32_t reserved(const ipacl_filter &f, char *err) { return check_name_rsv(f.prof_name, err); }
uint32_t action(const ipacl_filter &f, char *err) {
    return check_action(f.action, f.log_deny, err);
}
uint32_t addr_type(const ipacl_filter &f, char *err) { return check_addr_type(f, err); }
uint32_t proto(const ipacl_filter &f, char *err) {
    return check_field<kProtoRule>(f.protocol, err);
}
uint32_t src_mask(const ipacl_filter &f, char *err) { return check_mask(f.src_wildcard, err); }
uint32_t dst_mask(const ipacl_filter &f, char *err) { return check_mask(f.dst_wildcard, err); }
uint32_t src_ports(const ipacl_filter &f, char *err) {
    return check_port_num(f.src_port_low, f.src_port_high, IPACL_LABEL_SRC_PORT, err);
}
uint32_t dst_ports(const ipacl_filter &f, char *err) {
    return check_port_num(f.dst_port_low, f.dst_port_high, IPACL_LABEL_DST_PORT, err);
}
uint32_t src_port_op(const ipacl_filter &f, char *err) {
    return check_port_op(f.protocol, f.src_port_op, f.src_port_low, f.src_port_high,
                         IPACL_LABEL_SRC_PORT, err);
}
uint32_t dst_port_op(const ipacl_filter &f, char *err) {
    return check_port_op(f.protocol, f.dst_port_op, f.dst_port_low, f.dst_port_high,
                         IPACL_LABEL_DST_PORT, err);
}
uint32_t tcp(const ipacl_filter &f, char *err) { return check_tcp(f.protocol, f.established, err); }
uint32_t icmp(const ipacl_filter &f, char *err) {
    return check_icmp(f.protocol, f.icmp_type, f.icmp_code, err);
}
uint32_t prec_tos(const ipacl_filter &f, char *err) {
    return check_prec_tos(f.precedence, f.tos, err);
}

}  // namespace step

using Step = ChainStep<ipacl_filter>;

// clang-format off
constexpr Step kPlain[] = {
    step::name,                         step::action, step::addr_type, step::proto,
                                        step::src_ports, step::dst_ports,
    step::src_port_op, step::dst_port_op, step::tcp, step::icmp, step::prec_tos};
constexpr Step kQuen[] = {
    step::name, step::reserved,         step::action, step::addr_type, step::proto,
    step::src_mask, step::dst_mask,     step::src_ports, step::dst_ports,
    step::src_port_op, step::dst_port_op, step::tcp, step::icmp, step::prec_tos};
constexpr Step kCli[] = {
                step::reserved,         step::action,
    step::src_mask, step::dst_mask,     step::src_ports, step::dst_ports,
    step::src_port_op, step::dst_port_op, step::tcp, step::icmp};
constexpr Step kGeneric[] = {
    step::name,                         step::action,                  step::proto,
    step::src_mask, step::dst_mask};
// clang-format on

}  // namespace
}  // namespace ipacl

extern "C" {

uint32_t ipacl_chk_filter(const ipacl_filter *filter, char *err) {
    return ipacl::run_chain<ipacl::kPlain>(*filter, err);
}
uint32_t ipacl_chk_quen_filter(const ipacl_filter *filter, char *err) {
    return ipacl::run_chain<ipacl::kQuen>(*filter, err);
}
uint32_t ipacl_chk_cli_filter(const ipacl_filter *filter, char *err) {
    return ipacl::run_chain<ipacl::kCli>(*filter, err);
}
uint32_t ipacl_chk_gen_filter(const ipacl_filter *filter, char *err) {
    return ipacl::run_chain<ipacl::kGeneric>(*filter, err);
}

}  // extern "C"
