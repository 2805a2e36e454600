// The road of one request between real processes: a client checks a filter
// and sends it, the manager converts it back, checks it again, confirms it
// and keeps its standby copy in step; plain and inside the quen envelope.
// Then the library's use of the host's interface-index and debug services.
#include <gtest/gtest.h>

#include <cerrno>
#include <cstring>
#include <poll.h>
#include <string>
#include <unistd.h>
#include <vector>

#include <ipacl/ipacl.h>

#include "host_test_support.h"
#include "ipacl_host.h"
#include "platform/if_index.h"
#include "platform/vel.h"

namespace {

using host_test::EndpointDir;
using host_test::spawn;
using host_test::wait_child;

constexpr uint32_t kOpFilterAdd = 0x0101;      // plain filter configuration
constexpr uint32_t kOpQuenFilterAdd = 0x0201;  // the same inside the envelope
constexpr uint32_t kSyncFilterAdd = 1;

// A message of one fixed header and one element, in a buffer of its own.
template <typename Head, typename Element>
struct OneElement {
    alignas(8) uint8_t bytes[sizeof(Head) + sizeof(Element)] = {};
    Head *head() { return reinterpret_cast<Head *>(bytes); }
    Element *element() { return reinterpret_cast<Element *>(bytes + sizeof(Head)); }
};
using Confirm = OneElement<ipacl_filter_cfm, ipacl_cfm>;
using Cfg = OneElement<ipacl_filter_cfg, ipacl_filter>;
static_assert(sizeof(Confirm) == 88);

ipacl_filter web_filter(uint32_t index, uint32_t protocol) {
    ipacl_filter f{};
    strcpy(f.prof_name, "web");
    f.filter_index = index;
    f.order_position = index;
    f.action = IPACL_ACTION_PERMIT;
    f.addr_type = IPACL_ADDR_TYPE_IPV4;
    f.src_wildcard = 0x00ffffff;
    f.dst_wildcard = 0;
    f.protocol = protocol;
    f.src_port_low = 0;
    f.src_port_high = 65535;
    f.src_port_op = IPACL_PORT_OP_ANY;
    f.dst_port_low = f.dst_port_high = 80;
    f.dst_port_op = IPACL_PORT_OP_EQ;
    f.icmp_type = f.icmp_code = 0xFFFFFFFF;
    f.precedence = f.tos = 0xFFFFFFFF;
    f.snmp_status = IPACL_SNMP_STATUS_CREATE_AND_GO;
    f.src_addr.family = 1;
    f.src_addr.addr[0] = 10;
    f.src_addr.prefix_len = 8;
    f.dst_addr.family = 1;
    const uint8_t dst[4] = {192, 168, 1, 1};
    memcpy(f.dst_addr.addr, dst, 4);
    f.dst_addr.prefix_len = 32;
    return f;
}

std::string text_of(const ipacl_filter &f) {
    char buf[512];
    ipacl_str_filter(&f, buf);
    return buf;
}

// The standby: takes `count` filter updates and writes the text of each
// filter, one a line, to `out`.
int standby_copy(int out, uint32_t count) {
    uint32_t h;
    if (ipacl_host_open(IPACL_HOST_SERVICE_ACL, IPACL_HOST_STANDBY, &h) != 0) return 40;
    if (write(out, "r\n", 2) != 2) return 41;
    for (uint32_t i = 0; i < count; ++i) {
        uint8_t area[IPACL_HOST_HANDLE_AREA];
        if (ipacl_host_accept(h, area, 20000) != 0) return 42;
        ipacl_host_msg_info info;
        ipacl_host_msg_info_get(area, &info);
        auto *op = static_cast<ipacl_filter_sync_op *>(vel_payload_get(area));
        if (info.service != 0 || info.size != sizeof *op + sizeof(ipacl_filter_key)) return 43;
        ipacl_ntoh_filter_sync_op(op, op);
        if (op->word0 != kSyncFilterAdd || op->count != 1 ||
            op->keys[0].filter_index != op->filter.filter_index)
            return 44;
        std::string line = text_of(op->filter) + "\n";
        if (write(out, line.data(), line.size()) != ssize_t(line.size())) return 45;
        vel_drop(h, area);
    }
    ipacl_host_close(h);
    return 0;
}

// Sends the standby its copy of an accepted filter.
uint32_t sync_standby(uint32_t h, const ipacl_filter &filter, char *err) {
    ipacl_filter_sync_op *op = nullptr;
    if (ipacl_new_filter_sync_op_ext(1, &op) != IPACL_OK) return IPACL_E_NO_MEM;
    op->word0 = kSyncFilterAdd;
    op->filter = filter;
    op->count = 1;
    memcpy(op->keys[0].prof_name, filter.prof_name, sizeof filter.prof_name);
    op->keys[0].filter_index = filter.filter_index;
    ipacl_hton_filter_sync_op(op, op);
    ipacl_vel_msg msg{};
    msg.opcode = kSyncFilterAdd;
    msg.payload = op;
    msg.size = sizeof *op + sizeof(ipacl_filter_key);
    uint32_t rc = ipacl_wrap_vel_standby(h, nullptr, &msg, err);
    ipacl_free_filter_sync_op_ext(op);
    return rc;
}

// The manager: converts each filter configuration back, checks it with the
// quen chain, confirms it with the check's result, and syncs the standby
// with each filter it accepted.
int manager(uint32_t count) {
    uint32_t h;
    if (ipacl_host_open(IPACL_HOST_SERVICE_ACL, 0, &h) != 0) return 50;
    char err[IPACL_ERR_TEXT_SIZE];
    for (uint32_t i = 0; i < count; ++i) {
        uint8_t area[IPACL_HOST_HANDLE_AREA];
        if (ipacl_host_accept(h, area, 20000) != 0) return 51;
        ipacl_host_msg_info info;
        ipacl_host_msg_info_get(area, &info);
        const bool enveloped = info.opcode == kOpQuenFilterAdd;
        void *payload = vel_payload_get(area);
        uint32_t size = vel_payload_size(area);
        if (enveloped) {
            auto *header = static_cast<ipacl_quen *>(payload);
            ipacl_quen plain;
            ipacl_ntoh_quen(header, &plain);
            if (plain.op != 2 || strcmp(plain.text1, "web") || strcmp(plain.text2, "add"))
                return 52;
            if (ipacl_wrap_quen_recv(payload, size, &payload, &size, err) != 0) return 53;
        }
        auto *cfg = static_cast<ipacl_filter_cfg *>(payload);
        if (size != sizeof *cfg + sizeof(ipacl_filter)) return 54;
        ipacl_ntoh_filter_cfg(cfg, cfg);
        if (cfg->count != 1) return 55;
        const ipacl_filter &filter = cfg->filters[0];

        Confirm answer;
        answer.head()->count = 1;
        ipacl_cfm *cfm = answer.element();
        cfm->key_type = IPACL_DALVE_TYPE_FILTER;
        cfm->result = ipacl_chk_quen_filter(&filter, err);
        memcpy(cfm->key.filter.prof_name, filter.prof_name, sizeof filter.prof_name);
        cfm->key.filter.filter_index = filter.filter_index;
        ipacl_hton_filter_cfm(answer.head(), answer.head());
        uint32_t token = vel_rr_token_get(area);
        uint32_t rc = enveloped
                          ? ipacl_wrap_quen_rsp(h, token, answer.bytes, sizeof answer.bytes, err)
                          : ipacl_wrap_vel_rsp(h, token, answer.bytes, sizeof answer.bytes, err);
        if (rc != 0) return 56;
        ipacl_chk_quen_filter(&filter, err);
        if (err[0] == '\0' && sync_standby(h, filter, err) != 0) return 57;
        vel_drop(h, area);
    }
    ipacl_host_close(h);
    return 0;
}

// Reads one line from fd within a few seconds.
std::string read_line(int fd) {
    std::string line;
    char ch;
    pollfd p{fd, POLLIN, 0};
    while (poll(&p, 1, 20000) == 1 && read(fd, &ch, 1) == 1 && ch != '\n') line += ch;
    return line;
}

// What the client makes of a confirmation in network order.
struct Confirmed {
    uint32_t count, key_type, result;
    std::string key;
};

Confirmed read_confirm(const void *payload, uint32_t size) {
    Confirmed out{};
    if (size != sizeof(Confirm)) return out;
    Confirm c;
    memcpy(c.bytes, payload, sizeof c.bytes);
    ipacl_ntoh_filter_cfm(c.head(), c.head());
    char text[128];
    ipacl_str_filter_key(&c.element()->key.filter, text);
    printf("confirmed: %s result 0x%x\n", text, c.element()->result);
    return {c.head()->count, c.element()->key_type, c.element()->result, text};
}

Cfg to_wire(const ipacl_filter &f) {
    Cfg cfg;
    cfg.head()->count = 1;
    memcpy(cfg.element(), &f, sizeof f);
    ipacl_hton_filter_cfg(cfg.head(), cfg.head());
    return cfg;
}

TEST(HostIntegration, FilterTravelsToTheManagerAndItsStandby) {
    EndpointDir dir;
    int lines[2];
    ASSERT_EQ(pipe(lines), 0);
    pid_t standby = spawn([&] {
        close(lines[0]);
        return standby_copy(lines[1], 2);
    });
    close(lines[1]);
    ASSERT_EQ(read_line(lines[0]), "r");
    pid_t mgr = spawn([] { return manager(3); });
    uint32_t client;
    ASSERT_EQ(ipacl_host_open(0, 0, &client), 0);
    char err[IPACL_ERR_TEXT_SIZE];

    // 1. Plain: a filter both chains accept.
    ipacl_filter first = web_filter(10, 6);
    ASSERT_EQ(ipacl_chk_cli_filter(&first, err), IPACL_OK) << err;
    Cfg cfg = to_wire(first);
    ipacl_vel_msg req{}, rsp{};
    req.opcode = kOpFilterAdd;
    req.payload = cfg.bytes;
    req.size = sizeof cfg.bytes;
    // The manager may still be registering: retry a refused send briefly.
    uint32_t rc = ECONNREFUSED;
    for (int tries = 0; rc == ECONNREFUSED && tries < 400; ++tries) {
        rc = ipacl_wrap_vel_req_rsp(client, &req, &rsp, err);
        if (rc == ECONNREFUSED) usleep(10000);
    }
    ASSERT_EQ(rc, 0u) << err;
    EXPECT_STREQ(err, "");
    Confirmed c = read_confirm(rsp.payload, rsp.size);
    EXPECT_EQ(c.count, 1u);
    EXPECT_EQ(c.key_type, IPACL_DALVE_TYPE_FILTER);
    EXPECT_EQ(c.result, IPACL_OK);
    EXPECT_NE(c.key.find("web"), std::string::npos) << c.key;
    EXPECT_NE(c.key.find("10"), std::string::npos) << c.key;
    EXPECT_EQ(vel_drop(client, rsp.handle), 0);

    // 2. Plain: protocol 300 passes the command line's chain, which has no
    // protocol step, and the manager's quen chain refuses it: no sync.
    ipacl_filter bad = web_filter(20, 300);
    bad.dst_port_op = IPACL_PORT_OP_ANY;
    bad.dst_port_low = 0;
    bad.dst_port_high = 65535;
    ASSERT_EQ(ipacl_chk_cli_filter(&bad, err), IPACL_OK) << err;
    cfg = to_wire(bad);
    ASSERT_EQ(ipacl_wrap_vel_req_rsp(client, &req, &rsp, err), 0u) << err;
    c = read_confirm(rsp.payload, rsp.size);
    EXPECT_EQ(c.result, IPACL_E_BAD_PROTO);
    vel_drop(client, rsp.handle);

    // 3. Enveloped.
    ipacl_filter third = web_filter(30, 17);
    third.dst_port_low = third.dst_port_high = 53;
    ASSERT_EQ(ipacl_chk_cli_filter(&third, err), IPACL_OK) << err;
    cfg = to_wire(third);
    ipacl_quen_desc qreq{};
    qreq.opcode = kOpQuenFilterAdd;
    qreq.payload = cfg.bytes;
    qreq.size = sizeof cfg.bytes;
    qreq.text1 = "web";
    qreq.text2 = "add";
    ASSERT_EQ(ipacl_wrap_quen_req_rsp(client, &qreq, &rsp, err), 0u) << err;
    c = read_confirm(rsp.payload, rsp.size);
    EXPECT_EQ(c.result, IPACL_OK);
    EXPECT_NE(c.key.find("30"), std::string::npos) << c.key;
    vel_drop(client, rsp.handle);

    // The standby holds exactly the two accepted filters, field for field.
    EXPECT_EQ(read_line(lines[0]), text_of(first));
    EXPECT_EQ(read_line(lines[0]), text_of(third));
    close(lines[0]);
    EXPECT_EQ(wait_child(mgr), 0);
    EXPECT_EQ(wait_child(standby), 0);
    ipacl_host_stats stats;
    ipacl_host_stats_get(client, &stats);
    EXPECT_EQ(stats.held, 0u);
    ipacl_host_close(client);
}

TEST(HostIntegration, BindingChecksUseTheHostInterfaces) {
    char err[IPACL_ERR_TEXT_SIZE];
    uint32_t mgmt = 0, mgmt_other_port = 0;
    ASSERT_EQ(if_index_mgmt_sup_port_init(&mgmt, 1, 0), 0);
    ASSERT_EQ(if_index_mgmt_sup_port_init(&mgmt_other_port, 1, 2), 0);
    auto binding = [](uint32_t if_index) {
        ipacl_if_prof b{};
        b.if_index = if_index;
        b.direction = 1;
        strcpy(b.prof_name, "web");
        return b;
    };
    ipacl_if_prof b = binding(mgmt);
    EXPECT_EQ(ipacl_chk_quen_if_prof(&b, err), IPACL_OK) << err;
    b = binding(mgmt_other_port);
    EXPECT_EQ(ipacl_chk_quen_if_prof(&b, err), IPACL_E_BAD_MGMT_IF);
    b = binding(ipacl_host_if_index(IPACL_HOST_IF_ETH, 1, 0, 1));
    EXPECT_EQ(ipacl_chk_quen_if_prof(&b, err), IPACL_OK) << err;
    b = binding(0);
    EXPECT_EQ(ipacl_chk_quen_if_prof(&b, err), IPACL_HOST_IF_E_NOENT);

    EXPECT_EQ(ipacl_chk_if_index(ipacl_host_if_index(IPACL_HOST_IF_ETH, 1, 0, 1), err), IPACL_OK);
    EXPECT_EQ(ipacl_chk_if_index(ipacl_host_if_index_num(IPACL_HOST_IF_LO, 0), err),
              IPACL_E_BAD_IF_TYPE);
    EXPECT_STREQ(err, "if type 3 not allowed");
    EXPECT_EQ(ipacl_chk_if_index(0x0c000001, err), IPACL_HOST_IF_E_NOENT);
    EXPECT_STREQ(err, "bad if type");

    char name[IPACL_STR_SIZE];
    ipacl_str_if_index(mgmt, name);
    EXPECT_STREQ(name, "mgmt1/0");
    ipacl_str_if_index(ipacl_host_if_index(IPACL_HOST_IF_ETH, 2, 1, 48), name);
    EXPECT_STREQ(name, "eth2/1/48");
}

TEST(HostIntegration, InternalErrorsReachTheHistoryAndTheDebugPrint) {
    ipacl_host_hist_clear();
    ipacl_host_debug_set(1);
    ipacl_inet_addr odd{};
    odd.family = 7;
    uint32_t any = 0;
    EXPECT_EQ(host_test::stderr_of([&] { any = is_prefix_any(&odd); }),
              "ipacl: impossible address type in is_prefix_any(): 7\n");
    EXPECT_EQ(any, 1u);
    ASSERT_EQ(ipacl_host_hist_count(), 1u);
    ipacl_host_hist_entry e;
    ASSERT_EQ(ipacl_host_hist_get(0, &e), 0);
    EXPECT_EQ(e.event, 0x730000u);
    uint32_t subtype;
    memcpy(&subtype, e.record, 4);
    EXPECT_EQ(subtype, 100u);
    EXPECT_STREQ(reinterpret_cast<const char *>(e.record + 4),
                 "impossible address type in is_prefix_any(): 7\n");
    ipacl_host_debug_set(0);
    ipacl_host_hist_clear();
}

}  // namespace
