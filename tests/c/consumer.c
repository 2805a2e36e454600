/* A plain C99 program that includes the umbrella header and links the
 * library with the C driver alone: no C++ runtime may be needed. */
#include <ipacl/ipacl.h>

#include <stdio.h>
#include <string.h>

#include "platform_stub.h"

int main(void) {
    char buf[IPACL_STR_SIZE];
    ipacl_filter filter;
    memset(&filter, 0, sizeof filter);
    ipacl_str_dir(IPACL_DIR_IN2, buf);
    if (strcmp(buf, "in") != 0) return 1;
    if (sizeof(ipacl_filter) != 238 || sizeof(ipacl_quen) != IPACL_QUEN_SIZE) return 2;
    if (ipacl_c_consumer_checks() != 0) return 3;
    puts("ok");
    return 0;
}
