// The range rules of the coded fields of filters, profiles and bindings.
#pragma once

#include <ipacl/enums.h>

#include "chk/range_rule.h"

namespace ipacl {

inline constexpr RangeRule kProtoRule{
    -1, 255, true, IPACL_E_BAD_PROTO, "bad protocol %s", ipacl_str_proto};
inline constexpr RangeRule kActionRule{IPACL_ACTION_DENY,  IPACL_ACTION_PERMIT, false,
                                       IPACL_E_BAD_ACTION, "bad action %s",     ipacl_str_action};
inline constexpr RangeRule kPrecRule{
    -1, 7, true, IPACL_E_BAD_PREC, "bad precedence %s", ipacl_str_prec};
inline constexpr RangeRule kTosRule{-1, 15, true, IPACL_E_BAD_TOS, "bad tos %s", ipacl_str_tos};
// Direction 5 (in+out) is a direction of its own kind and refused here.
inline constexpr RangeRule kDirRule{
    IPACL_DIR_NONE, IPACL_DIR_OUT2, false, IPACL_E_BAD_DIR, "bad interface direction %s",
    ipacl_str_dir};
inline constexpr RangeRule kProfTypeRule{
    IPACL_PROF_TYPE_EXTENDED, IPACL_PROF_TYPE_EXTENDED, false,
    IPACL_E_BAD_PROF_TYPE,    "bad profile type %s",    ipacl_str_prof_type};

}  // namespace ipacl
