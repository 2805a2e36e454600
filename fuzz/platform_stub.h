// The platform as the fuzz targets see it: every service answers what the
// current input asks for, deterministically, and records what the library
// sent so that a target can check it.
#pragma once

#include <cstdint>
#include <vector>

namespace fuzz_platform {

struct State {
    // vel_send: result and errno; the last payload sent and its arguments.
    int send_rc = 0;
    int send_errno = 0;
    uint32_t sends = 0;
    uint32_t last_service = 0, last_opcode = 0, last_token = 0, last_node = 0;
    bool last_had_rr = false;
    std::vector<uint8_t> last_payload;
    // vel_rr_token_get: the token the request handle carries.
    uint32_t token = 0x1234;
    // vel_recv: result and errno, and the answer attached on success.
    int recv_rc = 0;
    int recv_errno = 0;
    std::vector<uint8_t> answer;
    uint32_t last_wait_limit = 0, last_wait_token = 0;
    int held = 0;  // answers received and not yet dropped

    // interface-index service
    int type_rc = 0;
    uint8_t if_type = 2;
    int fields_rc = 0;
    uint8_t field_first = 0, field_second = 0;
    int port_init_rc = 0;
    uint32_t port_init_index = 0;

    // debug history and debug print
    int subtype_check_rc = 0;  // 0: record history events
    int chk_int_rc = 1;        // non-zero: print through zlogf
    uint32_t hist_events = 0, zlogs = 0;
};

State &state();
// Back to the defaults above; answers still held are released.
void reset();

}  // namespace fuzz_platform
