// Addresses, masks, indexes and identifiers: each a number with one special
// value that prints as a word.
#include <ipacl/enums.h>
#include <ipacl/str_scalar.h>

#include "str/scalar/scalar_text.h"

namespace ipacl {
namespace {

constexpr ScalarForm kAddr{IPACL_ADDR_ANY, "any", NumberForm::dotted};
constexpr ScalarForm kMask{IPACL_MASK_ANY, "any", NumberForm::dotted};
constexpr ScalarForm kIndex{IPACL_INDEX_NONE, "no-index", NumberForm::decimal};
constexpr ScalarForm kOrder{IPACL_ORDER_NONE, "no-order", NumberForm::decimal};
constexpr ScalarForm kRuleId{IPACL_RULE_ID_NONE, "none", NumberForm::decimal};
constexpr ScalarForm kEntryId{IPACL_ENTRY_ID_NONE, "none", NumberForm::decimal};
constexpr ScalarForm kIcmpCode{IPACL_ICMP_CODE_ANY, "any-code", NumberForm::decimal};

}  // namespace
}  // namespace ipacl

using ipacl::scalar_text;

extern "C" {

uint32_t ipacl_str_addr(uint32_t addr, char *dst) { return scalar_text<ipacl::kAddr>(addr, dst); }
uint32_t ipacl_str_mask(uint32_t mask, char *dst) { return scalar_text<ipacl::kMask>(mask, dst); }
uint32_t ipacl_str_index(uint32_t index, char *dst) {
    return scalar_text<ipacl::kIndex>(index, dst);
}
uint32_t ipacl_str_order(uint32_t order, char *dst) {
    return scalar_text<ipacl::kOrder>(order, dst);
}
uint32_t ipacl_str_rule_id(uint32_t rule_id, char *dst) {
    return scalar_text<ipacl::kRuleId>(rule_id, dst);
}
uint32_t ipacl_str_entry_id(uint32_t entry_id, char *dst) {
    return scalar_text<ipacl::kEntryId>(entry_id, dst);
}
uint32_t ipacl_str_icmp_code(uint32_t code, char *dst) {
    return scalar_text<ipacl::kIcmpCode>(code, dst);
}

}  // extern "C"
