// Display of a parameter list: one row a parameter with its address, token,
// type and the first word of its value.
#include <cstdio>
#include <cstring>

#include <ipacl/show.h>
#include <ipacl/str_scalar.h>

namespace {

constexpr int32_t kPointerWidth = 10;

void show_param(const ipacl_param *param) {
    char pointer[64];
    snprintf(pointer, sizeof pointer, "%p", static_cast<const void *>(param));
    ipacl_str_n(pointer, kPointerWidth);
    if (param == nullptr) {
        printf("%s\n", pointer);
        return;
    }
    printf("%s    %-5u    %-4x    ", pointer, param->token, param->type);
    if (param->value != nullptr) {
        uint32_t word;
        memcpy(&word, param->value, sizeof word);
        printf("%08x ", word);
    }
    printf("\n");
}

}  // namespace

extern "C" {

void ipacl_show_p(const ipacl_param_list *params) {
    if (params == nullptr) return;
    printf("\n# Parameters = %u  (All fields in hex except Token)\n\n", params->count);
    printf("Pointer       Token    Type    Value\n");
    printf("----------    -----    ----    -----\n");
    if (params->params == nullptr) return;
    for (uint32_t i = 0; i < params->count; ++i) show_param(params->params[i]);
}

}  // extern "C"
