/** @file
 * Message wrappers over the vel service and the quen envelope.
 *
 * The vel wrappers pass a payload to the ACL manager (service 98), to the
 * standby copy (service 0) or back to a requester (a response carrying the
 * request's token), and wait for answers by token.  The quen wrappers do the
 * same with the payload behind a 112-byte envelope header (ipacl_quen, in
 * network order), allocated per call and freed before returning.
 *
 * Results: 0 on success; errno itself when a platform call fails;
 * IPACL_E_BAD_ARG when an enveloped answer's length disagrees with its size;
 * IPACL_E_NO_MEM when the envelope cannot be allocated.  `err` may be NULL. */
#ifndef IPACL_WRAP_H
#define IPACL_WRAP_H

#include <ipacl/codes.h>
#include <ipacl/records.h>

IPACL_BEGIN_DECLS

/** Destination node word of every send. */
#define IPACL_VEL_NODE 0xfe000000u
/** @{ */
/** Destination services: the ACL manager for requests; none for standby
 * updates and responses. */
#define IPACL_VEL_SERVICE_ACL 98u
#define IPACL_VEL_SERVICE_NONE 0u
/** @} */
/** @{ */
/** Size of the platform's message handle area, and how much of it is cleared
 * before a request-response exchange. */
#define IPACL_VEL_HANDLE_SIZE 28
#define IPACL_VEL_HANDLE_CLEARED 25
/** @} */
/** Wait limit of the receive that waits for an answer. */
#define IPACL_VEL_WAIT_LIMIT 10u

/** Message descriptor, owned by the caller.  For a request-response exchange
 * the platform fills `handle` on sending; for a received answer it holds the
 * message until the caller releases it with vel_drop(). */
typedef struct ipacl_vel_msg {
    uint32_t opcode;                       /**< the message's opcode */
    uint8_t handle[IPACL_VEL_HANDLE_SIZE]; /**< the platform's message handle area */
    void *payload;                         /**< not owned by the descriptor */
    uint32_t size;                         /**< payload bytes */
} ipacl_vel_msg;

/** Request descriptor of the envelope: an ipacl_vel_msg followed by the two
 * texts carried in the envelope header (each may be NULL; at most 39 and 59
 * characters). */
typedef struct ipacl_quen_desc {
    uint32_t opcode;                       /**< the message's opcode */
    uint8_t handle[IPACL_VEL_HANDLE_SIZE]; /**< the platform's message handle area */
    void *payload;                         /**< not owned by the descriptor */
    uint32_t size;                         /**< payload bytes */
    const char *text1;                     /**< first envelope text, or NULL */
    const char *text2;                     /**< second envelope text, or NULL */
} ipacl_quen_desc;

/** Receive options that the request-response wrappers hand to vel_recv():
 * wait for the answer that carries `token`, within `wait_limit`. */
typedef struct ipacl_vel_rcv_opts {
    uint32_t mode;       /**< always 1 */
    uint32_t word1;      /**< 0 */
    uint32_t wait_limit; /**< IPACL_VEL_WAIT_LIMIT */
    uint32_t token;      /**< token of the request being answered */
    uint32_t spare[6];   /**< 0 */
} ipacl_vel_rcv_opts;

IPACL_STATIC_ASSERT(sizeof(ipacl_vel_rcv_opts) == 40, "vel receive options are ten words");

/** One-way request to the ACL manager; rr_handle (may be NULL) is passed on
 * to the platform unchanged.  "failed vel_send() %u" on failure. */
IPACL_API uint32_t ipacl_wrap_vel_send(uint32_t handle, void *rr_handle, const ipacl_vel_msg *msg,
                                       char *err);

/** Same as ipacl_wrap_vel_send, to no destination service (the standby copy). */
IPACL_API uint32_t ipacl_wrap_vel_standby(uint32_t handle, void *rr_handle,
                                          const ipacl_vel_msg *msg, char *err);

/** Answer to a received request, carrying its token.
 * "failed vel_send_response() %u" on failure. */
IPACL_API uint32_t ipacl_wrap_vel_rsp(uint32_t handle, uint32_t token, const void *payload,
                                      uint32_t size, char *err);

/** Sends `req` to the ACL manager and waits for its answer.  `rsp` is cleared
 * first; on success it holds the answer (handle, payload, size), which the
 * caller releases with vel_drop(handle, rsp->handle). */
IPACL_API uint32_t ipacl_wrap_vel_req_rsp(uint32_t handle, ipacl_vel_msg *req, ipacl_vel_msg *rsp,
                                          char *err);

/** Hands a received payload to the caller unchanged; never fails. */
IPACL_API uint32_t ipacl_wrap_vel_recv(void *payload, uint32_t size, void **out_payload,
                                       uint32_t *out_size, char *err);

/** One-way enveloped request (operation 3) to the ACL manager.  Leaves `err`
 * untouched on success. */
IPACL_API uint32_t ipacl_wrap_quen_send(uint32_t handle, const ipacl_vel_msg *msg, char *err);

/** Enveloped request (operation 2, with the two texts) and wait for the
 * enveloped answer: rsp->payload points after its header and rsp->size is
 * the header's length, also when the length disagrees with the answer
 * ("bas size %u for opc %u", IPACL_E_BAD_ARG). */
IPACL_API uint32_t ipacl_wrap_quen_req_rsp(uint32_t handle, ipacl_quen_desc *req,
                                           ipacl_vel_msg *rsp, char *err);

/** Enveloped answer (operation 0) carrying the request's token. */
IPACL_API uint32_t ipacl_wrap_quen_rsp(uint32_t handle, uint32_t token, const void *payload,
                                       uint32_t size, char *err);

/** Opens a received envelope of `size` bytes: *out_payload points after the
 * header and *out_size is the header's length ("bad size %u",
 * IPACL_E_BAD_ARG, when it disagrees with `size`). */
IPACL_API uint32_t ipacl_wrap_quen_recv(void *payload, uint32_t size, void **out_payload,
                                        uint32_t *out_size, char *err);

IPACL_END_DECLS

#endif
