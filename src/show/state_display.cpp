// Block display of the manager's high-availability state.
#include <ipacl/enums.h>
#include <ipacl/show.h>

#include "show/block.h"

namespace {

using namespace ipacl::show;

// This block has always used 23 columns, one less than the others.
constexpr int kHaLabelWidth = 23;

constexpr Row kHa[] = {
    kBlankLine,
    field("Sup State", offsetof(ipacl_ha, sup_state), named<ipacl_str_sup_state>),
    field("Switching Over", offsetof(ipacl_ha, switching_over), t_or_f),
    field("Started Stateful", offsetof(ipacl_ha, started_stateful), t_or_f),
    field("Started Stateless", offsetof(ipacl_ha, started_stateless), t_or_f),
    field("Standby Sup Existed", offsetof(ipacl_ha, standby_sup_existed), t_or_f),
    field("Just Sent Heartbeat", offsetof(ipacl_ha, just_sent_heartbeat), t_or_f),
};

}  // namespace

extern "C" {

void ipacl_show_ha(uint32_t flag, const ipacl_ha *ha) {
    (void)flag;  // kept for the callers' sake; it selects nothing
    if (ha != nullptr) print_block(ha, kHa, kHaLabelWidth);
}

}  // extern "C"
