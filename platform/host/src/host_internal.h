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

struct Conn {
    int fd = -1;
    uint64_t id = 0;
    bool dialled = false;       // made by us (else accepted)
    uint32_t dest_service = 0;  // the service dialled: 0 for the standby
    int64_t rcvtimeo_ms = -1;   // SO_RCVTIMEO currently set, -1 unknown
    bool partial = false;       // a message is being reassembled
    Message assembling;
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
};

constexpr size_t kInboxLimit = 4096;
constexpr size_t kStrayAnswerLimit = 64;
constexpr uint32_t kTokenWindow = 1u << 16;  // pending tokens remembered

struct Endpoint {
    uint32_t service = 0;
    uint32_t flags = 0;
    pid_t owner = 0;  // the process that opened it
    std::string dir;
    int listen_fd = -1;
    std::string listen_path;
    ino_t listen_ino = 0;
    std::vector<Conn> conns;
    uint64_t next_conn_id = 1;
    uint32_t next_token = 1;                          // requests we send
    uint32_t next_local_token = 1;                    // requests we receive
    std::unordered_map<uint32_t, uint64_t> awaiting;  // our token -> connection
    std::unordered_map<uint32_t, Asked> asked;
    std::deque<Message> inbox;          // requests and updates
    std::deque<Message> stray_answers;  // answers not yet awaited
    std::vector<uint8_t> scratch;
    uint32_t wait_unit_ms = 1000;
    int epoll_fd = -1;  // the listener and every connection

    Stats stats;
};

// --- results -------------------------------------------------------------
// Sets errno and returns -1, the failure result of every call.
int fail(int error);

// --- endpoint directory and security (endpoint_dir.cpp, peer_cred.cpp) ---
// Resolves the endpoint directory, creating it private when missing; fails
// with EACCES when it exists but is not private to the effective user.
int prepare_dir(std::string &dir);
// Refuses (EACCES) a directory that is not private to the effective user.
int check_private_dir(const std::string &dir);
// True when the peer on a connected Unix socket runs as our effective user.
bool peer_is_same_user(int fd);
// Fills a sockaddr path for dir/name; ENAMETOOLONG when it does not fit.
int socket_path(const std::string &dir, const char *name, std::string &path);

// --- endpoints (endpoint_registry.cpp) ------------------------------------
Endpoint *find_endpoint(uint32_t handle);

// --- connections (connection.cpp) -----------------------------------------
// The epoll registration of the listener; connections use their id.
constexpr uint64_t kListenerId = 0;
int watch_endpoint(Endpoint &ep);
int listen_on(Endpoint &ep, const std::string &path);
Conn *find_conn(Endpoint &ep, uint64_t id);
// The name an endpoint serving `service` registers ("svc-<n>"; "standby"
// for service 0).
std::string service_name(uint32_t service);
// The connection to a destination service, dialled when there is none.
Conn *dial(Endpoint &ep, uint32_t service, bool &fresh);
int accept_peer(Endpoint &ep);
void close_conn(Endpoint &ep, uint64_t id);
void close_all(Endpoint &ep);
int send_message(Conn &c, const FrameHeader &head, const void *payload);

enum class Rx { Complete, Partial, Again, Closed, Failed };
// Receives one frame; with wait_ms < 0 does not block.  On Complete the
// message is in `out`.  On Failed errno says why (EPROTO: malformed frame).
Rx receive_frame(Endpoint &ep, Conn &c, int64_t wait_ms, Message &out);

// --- receiving (receive.cpp) ----------------------------------------------
// Files a received message: requests go to the inbox with a token of ours,
// answers to the stray answers.
void file_message(Endpoint &ep, Message &&m);
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
