// The memory-use table: one row per memory type, then a total.
#include <cstdio>

#include <ipacl/enums.h>
#include <ipacl/mm.h>
#include <ipacl/str_scalar.h>

namespace ipacl::mm {
namespace {

constexpr int32_t kTypeColumn = 12;
constexpr const char *kRule = "------------    ----    --------\n";

}  // namespace
}  // namespace ipacl::mm

extern "C" {

void ipacl_show_mem_use(uint32_t first, const ipacl_mem_use *use) {
    if (first == 1) {
        printf("\nType            Size    # Records\n");
        printf("%s", ipacl::mm::kRule);
    }
    if (!use) return;
    char type[IPACL_STR_SIZE];
    ipacl_str_mem_type(use->mem_type, type);
    ipacl_str_n(type, ipacl::mm::kTypeColumn);
    printf("%s    %-4u    %u\n", type, use->size, use->record_count);
}

void ipacl_show_mem_total(uint32_t total) {
    printf("%s", ipacl::mm::kRule);
    printf("                        %u\n", total);
}

}  // extern "C"
