/* The host platform: the vel message service, the interface-index service and
 * the debug-history facility of platform/{vel,if_index,tivra}.h, made real on
 * a Linux host so that an ACL manager, its clients and its standby copy can
 * talk to each other on one machine.  Link libipacl_platform_host beside
 * libipacl.  Everything here is plain C.
 *
 * Endpoints
 * ---------
 * A process opens an endpoint and passes its handle to the vel calls (and so
 * to the ipacl_wrap_* wrappers).  Endpoints are Unix SOCK_SEQPACKET sockets
 * in one private directory per user:
 *
 *   $IPACL_HOST_DIR                      when set (tests, several instances;
 *                                        then the only candidate),
 *   else $XDG_RUNTIME_DIR/ipacl          when XDG_RUNTIME_DIR is itself a
 *                                        directory private to the user,
 *   else /tmp/ipacl-<effective uid>,
 *   else, when that name was taken by someone else, ~/.ipacl (the home
 *        directory from $HOME, else the password database; the home must
 *        be the user's or root's and not writable by group or others).
 *
 * A candidate is created with mode 0700 when missing; it is opened with
 * O_DIRECTORY|O_NOFOLLOW and checked on the open descriptor (fstat): a real
 * directory owned by the effective user with no access for group or others,
 * else it is passed over (IPACL_HOST_DIR: opening fails with EACCES).  The
 * endpoint keeps that descriptor, and binds, dials and removes its sockets
 * through it (as /proc/self/fd/<n>/<name> and unlinkat), never through the
 * directory's path again, so swapping the directory or a path leading to it
 * after the check gains nothing.  /proc must be mounted.  Inside it:
 *
 *   svc-<n>    the endpoint serving service n (98 is the ACL manager),
 *   standby    the endpoint registered as the standby copy,
 *   <name>.lock  beside each: the endpoint serving <name> holds an
 *              exclusive flock on it for its whole life.  Whoever gets the
 *              lock replaces a socket file left there (its owner is gone);
 *              nobody else touches it.  The lock is shared with children
 *              made by fork and dropped on exec.
 *
 * Both sides check the peer's credentials (SO_PEERCRED) on every connection:
 * a peer whose effective uid differs from ours is refused, so another user
 * can neither send requests nor pose as a service, even if the directory's
 * mode were loosened.
 *
 * Routing of vel_send(handle, node, service, opcode, payload, size,
 * rr_handle, token, flags):
 *   token != 0              an answer to the received request that carried
 *                           this token; it goes back to the requester;
 *   token == 0, service 0   an update for the standby copy;
 *   token == 0, service n   a request to the endpoint serving n.
 * The host is a single node: the node word is accepted as given.  flags must
 * be 0.  The payload is copied before vel_send returns.  A request gets a
 * fresh token; with an rr_handle the token is recorded there and the answer
 * can be awaited with vel_recv.
 *
 * vel_recv options: ten 32-bit words.
 *   word 0   1: wait for the answer carrying the token in word 3;
 *            0: take the next incoming request or update (as
 *               ipacl_host_accept does);
 *   word 2   the wait limit, in units of the endpoint's wait unit, one
 *            second unless changed with ipacl_host_set_wait_unit; 0 means
 *            do not wait at all;
 *   word 3   the token (word 0 = 1).
 * Other words are ignored.
 *
 * Results: every vel call and every ipacl_host_* call that returns int gives
 * 0 on success and -1 with errno set on failure.  Notable errno values:
 *   EBADF         unknown endpoint handle;
 *   EINVAL        bad argument, bad options, unknown handle area, flags != 0;
 *   ECONNREFUSED  no endpoint is serving the destination (or no standby);
 *   ECONNRESET    the peer went away before answering;
 *   ETIMEDOUT     the wait limit passed without the message;
 *   ENOENT        an answer for a token that no pending request carries;
 *   EMSGSIZE      payload above IPACL_HOST_MAX_PAYLOAD;
 *   EACCES        the endpoint directory is not private to this user;
 *   EADDRINUSE    a live endpoint already serves the name;
 *   ENOBUFS       the answer would pass the peer's cap (its connection is
 *                 closed);
 *   ENOMEM        out of memory.
 *
 * A misbehaving peer of the same user
 * -----------------------------------
 * An answer is taken only from the connection its request went out on, and
 * only for a token this endpoint still awaits there; any other answer is
 * dropped and counted (protocol_errors and forged_answers), and a peer that
 * sends an answer on a connection it made to us loses that connection.
 * Memory grows with the bytes that arrive, never with a size a frame
 * announces, within these caps:
 *   IPACL_HOST_MAX_CONNECTIONS     connections peers may hold open to one
 *                                  endpoint; more are accepted and closed;
 *   IPACL_HOST_MAX_PARTIAL         messages of several frames being
 *                                  reassembled at once per endpoint;
 *   IPACL_HOST_MAX_CONN_BUFFERED   bytes kept for one connection: the message
 *                                  it is sending, its requests not yet
 *                                  taken, answers not yet sent to it;
 *   IPACL_HOST_MAX_BUFFERED        bytes kept for all connections of an
 *                                  endpoint; past it the connections holding
 *                                  the most are closed first.
 * A peer over a cap loses its own connection (counted in over_limit).  The
 * process's peak memory may exceed what is kept by the allocator's own
 * slack, about one largest message.
 * Answers never block: what the peer's socket does not take at once waits
 * in that connection's queue and goes out whenever the endpoint is in
 * vel_recv, ipacl_host_accept or ipacl_host_serve; a message still queued
 * IPACL_HOST_SEND_DEADLINE_MS after it was sent closes the connection
 * (send_timeouts).  Requests and updates wait for their peer up to the same
 * deadline, then fail with ETIMEDOUT.  When no descriptor is left to accept
 * a connection (EMFILE, ENFILE) the endpoint spends a spare one to take it
 * off the backlog and close it, or else rests its listener for 100 ms
 * (descriptor_shortages).  A call that runs out of memory fails with ENOMEM;
 * no C++ exception leaves any function of this library.
 *
 * Handle areas (the 28 bytes of ipacl_vel_msg.handle) are filled by vel_send
 * (a sent request: its token) and by vel_recv / ipacl_host_accept (a
 * received message, held until vel_drop).  They hold no pointers: a stale or
 * forged area is refused with EINVAL, never dereferenced; on such an area
 * vel_payload_get answers NULL and vel_payload_size and vel_rr_token_get 0.
 * An empty payload still has a non-NULL address.  vel_drop ignores its
 * endpoint handle: received messages outlive their endpoint.
 *
 * An endpoint is used by one thread at a time; different endpoints may be
 * used from different threads.  A child process must not use endpoints
 * inherited through fork (open its own).
 *
 * Interface indexes
 * -----------------
 *   bits 31..24  interface type     bits 15..8  module (0: none)
 *   bits 23..16  slot               bits  7..0  port
 * Numbered interfaces (loopback, aggregate, VLAN, ...) use bits 15..0 as
 * their number.  Types and names:
 *   1 cpu    "cpu<n>"          7 tunnel "tunnel<n>"
 *   2 eth    "eth<s>/<p>" or "eth<s>/<m>/<p>"
 *   3 lo     "lo<n>"           8 sub    "sub<s>/<p>" or "sub<s>/<m>/<p>"
 *   4 agg    "agg<n>"          9 br     "br<n>"
 *   5 mgmt   "mgmt<s>/<p>"    10 dummy  "dummy<n>"
 *   6 vlan   "vlan<n>"        11 veth   "veth<n>"
 * Type 5 is a supervisor's management port: slot = the supervisor (first
 * field), port = the port on it (second field, 0 for the management port
 * itself).  if_index_mgmt_sup_port_init(&i, first, port) builds exactly the
 * index whose fields if_index_mgmt_sup_get_fields reports back.  Index 0 and
 * type 0 or above 11 are no interface.  The interface-index calls return 0 or
 * one of the IPACL_HOST_IF_E_* codes.
 *
 * Debug history and debug print
 * -----------------------------
 * tivra_hist_event records into a ring of the last IPACL_HOST_HIST_CAPACITY
 * events (each keeps at most IPACL_HOST_HIST_RECORD bytes of its record);
 * ipacl_host_hist_dump prints them.  Debug printing is on when the
 * environment variable IPACL_DEBUG holds a level of 1 or more (or after
 * ipacl_host_debug_set): tivra_chk_int(subtype, a, b, level) is then non-zero
 * for every level up to it, and zlogf(level, ...) prints such messages to
 * standard error as "<module>: <text>".  Otherwise both are silent. */
#ifndef IPACL_HOST_H
#define IPACL_HOST_H

#include <stdint.h>
#include <stdio.h>

#ifdef __cplusplus
extern "C" {
#endif

#if defined(IPACL_HOST_BUILDING)
#define IPACL_HOST_API __attribute__((visibility("default")))
#else
#define IPACL_HOST_API
#endif

/* ------------------------------------------------------------ endpoints -- */

#define IPACL_HOST_SERVICE_ACL 98u         /* the ACL manager */
#define IPACL_HOST_STANDBY 0x1u            /* ipacl_host_open: be the standby */
#define IPACL_HOST_MAX_PAYLOAD (16u << 20) /* bytes in one message */
#define IPACL_HOST_HANDLE_AREA 28u         /* bytes of a message handle area */

/* The caps on what peers may make an endpoint keep (see above). */
#define IPACL_HOST_MAX_CONNECTIONS 128u
#define IPACL_HOST_MAX_PARTIAL 16u
#define IPACL_HOST_MAX_CONN_BUFFERED (2u * IPACL_HOST_MAX_PAYLOAD + (1u << 20))
#define IPACL_HOST_MAX_BUFFERED (4u * IPACL_HOST_MAX_PAYLOAD)
#define IPACL_HOST_SEND_DEADLINE_MS 5000u

/* Opens an endpoint.  service 0 without flags: a client only (it sends and
 * receives answers, nothing can connect to it).  service n > 0: also serves
 * n.  IPACL_HOST_STANDBY: registers as the standby copy (service names the
 * service it stands in for and is not served).  A name already served by a
 * live endpoint gives EADDRINUSE; a stale one left by a dead process is
 * replaced. */
IPACL_HOST_API int ipacl_host_open(uint32_t service, uint32_t flags, uint32_t *handle);
/* Closes the endpoint and unregisters its name, after sending the answers
 * still queued (each within its deadline).  Messages already received stay
 * held until dropped. */
IPACL_HOST_API int ipacl_host_close(uint32_t handle);
/* Milliseconds per unit of the vel_recv wait limit (default 1000). */
IPACL_HOST_API int ipacl_host_set_wait_unit(uint32_t handle, uint32_t ms);
/* The endpoint directory in use (at most size bytes, terminated). */
IPACL_HOST_API int ipacl_host_dir(char *buf, uint32_t size);

/* Receives the next incoming request or standby update within timeout_ms
 * (0: do not wait) and fills the handle area msg_handle (28 bytes) with it:
 * vel_payload_get, vel_payload_size and vel_rr_token_get then work on it, and
 * vel_drop releases it.  Answer a request with vel_send (or
 * ipacl_wrap_vel_rsp) and the token. */
IPACL_HOST_API int ipacl_host_accept(uint32_t handle, void *msg_handle, uint32_t timeout_ms);

enum {
    IPACL_HOST_MSG_REQUEST = 1, /* a request (or, addressed to service 0, a standby update) */
    IPACL_HOST_MSG_ANSWER = 2   /* an answer to a request this endpoint sent */
};

typedef struct ipacl_host_msg_info {
    uint32_t kind;    /* IPACL_HOST_MSG_* */
    uint32_t opcode;  /* the sender's opcode (0 in answers) */
    uint32_t service; /* the service it was sent to: 0 for a standby update */
    uint32_t token;   /* the token to answer with, or the answered request's */
    uint32_t size;    /* payload bytes */
    uint32_t awaited; /* 1 when the sender waits for an answer */
} ipacl_host_msg_info;

/* Describes a received message held in a handle area. */
IPACL_HOST_API int ipacl_host_msg_info_get(const void *msg_handle, ipacl_host_msg_info *info);

/* A receive loop: accepts messages until `handler` returns non-zero, `limit`
 * messages were handled (0: no limit) or none arrives within timeout_ms.
 * Each message is dropped after its handler returns.  Returns 0 when the
 * handler or the limit ended the loop, -1 with errno (ETIMEDOUT, ...)
 * otherwise. */
typedef int (*ipacl_host_handler)(uint32_t handle, void *msg_handle, void *context);
IPACL_HOST_API int ipacl_host_serve(uint32_t handle, ipacl_host_handler handler, void *context,
                                    uint32_t timeout_ms, uint32_t limit);

typedef struct ipacl_host_stats {
    uint32_t refused_peers;        /* connections refused: another user */
    uint32_t protocol_errors;      /* malformed frames (connection dropped) and
                                      forged answers (dropped) */
    uint32_t dropped;              /* requests discarded: inbox full */
    uint32_t connections;          /* connections currently open */
    uint32_t held;                 /* received messages not yet dropped (process) */
    uint32_t forged_answers;       /* answers dropped: not awaited on their connection
                                      (also counted in protocol_errors) */
    uint32_t over_limit;           /* connections closed for passing a cap */
    uint32_t send_timeouts;        /* connections closed: a message missed its deadline */
    uint32_t descriptor_shortages; /* accepts without a descriptor (EMFILE, ENFILE) */
} ipacl_host_stats;

IPACL_HOST_API int ipacl_host_stats_get(uint32_t handle, ipacl_host_stats *stats);

/* ---------------------------------------------------- interface indexes -- */

#define IPACL_HOST_IF_E_NOENT 0x7e000001u   /* no such interface */
#define IPACL_HOST_IF_E_NOTMGMT 0x7e000002u /* not a management port */
#define IPACL_HOST_IF_E_INVAL 0x7e000003u   /* bad argument */

enum {
    IPACL_HOST_IF_CPU = 1,
    IPACL_HOST_IF_ETH = 2,
    IPACL_HOST_IF_LO = 3,
    IPACL_HOST_IF_AGG = 4,
    IPACL_HOST_IF_MGMT = 5,
    IPACL_HOST_IF_VLAN = 6,
    IPACL_HOST_IF_TUNNEL = 7,
    IPACL_HOST_IF_SUB = 8,
    IPACL_HOST_IF_BR = 9,
    IPACL_HOST_IF_DUMMY = 10,
    IPACL_HOST_IF_VETH = 11
};

/* Builds a slotted interface index; 0 if an argument is out of range. */
IPACL_HOST_API uint32_t ipacl_host_if_index(uint32_t type, uint32_t slot, uint32_t module,
                                            uint32_t port);
/* Builds a numbered interface index (number 0..65535); 0 if out of range. */
IPACL_HOST_API uint32_t ipacl_host_if_index_num(uint32_t type, uint32_t number);
/* Parses a name written by snprintf_if_index; 0 if it names no interface. */
IPACL_HOST_API uint32_t ipacl_host_if_index_parse(const char *name);

/* ---------------------------------------------------- debug and history -- */

#define IPACL_HOST_HIST_CAPACITY 256u
#define IPACL_HOST_HIST_RECORD 520u

typedef struct ipacl_host_hist_entry {
    uint64_t seq; /* 1 for the first event of the process */
    uint32_t event;
    uint32_t length; /* the length given */
    uint32_t kept;   /* bytes of the record kept in `record` */
    uint8_t record[IPACL_HOST_HIST_RECORD];
} ipacl_host_hist_entry;

/* Events currently kept (at most IPACL_HOST_HIST_CAPACITY). */
IPACL_HOST_API uint32_t ipacl_host_hist_count(void);
/* The index-th kept event, oldest first. */
IPACL_HOST_API int ipacl_host_hist_get(uint32_t index, ipacl_host_hist_entry *entry);
/* Prints every kept event, oldest first; returns the number printed. */
IPACL_HOST_API uint32_t ipacl_host_hist_dump(FILE *out);
IPACL_HOST_API void ipacl_host_hist_clear(void);
/* Recording on (1, the default) or off (0): tivra_hist_event_subtype_check
 * answers 0 only while it is on. */
IPACL_HOST_API void ipacl_host_hist_enable(int on);
/* Sets the debug level, overriding IPACL_DEBUG (0: off; negative: read
 * IPACL_DEBUG again). */
IPACL_HOST_API void ipacl_host_debug_set(int level);
IPACL_HOST_API int ipacl_host_debug_level(void);

#ifdef __cplusplus
}
#endif

#endif
