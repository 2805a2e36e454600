// The debug print: silent unless debug printing is on, set by the
// environment variable IPACL_DEBUG (a level, 1 or more) or by the program.
#include <algorithm>
#include <atomic>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <unistd.h>

#include "ipacl_host.h"
#include "platform/tivra.h"

namespace {

constexpr int kUnread = -1;
std::atomic<int> debug_level{kUnread};

int level_from_environment() {
    const char *value = getenv("IPACL_DEBUG");
    if (!value || !*value) return 0;
    char *end = nullptr;
    long level = strtol(value, &end, 10);
    if (*end != '\0' || level < 0) return 0;
    return level > 1000 ? 1000 : static_cast<int>(level);
}

bool printing(int level) {
    int current = ipacl_host_debug_level();
    return current > 0 && level <= current;
}

}  // namespace

extern "C" {

#pragma GCC visibility push(default)
const char tivra_dbg_modname[] = "ipacl";
#pragma GCC visibility pop

// A negative level goes back to what IPACL_DEBUG says (read again).
IPACL_HOST_API void ipacl_host_debug_set(int level) { debug_level = level < 0 ? kUnread : level; }

IPACL_HOST_API int ipacl_host_debug_level(void) {
    int level = debug_level.load();
    if (level == kUnread) {
        level = level_from_environment();
        int expected = kUnread;
        if (!debug_level.compare_exchange_strong(expected, level)) level = expected;
    }
    return level;
}

// Non-zero when messages of the given level are printed; the subtype and
// the two middle words are the caller's and do not matter here.
IPACL_HOST_API int tivra_chk_int(uint32_t subtype, uint32_t a, uint32_t b, uint32_t level) {
    (void)subtype;
    (void)a;
    (void)b;
    return printing(static_cast<int>(level > 1000 ? 1000 : level));
}

IPACL_HOST_API void zlogf(int level, const char *module, int flags, const char *format, ...) {
    (void)flags;
    if (!format || !printing(level)) return;
    // One write per message, so that lines of several processes sharing
    // standard error do not interleave.
    // A module name as long as the line leaves no room for the text: the
    // head is cut like the rest, never written past.
    char line[1024];
    int head = snprintf(line, sizeof line, "%s: ", module ? module : tivra_dbg_modname);
    size_t used = head < 0 ? 0 : std::min<size_t>(static_cast<size_t>(head), sizeof line - 1);
    va_list args;
    va_start(args, format);
    vsnprintf(line + used, sizeof line - used, format, args);
    va_end(args);
    size_t len = strlen(line);
    if (len == sizeof line - 1)
        line[len - 1] = '\n';  // truncated: still end the line
    else if (len == 0 || line[len - 1] != '\n')
        line[len++] = '\n';
    ssize_t ignored = write(STDERR_FILENO, line, len);
    (void)ignored;
}

}  // extern "C"
