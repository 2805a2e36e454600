// The fuzz platform: plain C definitions of every platform symbol the
// library calls, answering from fuzz_platform::state().
#include "platform_stub.h"

#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "fuzz_support.h"
#include "platform/if_index.h"
#include "platform/tivra.h"
#include "platform/vel.h"

namespace fuzz_platform {
namespace {

// What the stub keeps in a 28-byte message handle area.
constexpr uint32_t kRequestTag = 0x52455155;  // a sent request (token)
constexpr uint32_t kAnswerTag = 0x414e5357;   // a held answer

struct HandleArea {
    uint32_t tag;
    uint32_t size;
    uint8_t *payload;
};
static_assert(sizeof(HandleArea) <= 28, "fits the handle area");

HandleArea read_area(const void *area) {
    HandleArea h;
    std::memcpy(&h, area, sizeof h);
    return h;
}

}  // namespace

State &state() {
    static State s;
    return s;
}

void reset() { state() = State(); }

}  // namespace fuzz_platform

using fuzz_platform::HandleArea;
using fuzz_platform::kAnswerTag;
using fuzz_platform::kRequestTag;
using fuzz_platform::read_area;
using fuzz_platform::state;

extern "C" {

int vel_send(uint32_t handle, uint32_t node, uint32_t service, uint32_t opcode, const void *payload,
             uint32_t size, void *rr_handle, uint32_t token, uint32_t flags) {
    (void)handle;
    FUZZ_CHECK(flags == 0, "vel_send flags %u", flags);
    auto &s = state();
    ++s.sends;
    s.last_node = node;
    s.last_service = service;
    s.last_opcode = opcode;
    s.last_token = token;
    s.last_had_rr = rr_handle != nullptr;
    // The service copies the payload: read all of it now.
    const uint8_t *p = static_cast<const uint8_t *>(payload);
    s.last_payload.assign(p, p + size);
    if (s.send_rc) {
        errno = s.send_errno;
        return s.send_rc;
    }
    if (rr_handle) {
        HandleArea h{kRequestTag, 0, nullptr};
        std::memcpy(rr_handle, &h, sizeof h);
    }
    return 0;
}

uint32_t vel_rr_token_get(void *rr_handle) {
    FUZZ_CHECK(read_area(rr_handle).tag == kRequestTag, "token of a handle that sent nothing");
    return state().token;
}

int vel_drop(uint32_t handle, void *msg_handle) {
    (void)handle;
    HandleArea h = read_area(msg_handle);
    if (h.tag == kAnswerTag) {
        std::free(h.payload);
        --state().held;
    }
    std::memset(msg_handle, 0, sizeof h);
    return 0;
}

int vel_recv(uint32_t handle, void *msg_handle, void *options) {
    (void)handle;
    auto &s = state();
    uint32_t opts[10];
    std::memcpy(opts, options, sizeof opts);
    s.last_wait_limit = opts[2];
    s.last_wait_token = opts[3];
    if (s.recv_rc) {
        errno = s.recv_errno;
        return s.recv_rc;
    }
    // The answer lives in its own exact-size block so that a read past it
    // is caught.
    HandleArea h{kAnswerTag, uint32_t(s.answer.size()),
                 static_cast<uint8_t *>(std::malloc(s.answer.size() ? s.answer.size() : 1))};
    if (!s.answer.empty()) std::memcpy(h.payload, s.answer.data(), s.answer.size());
    std::memcpy(msg_handle, &h, sizeof h);
    ++s.held;
    return 0;
}

void *vel_payload_get(void *msg_handle) {
    HandleArea h = read_area(msg_handle);
    FUZZ_CHECK(h.tag == kAnswerTag, "payload of a handle that holds no answer");
    return h.payload;
}

uint32_t vel_payload_size(void *msg_handle) {
    HandleArea h = read_area(msg_handle);
    FUZZ_CHECK(h.tag == kAnswerTag, "size of a handle that holds no answer");
    return h.size;
}

int if_index_get_type(uint32_t if_index, uint8_t *type) {
    (void)if_index;
    if (state().type_rc) return state().type_rc;
    *type = state().if_type;
    return 0;
}

int if_index_mgmt_sup_get_fields(uint32_t if_index, uint8_t *first, uint8_t *second) {
    (void)if_index;
    if (state().fields_rc) return state().fields_rc;
    *first = state().field_first;
    *second = state().field_second;
    return 0;
}

int if_index_mgmt_sup_port_init(uint32_t *if_index, uint32_t first, uint32_t port) {
    (void)first;
    (void)port;
    if (state().port_init_rc) return state().port_init_rc;
    *if_index = state().port_init_index;
    return 0;
}

int snprintf_if_index(char *buf, uint32_t size, uint32_t if_index) {
    return std::snprintf(buf, size, "ethernet%u/%u", if_index >> 16, if_index & 0xffff);
}

char *__strcpy_to_buf(char *dst, const char *src, uint32_t size) {
    if (size == 0) return dst;
    size_t len = std::strlen(src);
    if (len > size - 1) len = size - 1;
    std::memcpy(dst, src, len);
    dst[len] = 0;
    return dst;
}

int tivra_hist_event_subtype_check(uint32_t event, uint32_t subtype) {
    (void)event;
    (void)subtype;
    return state().subtype_check_rc;
}

int tivra_hist_event(uint32_t event, uint32_t length, const void *record) {
    (void)event;
    // The record is the subtype word and a text with its terminator: read it
    // whole, as the history facility would.
    FUZZ_CHECK(length >= 5, "history record of %u bytes", length);
    std::vector<uint8_t> copy(static_cast<const uint8_t *>(record),
                              static_cast<const uint8_t *>(record) + length);
    FUZZ_CHECK(
        copy.back() == 0 && std::strlen(reinterpret_cast<char *>(copy.data() + 4)) == length - 5,
        "history record length %u does not match its text", length);
    ++state().hist_events;
    return 0;
}

int tivra_chk_int(uint32_t subtype, uint32_t a, uint32_t b, uint32_t c) {
    (void)subtype;
    (void)a;
    (void)b;
    (void)c;
    return state().chk_int_rc;
}

const char tivra_dbg_modname[] = "ipacl-fuzz";

void zlogf(int level, const char *module, int flags, const char *format, ...) {
    (void)level;
    (void)module;
    (void)flags;
    char text[1024];
    va_list ap;
    va_start(ap, format);
    std::vsnprintf(text, sizeof text, format, ap);
    va_end(ap);
    ++state().zlogs;
}

}  // extern "C"
