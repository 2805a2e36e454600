// The two profile chains: the manager checks the type, the quen side the
// reserved words instead.
#include <ipacl/chk.h>

#include "chk/chain.h"
#include "chk/name.h"
#include "chk/name_rsv.h"
#include "chk/range_rules.h"

namespace ipacl {
namespace {

template <auto Check, auto... Members>
constexpr ChainStep<ipacl_prof> on = check_step<ipacl_prof, Check, Members...>;

namespace step {
constexpr auto name = on<check_name<kListNameRule>, &ipacl_prof::name>;
constexpr auto type = on<check_field<kProfTypeRule>, &ipacl_prof::prof_type>;
constexpr auto reserved = on<check_name_rsv, &ipacl_prof::name>;
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
