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

namespace step {
uint32_t dir(const ipacl_if_prof &b, char *err) { return ipacl_chk_dir(b.direction, err); }
uint32_t quen_dir(const ipacl_if_prof &b, char *err) {
    return ipacl_chk_quen_dir(b.direction, err);
}
uint32_t name(const ipacl_if_prof &b, char *err) {
    return check_name<kListNameRule>(b.prof_name, err);
}
uint32_t reserved(const ipacl_if_prof &b, char *err) { return check_name_rsv(b.prof_name, err); }
uint32_t mgmt_port(const ipacl_if_prof &b, char *) { return check_mgmt_port(b.if_index); }
}  // namespace step

using Step = ChainStep<ipacl_if_prof>;

constexpr Step kPlain[] = {step::dir, step::name};
constexpr Step kCli[] = {step::reserved};
constexpr Step kQuen[] = {step::quen_dir, step::name, step::reserved, step::mgmt_port};

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
