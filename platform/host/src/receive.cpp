// Receiving: the manager's side takes the next request from any connection;
// the client's side waits on one connection for the answer to its token.
#include <algorithm>
#include <cerrno>
#include <ctime>
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

// Forgets requests answered long ago or never answered, so that neither map
// grows without bound; tokens are handed out in order, so "old" is distance.
template <typename Map>
void trim(Map &map, uint32_t newest) {
    if (map.size() < kTokenWindow) return;
    for (auto it = map.begin(); it != map.end();)
        it = (newest - it->first >= kTokenWindow / 2) ? map.erase(it) : std::next(it);
}

// Takes an answer to `token` that arrived earlier, if any.
bool take_stray(Endpoint &ep, uint32_t token, Message &out) {
    auto it = std::find_if(ep.stray_answers.begin(), ep.stray_answers.end(),
                           [token](const Message &m) { return m.head.token == token; });
    if (it == ep.stray_answers.end()) return false;
    out = std::move(*it);
    ep.stray_answers.erase(it);
    return true;
}

// Reads what is ready on every connection and the listener, at most one
// frame each, within wait_ms (< 0: no waiting).  False with errno when the
// wait itself failed.
bool pump(Endpoint &ep, int64_t wait_ms) {
    epoll_event events[32];
    int timeout = wait_ms < 0 ? 0 : static_cast<int>(std::min<int64_t>(wait_ms, 1 << 30));
    int ready = epoll_wait(ep.epoll_fd, events, 32, timeout);
    if (ready < 0) return errno == EINTR;
    // Level-triggered epoll hands ready connections out in turn, so a busy
    // peer cannot starve the others.
    for (int i = 0; i < ready; ++i) {
        const uint64_t id = events[i].data.u64;
        if (id == kListenerId) {
            accept_peer(ep);
            continue;
        }
        Conn *c = find_conn(ep, id);
        if (!c) continue;
        Message m;
        Rx rx = receive_frame(ep, *c, -1, m);
        if (rx == Rx::Complete) {
            file_message(ep, std::move(m));
        } else if (rx == Rx::Closed || rx == Rx::Failed) {
            if (rx == Rx::Failed && errno == EPROTO) ++ep.stats.protocol_errors;
            close_conn(ep, id);
        }
    }
    return true;
}

}  // namespace

int64_t now_ms() {
    timespec ts{};
    clock_gettime(CLOCK_MONOTONIC, &ts);
    return static_cast<int64_t>(ts.tv_sec) * 1000 + ts.tv_nsec / 1000000;
}

void file_message(Endpoint &ep, Message &&m) {
    if (m.head.kind == kAnswer) {
        if (ep.stray_answers.size() >= kStrayAnswerLimit) {
            ep.stray_answers.pop_front();
            ++ep.stats.dropped;
        }
        ep.stray_answers.push_back(std::move(m));
        return;
    }
    if (ep.inbox.size() >= kInboxLimit) {
        ++ep.stats.dropped;
        return;
    }
    // Requesters number their requests independently: answer under a token
    // of our own, remembering whom it goes back to.
    uint32_t local = next_nonzero(ep.next_local_token);
    trim(ep.asked, local);
    ep.asked[local] = Asked{m.conn_id, m.head.token};
    m.head.token = local;
    ep.inbox.push_back(std::move(m));
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
    return area_hold(area, std::move(m));
}

int await_answer(Endpoint &ep, uint32_t token, int64_t timeout_ms, void *area) {
    if (token == 0) return fail(EINVAL);
    Message m;
    if (take_stray(ep, token, m)) {
        ep.awaiting.erase(token);
        return area_hold(area, std::move(m));
    }
    auto pending = ep.awaiting.find(token);
    if (pending == ep.awaiting.end()) return fail(ENOENT);
    const uint64_t conn_id = pending->second;
    const int64_t deadline = now_ms() + timeout_ms;
    for (bool first = true;; first = false) {
        Conn *c = find_conn(ep, conn_id);
        if (!c) {
            ep.awaiting.erase(token);
            return fail(ECONNRESET);
        }
        int64_t left = deadline - now_ms();
        if (left <= 0 && !first) return fail(ETIMEDOUT);
        Rx rx = receive_frame(ep, *c, left > 0 ? left : -1, m);
        switch (rx) {
            case Rx::Complete:
                if (m.head.kind == kAnswer && m.head.token == token) {
                    ep.awaiting.erase(token);
                    return area_hold(area, std::move(m));
                }
                file_message(ep, std::move(m));
                break;
            case Rx::Partial:
                break;
            case Rx::Again:
                if (left <= 0) return fail(ETIMEDOUT);
                break;
            case Rx::Closed:
                close_conn(ep, conn_id);
                ep.awaiting.erase(token);
                return fail(ECONNRESET);
            case Rx::Failed: {
                int error = errno;
                if (error == EPROTO) ++ep.stats.protocol_errors;
                close_conn(ep, conn_id);
                ep.awaiting.erase(token);
                return fail(error);
            }
        }
    }
}

// Used by vel_send: the next token for a request of ours.
uint32_t issue_token(Endpoint &ep, uint64_t conn_id, bool awaited) {
    uint32_t token = next_nonzero(ep.next_token);
    if (awaited) {
        trim(ep.awaiting, token);
        ep.awaiting[token] = conn_id;
    }
    return token;
}

}  // namespace ipacl_host
