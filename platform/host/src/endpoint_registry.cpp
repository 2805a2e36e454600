// The endpoints of this process, found by the 32-bit handle the wrappers
// pass around: the low 12 bits are the slot (plus one), the rest a
// generation that changes whenever the slot is reused, so a stale handle is
// refused instead of reaching someone else's endpoint.
#include <cerrno>
#include <cstdio>
#include <memory>
#include <mutex>
#include <sys/stat.h>
#include <unistd.h>

#include "c_boundary.h"
#include "host_internal.h"
#include "ipacl_host.h"

namespace ipacl_host {

namespace {

constexpr uint32_t kSlotBits = 12;
constexpr uint32_t kSlotMask = (1u << kSlotBits) - 1;
constexpr uint32_t kMaxSlots = kSlotMask;  // slot + 1 fits in the low bits

struct Slot {
    uint32_t generation = 1;
    std::unique_ptr<Endpoint> ep;
};

struct Registry {
    std::mutex lock;
    std::vector<Slot> slots;
};

Registry &registry() {
    static Registry r;
    return r;
}

uint32_t make_handle(uint32_t slot, uint32_t generation) {
    return (generation << kSlotBits) | (slot + 1);
}

int start_listening(Endpoint &ep) {
    const bool standby = ep.flags & IPACL_HOST_STANDBY;
    if (!standby && ep.service == 0) return 0;  // a client only
    return claim_name(ep, service_name(standby ? 0 : ep.service));
}

int open_endpoint(uint32_t service, uint32_t flags, uint32_t *handle) {
    if (!handle || (flags & ~IPACL_HOST_STANDBY)) return fail(EINVAL);
    auto ep = std::make_unique<Endpoint>();
    ep->service = service;
    ep->flags = flags;
    ep->owner = getpid();
    ep->scratch.resize(sizeof(FrameHeader) + kMaxChunk);
    ep->dir_fd = open_dir(ep->dir);
    if (ep->dir_fd < 0 || watch_endpoint(*ep) != 0 || start_listening(*ep) != 0) {
        close_all(*ep);
        return -1;
    }

    Registry &r = registry();
    std::lock_guard<std::mutex> guard(r.lock);
    size_t slot = 0;
    while (slot < r.slots.size() && r.slots[slot].ep) ++slot;
    if (slot == r.slots.size()) {
        if (slot >= kMaxSlots) {
            close_all(*ep);
            return fail(EMFILE);
        }
        r.slots.emplace_back();
    }
    r.slots[slot].ep = std::move(ep);
    *handle = make_handle(static_cast<uint32_t>(slot), r.slots[slot].generation);
    return 0;
}

}  // namespace

Endpoint *find_endpoint(uint32_t handle) {
    uint32_t slot = (handle & kSlotMask);
    if (slot == 0) return nullptr;
    Registry &r = registry();
    std::lock_guard<std::mutex> guard(r.lock);
    if (slot > r.slots.size()) return nullptr;
    Slot &s = r.slots[slot - 1];
    if (!s.ep || s.generation != (handle >> kSlotBits)) return nullptr;
    return s.ep.get();
}

}  // namespace ipacl_host

using namespace ipacl_host;

extern "C" {

IPACL_HOST_API int ipacl_host_open(uint32_t service, uint32_t flags, uint32_t *handle) {
    return c_boundary(-1, [&] { return open_endpoint(service, flags, handle); });
}

IPACL_HOST_API int ipacl_host_close(uint32_t handle) {
    std::unique_ptr<Endpoint> ep;
    {
        Registry &r = registry();
        std::lock_guard<std::mutex> guard(r.lock);
        uint32_t slot = handle & kSlotMask;
        if (slot == 0 || slot > r.slots.size()) return fail(EBADF);
        Slot &s = r.slots[slot - 1];
        if (!s.ep || s.generation != (handle >> kSlotBits)) return fail(EBADF);
        ep = std::move(s.ep);
        s.generation = (s.generation + 1) & (~0u >> kSlotBits);
        if (s.generation == 0) s.generation = 1;
    }
    if (ep->owner == getpid()) c_boundary(0, [&] { return drain_queues(*ep), 0; });
    close_all(*ep);
    return 0;
}

IPACL_HOST_API int ipacl_host_set_wait_unit(uint32_t handle, uint32_t ms) {
    Endpoint *ep = find_endpoint(handle);
    if (!ep) return fail(EBADF);
    if (ms == 0) return fail(EINVAL);
    ep->wait_unit_ms = ms;
    return 0;
}

IPACL_HOST_API int ipacl_host_stats_get(uint32_t handle, ipacl_host_stats *stats) {
    Endpoint *ep = find_endpoint(handle);
    if (!ep) return fail(EBADF);
    if (!stats) return fail(EINVAL);
    stats->refused_peers = ep->stats.refused_peers;
    stats->protocol_errors = ep->stats.protocol_errors;
    stats->dropped = ep->stats.dropped;
    stats->forged_answers = ep->stats.forged_answers;
    stats->over_limit = ep->stats.over_limit;
    stats->send_timeouts = ep->stats.send_timeouts;
    stats->descriptor_shortages = ep->stats.descriptor_shortages;
    stats->connections = static_cast<uint32_t>(ep->conns.size());
    stats->held = held_count();
    return 0;
}

}  // extern "C"
