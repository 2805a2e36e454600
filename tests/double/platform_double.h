// A recording, programmable stand-in for every platform service, for the
// project's own tests.  Each test resets it, sets the answers it wants and
// reads back the calls the library made.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <utility>
#include <vector>

namespace ipacl_double {

using Bytes = std::vector<uint8_t>;

struct VelSendCall {
    uint32_t handle, node, service, opcode;
    Bytes payload;  // copy of the bytes at the time of the call
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
    Bytes record;
};
struct ChkIntCall {
    uint32_t subtype, a, b, c;
};
struct ZlogCall {
    int level;
    std::string module;
    int flags;
    std::string format, text;  // text: the formatted message
};
struct IfInfo {
    int rc = 0;
    uint8_t type = 0;
};

struct State {
    // vel: a failing call sets errno to its *_errno; on success vel_recv
    // attaches the next queued answer to the handle, which then holds it.
    int send_rc = 0, send_errno = 0, recv_rc = 0, recv_errno = 0, drop_rc = 0, drop_errno = 0;
    uint32_t rr_token = 0;
    std::vector<Bytes> answers, held;
    std::vector<VelSendCall> sends;
    std::vector<void *> token_gets;
    std::vector<VelRecvCall> recvs;
    std::vector<VelDropCall> drops;

    // interface-index service; unknown indexes answer type_default
    std::map<uint32_t, IfInfo> if_types;
    IfInfo type_default{0, 2};
    std::vector<uint32_t> type_calls, fields_calls;
    int fields_rc = 0, port_init_rc = 0;
    uint8_t field_first = 0, field_second = 0;
    uint32_t port_init_if_index = 0;
    std::vector<std::pair<uint32_t, uint32_t>> port_init_calls;  // first, port
    int if_name_rc_override = -1;  // >= 0: return this instead of the length
    std::vector<std::pair<uint32_t, uint32_t>> if_name_calls;  // size, index

    // tivra and zlogf
    int subtype_check_rc = 0, chk_int_rc = 0;
    std::vector<std::pair<uint32_t, uint32_t>> subtype_checks;
    std::vector<HistEvent> hist_events;
    std::vector<ChkIntCall> chk_ints;
    std::vector<ZlogCall> zlogs;
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
