// A recording, programmable stand-in for every platform service, for the
// project's own tests.  Each test resets it, sets the answers it wants and
// reads back the calls the library made.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace ipacl_double {

struct VelSendCall {
    uint32_t handle, node, service, opcode;
    std::vector<uint8_t> payload;  // copy of the bytes at the time of the call
    uint32_t size;
    void *rr_handle;
    uint32_t token, flags;
};

struct VelRecvCall {
    uint32_t handle;
    void *msg_handle;
    uint32_t options[10];
};

struct VelDropCall {
    uint32_t handle;
    void *msg_handle;
};

struct HistEvent {
    uint32_t event, length;
    std::vector<uint8_t> record;
};

struct ChkIntCall {
    uint32_t subtype, a, b, c;
};

struct ZlogCall {
    int level;
    std::string module;
    int flags;
    std::string format;
    std::string text;  // the formatted message
};

struct IfInfo {
    int rc = 0;
    uint8_t type = 0;
};

struct State {
    // vel_send
    int send_rc = 0;
    int send_errno = 0;
    std::vector<VelSendCall> sends;
    // vel_rr_token_get
    uint32_t rr_token = 0;
    std::vector<void *> token_gets;
    // vel_recv: on success the next queued answer is attached to the handle
    int recv_rc = 0;
    int recv_errno = 0;
    std::vector<std::vector<uint8_t>> answers;  // queued answers, first first
    std::vector<VelRecvCall> recvs;
    // vel_drop
    int drop_rc = 0;
    int drop_errno = 0;
    std::vector<VelDropCall> drops;

    // interface-index service; unknown indexes answer type_default
    std::map<uint32_t, IfInfo> if_types;
    IfInfo type_default{0, 2};
    std::vector<uint32_t> type_calls;
    int fields_rc = 0;
    uint8_t field_first = 0, field_second = 0;
    std::vector<uint32_t> fields_calls;
    int port_init_rc = 0;
    uint32_t port_init_if_index = 0;
    std::vector<std::pair<uint32_t, uint32_t>> port_init_calls;  // first, port
    int if_name_rc_override = -1;  // >= 0: return this instead of the length
    std::vector<std::pair<uint32_t, uint32_t>> if_name_calls;  // size, index

    // tivra and zlogf
    int subtype_check_rc = 0;
    std::vector<std::pair<uint32_t, uint32_t>> subtype_checks;
    std::vector<HistEvent> hist_events;
    int chk_int_rc = 0;
    std::vector<ChkIntCall> chk_ints;
    std::vector<ZlogCall> zlogs;

    // Answers held by the handles the library received into: owned here.
    std::vector<std::vector<uint8_t>> held;
};

// The one state of the double; reset() restores the defaults above.
State &platform();
void reset();

// Allocation failure injection for code that calls malloc: the n-th malloc
// from now (1 = the next one) returns NULL; 0 disables.  Counts calls made
// while armed.
void fail_malloc_after(uint32_t n);
uint32_t malloc_calls();

}  // namespace ipacl_double
