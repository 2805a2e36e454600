/* A C99 program on the shared libraries: libipacl beside the host platform.
 * One process plays manager and client: a request through the wrappers, its
 * answer by token, and an interface name. */
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <unistd.h>

#include <ipacl/ipacl.h>

#include "ipacl_host.h"
#include "platform/vel.h"

static int fail(const char *what) {
    fprintf(stderr, "host_c_consumer: %s\n", what);
    return 1;
}

int main(void) {
    char dir[] = "/tmp/ipacl-host-c-XXXXXX", err[IPACL_ERR_TEXT_SIZE], name[IPACL_STR_SIZE];
    uint32_t manager, client, options[10] = {1, 0, 10, 0};
    uint8_t area[IPACL_HOST_HANDLE_AREA], rr[IPACL_HOST_HANDLE_AREA];
    ipacl_vel_msg req = {0};
    int rc = 0;

    if (!mkdtemp(dir) || setenv("IPACL_HOST_DIR", dir, 1) != 0) return fail("no directory");
    if (ipacl_host_open(IPACL_HOST_SERVICE_ACL, 0, &manager) != 0 ||
        ipacl_host_open(0, 0, &client) != 0)
        return fail("open");
    req.opcode = 5;
    req.payload = "ping";
    req.size = 4;
    if (ipacl_wrap_vel_send(client, rr, &req, err) != 0) rc = fail(err);
    options[3] = vel_rr_token_get(rr);
    vel_drop(client, rr);
    if (ipacl_host_accept(manager, area, 1000) != 0 || vel_payload_size(area) != 4 ||
        memcmp(vel_payload_get(area), "ping", 4) != 0)
        rc = fail("accept");
    if (ipacl_wrap_vel_rsp(manager, vel_rr_token_get(area), "pong", 4, err) != 0) rc = fail(err);
    vel_drop(manager, area);
    if (vel_recv(client, area, options) != 0 || memcmp(vel_payload_get(area), "pong", 4) != 0)
        rc = fail("answer");
    vel_drop(client, area);
    ipacl_str_if_index(ipacl_host_if_index(IPACL_HOST_IF_ETH, 1, 0, 3), name);
    if (strcmp(name, "eth1/3") != 0) rc = fail(name);
    ipacl_host_close(client);
    ipacl_host_close(manager);
    rmdir(dir);
    return rc;
}
