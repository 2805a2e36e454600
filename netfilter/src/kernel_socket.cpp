#include "kernel_socket.h"

#include "nf_error.h"

#include <ipacl/netfilter.h>

#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <linux/netfilter_ipv4/ip_tables.h>

#include <cerrno>
#include <cstring>

namespace ipacl_nf {
namespace {

// Errors that say the facility is missing rather than the request wrong:
// no such protocol or option (no x_tables, or an emulator that does not
// pass the options on), no table.
bool means_unavailable(int error) {
    return error == ENOPROTOOPT || error == EAFNOSUPPORT || error == EPROTONOSUPPORT ||
           error == ENOENT || error == ENOSYS;
}

// What the kernel's refusal of a replacement means in the table's terms.
const char *reason(int error) {
    switch (error) {
        case ELOOP:
            return "the rules would jump in a loop";
        case ENOENT:
            return "a match or target the kernel does not know";
        case EAGAIN:
            return "the table changed meanwhile";
        default:
            return std::strerror(error);
    }
}

}  // namespace

xt_socket::~xt_socket() {
    if (fd_ >= 0) ::close(fd_);
}

uint32_t xt_socket::refused(const char *operation, int error, char *err) {
    last_error_ = error;
    if (error == EPERM || error == EACCES)
        return fail(err, IPACL_NF_E_PERMISSION, "%s: permission denied (needs %s)", operation,
                    fd_ < 0 ? "CAP_NET_RAW" : "CAP_NET_ADMIN");
    return fail(err, IPACL_NF_E_KERNEL, "%s: kernel refused: %s", operation, reason(error));
}

uint32_t xt_socket::unavailable_or_refused(const char *operation, int error, char *err) {
    if (!means_unavailable(error)) return refused(operation, error, err);
    return fail(err, IPACL_NF_E_UNAVAILABLE, "%s: %s unavailable: %s", operation, layout_.module,
                std::strerror(error));
}

uint32_t xt_socket::open(char *err) {
    fd_ = ::socket(layout_.domain, SOCK_RAW | SOCK_CLOEXEC, IPPROTO_RAW);
    if (fd_ >= 0) return 0;
    return unavailable_or_refused("open socket", errno, err);
}

uint32_t xt_socket::get_info(void *info, uint32_t size, char *err) {
    socklen_t length = size;
    if (getsockopt(fd_, layout_.level, IPT_SO_GET_INFO, info, &length) == 0) return 0;
    return unavailable_or_refused("read table", errno, err);
}

uint32_t xt_socket::get_entries(void *request, uint32_t size, char *err) {
    socklen_t length = size;
    if (getsockopt(fd_, layout_.level, IPT_SO_GET_ENTRIES, request, &length) == 0) return 0;
    return refused("read table", errno, err);
}

uint32_t xt_socket::replace(void *request, uint32_t size, char *err) {
    if (setsockopt(fd_, layout_.level, IPT_SO_SET_REPLACE, request, size) == 0) return 0;
    return refused("replace table", errno, err);
}

uint32_t xt_socket::add_counters(void *request, uint32_t size, char *err) {
    if (setsockopt(fd_, layout_.level, IPT_SO_SET_ADD_COUNTERS, request, size) == 0) return 0;
    return refused("add counters", errno, err);
}

}  // namespace ipacl_nf
