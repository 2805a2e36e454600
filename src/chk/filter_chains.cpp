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

constexpr char kSrcPort[] = IPACL_LABEL_SRC_PORT;
constexpr char kDstPort[] = IPACL_LABEL_DST_PORT;

template <auto Check, auto... Members>
constexpr ChainStep<ipacl_filter> on = check_step<ipacl_filter, Check, Members...>;

using F = ipacl_filter;

// Each step: the field check and the members of the filter it reads.
namespace step {
constexpr auto name = on<check_name<kListNameRule>, &F::prof_name>;
constexpr auto reserved = on<check_name_rsv, &F::prof_name>;
constexpr auto action = on<check_action, &F::action, &F::log_deny>;
constexpr auto addr_type = on<check_addr_type, kWholeRecord>;
constexpr auto proto = on<check_field<kProtoRule>, &F::protocol>;
constexpr auto src_mask = on<check_mask, &F::src_wildcard>;
constexpr auto dst_mask = on<check_mask, &F::dst_wildcard>;
constexpr auto src_ports = on<check_port_num, &F::src_port_low, &F::src_port_high, kSrcPort>;
constexpr auto dst_ports = on<check_port_num, &F::dst_port_low, &F::dst_port_high, kDstPort>;
constexpr auto src_port_op =
    on<check_port_op, &F::protocol, &F::src_port_op, &F::src_port_low, &F::src_port_high, kSrcPort>;
constexpr auto dst_port_op =
    on<check_port_op, &F::protocol, &F::dst_port_op, &F::dst_port_low, &F::dst_port_high, kDstPort>;
constexpr auto tcp = on<check_tcp, &F::protocol, &F::established>;
constexpr auto icmp = on<check_icmp, &F::protocol, &F::icmp_type, &F::icmp_code>;
constexpr auto prec_tos = on<check_prec_tos, &F::precedence, &F::tos>;
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
