// What the endpoint keeps for its peers, counted and capped.  A connection
// may keep IPACL_HOST_MAX_CONN_BUFFERED bytes (the message it is sending
// us, its requests not yet taken, its answers not yet sent); past that it
// loses its connection.  When the endpoint as a whole would pass
// IPACL_HOST_MAX_BUFFERED, the connections holding the most go first, so a
// peer that hoards cannot cost a modest one its connection.
#include <algorithm>

#include "host_internal.h"
#include "ipacl_host.h"

namespace ipacl_host {

size_t conn_bytes(const Conn &c) {
    return c.assembling.payload.capacity() + c.held_bytes + c.out_bytes;
}

size_t buffered_bytes(const Endpoint &ep) {
    size_t total = ep.orphan_bytes;
    for (const auto &[id, c] : ep.conns) total += conn_bytes(c);
    return total;
}

namespace {

// The connection holding the most, or end() when none holds anything.
auto biggest_holder(Endpoint &ep) {
    auto it = std::max_element(ep.conns.begin(), ep.conns.end(), [](const auto &a, const auto &b) {
        return conn_bytes(a.second) < conn_bytes(b.second);
    });
    return it != ep.conns.end() && conn_bytes(it->second) > 0 ? it : ep.conns.end();
}

void cut_off(Endpoint &ep, uint64_t id) {
    discard_inbox_of(ep, id);
    close_conn(ep, id);
    ++ep.stats.over_limit;
}

}  // namespace

bool make_room(Endpoint &ep, const Conn &c, size_t more) {
    if (conn_bytes(c) + more > IPACL_HOST_MAX_CONN_BUFFERED) return false;
    while (buffered_bytes(ep) + more > IPACL_HOST_MAX_BUFFERED) {
        auto biggest = biggest_holder(ep);
        if (biggest == ep.conns.end() || biggest->first == c.id) return false;
        cut_off(ep, biggest->first);
    }
    return true;
}

void discard_inbox_of(Endpoint &ep, uint64_t id) {
    auto from = [id](const Message &m) { return m.conn_id == id; };
    ep.inbox.erase(std::remove_if(ep.inbox.begin(), ep.inbox.end(), from), ep.inbox.end());
    for (auto it = ep.answered.begin(); it != ep.answered.end();)
        it = from(it->second) ? ep.answered.erase(it) : std::next(it);
    if (Conn *c = find_conn(ep, id)) c->held_bytes = 0;
}

void enforce_endpoint_cap(Endpoint &ep) {
    while (buffered_bytes(ep) > IPACL_HOST_MAX_BUFFERED) {
        auto biggest = biggest_holder(ep);
        if (biggest == ep.conns.end()) return;
        cut_off(ep, biggest->first);
    }
}

}  // namespace ipacl_host
