#include "probes.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cstring>
#include <string>

namespace ipacl_testbed {
namespace {

constexpr int reply_wait_ms = 200;  // a veth pair answers in microseconds
constexpr int connect_wait_ms = 400;
constexpr int settle_us = 20000;  // lets the last packet of a probe reach its rule

struct endpoint {
    sockaddr_storage addr{};
    socklen_t len = 0;
};

endpoint make_endpoint(ip_family family, const std::string &text, uint16_t port) {
    endpoint e;
    if (family == ip_family::v4) {
        auto *in = reinterpret_cast<sockaddr_in *>(&e.addr);
        in->sin_family = AF_INET;
        in->sin_port = htons(port);
        inet_pton(AF_INET, text.c_str(), &in->sin_addr);
        e.len = sizeof *in;
    } else {
        auto *in6 = reinterpret_cast<sockaddr_in6 *>(&e.addr);
        in6->sin6_family = AF_INET6;
        in6->sin6_port = htons(port);
        inet_pton(AF_INET6, text.c_str(), &in6->sin6_addr);
        e.len = sizeof *in6;
    }
    return e;
}

const std::string &address_of(const netns_side &side, ip_family family) {
    return family == ip_family::v4 ? side.addr4 : side.addr6;
}

// A socket of `side`'s namespace, bound to `local` when it has a port or an
// address; -1 on failure.
int side_socket(const netns_pair &pair, const netns_side &side, ip_family family, int type,
                int protocol, const endpoint *local) {
    netns_scope inside(side.ns_fd, pair.home_fd());
    if (!inside.entered()) return -1;
    int fd = socket(family == ip_family::v4 ? AF_INET : AF_INET6, type | SOCK_CLOEXEC, protocol);
    if (fd < 0) return -1;
    int on = 1;
    setsockopt(fd, SOL_SOCKET, SO_REUSEADDR, &on, sizeof on);
    if (local && bind(fd, reinterpret_cast<const sockaddr *>(&local->addr), local->len) != 0) {
        close(fd);
        return -1;
    }
    return fd;
}

bool wait_for(int fd, short events, int timeout_ms) {
    pollfd p{fd, events, 0};
    return poll(&p, 1, timeout_ms) == 1 && (p.revents & events) != 0;
}

uint16_t checksum(const uint8_t *data, size_t size) {
    uint32_t sum = 0;
    for (size_t i = 0; i + 1 < size; i += 2) sum += uint32_t{data[i]} << 8 | data[i + 1];
    if (size % 2) sum += uint32_t{data[size - 1]} << 8;
    while (sum >> 16) sum = (sum & 0xffff) + (sum >> 16);
    return static_cast<uint16_t>(~sum);
}

// An ICMP echo (8 bytes of header, 8 of data) or timestamp request (20).
size_t icmp_request(uint8_t type, uint16_t id, uint16_t sequence, uint8_t out[20]) {
    std::memset(out, 0, 20);
    out[0] = type;
    out[4] = static_cast<uint8_t>(id >> 8);
    out[5] = static_cast<uint8_t>(id);
    out[6] = static_cast<uint8_t>(sequence >> 8);
    out[7] = static_cast<uint8_t>(sequence);
    size_t size = type == 13 ? 20 : 16;
    uint16_t sum = checksum(out, size);
    out[2] = static_cast<uint8_t>(sum >> 8);
    out[3] = static_cast<uint8_t>(sum);
    return size;
}

// Reads a raw ICMP socket until it is quiet; counts the replies of `type`
// that carry `id`.
int count_icmp_replies(int fd, uint8_t reply_type, uint16_t id, int expected) {
    int replies = 0;
    uint8_t packet[1500];
    while (replies < expected && wait_for(fd, POLLIN, reply_wait_ms)) {
        ssize_t n = recv(fd, packet, sizeof packet, 0);
        if (n < 20) continue;
        size_t header = (packet[0] & 0x0f) * 4u;
        if (static_cast<size_t>(n) < header + 8) continue;
        const uint8_t *icmp = packet + header;
        if (icmp[0] == reply_type && (icmp[4] << 8 | icmp[5]) == id) ++replies;
    }
    return replies;
}

}  // namespace

int udp_probe(const netns_pair &pair, const netns_side &from, const netns_side &to,
              const udp_send &send) {
    endpoint target = make_endpoint(send.family, address_of(to, send.family), send.port);
    endpoint source = make_endpoint(
        send.family, send.source ? send.source : address_of(from, send.family), send.source_port);
    int receiver = side_socket(pair, to, send.family, SOCK_DGRAM, 0, &target);
    int sender = side_socket(pair, from, send.family, SOCK_DGRAM, 0, &source);
    int arrived = 0;
    if (receiver >= 0 && sender >= 0) {
        for (int i = 0; i < send.count; ++i)
            sendto(sender, "probe", 5, 0, reinterpret_cast<const sockaddr *>(&target.addr),
                   target.len);
        char buf[64];
        while (arrived < send.count && wait_for(receiver, POLLIN, reply_wait_ms))
            if (recv(receiver, buf, sizeof buf, 0) >= 0) ++arrived;
    }
    if (receiver >= 0) close(receiver);
    if (sender >= 0) close(sender);
    return arrived;
}

bool tcp_probe(const netns_pair &pair, const netns_side &from, const netns_side &to, uint16_t port,
               ip_family family) {
    endpoint target = make_endpoint(family, address_of(to, family), port);
    int listener = side_socket(pair, to, family, SOCK_STREAM, 0, &target);
    int client = side_socket(pair, from, family, SOCK_STREAM | SOCK_NONBLOCK, 0, nullptr);
    bool connected = false;
    if (listener >= 0 && client >= 0 && listen(listener, 4) == 0) {
        connect(client, reinterpret_cast<const sockaddr *>(&target.addr), target.len);
        if (wait_for(client, POLLOUT, connect_wait_ms)) {
            int error = -1;
            socklen_t size = sizeof error;
            getsockopt(client, SOL_SOCKET, SO_ERROR, &error, &size);
            connected = error == 0;
        }
        // Reset rather than close, so that the listener's side gets one
        // packet (RST) and sends none.
        linger abort{1, 0};
        setsockopt(client, SOL_SOCKET, SO_LINGER, &abort, sizeof abort);
    }
    if (client >= 0) close(client);
    usleep(settle_us);
    if (listener >= 0) close(listener);
    return connected;
}

int icmp_probe(const netns_pair &pair, const netns_side &from, const netns_side &to, uint8_t type,
               int count) {
    int fd = side_socket(pair, from, ip_family::v4, SOCK_RAW, IPPROTO_ICMP, nullptr);
    if (fd < 0) return 0;
    endpoint target = make_endpoint(ip_family::v4, to.addr4, 0);
    auto id = static_cast<uint16_t>(getpid());
    for (int i = 0; i < count; ++i) {
        uint8_t request[20];
        size_t size = icmp_request(type, id, static_cast<uint16_t>(i), request);
        sendto(fd, request, size, 0, reinterpret_cast<const sockaddr *>(&target.addr), target.len);
    }
    uint8_t reply_type = type == 8 ? 0 : static_cast<uint8_t>(type + 1);
    int replies = count_icmp_replies(fd, reply_type, id, count);
    close(fd);
    return replies;
}

}  // namespace ipacl_testbed
