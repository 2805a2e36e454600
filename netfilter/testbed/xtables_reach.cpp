#include "xtables_reach.h"

#include <ipacl/enums.h>
#include <ipacl/netfilter.h>

namespace ipacl_testbed {

bool xtables_reachable(const netns_pair &pair, const netns_side &side, std::string &why) {
    netns_scope inside(side.ns_fd, pair.home_fd());
    if (!inside.entered()) {
        why = "setns into the namespace failed";
        return false;
    }
    char err[IPACL_NF_ERR_TEXT_SIZE] = {};
    ipacl_ipt_rsp rsp{};
    uint32_t code = ipacl_nf_query(IPACL_IPT_OP_MATCHED_CHAIN, "INPUT", 0, &rsp, sizeof rsp, err);
    if (code == IPACL_NF_E_UNAVAILABLE || code == IPACL_NF_E_PERMISSION) {
        why = err;
        return false;
    }
    return true;
}

}  // namespace ipacl_testbed
