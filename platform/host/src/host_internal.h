// Internals of the host platform: endpoints, their connections, frames on
// the wire and the table of received messages held by handle areas.
#pragma once

#include <cstdint>
#include <deque>
#include <string>
#include <sys/types.h>
#include <unordered_map>
#include <vector>

namespace ipacl_host {

// One frame on a SOCK_SEQPACKET connection: this header, then `chunk` bytes
// of payload.  A message of more than kMaxChunk bytes travels as a first
// frame followed by continuation frames.  Both ends run on the same machine,
// so the header is in host order.
constexpr uint32_t kFrameMagic = 0x69706831;  // "iph1"
constexpr uint32_t kMaxChunk = 64 * 1024;

enum FrameKind : uint32_t { kRequest = 1, kAnswer = 2, kMore = 3 };
enum FrameFlags : uint32_t { kAwaited = 1 };

struct FrameHeader {
    uint32_t magic;
    uint32_t kind;
    uint32_t opcode;
    uint32_t service;  // the service the request was sent to (0: standby)
    uint32_t token;    // request: the sender's token; answer: the request's
    uint32_t flags;
    uint32_t size;   // payload bytes of the whole message
    uint32_t chunk;  // payload bytes in this frame
};

// A complete message, as received.
struct Message {
    FrameHeader head{};
    std::vector<uint8_t> payload;
    uint64_t conn_id = 0;
};

// A message waiting to be sent: `next` is the header of its next frame and
// `rest` the payload bytes not sent yet.
struct OutMessage {
    FrameHeader next{};
    std::vector<uint8_t> rest;
    size_t sent = 0;       // bytes of `rest` already sent
    int64_t deadline = 0;  // monotonic ms by which it must be gone
};

struct Conn {
    int fd = -1;
    uint64_t id = 0;
    bool dialled = false;       // made by us (else accepted)
    uint32_t dest_service = 0;  // the service dialled: 0 for the standby
    int64_t rcvtimeo_ms = -1;   // SO_RCVTIMEO currently set, -1 unknown
    bool partial = false;       // a message is being reassembled
    Message assembling;
    size_t held_bytes = 0;  // its complete messages not yet taken by the caller
    std::deque<OutMessage> out;
    size_t out_bytes = 0;
    bool watching_out = false;  // EPOLLOUT is registered
};

// Requests this endpoint received and may answer: our token -> requester.
struct Asked {
    uint64_t conn_id;
    uint32_t peer_token;
};

struct Stats {
    uint32_t refused_peers = 0;
    uint32_t protocol_errors = 0;
    uint32_t dropped = 0;
    uint32_t forged_answers = 0;
    uint32_t over_limit = 0;
    uint32_t send_timeouts = 0;
    uint32_t descriptor_shortages = 0;
};

constexpr size_t kInboxLimit = 4096;
constexpr uint32_t kTokenWindow = 1u << 16;  // pending tokens remembered
// How long the listener rests when no descriptor is left even to refuse a
// connection with.
constexpr int64_t kListenerPauseMs = 100;

struct Endpoint {
    uint32_t service = 0;
    uint32_t flags = 0;
    pid_t owner = 0;  // the process that opened it
    std::string dir;
    int dir_fd = -1;   // the endpoint directory, checked once, used for every name
    int lock_fd = -1;  // holds the name served while the endpoint lives
    int listen_fd = -1;
    int spare_fd = -1;                  // given up to refuse a connection at EMFILE
    int64_t listener_paused_until = 0;  // 0: listening
    std::string listen_name;
    std::unordered_map<uint64_t, Conn> conns;
    uint32_t accepted = 0;  // connections made by peers
    uint32_t partials = 0;  // connections in the middle of a message
    uint64_t next_conn_id = 1;
    uint32_t next_token = 1;                          // requests we send
    uint32_t next_local_token = 1;                    // requests we receive
    std::unordered_map<uint32_t, uint64_t> awaiting;  // our token -> connection
    std::unordered_map<uint32_t, Asked> asked;
    std::deque<Message> inbox;                       // requests and updates
    std::unordered_map<uint32_t, Message> answered;  // answers not yet awaited
    size_t orphan_bytes = 0;                         // inbox bytes of connections already closed
    std::vector<uint8_t> scratch;
    uint32_t wait_unit_ms = 1000;
    int epoll_fd = -1;  // the listener and every connection

    Stats stats;
};

// --- results -------------------------------------------------------------
// Sets errno and returns -1, the failure result of every call.
int fail(int error);

// --- endpoint directory and security (endpoint_dir.cpp, peer_cred.cpp) ---
// Opens the endpoint directory (creating it private when missing) and
// returns its descriptor, or -1 with errno (EACCES: not private to us).
int open_dir(std::string &dir);
// The path by which a name inside the directory is bound or dialled: it
// goes through the open descriptor, never through the directory's name.
int socket_path(const Endpoint &ep, const std::string &name, std::string &path);
// True when the peer on a connected Unix socket runs as our effective user.
bool peer_is_same_user(int fd);

// --- the served name (endpoint_lock.cpp) ----------------------------------
// Takes the lock that makes this endpoint the owner of `name` (EADDRINUSE
// when a live endpoint holds it) and binds a fresh listening socket there.
int claim_name(Endpoint &ep, const std::string &name);
// Unregisters the name if this process owns it and releases the lock.
void release_name(Endpoint &ep);

// --- endpoints (endpoint_registry.cpp) ------------------------------------
Endpoint *find_endpoint(uint32_t handle);

// --- connections (connection.cpp) -----------------------------------------
// The epoll registration of the listener; connections use their id.
constexpr uint64_t kListenerId = 0;
int watch_endpoint(Endpoint &ep);
int watch_listener(Endpoint &ep, int fd);
Conn *find_conn(Endpoint &ep, uint64_t id);
// The name an endpoint serving `service` registers ("svc-<n>"; "standby"
// for service 0).
std::string service_name(uint32_t service);
// The connection to a destination service, dialled when there is none.
Conn *dial(Endpoint &ep, uint32_t service, bool &fresh);
// Takes the connections waiting on the listener, refusing what passes the
// caps or finds no descriptor.
void accept_peers(Endpoint &ep);
// Resumes a listener paused for lack of descriptors once its rest is over.
void resume_listener(Endpoint &ep, int64_t now);
void close_conn(Endpoint &ep, uint64_t id);
void close_all(Endpoint &ep);
void close_keeping_errno(int fd);

// --- sending (output_queue.cpp) --------------------------------------------
// Sends a message on c at once, blocking up to the send deadline (requests
// and updates: the caller waits for the peer it chose).
int send_now(Endpoint &ep, Conn &c, const FrameHeader &head, const void *payload);
// Sends what the socket takes now and queues the rest, to be sent by the
// event loop before the deadline.  ENOBUFS when the queue would pass the
// connection's cap (the connection is then closed).
int send_queued(Endpoint &ep, Conn &c, const FrameHeader &head, const void *payload);
// Sends what waits on c without blocking; false when c must be closed.
bool flush_queue(Endpoint &ep, Conn &c);
// Closes connections whose oldest waiting message passed its deadline and
// returns the earliest deadline still ahead (INT64_MAX: none).
int64_t expire_queues(Endpoint &ep, int64_t now);
// Sends everything still queued, each message within its deadline (an
// endpoint being closed still delivers the answers it gave).
void drain_queues(Endpoint &ep);
// Registers or unregisters interest in c becoming writable.
void watch_output(Endpoint &ep, Conn &c);

// --- frames in (frame_in.cpp) ----------------------------------------------
enum class Rx { Complete, Partial, Again, Closed, Failed };
// Receives one frame; with wait_ms < 0 does not block.  On Complete the
// message is in `out`.  On Failed errno says why (EPROTO: malformed frame,
// ENOBUFS: a cap was passed, ENOMEM: no memory).
Rx receive_frame(Endpoint &ep, Conn &c, int64_t wait_ms, Message &out);

// --- memory caps (buffer_caps.cpp) ------------------------------------------
// Bytes the endpoint keeps for peers: reassembly, inbox, answers, queues.
size_t buffered_bytes(const Endpoint &ep);
size_t conn_bytes(const Conn &c);
// True when c may keep `more` bytes beyond what it has: within its own cap,
// and within the endpoint's once the connections holding more than c are
// closed (each counted over_limit).  False when c itself is over.
bool make_room(Endpoint &ep, const Conn &c, size_t more);
// Closes the connections holding the most until the endpoint is under its
// cap again (each counted over_limit).
void enforce_endpoint_cap(Endpoint &ep);
// Forgets inbox messages of connection id (their bytes were counted there).
void discard_inbox_of(Endpoint &ep, uint64_t id);

// --- receiving (receive.cpp) ----------------------------------------------
// Files a received message: requests go to the inbox with a token of ours,
// answers to the answers awaited on that connection; anything else is
// dropped.  False when the connection must be closed.
bool file_message(Endpoint &ep, Conn &c, Message &&m);
int accept_message(Endpoint &ep, void *area, int64_t timeout_ms);
int await_answer(Endpoint &ep, uint32_t token, int64_t timeout_ms, void *area);
// The next token for a request of ours sent on conn_id; an awaited one is
// remembered until its answer is taken.
uint32_t issue_token(Endpoint &ep, uint64_t conn_id, bool awaited);
int64_t now_ms();

// --- handle areas (held.cpp) ----------------------------------------------
void area_set_sent(void *area, uint32_t token);
// Moves the message into the held table and describes it in the area.
int area_hold(void *area, Message &&m);
uint32_t held_count();

}  // namespace ipacl_host
