// The demo's standby copy: registers as the standby, applies each filter
// sync it is sent to its own copy, shows it and confirms it.
#include "roles.h"

#include "../conventions.h"
#include "children.h"
#include "exchange.h"
#include "narrator.h"

#include <ipacl/enums.h>
#include <ipacl/show.h>
#include <ipacl/str_record.h>
#include <ipacl/wire.h>
#include <ipacl/wrap.h>

#include <arpa/inet.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

namespace ipacl_tool::demo {
namespace {

constexpr role me = role::standby;

class standby {
  public:
    ~standby() {
        if (open_) ipacl_host_close(endpoint_);
    }

    int run(int ready_fd) {
        if (ipacl_host_open(IPACL_HOST_SERVICE_ACL, IPACL_HOST_STANDBY, &endpoint_) != 0) {
            std::perror("ipacl demo: standby");
            return 1;
        }
        open_ = true;
        signal_ready(ready_fd);
        for (bool go_on = true; go_on;) {
            incoming message;
            if (!accept_next(endpoint_, message)) {
                say(me, "error", "no update came: %s", std::strerror(errno));
                return 1;
            }
            go_on = handle(message);
            release(endpoint_, message);
        }
        return failed_ ? 1 : 0;
    }

  private:
    bool handle(incoming &message) {
        if (message.info.opcode == opcode_filter_sync) {
            apply(message);
            confirm(message);
            return true;
        }
        if (message.info.opcode == opcode_stop) {
            say(me, "stop", "it holds %zu cop%s:", copies_.size(),
                copies_.size() == 1 ? "y" : "ies");
            for (const ipacl_filter &copy : copies_) {
                char line[512];
                ipacl_str_filter(&copy, line);
                say(me, "", "%s", line);
            }
            confirm(message);
            return false;
        }
        say(me, "ignore", "unknown opcode 0x%x", message.info.opcode);
        return true;
    }

    void apply(const incoming &message) {
        std::string why;
        if (!well_formed("filter_sync", message.payload, message.size, why)) {
            say(me, "refuse", "not an ipacl_filter_sync: %s", why.c_str());
            failed_ = true;
            return;
        }
        std::vector<uint8_t> bytes = copy_of(message.payload, message.size);
        auto &update = *reinterpret_cast<ipacl_filter_sync *>(bytes.data());
        ipacl_ntoh_filter_sync(&update, &update);
        char operation[64];
        ipacl_str_sync_op(update.word0, operation);
        say(me, "copy", "ipacl_ntoh_filter_sync: %s, sequence %u", operation, update.word4);
        copies_.push_back(update.filter);
        if (copies_.size() == 1) {
            say(me, "display", "ipacl_show_filter of its copy:");
            before_display();
            ipacl_show_filter(&copies_.back());
            flush();
        } else {
            char line[512];
            ipacl_str_filter(&copies_.back(), line);
            say(me, "display", "ipacl_str_filter: %s", line);
        }
    }

    // The answer carries the number of copies held, in network order.
    void confirm(const incoming &message) {
        uint32_t held = htonl(static_cast<uint32_t>(copies_.size()));
        char err[IPACL_ERR_TEXT_SIZE] = {};
        if (ipacl_wrap_vel_rsp(endpoint_, message.info.token, &held, sizeof held, err) !=
            IPACL_OK) {
            say(me, "error", "ipacl_wrap_vel_rsp: %s", err);
            failed_ = true;
        }
    }

    uint32_t endpoint_ = 0;
    bool open_ = false;
    bool failed_ = false;
    std::vector<ipacl_filter> copies_;
};

}  // namespace

int run_standby(int ready_fd) {
    standby process;
    return process.run(ready_fd);
}

}  // namespace ipacl_tool::demo
