// Handle areas and the messages they hold.  An area (28 bytes of the
// caller's memory) never holds a pointer: it names a slot of the held table
// and that slot's generation, so a stale, copied or forged area is refused
// with EINVAL instead of being dereferenced or freed twice.
#include <cerrno>
#include <cstring>
#include <mutex>

#include "host_internal.h"
#include "ipacl_host.h"
#include "platform/vel.h"

namespace ipacl_host {

namespace {

constexpr uint32_t kAreaMagic = 0x76656c68;  // "velh"
enum AreaKind : uint32_t { kSent = 1, kReceived = 2 };

struct Area {
    uint32_t magic;
    uint32_t kind;
    uint32_t token;
    uint32_t slot;
    uint32_t generation;
    uint32_t reserved[2];
};
static_assert(sizeof(Area) == IPACL_HOST_HANDLE_AREA, "a handle area is 28 bytes");

struct HeldSlot {
    uint32_t generation = 1;
    bool used = false;
    Message msg;
};

struct HeldTable {
    std::mutex lock;
    std::vector<HeldSlot> slots;
    std::vector<uint32_t> free_slots;
    uint32_t used = 0;
};

HeldTable &table() {
    static HeldTable t;
    return t;
}

bool read_area(const void *p, Area &a) {
    if (!p) return false;
    memcpy(&a, p, sizeof a);
    return a.magic == kAreaMagic && (a.kind == kSent || a.kind == kReceived);
}

// The held slot an area names; nullptr if none.  Call with the lock held.
HeldSlot *slot_of(HeldTable &t, const Area &a) {
    if (a.kind != kReceived || a.slot >= t.slots.size()) return nullptr;
    HeldSlot &s = t.slots[a.slot];
    return s.used && s.generation == a.generation ? &s : nullptr;
}

// The payload of an empty message still needs an address to hand out.
uint8_t empty_payload[1];

}  // namespace

void area_set_sent(void *area, uint32_t token) {
    Area a{kAreaMagic, kSent, token, 0, 0, {0, 0}};
    memcpy(area, &a, sizeof a);
}

int area_hold(void *area, Message &&m) {
    HeldTable &t = table();
    std::lock_guard<std::mutex> guard(t.lock);
    uint32_t index;
    if (!t.free_slots.empty()) {
        index = t.free_slots.back();
        t.free_slots.pop_back();
    } else {
        index = static_cast<uint32_t>(t.slots.size());
        t.slots.emplace_back();
    }
    HeldSlot &s = t.slots[index];
    s.used = true;
    s.msg = std::move(m);
    ++t.used;
    Area a{kAreaMagic, kReceived, s.msg.head.token, index, s.generation, {0, 0}};
    memcpy(area, &a, sizeof a);
    return 0;
}

uint32_t held_count() {
    HeldTable &t = table();
    std::lock_guard<std::mutex> guard(t.lock);
    return t.used;
}

}  // namespace ipacl_host

using namespace ipacl_host;

extern "C" {

IPACL_HOST_API uint32_t vel_rr_token_get(void *rr_handle) {
    Area a;
    if (!read_area(rr_handle, a)) return fail(EINVAL), 0;
    return a.token;
}

IPACL_HOST_API int vel_drop(uint32_t handle, void *msg_handle) {
    (void)handle;  // held messages outlive their endpoint
    Area a;
    if (!read_area(msg_handle, a)) return fail(EINVAL);
    if (a.kind == kReceived) {
        HeldTable &t = table();
        std::lock_guard<std::mutex> guard(t.lock);
        HeldSlot *s = slot_of(t, a);
        if (!s) return fail(EINVAL);
        s->msg = Message{};
        s->used = false;
        ++s->generation;
        --t.used;
        t.free_slots.push_back(a.slot);
    }
    memset(msg_handle, 0, sizeof a);
    return 0;
}

IPACL_HOST_API void *vel_payload_get(void *msg_handle) {
    Area a;
    if (!read_area(msg_handle, a)) return fail(EINVAL), nullptr;
    HeldTable &t = table();
    std::lock_guard<std::mutex> guard(t.lock);
    HeldSlot *s = slot_of(t, a);
    if (!s) return fail(EINVAL), nullptr;
    return s->msg.payload.empty() ? empty_payload : s->msg.payload.data();
}

IPACL_HOST_API uint32_t vel_payload_size(void *msg_handle) {
    Area a;
    if (!read_area(msg_handle, a)) return fail(EINVAL), 0;
    HeldTable &t = table();
    std::lock_guard<std::mutex> guard(t.lock);
    HeldSlot *s = slot_of(t, a);
    if (!s) return fail(EINVAL), 0;
    return static_cast<uint32_t>(s->msg.payload.size());
}

IPACL_HOST_API int ipacl_host_msg_info_get(const void *msg_handle, ipacl_host_msg_info *info) {
    Area a;
    if (!info || !read_area(msg_handle, a)) return fail(EINVAL);
    HeldTable &t = table();
    std::lock_guard<std::mutex> guard(t.lock);
    HeldSlot *s = slot_of(t, a);
    if (!s) return fail(EINVAL);
    const FrameHeader &h = s->msg.head;
    info->kind = h.kind == kAnswer ? IPACL_HOST_MSG_ANSWER : IPACL_HOST_MSG_REQUEST;
    info->opcode = h.opcode;
    info->service = h.service;
    info->token = h.token;
    info->size = h.size;
    info->awaited = (h.flags & kAwaited) ? 1 : 0;
    return 0;
}

}  // extern "C"
