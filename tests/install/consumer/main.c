/* Uses the installed headers, the library and the host platform from plain C. */
#include <ipacl/ipacl.h>
#include <ipacl_host.h>

#include <stdio.h>
#include <string.h>

int main(void) {
    char text[IPACL_STR_SIZE];
    ipacl_str_action(IPACL_ACTION_PERMIT, text);
    if (strcmp(text, "permit") != 0) return 1;
    printf("installed ipacl says %s", text);
    /* The library names an interface through the host platform. */
    ipacl_str_if_index(ipacl_host_if_index(IPACL_HOST_IF_ETH, 1, 0, 7), text);
    if (text[0] == '\0') return 2;
    printf(" on %s\n", text);
    return 0;
}
