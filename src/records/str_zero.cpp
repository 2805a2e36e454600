#include <ipacl/codes.h>

extern "C" void ipacl_str_zero(char *err) {
    if (err) err[0] = '\0';
}
