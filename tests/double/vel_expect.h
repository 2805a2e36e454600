// Expectations on the recorded vel_send calls shared by the wrapper tests.
#pragma once

#include <gtest/gtest.h>

#include "platform_double.h"

namespace ipacl_double {

// What a vel_send must have received; the node and the flags never vary.
struct Sent {
    uint32_t handle, service, opcode, size;
    void *rr_handle;
    uint32_t token;
};

inline void expect_sent(const VelSendCall &call, const Sent &want) {
    EXPECT_EQ(call.handle, want.handle);
    EXPECT_EQ(call.node, 0xfe000000u);
    EXPECT_EQ(call.service, want.service);
    EXPECT_EQ(call.opcode, want.opcode);
    EXPECT_EQ(call.size, want.size);
    EXPECT_EQ(call.payload.size(), want.size);
    EXPECT_EQ(call.rr_handle, want.rr_handle);
    EXPECT_EQ(call.token, want.token);
    EXPECT_EQ(call.flags, 0u);
}

// Makes the next vel_send fail with `code` in errno.
inline void fail_send(int code) {
    platform().send_rc = -1;
    platform().send_errno = code;
}

}  // namespace ipacl_double
