// Receiving: the manager's side takes the next request from any connection;
// the client's side waits on one connection for the answer to its token.
// An answer is taken only from the connection its request went out on and
// only for a token still awaited there; anything else is dropped and
// counted as a protocol error.
#include <algorithm>
#include <cerrno>
#include <climits>
#include <ctime>
#include <poll.h>
#include <sys/epoll.h>

#include "host_internal.h"
#include "ipacl_host.h"

namespace ipacl_host {

namespace {

uint32_t next_nonzero(uint32_t &counter) {
    uint32_t token = counter++;
    if (counter == 0) counter = 1;
    return token;
}

// Gives back the bytes a taken (or discarded) message was counted under.
void release_bytes(Endpoint &ep, const Message &m) {
    size_t bytes = m.payload.capacity();
    size_t &from = [&]() -> size_t & {
        Conn *c = find_conn(ep, m.conn_id);
        return c ? c->held_bytes : ep.orphan_bytes;
    }();
    from -= std::min(from, bytes);
}

void forget_awaited(Endpoint &ep, uint32_t token) {
    ep.awaiting.erase(token);
    auto it = ep.answered.find(token);
    if (it == ep.answered.end()) return;
    release_bytes(ep, it->second);
    ep.answered.erase(it);
}

// Forgets requests answered long ago or never answered, so that neither map
// grows without bound; tokens are handed out in order, so "old" is distance.
void trim_asked(Endpoint &ep, uint32_t newest) {
    if (ep.asked.size() < kTokenWindow) return;
    for (auto it = ep.asked.begin(); it != ep.asked.end();)
        it = (newest - it->first >= kTokenWindow / 2) ? ep.asked.erase(it) : std::next(it);
}

void trim_awaiting(Endpoint &ep, uint32_t newest) {
    if (ep.awaiting.size() < kTokenWindow) return;
    std::vector<uint32_t> old;
    for (const auto &[token, conn] : ep.awaiting)
        if (newest - token >= kTokenWindow / 2) old.push_back(token);
    for (uint32_t token : old) forget_awaited(ep, token);
}

// Handles a failed or finished receive on c; false when c was closed.
bool settle(Endpoint &ep, Conn &c, Rx rx) {
    if (rx != Rx::Closed && rx != Rx::Failed) return true;
    if (rx == Rx::Failed) {
        if (errno == EPROTO) ++ep.stats.protocol_errors;
        if (errno == ENOBUFS || errno == ENOMEM) ++ep.stats.over_limit;
    }
    close_conn(ep, c.id);
    return false;
}

// Reads one frame from c without waiting and files what it completes.
void read_one(Endpoint &ep, Conn &c) {
    Message m;
    Rx rx = receive_frame(ep, c, -1, m);
    if (rx == Rx::Complete && !file_message(ep, c, std::move(m))) rx = Rx::Closed;
    settle(ep, c, rx);
}

// The epoll wait: no longer than asked, the next send deadline or the end
// of a listener's rest.
int epoll_timeout(const Endpoint &ep, int64_t wait_ms, int64_t now, int64_t next_deadline) {
    if (wait_ms < 0) return 0;
    int64_t until = std::min(now + wait_ms, next_deadline);
    if (ep.listener_paused_until) until = std::min(until, ep.listener_paused_until);
    return static_cast<int>(std::clamp<int64_t>(until - now, 0, INT_MAX));
}

// One turn of the event loop: takes new connections, sends what waits, and
// reads at most one frame from each ready connection, within wait_ms (< 0:
// no waiting).  False with errno when the wait itself failed.
bool pump(Endpoint &ep, int64_t wait_ms) {
    const int64_t now = now_ms();
    resume_listener(ep, now);
    const int64_t next_deadline = expire_queues(ep, now);
    epoll_event events[32];
    int ready = epoll_wait(ep.epoll_fd, events, 32, epoll_timeout(ep, wait_ms, now, next_deadline));
    if (ready < 0) return errno == EINTR;
    // Level-triggered epoll hands ready connections out in turn, so a busy
    // peer cannot starve the others.
    for (int i = 0; i < ready; ++i) {
        const uint64_t id = events[i].data.u64;
        if (id == kListenerId) {
            accept_peers(ep);
            continue;
        }
        Conn *c = find_conn(ep, id);
        if (!c) continue;
        if ((events[i].events & EPOLLOUT) && !flush_queue(ep, *c)) {
            close_conn(ep, id);
            continue;
        }
        if (events[i].events & (EPOLLIN | EPOLLHUP | EPOLLERR)) read_one(ep, *c);
    }
    enforce_endpoint_cap(ep);
    return true;
}

// While we wait for one answer, answers queued for other peers keep going
// out.  True when some are waiting.
bool others_queued(const Endpoint &ep, uint64_t awaited) {
    for (const auto &[id, c] : ep.conns)
        if (id != awaited && !c.out.empty()) return true;
    return false;
}

// Waits for a frame on c while sending what is queued for the others.
Rx receive_while_sending(Endpoint &ep, Conn &c, int64_t wait_ms, Message &m) {
    const uint64_t awaited = c.id;
    const int64_t now = now_ms();
    const int64_t next_deadline = expire_queues(ep, now);
    std::vector<pollfd> fds{{c.fd, POLLIN, 0}};
    std::vector<uint64_t> ids{awaited};
    for (const auto &[id, other] : ep.conns)
        if (id != awaited && !other.out.empty()) {
            fds.push_back({other.fd, POLLOUT, 0});
            ids.push_back(id);
        }
    int timeout = epoll_timeout(ep, wait_ms, now, next_deadline);
    if (poll(fds.data(), fds.size(), timeout) < 0 && errno != EINTR) return Rx::Failed;
    for (size_t i = 1; i < fds.size(); ++i) {
        Conn *other = find_conn(ep, ids[i]);
        if (other && fds[i].revents && !flush_queue(ep, *other)) close_conn(ep, ids[i]);
    }
    return fds[0].revents ? receive_frame(ep, c, -1, m) : Rx::Again;
}

int take_answered(Endpoint &ep, uint32_t token, void *area) {
    auto it = ep.answered.find(token);
    Message m = std::move(it->second);
    ep.answered.erase(it);
    ep.awaiting.erase(token);
    release_bytes(ep, m);
    return area_hold(area, std::move(m));
}

}  // namespace

int64_t now_ms() {
    timespec ts{};
    clock_gettime(CLOCK_MONOTONIC, &ts);
    return static_cast<int64_t>(ts.tv_sec) * 1000 + ts.tv_nsec / 1000000;
}

bool file_message(Endpoint &ep, Conn &c, Message &&m) {
    const size_t bytes = m.payload.capacity();
    if (m.head.kind == kAnswer) {
        const uint32_t token = m.head.token;
        auto awaited = ep.awaiting.find(token);
        if (!c.dialled || awaited == ep.awaiting.end() || awaited->second != c.id ||
            ep.answered.count(token)) {
            ++ep.stats.protocol_errors;
            ++ep.stats.forged_answers;
            // A peer that dialled us has no business answering anything.
            return c.dialled;
        }
        c.held_bytes += bytes;
        ep.answered.emplace(token, std::move(m));
        return true;
    }
    if (ep.inbox.size() >= kInboxLimit) {
        ++ep.stats.dropped;
        return true;
    }
    // Requesters number their requests independently: answer under a token
    // of our own, remembering whom it goes back to.
    uint32_t local = next_nonzero(ep.next_local_token);
    trim_asked(ep, local);
    ep.asked[local] = Asked{m.conn_id, m.head.token};
    m.head.token = local;
    c.held_bytes += bytes;
    ep.inbox.push_back(std::move(m));
    return true;
}

int accept_message(Endpoint &ep, void *area, int64_t timeout_ms) {
    const int64_t deadline = now_ms() + timeout_ms;
    for (bool first = true; ep.inbox.empty(); first = false) {
        int64_t left = deadline - now_ms();
        if (left <= 0 && !first) return fail(ETIMEDOUT);
        if (!pump(ep, left > 0 ? left : -1)) return -1;
    }
    Message m = std::move(ep.inbox.front());
    ep.inbox.pop_front();
    release_bytes(ep, m);
    return area_hold(area, std::move(m));
}

int await_answer(Endpoint &ep, uint32_t token, int64_t timeout_ms, void *area) {
    if (token == 0) return fail(EINVAL);
    if (ep.answered.count(token)) return take_answered(ep, token, area);
    auto pending = ep.awaiting.find(token);
    if (pending == ep.awaiting.end()) return fail(ENOENT);
    const uint64_t conn_id = pending->second;
    const int64_t deadline = now_ms() + timeout_ms;
    for (bool first = true;; first = false) {
        Conn *c = find_conn(ep, conn_id);
        if (!c) {
            forget_awaited(ep, token);
            return fail(ECONNRESET);
        }
        int64_t left = deadline - now_ms();
        if (left <= 0 && !first) return fail(ETIMEDOUT);
        Message m;
        Rx rx = others_queued(ep, conn_id) ? receive_while_sending(ep, *c, left, m)
                                           : receive_frame(ep, *c, left > 0 ? left : -1, m);
        if (rx == Rx::Complete && m.head.kind == kAnswer && m.head.token == token) {
            ep.awaiting.erase(token);  // this connection is where it was awaited
            return area_hold(area, std::move(m));
        }
        if (rx == Rx::Complete) {
            if (!file_message(ep, *c, std::move(m))) rx = Rx::Closed;
            if (ep.answered.count(token)) return take_answered(ep, token, area);
        }
        if (rx == Rx::Again && left <= 0) return fail(ETIMEDOUT);
        if (!settle(ep, *c, rx)) {
            int error = rx == Rx::Closed ? ECONNRESET : errno;
            forget_awaited(ep, token);
            return fail(error);
        }
    }
}

// Used by vel_send: the next token for a request of ours.
uint32_t issue_token(Endpoint &ep, uint64_t conn_id, bool awaited) {
    uint32_t token = next_nonzero(ep.next_token);
    if (awaited) {
        trim_awaiting(ep, token);
        ep.awaiting[token] = conn_id;
    }
    return token;
}

}  // namespace ipacl_host
