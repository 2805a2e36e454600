/* The vel message service, as the library calls it.  On failure the calls
 * return non-zero with errno set. */
#ifndef IPACL_PLATFORM_VEL_H
#define IPACL_PLATFORM_VEL_H

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

int vel_send(uint32_t handle, uint32_t node, uint32_t service, uint32_t opcode, const void *payload,
             uint32_t size, void *rr_handle, uint32_t token, uint32_t flags);
uint32_t vel_rr_token_get(void *rr_handle);
int vel_drop(uint32_t handle, void *msg_handle);
int vel_recv(uint32_t handle, void *msg_handle, void *options);
void *vel_payload_get(void *msg_handle);
uint32_t vel_payload_size(void *msg_handle);

#ifdef __cplusplus
}
#endif

#endif
