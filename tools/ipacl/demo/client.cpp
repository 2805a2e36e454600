// The demo's client: reads a handful of filters, checks each as the command
// line does, sends what passes to the manager (one of them in a quen
// envelope) and shows the answers; then lists the profile and says stop.
#include "roles.h"

#include "../conventions.h"
#include "../filter_messages.h"
#include "../parse/filter_parse.h"
#include "exchange.h"
#include "management_net.h"
#include "narrator.h"

#include <ipacl/chk.h>
#include <ipacl/enums.h>
#include <ipacl/str_record.h>
#include <ipacl/wire.h>
#include <ipacl/wrap.h>
#include <platform/vel.h>

#include <arpa/inet.h>

#include <cstdio>
#include <cstring>
#include <iterator>
#include <string>
#include <vector>

namespace ipacl_tool::demo {
namespace {

constexpr role me = role::client;
constexpr const char *profile = "web";

struct demo_filter {
    const char *command;
    uint32_t index;
    bool envelope;  // sent with ipacl_wrap_quen_req_rsp
    bool accepted;  // what the road should end with
    const char *about;
};

const demo_filter filters[] = {
    {"permit tcp any 2001:db8::/32 eq www established", 10, false, true,
     "an IPv6 filter, the whole road"},
    {"deny udp 10.1.0.0 0.0.255.255 host 192.168.1.1 eq snmp log-deny", 20, true, true,
     "an IPv4 filter with a wildcard mask, in a quen envelope"},
    {"permit tcp any range 2000 1000 any", 30, false, false,
     "a port range upside down: the client's own check refuses it"},
    {"permit ip 10.0.0.0 0.255.0.255 any", 40, false, false,
     "a wildcard mask with a gap: refused by the client"},
    {"permit tcp any any precedence flash tos delay", 50, false, false,
     "precedence and tos at once: the command line's check lets it by, the manager's does not"},
    {"permit icmp 10.0.0.0/8 any echo", 15, false, true,
     "an ICMP echo filter; the manager orders it between the first two"},
};

class client {
  public:
    ~client() {
        if (open_) ipacl_host_close(endpoint_);
    }

    bool run() {
        if (ipacl_host_open(0, 0, &endpoint_) != 0) {
            std::perror("ipacl demo: client");
            return false;
        }
        open_ = true;
        uint32_t number = 0;
        for (const demo_filter &filter : filters) {
            ++number;
            heading("Filter %u of %zu: %s", number, std::size(filters), filter.command);
            std::printf("  (%s)\n", filter.about);
            if (road(filter, number == 1) != filter.accepted) {
                say(me, "error", "this filter should have been %s",
                    filter.accepted ? "accepted" : "refused");
                ok_ = false;
            }
        }
        heading("The profile as the manager holds it");
        list();
        if (have_management_net()) {
            heading("Packets on the manager's management interface");
            send_packets();
        }
        heading("Shutting down");
        stop();
        return ok_;
    }

  private:
    // True when the manager added the filter.
    bool road(const demo_filter &demo, bool first) {
        parse_options options;
        options.profile = profile;
        options.index = demo.index;
        parse_result parsed = parse_filter(demo.command, options);
        if (!parsed.ok) {
            say(me, "error", "%s", parsed.error.message.c_str());
            ok_ = false;
            return false;
        }
        const ipacl_filter &filter = parsed.filter;
        char family[64];
        ipacl_str_addr_type(filter.addr_type, family);
        say(me, "parse", "profile %s, index %u, address type %s", profile, demo.index, family);

        uint32_t rc = ipacl_chk_cli_filter(&filter, err_);
        if (rc != IPACL_OK) {
            say(me, "check", "ipacl_chk_cli_filter refused it: 0x%08x \"%s\"", rc, err_);
            say(me, "keep", "not sent: the client sends only what its check accepts");
            return false;
        }
        say(me, "check", "ipacl_chk_cli_filter accepted it");
        char line[512];
        ipacl_str_filter(&filter, line);
        say(me, "one line", "ipacl_str_filter: %s", line);
        if (filter.addr_type == IPACL_ADDR_TYPE_IPV6 &&
            ipacl_str_filter_ipv6(&filter, line, sizeof line) == IPACL_OK)
            say(me, "command", "ipacl_str_filter_ipv6: %s", line);

        std::vector<uint8_t> request = filter_cfg_message(filter, IPACL_CONF_OP_ADD);
        say(me, "wire", "ipacl_hton_filter_cfg: an ipacl_filter_cfg of %zu bytes, network order",
            request.size());
        show_hex(request, first ? 0 : 2);
        std::vector<uint8_t> answer;
        if (!exchange(demo.envelope, request, answer)) {
            ok_ = false;
            return false;
        }
        return confirmed(answer);
    }

    bool exchange(bool envelope, std::vector<uint8_t> &request, std::vector<uint8_t> &answer) {
        ipacl_vel_msg response{};
        uint32_t rc;
        if (envelope) {
            ipacl_quen_desc quen{};
            quen.opcode = opcode_filter_quen;
            quen.payload = request.data();
            quen.size = static_cast<uint32_t>(request.size());
            quen.text1 = "ipacl demo client";
            quen.text2 = profile;
            say(me, "request",
                "ipacl_wrap_quen_req_rsp: opcode 0x%x to service 98 in a %u-byte "
                "quen envelope",
                quen.opcode, static_cast<uint32_t>(sizeof(ipacl_quen) + request.size()));
            rc = ipacl_wrap_quen_req_rsp(endpoint_, &quen, &response, err_);
        } else {
            ipacl_vel_msg plain{};
            plain.opcode = opcode_filter_cfg;
            plain.payload = request.data();
            plain.size = static_cast<uint32_t>(request.size());
            say(me, "request", "ipacl_wrap_vel_req_rsp: opcode 0x%x to service 98", plain.opcode);
            rc = ipacl_wrap_vel_req_rsp(endpoint_, &plain, &response, err_);
        }
        if (rc != IPACL_OK) {
            say(me, "error", "no answer: %u \"%s\"", rc, err_);
            return false;
        }
        answer = copy_of(response.payload, response.size);
        vel_drop(endpoint_, response.handle);
        return true;
    }

    // Shows the manager's confirmation; true when it added the filter.
    bool confirmed(std::vector<uint8_t> &answer) {
        std::string why;
        if (!well_formed("filter_cfm", answer.data(), static_cast<uint32_t>(answer.size()), why) ||
            answer.size() != sizeof(ipacl_filter_cfm) + sizeof(ipacl_cfm)) {
            say(me, "error", "the answer is not one confirmation: %s", why.c_str());
            ok_ = false;
            return false;
        }
        auto &cfm = *reinterpret_cast<ipacl_filter_cfm *>(answer.data());
        char key[512];
        ipacl_str_filter_key_net(&cfm.cfms[0].key.filter, key);
        say(me, "answer", "%zu bytes; ipacl_str_filter_key_net reads the key as it came: %s",
            answer.size(), key);
        ipacl_ntoh_filter_cfm(&cfm, &cfm);
        uint32_t result = cfm.cfms[0].result;
        char type[64];
        ipacl_str_dalve_type(cfm.cfms[0].key_type, type);
        say(me, "answer", "ipacl_ntoh_filter_cfm: %s %s, result 0x%08x: %s", type, key, result,
            result == IPACL_OK ? "added" : "refused by the manager");
        return result == IPACL_OK;
    }

    void list() {
        ipacl_filter_req request{};
        request.word0 = IPACL_QUERY_OP_ONE_PROFILE;
        std::snprintf(request.key.prof_name, sizeof request.key.prof_name, "%s", profile);
        ipacl_hton_filter_req(&request, &request);
        ipacl_vel_msg plain{};
        plain.opcode = opcode_filter_list;
        plain.payload = &request;
        plain.size = sizeof request;
        ipacl_vel_msg response{};
        say(me, "request", "ipacl_wrap_vel_req_rsp: an ipacl_filter_req for profile %s", profile);
        uint32_t rc = ipacl_wrap_vel_req_rsp(endpoint_, &plain, &response, err_);
        if (rc != IPACL_OK) {
            say(me, "error", "no answer: %u \"%s\"", rc, err_);
            ok_ = false;
            return;
        }
        std::vector<uint8_t> answer = copy_of(response.payload, response.size);
        vel_drop(endpoint_, response.handle);
        std::string why;
        if (!well_formed("filter_rsp", answer.data(), static_cast<uint32_t>(answer.size()), why)) {
            say(me, "error", "the answer is not an ipacl_filter_rsp: %s", why.c_str());
            ok_ = false;
            return;
        }
        auto &rsp = *reinterpret_cast<ipacl_filter_rsp *>(answer.data());
        uint32_t count = ntohl(rsp.count);
        say(me, "answer",
            "an ipacl_filter_rsp of %u filter(s), each read with ipacl_str_filter_net:", count);
        for (uint32_t i = 0; i < count; ++i) {
            char line[512];
            ipacl_str_filter_net(&rsp.filters[i], line);
            say(me, "", "%s", line);
        }
        if (count != accepted_count()) ok_ = false;
    }

    // Filter 15 permits ICMP echo from 10.0.0.0/8; nothing permits snmp to
    // the manager, so the implicit deny drops it.
    void send_packets() {
        packet_outcome outcome = send_test_packets();
        say(me, "send", "ICMP echo %s -> %s: %s", client_address().c_str(),
            manager_address().c_str(), outcome.echo_answered ? "answered" : "no answer");
        say(me, "send", "UDP to %s port 161 (snmp): %s", manager_address().c_str(),
            outcome.udp_arrived ? "arrived" : "dropped");
        if (!outcome.echo_answered || outcome.udp_arrived) {
            say(me, "error", "expected the echo answered (filter 15) and snmp dropped");
            ok_ = false;
        }
    }

    static uint32_t accepted_count() {
        uint32_t count = 0;
        for (const demo_filter &filter : filters) count += filter.accepted ? 1 : 0;
        return count;
    }

    void stop() {
        ipacl_vel_msg plain{};
        plain.opcode = opcode_stop;
        ipacl_vel_msg response{};
        say(me, "request", "ipacl_wrap_vel_req_rsp: stop");
        uint32_t rc = ipacl_wrap_vel_req_rsp(endpoint_, &plain, &response, err_);
        if (rc != IPACL_OK) {
            say(me, "error", "no answer: %u \"%s\"", rc, err_);
            ok_ = false;
            return;
        }
        vel_drop(endpoint_, response.handle);
        say(me, "done", "the manager has stopped");
    }

    uint32_t endpoint_ = 0;
    bool open_ = false;
    bool ok_ = true;
    char err_[IPACL_ERR_TEXT_SIZE * 2] = {};
};

}  // namespace

bool run_client() {
    client process;
    return process.run();
}

}  // namespace ipacl_tool::demo
