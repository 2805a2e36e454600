// The demo's ACL manager: serves service 98, converts and checks what it is
// sent, keeps accepted filters in pool slots in filter order, copies each
// change to the standby and confirms it to the client.
#include "roles.h"

#include "../conventions.h"
#include "children.h"
#include "exchange.h"
#include "management_net.h"
#include "narrator.h"

#include <ipacl/chk.h>
#include <ipacl/cmp.h>
#include <ipacl/enums.h>
#include <ipacl/mm.h>
#include <ipacl/str_record.h>
#include <ipacl/wire.h>
#include <ipacl/wrap.h>
#include <platform/vel.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <string>
#include <vector>

namespace ipacl_tool::demo {
namespace {

constexpr role me = role::manager;

class manager {
  public:
    ~manager() {
        empty_pool();
        if (open_) ipacl_host_close(endpoint_);
    }

    int run(int ready_fd) {
        if (have_management_net() && !enter_manager_side()) {
            say(me, "error", "cannot enter the management network: %s", std::strerror(errno));
            return 1;
        }
        if (!open(ready_fd)) return 1;
        for (;;) {
            incoming message;
            if (!accept_next(endpoint_, message)) {
                say(me, "error", "no request came: %s", std::strerror(errno));
                return 1;
            }
            bool go_on = handle(message);
            release(endpoint_, message);
            if (!go_on) return failed_ ? 1 : 0;
        }
    }

  private:
    bool open(int ready_fd) {
        pool_ = ipacl_mm_new(ipacl_sizeof_mem_chunk(IPACL_MEM_TYPE_ACCESS_DATA),
                             ipacl_sizeof_mem(IPACL_MEM_TYPE_ACCESS_DATA));
        if (pool_ == nullptr || ipacl_host_open(IPACL_HOST_SERVICE_ACL, 0, &endpoint_) != 0) {
            std::perror("ipacl demo: manager");
            return false;
        }
        open_ = true;
        signal_ready(ready_fd);
        return true;
    }

    // False once the client said the demo is over.
    bool handle(incoming &message) {
        switch (message.info.opcode) {
            case opcode_filter_cfg:
                answer_plain(message);
                return true;
            case opcode_filter_quen:
                answer_enveloped(message);
                return true;
            case opcode_filter_list:
                answer_list(message);
                return true;
            case opcode_stop:
                stop(message);
                return false;
            default:
                say(me, "ignore", "unknown opcode 0x%x", message.info.opcode);
                return true;
        }
    }

    void answer_plain(incoming &message) {
        say(me, "receive", "%u bytes, opcode 0x%x, token %u", message.size, message.info.opcode,
            message.info.token);
        void *payload = nullptr;
        uint32_t size = 0;
        ipacl_wrap_vel_recv(message.payload, message.size, &payload, &size, err_);
        std::vector<uint8_t> answer = configure(payload, size);
        uint32_t rc = ipacl_wrap_vel_rsp(endpoint_, message.info.token, answer.data(),
                                         static_cast<uint32_t>(answer.size()), err_);
        report_answer("ipacl_wrap_vel_rsp", rc, answer.size(), message.info.token);
    }

    void answer_enveloped(incoming &message) {
        say(me, "receive", "%u bytes in a quen envelope, opcode 0x%x, token %u", message.size,
            message.info.opcode, message.info.token);
        show_envelope(message);
        void *payload = nullptr;
        uint32_t size = 0;
        uint32_t rc = ipacl_wrap_quen_recv(message.payload, message.size, &payload, &size, err_);
        if (rc != IPACL_OK) {
            say(me, "refuse", "ipacl_wrap_quen_recv: 0x%08x %s", rc, err_);
            payload = nullptr;
            size = 0;
        } else {
            say(me, "unwrap", "ipacl_wrap_quen_recv: %u payload bytes behind the header", size);
        }
        std::vector<uint8_t> answer = configure(payload, size);
        rc = ipacl_wrap_quen_rsp(endpoint_, message.info.token, answer.data(),
                                 static_cast<uint32_t>(answer.size()), err_);
        report_answer("ipacl_wrap_quen_rsp", rc, answer.size(), message.info.token);
    }

    void show_envelope(const incoming &message) {
        if (message.size < sizeof(ipacl_quen)) return;
        ipacl_quen header;
        std::memcpy(&header, message.payload, sizeof header);
        ipacl_ntoh_quen(&header, &header);
        char operation[64];
        ipacl_str_quen_msg(header.op, operation);
        say(me, "envelope", "ipacl_ntoh_quen: operation %s, length %u, texts \"%.*s\", \"%.*s\"",
            operation, header.length, static_cast<int>(strnlen(header.text1, sizeof header.text1)),
            header.text1, static_cast<int>(strnlen(header.text2, sizeof header.text2)),
            header.text2);
    }

    void report_answer(const char *wrapper, uint32_t rc, std::size_t size, uint32_t token) {
        if (rc != IPACL_OK) {
            say(me, "error", "%s: %u %s", wrapper, rc, err_);
            failed_ = true;
            return;
        }
        say(me, "confirm", "%s: an ipacl_filter_cfm of %zu bytes back to token %u", wrapper, size,
            token);
    }

    // Adds the filters of an ipacl_filter_cfg; the confirmation to send back.
    std::vector<uint8_t> configure(const void *payload, uint32_t size) {
        std::string why;
        ipacl_filter_key key{};
        if (!well_formed("filter_cfg", payload, size, why)) {
            say(me, "refuse", "not an ipacl_filter_cfg: %s", why.c_str());
            return filter_cfm_message(key, IPACL_E_BAD_ARG);
        }
        std::vector<uint8_t> bytes = copy_of(payload, size);
        auto &cfg = *reinterpret_cast<ipacl_filter_cfg *>(bytes.data());
        ipacl_ntoh_filter_cfg(&cfg, &cfg);
        char operation[64];
        ipacl_str_conf_op(cfg.word4, operation);
        say(me, "convert", "ipacl_ntoh_filter_cfg: %u filter(s), operation %s", cfg.count,
            operation);
        uint32_t result = IPACL_OK;
        for (uint32_t i = 0; i < cfg.count; ++i) {
            const ipacl_filter &filter = cfg.filters[i];
            if (i == 0) {
                std::memcpy(key.prof_name, filter.prof_name, sizeof key.prof_name);
                key.filter_index = filter.filter_index;
            }
            uint32_t rc = add(filter);
            if (result == IPACL_OK) result = rc;
        }
        return filter_cfm_message(key, result);
    }

    uint32_t add(const ipacl_filter &filter) {
        uint32_t rc = ipacl_chk_quen_filter(&filter, err_);
        if (rc != IPACL_OK) {
            say(me, "check", "ipacl_chk_quen_filter refused it: 0x%08x \"%s\"", rc, err_);
            return rc;
        }
        say(me, "check", "ipacl_chk_quen_filter accepted it");
        auto *slot = static_cast<ipacl_data *>(ipacl_mm_alloc(pool_, err_));
        if (slot == nullptr) {
            say(me, "error", "ipacl_mm_alloc: %s", err_);
            return IPACL_E_NO_MEM;
        }
        slot->filter = filter;
        slot->creation_time = static_cast<uint32_t>(std::time(nullptr));
        slot->rule_id = ++sequence_;
        std::size_t entry = insert_in_order(slot);
        say(me, "store", "ipacl_mm_alloc: slot %p of the access-data pool (%u bytes; %u in use);",
            static_cast<void *>(slot), pool_->slot_size, ipacl_mm_count(pool_));
        say(me, "", "ipacl_cmp_filter puts it at entry %zu of %zu", entry + 1, table_.size());
        if (!sync(filter)) return IPACL_E_FAIL;
        return enforce(filter.addr_type) ? IPACL_OK : IPACL_E_FAIL;
    }

    // Every accepted filter of the family, in order, becomes a rule on the
    // management interface.
    bool enforce(uint32_t family) {
        if (!have_management_net()) return true;
        std::vector<ipacl_filter> filters;
        for (const ipacl_data *slot : table_) filters.push_back(slot->filter);
        if (enforce_filters(filters, family)) return true;
        failed_ = true;
        return false;
    }

    std::size_t insert_in_order(ipacl_data *slot) {
        std::size_t at = 0;
        while (at < table_.size() &&
               ipacl_cmp_filter(&table_[at]->filter, &slot->filter) == IPACL_CMP_LT)
            ++at;
        table_.insert(table_.begin() + static_cast<std::ptrdiff_t>(at), slot);
        return at;
    }

    // Copies the change to the standby and waits until it holds it.
    bool sync(const ipacl_filter &filter) {
        ipacl_filter_sync *update = nullptr;
        if (ipacl_new_filter_sync_ext(sizeof(ipacl_filter_sync), &update) != IPACL_OK) return false;
        update->word0 = IPACL_SYNC_OP_ADD;
        update->word4 = sequence_;
        update->filter = filter;
        ipacl_hton_filter_sync(update, update);
        ipacl_vel_msg message{};
        message.opcode = opcode_filter_sync;
        message.payload = update;
        message.size = sizeof(ipacl_filter_sync);
        say(me, "sync", "ipacl_wrap_vel_standby: an ipacl_filter_sync of %u bytes, sequence %u",
            message.size, sequence_);
        uint32_t rc = ipacl_wrap_vel_standby(endpoint_, message.handle, &message, err_);
        ipacl_free_filter_sync_ext(update);
        std::vector<uint8_t> answer;
        if (rc != IPACL_OK || !await_answer(endpoint_, message.handle, answer)) {
            say(me, "error", "the standby did not take the update: %s",
                rc != IPACL_OK ? err_ : std::strerror(errno));
            failed_ = true;
            return false;
        }
        say(me, "synced", "the standby holds it");
        return true;
    }

    // An ipacl_filter_rsp with every filter of the requested profile.
    void answer_list(incoming &message) {
        std::string why;
        std::vector<ipacl_filter> found;
        if (well_formed("filter_req", message.payload, message.size, why)) {
            std::vector<uint8_t> bytes = copy_of(message.payload, message.size);
            auto &request = *reinterpret_cast<ipacl_filter_req *>(bytes.data());
            ipacl_ntoh_filter_req(&request, &request);
            for (const ipacl_data *slot : table_)
                if (ipacl_cmp_eq_name(slot->filter.prof_name, request.key.prof_name) ==
                    IPACL_CMP_EQ)
                    found.push_back(slot->filter);
            say(me, "list",
                "ipacl_ntoh_filter_req: profile %s; %zu filter(s) in ipacl_cmp_filter "
                "order",
                request.key.prof_name, found.size());
        } else {
            say(me, "refuse", "not an ipacl_filter_req: %s", why.c_str());
        }
        std::vector<uint8_t> answer(sizeof(ipacl_filter_rsp) + found.size() * sizeof(ipacl_filter));
        auto &response = *reinterpret_cast<ipacl_filter_rsp *>(answer.data());
        response.count = static_cast<uint32_t>(found.size());
        response.word8 = static_cast<uint32_t>(table_.size());
        for (std::size_t i = 0; i < found.size(); ++i) response.filters[i] = found[i];
        ipacl_hton_filter_rsp(&response, &response);
        uint32_t rc = ipacl_wrap_vel_rsp(endpoint_, message.info.token, answer.data(),
                                         static_cast<uint32_t>(answer.size()), err_);
        if (rc != IPACL_OK) {
            say(me, "error", "ipacl_wrap_vel_rsp: %u %s", rc, err_);
            failed_ = true;
        } else {
            say(me, "answer", "ipacl_wrap_vel_rsp: an ipacl_filter_rsp of %zu bytes",
                answer.size());
        }
    }

    void stop(incoming &message) {
        say(me, "stop", "the client is done; telling the standby");
        ipacl_vel_msg update{};
        update.opcode = opcode_stop;
        std::vector<uint8_t> answer;
        if (ipacl_wrap_vel_standby(endpoint_, update.handle, &update, err_) != IPACL_OK ||
            !await_answer(endpoint_, update.handle, answer)) {
            say(me, "error", "the standby did not stop: %s", err_);
            failed_ = true;
        }
        if (have_management_net()) show_enforced_rules();
        say(me, "pool", "ipacl_show_mm of the access-data pool:");
        before_display();
        ipacl_show_mm(pool_);
        flush();
        uint32_t slots = ipacl_mm_count(pool_);
        empty_pool();
        say(me, "release", "ipacl_mm_free of its %u slot(s); the pool is empty and freed", slots);
        if (ipacl_wrap_vel_rsp(endpoint_, message.info.token, nullptr, 0, err_) != IPACL_OK) {
            say(me, "error", "ipacl_wrap_vel_rsp: %s", err_);
            failed_ = true;
        }
    }

    void empty_pool() {
        if (pool_ == nullptr) return;
        for (ipacl_data *slot : table_) ipacl_mm_free(pool_, slot, err_);
        table_.clear();
        if (ipacl_mm_count(pool_) == 0) std::free(pool_);
        pool_ = nullptr;
    }

    uint32_t endpoint_ = 0;
    bool open_ = false;
    bool failed_ = false;
    ipacl_mm *pool_ = nullptr;
    std::vector<ipacl_data *> table_;  // in ipacl_cmp_filter order
    uint32_t sequence_ = 0;
    char err_[IPACL_ERR_TEXT_SIZE * 2] = {};
};

}  // namespace

int run_manager(int ready_fd) {
    manager process;
    return process.run(ready_fd);
}

}  // namespace ipacl_tool::demo
