// Receiving over the host platform and the few messages the demo builds
// that are not filter messages.
#pragma once

#include "platform/host/ipacl_host.h"

#include <ipacl/records.h>

#include <cstdint>
#include <string>
#include <vector>

namespace ipacl_tool::demo {

// Wait for the answers and requests of the demo, in milliseconds.
constexpr uint32_t accept_timeout_ms = 15000;

struct incoming {
    uint8_t handle[IPACL_HOST_HANDLE_AREA] = {};
    ipacl_host_msg_info info{};
    void *payload = nullptr;
    uint32_t size = 0;
};

// The next request or standby update; false with errno set on failure.
bool accept_next(uint32_t endpoint, incoming &message);
void release(uint32_t endpoint, incoming &message);

// True when `size` bytes hold one message of the decode table's `type`;
// else false with the reason.
bool well_formed(const char *type, const void *payload, uint32_t size, std::string &why);

std::vector<uint8_t> copy_of(const void *payload, uint32_t size);

// An ipacl_filter_cfm confirming one filter key with `result`, in network
// order.
std::vector<uint8_t> filter_cfm_message(const ipacl_filter_key &key, uint32_t result);

// Waits for the answer to an update sent with `rr_handle` (the token is in
// it) and returns its payload; false with errno set on failure.
bool await_answer(uint32_t endpoint, void *rr_handle, std::vector<uint8_t> &answer);

}  // namespace ipacl_tool::demo
