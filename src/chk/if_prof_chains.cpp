// The binding chains.  The command line checks only the reserved words;
// the quen side adds them and the management-port test to the plain chain.
#include <ipacl/chk.h>

#include "chk/chain.h"
#include "chk/mgmt_port.h"
#include "chk/name.h"
#include "chk/name_rsv.h"
#include "chk/range_rules.h"

namespace ipacl {
namespace {

template <auto Check, auto... Members>
constexpr ChainStep<ipacl_if_prof> on = check_step<ipacl_if_prof, Check, Members...>;

// The management-port test writes no message.
uint32_t check_mgmt_port_step(uint32_t if_index, char *) { return check_mgmt_port(if_index); }

using B = ipacl_if_prof;

// The quen side's direction check is the plain one.
namespace step {
constexpr auto dir = on<check_field<kDirRule>, &B::direction>;
constexpr auto name = on<check_name<kListNameRule>, &B::prof_name>;
constexpr auto reserved = on<check_name_rsv, &B::prof_name>;
constexpr auto mgmt_port = on<check_mgmt_port_step, &B::if_index>;
}  // namespace step

using Step = ChainStep<ipacl_if_prof>;

constexpr Step kPlain[] = {step::dir, step::name};
constexpr Step kCli[] = {step::reserved};
constexpr Step kQuen[] = {step::dir, step::name, step::reserved, step::mgmt_port};

}  // namespace
}  // namespace ipacl

extern "C" {

uint32_t ipacl_chk_if_prof(const ipacl_if_prof *if_prof, char *err) {
    return ipacl::run_chain<ipacl::kPlain>(*if_prof, err);
}
// The generic chain is the plain one under its own name.
uint32_t ipacl_chk_gen_if_prof(const ipacl_if_prof *if_prof, char *err) {
    return ipacl::run_chain<ipacl::kPlain>(*if_prof, err);
}
uint32_t ipacl_chk_cli_if_prof(const ipacl_if_prof *if_prof, char *err) {
    return ipacl::run_chain<ipacl::kCli>(*if_prof, err);
}
uint32_t ipacl_chk_quen_if_prof(const ipacl_if_prof *if_prof, char *err) {
    return ipacl::run_chain<ipacl::kQuen>(*if_prof, err);
}

}  // extern "C"
