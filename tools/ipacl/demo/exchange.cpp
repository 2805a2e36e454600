#include "exchange.h"

#include "../decode/wire_types.h"

#include <ipacl/enums.h>
#include <ipacl/wire.h>
#include <ipacl/wrap.h>
#include <platform/vel.h>

#include <cstring>

namespace ipacl_tool::demo {

bool accept_next(uint32_t endpoint, incoming &message) {
    message = incoming{};
    if (ipacl_host_accept(endpoint, message.handle, accept_timeout_ms) != 0) return false;
    if (ipacl_host_msg_info_get(message.handle, &message.info) != 0) return false;
    message.payload = vel_payload_get(message.handle);
    message.size = vel_payload_size(message.handle);
    return true;
}

void release(uint32_t endpoint, incoming &message) { vel_drop(endpoint, message.handle); }

bool well_formed(const char *type, const void *payload, uint32_t size, std::string &why) {
    if (payload == nullptr && size != 0) {
        why = "no payload";
        return false;
    }
    return measure(*find_wire_type(type), static_cast<const uint8_t *>(payload), size, why);
}

std::vector<uint8_t> copy_of(const void *payload, uint32_t size) {
    const auto *bytes = static_cast<const uint8_t *>(payload);
    return std::vector<uint8_t>(bytes, bytes + size);
}

std::vector<uint8_t> filter_cfm_message(const ipacl_filter_key &key, uint32_t result) {
    std::vector<uint8_t> bytes(sizeof(ipacl_filter_cfm) + sizeof(ipacl_cfm));
    auto &cfm = *reinterpret_cast<ipacl_filter_cfm *>(bytes.data());
    cfm.count = 1;
    cfm.cfms[0].key_type = IPACL_DALVE_TYPE_FILTER;
    cfm.cfms[0].result = result;
    cfm.cfms[0].key.filter = key;
    ipacl_hton_filter_cfm(&cfm, &cfm);
    return bytes;
}

bool await_answer(uint32_t endpoint, void *rr_handle, std::vector<uint8_t> &answer) {
    ipacl_vel_rcv_opts options{};
    options.mode = 1;
    options.wait_limit = IPACL_VEL_WAIT_LIMIT;
    options.token = vel_rr_token_get(rr_handle);
    vel_drop(endpoint, rr_handle);
    uint8_t handle[IPACL_HOST_HANDLE_AREA] = {};
    if (vel_recv(endpoint, handle, &options) != 0) return false;
    answer = copy_of(vel_payload_get(handle), vel_payload_size(handle));
    vel_drop(endpoint, handle);
    return true;
}

}  // namespace ipacl_tool::demo
