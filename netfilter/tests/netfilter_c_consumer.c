/* A C program that links the netfilter library and libipacl with the C
 * driver: the header is plain C and the libraries need no C++ runtime. */
#include <ipacl/enums.h>
#include <ipacl/netfilter.h>

#include <stdio.h>
#include <string.h>

int main(void) {
    ipacl_filter f;
    ipacl_ipt_rule rule;
    char err[IPACL_NF_ERR_TEXT_SIZE];
    uint32_t rc;

    memset(&f, 0, sizeof f);
    strcpy(f.prof_name, "acl1");
    f.action = IPACL_ACTION_PERMIT;
    f.addr_type = f.src_addr.family = f.dst_addr.family = IPACL_ADDR_TYPE_IPV4;
    f.src_wildcard = f.dst_wildcard = IPACL_MASK_ANY;
    f.protocol = IPACL_PROTO_TCP;
    f.src_port_high = 65535;
    f.dst_port_op = IPACL_PORT_OP_EQ;
    f.dst_port_low = f.dst_port_high = 22;
    f.icmp_type = f.icmp_code = f.precedence = f.tos = 0xFFFFFFFFu;

    rc = ipacl_nf_translate(&f, IPACL_DIR_IN, "mgmt0", &rule, err);
    if (rc != IPACL_OK || strcmp(rule.chain, "ipacl-in") || strcmp(rule.target, "ACCEPT") ||
        rule.match_count != 1 || rule.matches[0].info.tcp.dst_port_low != 22) {
        printf("translate: %08x %s\n", rc, err);
        return 1;
    }
    return 0;
}
