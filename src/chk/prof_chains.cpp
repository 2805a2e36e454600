// The two profile chains: the manager checks the type, the quen side the
// reserved words instead.
#include <ipacl/chk.h>

#include "chk/chain.h"
#include "chk/name.h"
#include "chk/name_rsv.h"
#include "chk/range_rules.h"

namespace ipacl {
namespace {

namespace step {
uint32_t name(const ipacl_prof &p, char *err) { return check_name<kListNameRule>(p.name, err); }
uint32_t type(const ipacl_prof &p, char *err) {
    return check_field<kProfTypeRule>(p.prof_type, err);
}
uint32_t reserved(const ipacl_prof &p, char *err) { return check_name_rsv(p.name, err); }
}  // namespace step

using Step = ChainStep<ipacl_prof>;

constexpr Step kPlain[] = {step::name, step::type};
constexpr Step kQuen[] = {step::name, step::reserved};

}  // namespace
}  // namespace ipacl

extern "C" {

uint32_t ipacl_chk_prof(const ipacl_prof *prof, char *err) {
    return ipacl::run_chain<ipacl::kPlain>(*prof, err);
}
uint32_t ipacl_chk_quen_prof(const ipacl_prof *prof, char *err) {
    return ipacl::run_chain<ipacl::kQuen>(*prof, err);
}

}  // extern "C"
