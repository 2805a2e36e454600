// The one-line texts of a filter on arbitrary records.
//
// ipacl_str_filter_ipv6 with every size from 1 to one past its full line,
// and with the sizes it must refuse, into exact-size blocks followed by a
// guard region:
//  - nothing is written at or past `size` (guard intact, no ASan report);
//  - the result is IPACL_OK exactly when the full line's length is at most
//    `size` (a line that fills the space exactly is accepted, cut by its
//    terminator), IPACL_E_NO_MEM otherwise;
//  - the buffer always holds the line's first min(length, size - 1)
//    characters, terminated;
//  - a size of 0 or less, or no buffer, gives IPACL_E_BAD_ARG and writes
//    nothing.
// ipacl_str_filter and ipacl_str_filter_net: the line fits their 512-byte
// buffer, the network-order twin prints what the long form prints of the
// converted record, and leaves its record as it was.
#include <ipacl/str_record.h>
#include <ipacl/wire.h>

#include <climits>
#include <cstdlib>
#include <cstring>

#include "fuzz_support.h"
#include "platform_stub.h"

namespace {

constexpr size_t kGuard = 64;
constexpr uint8_t kGuardByte = 0xEE;
constexpr char kFill = 'Q';
constexpr size_t kLongLine = 512;

void check_guard(const char *buf, size_t from, const char *what, int32_t size) {
    for (size_t i = 0; i < kGuard; ++i)
        FUZZ_CHECK(uint8_t(buf[from + i]) == kGuardByte, "%s wrote %zu bytes past size %d", what,
                   i + 1, size);
}

void check_ipv6(const ipacl_filter *f) {
    char full[1024];
    ipacl_rc rc = ipacl_str_filter_ipv6(f, full, sizeof full);
    FUZZ_CHECK(rc == IPACL_OK, "ipacl_str_filter_ipv6 into 1024 bytes: 0x%x", rc);
    size_t len = std::strlen(full);

    for (int32_t size = 1; size <= int32_t(len) + 1; ++size) {
        char *dst = static_cast<char *>(std::malloc(size_t(size) + kGuard));
        std::memset(dst, kFill, size_t(size));
        std::memset(dst + size, kGuardByte, kGuard);
        rc = ipacl_str_filter_ipv6(f, dst, size);
        check_guard(dst, size_t(size), "ipacl_str_filter_ipv6", size);
        ipacl_rc want = len <= size_t(size) ? IPACL_OK : IPACL_E_NO_MEM;
        FUZZ_CHECK(rc == want, "ipacl_str_filter_ipv6 size %d: 0x%x, line of %zu gives 0x%x", size,
                   rc, len, want);
        size_t keep = len < size_t(size) - 1 ? len : size_t(size) - 1;
        FUZZ_CHECK(
            std::memchr(dst, 0, size_t(size)) == dst + keep && std::memcmp(dst, full, keep) == 0,
            "ipacl_str_filter_ipv6 size %d left \"%.*s\" of \"%s\"", size, size, dst, full);
        std::free(dst);
    }

    const int32_t refused[] = {0, -1, INT32_MIN};
    for (int32_t size : refused) {
        char dst[8];
        std::memset(dst, kFill, sizeof dst);
        rc = ipacl_str_filter_ipv6(f, dst, size);
        FUZZ_CHECK(rc == IPACL_E_BAD_ARG, "ipacl_str_filter_ipv6 size %d: 0x%x", size, rc);
        for (char c : dst) FUZZ_CHECK(c == kFill, "ipacl_str_filter_ipv6 size %d wrote", size);
    }
    FUZZ_CHECK(ipacl_str_filter_ipv6(f, nullptr, 64) == IPACL_E_BAD_ARG, "NULL buffer accepted");
}

void check_long_form(const ipacl_filter *f) {
    char *line = static_cast<char *>(std::malloc(kLongLine + kGuard));
    std::memset(line, kFill, kLongLine);
    std::memset(line + kLongLine, kGuardByte, kGuard);
    uint32_t n = ipacl_str_filter(f, line);
    check_guard(line, kLongLine, "ipacl_str_filter", int32_t(kLongLine));
    FUZZ_CHECK(std::memchr(line, 0, kLongLine) != nullptr && std::strlen(line) == n,
               "ipacl_str_filter returned %u for a line of %zu", n, strnlen(line, kLongLine));

    // The same record seen in network order.
    ipacl_filter *net = static_cast<ipacl_filter *>(std::malloc(sizeof *net));
    std::memcpy(net, f, sizeof *net);
    ipacl_hton_filter(net, net);
    ipacl_filter *kept = static_cast<ipacl_filter *>(std::malloc(sizeof *kept));
    std::memcpy(kept, net, sizeof *kept);
    char *net_line = static_cast<char *>(std::malloc(kLongLine + kGuard));
    std::memset(net_line + kLongLine, kGuardByte, kGuard);
    uint32_t m = ipacl_str_filter_net(net, net_line);
    check_guard(net_line, kLongLine, "ipacl_str_filter_net", int32_t(kLongLine));
    FUZZ_CHECK(m == n && std::strcmp(net_line, line) == 0,
               "ipacl_str_filter_net printed \"%s\", the host record prints \"%s\"", net_line,
               line);
    FUZZ_CHECK(std::memcmp(net, kept, sizeof *net) == 0, "ipacl_str_filter_net changed its record");
    std::free(net_line);
    std::free(kept);
    std::free(net);
    std::free(line);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    fuzz_platform::reset();
    fuzz::Reader in(data, size);
    ipacl_filter *f = static_cast<ipacl_filter *>(std::malloc(sizeof *f));
    in.bytes(f, sizeof *f);
    f->prof_name[IPACL_NAME_SIZE - 1] = 0;  // a name ends inside its field
    check_ipv6(f);
    check_long_form(f);
    std::free(f);
    return 0;
}
