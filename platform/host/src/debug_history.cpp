// The debug-history facility: the last events, kept in a bounded ring in
// memory, for a program (or a debugger) to dump when something went wrong.
#include <algorithm>
#include <cctype>
#include <cerrno>
#include <cstring>
#include <mutex>

#include "host_internal.h"
#include "ipacl_host.h"
#include "platform/tivra.h"

namespace {

struct History {
    std::mutex lock;
    ipacl_host_hist_entry ring[IPACL_HOST_HIST_CAPACITY];
    uint32_t first = 0;  // oldest kept
    uint32_t count = 0;
    uint64_t seq = 0;
    bool enabled = true;
};

History &history() {
    static History h;
    return h;
}

// A record of a 32-bit subtype followed by a terminated printable text is
// shown as such; anything else as bytes.
bool is_subtype_text(const ipacl_host_hist_entry &e) {
    if (e.kept < 5 || e.record[e.kept - 1] != '\0') return false;
    for (uint32_t i = 4; i + 1 < e.kept; ++i)
        if (!isprint(e.record[i]) && e.record[i] != '\n') return false;
    return true;
}

void print_entry(FILE *out, const ipacl_host_hist_entry &e) {
    fprintf(out, "#%llu event 0x%x length %u", static_cast<unsigned long long>(e.seq),
            static_cast<unsigned>(e.event), static_cast<unsigned>(e.length));
    if (is_subtype_text(e)) {
        uint32_t subtype;
        memcpy(&subtype, e.record, sizeof subtype);
        const char *text = reinterpret_cast<const char *>(e.record + 4);
        size_t len = strlen(text);
        while (len && text[len - 1] == '\n') --len;
        fprintf(out, " subtype %u: %.*s\n", static_cast<unsigned>(subtype), static_cast<int>(len),
                text);
        return;
    }
    fputc(':', out);
    for (uint32_t i = 0; i < std::min<uint32_t>(e.kept, 64); ++i)
        fprintf(out, " %02x", e.record[i]);
    fputs(e.kept > 64 ? " ...\n" : "\n", out);
}

}  // namespace

extern "C" {

IPACL_HOST_API int tivra_hist_event_subtype_check(uint32_t event, uint32_t subtype) {
    (void)event;
    (void)subtype;
    History &h = history();
    std::lock_guard<std::mutex> guard(h.lock);
    return h.enabled ? 0 : 1;
}

IPACL_HOST_API int tivra_hist_event(uint32_t event, uint32_t length, const void *record) {
    if (!record && length) return ipacl_host::fail(EINVAL);
    History &h = history();
    std::lock_guard<std::mutex> guard(h.lock);
    if (!h.enabled) return 0;
    uint32_t slot = (h.first + h.count) % IPACL_HOST_HIST_CAPACITY;
    if (h.count == IPACL_HOST_HIST_CAPACITY)
        h.first = (h.first + 1) % IPACL_HOST_HIST_CAPACITY;  // forget the oldest
    else
        ++h.count;
    ipacl_host_hist_entry &e = h.ring[slot];
    e.seq = ++h.seq;
    e.event = event;
    e.length = length;
    e.kept = std::min<uint32_t>(length, IPACL_HOST_HIST_RECORD);
    if (e.kept) memcpy(e.record, record, e.kept);
    return 0;
}

IPACL_HOST_API uint32_t ipacl_host_hist_count(void) {
    History &h = history();
    std::lock_guard<std::mutex> guard(h.lock);
    return h.count;
}

IPACL_HOST_API int ipacl_host_hist_get(uint32_t index, ipacl_host_hist_entry *entry) {
    History &h = history();
    std::lock_guard<std::mutex> guard(h.lock);
    if (!entry || index >= h.count) return ipacl_host::fail(EINVAL);
    *entry = h.ring[(h.first + index) % IPACL_HOST_HIST_CAPACITY];
    return 0;
}

IPACL_HOST_API uint32_t ipacl_host_hist_dump(FILE *out) {
    if (!out) return 0;
    History &h = history();
    std::lock_guard<std::mutex> guard(h.lock);
    for (uint32_t i = 0; i < h.count; ++i)
        print_entry(out, h.ring[(h.first + i) % IPACL_HOST_HIST_CAPACITY]);
    fflush(out);
    return h.count;
}

IPACL_HOST_API void ipacl_host_hist_clear(void) {
    History &h = history();
    std::lock_guard<std::mutex> guard(h.lock);
    h.first = h.count = 0;
}

IPACL_HOST_API void ipacl_host_hist_enable(int on) {
    History &h = history();
    std::lock_guard<std::mutex> guard(h.lock);
    h.enabled = on != 0;
}

}  // extern "C"
