// Packets from one side of a netns_pair to the other, and what came of them.
// Every probe is bounded: a few packets, and waits well under a second (the
// first TCP retransmission comes after one second, so a refused connection
// sends exactly one SYN).
#pragma once

#include "netns_pair.h"

#include <cstdint>

namespace ipacl_testbed {

enum class ip_family { v4, v6 };

struct udp_send {
    uint16_t port = 0;  // destination port
    int count = 1;      // datagrams sent
    ip_family family = ip_family::v4;
    const char *source = nullptr;  // source address; nullptr: the sender's own
    uint16_t source_port = 0;      // 0: any
};

// Sends UDP datagrams from `from` to `to`'s address; returns how many arrived.
int udp_probe(const netns_pair &pair, const netns_side &from, const netns_side &to,
              const udp_send &send);

// One TCP connection from `from` to a listener on `to`.  True when the
// handshake completed; the connection is then reset at once.  The
// listener's side receives exactly one SYN when it is not answered, and
// SYN, ACK and RST when it is.
bool tcp_probe(const netns_pair &pair, const netns_side &from, const netns_side &to, uint16_t port,
               ip_family family = ip_family::v4);

// Sends `count` ICMP requests of `type` (8 echo or 13 timestamp) from `from`
// to `to`; returns how many replies came back.
int icmp_probe(const netns_pair &pair, const netns_side &from, const netns_side &to, uint8_t type,
               int count);

}  // namespace ipacl_testbed
