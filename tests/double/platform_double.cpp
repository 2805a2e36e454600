#include "platform_double.h"

#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <cstring>

#include "platform/if_index.h"
#include "platform/tivra.h"
#include "platform/vel.h"

namespace ipacl_double {

State &platform() {
    static State state;
    return state;
}

void reset() { platform() = State{}; }

}  // namespace ipacl_double

using ipacl_double::platform;

namespace {
// The handle area of a received answer holds the 1-based index of the answer
// in State::held; 0 or an index past it holds nothing.
std::vector<uint8_t> *held(void *msg_handle) {
    uint32_t index = 0;
    memcpy(&index, msg_handle, sizeof index);
    auto &all = platform().held;
    return index == 0 || index > all.size() ? nullptr : &all[index - 1];
}

// A call's result: rc, with errno set to `error` when it fails.
int result(int rc, int error) {
    if (rc) errno = error;
    return rc;
}
}  // namespace

extern "C" {

int vel_send(uint32_t handle, uint32_t node, uint32_t service, uint32_t opcode, const void *payload,
             uint32_t size, void *rr_handle, uint32_t token, uint32_t flags) {
    auto &s = platform();
    const auto *bytes = static_cast<const uint8_t *>(payload);
    s.sends.push_back({handle, node, service, opcode,
                       bytes ? std::vector<uint8_t>(bytes, bytes + size) : std::vector<uint8_t>{},
                       size, rr_handle, token, flags});
    return result(s.send_rc, s.send_errno);
}

uint32_t vel_rr_token_get(void *rr_handle) {
    platform().token_gets.push_back(rr_handle);
    return platform().rr_token;
}

int vel_drop(uint32_t handle, void *msg_handle) {
    platform().drops.push_back({handle, msg_handle});
    return result(platform().drop_rc, platform().drop_errno);
}

int vel_recv(uint32_t handle, void *msg_handle, void *options) {
    auto &s = platform();
    ipacl_double::VelRecvCall call{handle, msg_handle, {}};
    if (options) memcpy(call.options, options, sizeof call.options);
    s.recvs.push_back(call);
    if (s.recv_rc) return result(s.recv_rc, s.recv_errno);
    if (s.answers.empty()) return result(-1, ETIMEDOUT);
    s.held.push_back(s.answers.front());
    s.answers.erase(s.answers.begin());
    const auto index = static_cast<uint32_t>(s.held.size());
    memcpy(msg_handle, &index, sizeof index);
    return 0;
}

void *vel_payload_get(void *msg_handle) {
    auto *answer = held(msg_handle);
    return answer ? answer->data() : nullptr;
}

uint32_t vel_payload_size(void *msg_handle) {
    auto *answer = held(msg_handle);
    return answer ? static_cast<uint32_t>(answer->size()) : 0;
}

int if_index_get_type(uint32_t if_index, uint8_t *type) {
    auto &s = platform();
    s.type_calls.push_back(if_index);
    auto it = s.if_types.find(if_index);
    const ipacl_double::IfInfo &info = it == s.if_types.end() ? s.type_default : it->second;
    if (info.rc == 0) *type = info.type;
    return info.rc;
}

int if_index_mgmt_sup_get_fields(uint32_t if_index, uint8_t *first, uint8_t *second) {
    auto &s = platform();
    s.fields_calls.push_back(if_index);
    if (s.fields_rc) return s.fields_rc;
    *first = s.field_first;
    *second = s.field_second;
    return 0;
}

int if_index_mgmt_sup_port_init(uint32_t *if_index, uint32_t first, uint32_t port) {
    auto &s = platform();
    s.port_init_calls.emplace_back(first, port);
    if (s.port_init_rc) return s.port_init_rc;
    *if_index = s.port_init_if_index;
    return 0;
}

// Names an interface "if<index>", bounded by size.
int snprintf_if_index(char *buf, uint32_t size, uint32_t if_index) {
    auto &s = platform();
    s.if_name_calls.emplace_back(size, if_index);
    int n = snprintf(buf, size, "if%u", if_index);
    return s.if_name_rc_override >= 0 ? s.if_name_rc_override : n;
}

char *__strcpy_to_buf(char *dst, const char *src, uint32_t size) {
    if (size == 0) return dst;
    size_t n = strnlen(src, size - 1);
    memcpy(dst, src, n);
    dst[n] = '\0';
    return dst;
}

int tivra_hist_event_subtype_check(uint32_t event, uint32_t subtype) {
    platform().subtype_checks.emplace_back(event, subtype);
    return platform().subtype_check_rc;
}

int tivra_hist_event(uint32_t event, uint32_t length, const void *record) {
    const auto *bytes = static_cast<const uint8_t *>(record);
    platform().hist_events.push_back({event, length, std::vector<uint8_t>(bytes, bytes + length)});
    return 0;
}

int tivra_chk_int(uint32_t subtype, uint32_t a, uint32_t b, uint32_t c) {
    platform().chk_ints.push_back({subtype, a, b, c});
    return platform().chk_int_rc;
}

const char tivra_dbg_modname[] = "ipacl-test";

void zlogf(int level, const char *module, int flags, const char *format, ...) {
    char text[1024];
    va_list ap;
    va_start(ap, format);
    vsnprintf(text, sizeof text, format, ap);
    va_end(ap);
    platform().zlogs.push_back({level, module, flags, format, text});
}

}  // extern "C"
