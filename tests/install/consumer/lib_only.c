/* Calls library functions only: the program references nothing in the
 * platform, yet the library does, so the link must keep the platform. */
#include <ipacl/ipacl.h>

#include <stdio.h>
#include <string.h>

int main(void) {
    char text[IPACL_STR_SIZE];
    ipacl_str_dir(IPACL_DIR_IN, text);
    if (strcmp(text, "in") != 0) return 1;
    printf("ipacl %s: direction %s\n", IPACL_VERSION_STRING, text);
    return 0;
}
