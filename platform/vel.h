/** @file
 * The vel message service, as the library calls it.  On failure the calls
 * return non-zero with errno set. */
#ifndef IPACL_PLATFORM_VEL_H
#define IPACL_PLATFORM_VEL_H

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/** Sends `size` bytes of `payload` as `opcode` to `service` on `node` from
 * the endpoint `handle`.  With `rr_handle`, waits for the reply and leaves it
 * there (read it with vel_payload_get, release it with vel_drop); `token`
 * and `flags` travel with the request. */
int vel_send(uint32_t handle, uint32_t node, uint32_t service, uint32_t opcode, const void *payload,
             uint32_t size, void *rr_handle, uint32_t token, uint32_t flags);
/** The token of the request a received message answers or carries. */
uint32_t vel_rr_token_get(void *rr_handle);
/** Releases a received message and its payload. */
int vel_drop(uint32_t handle, void *msg_handle);
/** Receives on the endpoint `handle`: the next message goes to `msg_handle`,
 * as `options` direct. */
int vel_recv(uint32_t handle, void *msg_handle, void *options);
/** The payload of a received message. */
void *vel_payload_get(void *msg_handle);
/** The size of the payload of a received message, in bytes. */
uint32_t vel_payload_size(void *msg_handle);

#ifdef __cplusplus
}
#endif

#endif
