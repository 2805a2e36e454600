// Addresses, masks, indexes and identifiers: each a number with one special
// value that prints as a word.
#include <ipacl/enums.h>
#include <ipacl/str_scalar.h>

#include "base/value_text.h"

namespace ipacl {
namespace {

constexpr EnumName kAddr[] = {{IPACL_ADDR_ANY, "any"}};
constexpr EnumName kMask[] = {{IPACL_MASK_ANY, "any"}};
constexpr EnumName kIndex[] = {{IPACL_INDEX_NONE, "no-index"}};
constexpr EnumName kOrder[] = {{IPACL_ORDER_NONE, "no-order"}};
constexpr EnumName kRuleId[] = {{IPACL_RULE_ID_NONE, "none"}};
constexpr EnumName kEntryId[] = {{IPACL_ENTRY_ID_NONE, "none"}};
constexpr EnumName kIcmpCode[] = {{IPACL_ICMP_CODE_ANY, "any-code"}};

}  // namespace
}  // namespace ipacl

using namespace ipacl;

extern "C" {

uint32_t ipacl_str_addr(uint32_t v, char *d) {
    return value_text(kAddr, v, d, nullptr, NumberForm::dotted);
}
uint32_t ipacl_str_mask(uint32_t v, char *d) {
    return value_text(kMask, v, d, nullptr, NumberForm::dotted);
}
uint32_t ipacl_str_index(uint32_t v, char *d) { return value_text(kIndex, v, d, "%u"); }
uint32_t ipacl_str_order(uint32_t v, char *d) { return value_text(kOrder, v, d, "%u"); }
uint32_t ipacl_str_rule_id(uint32_t v, char *d) { return value_text(kRuleId, v, d, "%u"); }
uint32_t ipacl_str_entry_id(uint32_t v, char *d) { return value_text(kEntryId, v, d, "%u"); }
uint32_t ipacl_str_icmp_code(uint32_t v, char *d) { return value_text(kIcmpCode, v, d, "%u"); }

}  // extern "C"
