// The quen envelope: a 112-byte header in network order (operation, payload
// length, reserved word, two texts) followed by the payload.
#pragma once

#include <cstdint>

#include <ipacl/enums.h>
#include <ipacl/wrap.h>

#include "wrap/vel_route.h"

namespace ipacl::wrap {

// How each enveloped send builds its header and where it goes.
struct EnvelopeKind {
    uint32_t operation;  // ipacl_quen_msg written at offset 0
    Route route;
    const char *no_memory;  // message when the envelope cannot be allocated
};

inline constexpr EnvelopeKind kQuenSet{IPACL_QUEN_MSG_SET, kToManager, "no mem for quen_msg"};
inline constexpr EnvelopeKind kQuenRequest{IPACL_QUEN_MSG_GET_NEXT, kToManager,
                                           "no mem for quen_req_msg"};
inline constexpr EnvelopeKind kQuenAnswer{0, kAnswer, "no mem for quen_msg"};

// What an enveloped send carries besides its kind.
struct Letter {
    uint32_t opcode;
    const void *payload;
    uint32_t size;
    const char *text1;  // NULL: field left zero
    const char *text2;
    void *rr_handle;
    uint32_t token;
};

// Allocates the envelope, fills it, sends it along the kind's route and
// frees it.  Returns 0 without touching `err`, IPACL_E_NO_MEM, or errno.
uint32_t send_envelope(const EnvelopeKind &kind, uint32_t handle, const Letter &letter, char *err);

// A received envelope of `size` bytes at `message`: where its payload starts
// and the length its header states.  `consistent` tells whether that length
// is exactly what follows the header.
struct Opened {
    void *payload;
    uint32_t length;
    bool consistent;
};

Opened open_envelope(void *message, uint32_t size);

}  // namespace ipacl::wrap
