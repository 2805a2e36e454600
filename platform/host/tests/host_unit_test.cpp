// The host platform within one process: interface indexes and the library's
// checks on them, the debug history and print, the vel service between
// endpoints of this process, and the endpoint directory.
#include <gtest/gtest.h>

#include <cerrno>
#include <chrono>
#include <cstring>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>
#include <vector>

#include <ipacl/ipacl.h>

#include "host_test_support.h"
#include "platform/if_index.h"
#include "platform/tivra.h"
#include "platform/vel.h"

namespace {

using namespace host_test;

std::string name_of(uint32_t if_index) {
    char buf[64];
    snprintf_if_index(buf, sizeof buf, if_index);
    return buf;
}

TEST(HostIfIndex, NamesFollowTheSchemeAndParseBack) {
    const std::pair<uint32_t, const char *> cases[] = {
        {ipacl_host_if_index(IPACL_HOST_IF_ETH, 1, 0, 7), "eth1/7"},
        {ipacl_host_if_index(IPACL_HOST_IF_ETH, 2, 3, 48), "eth2/3/48"},
        {ipacl_host_if_index(IPACL_HOST_IF_MGMT, 1, 0, 0), "mgmt1/0"},
        {ipacl_host_if_index_num(IPACL_HOST_IF_VLAN, 4094), "vlan4094"},
        {ipacl_host_if_index_num(IPACL_HOST_IF_VETH, 65535), "veth65535"},
        {ipacl_host_if_index_num(IPACL_HOST_IF_CPU, 0), "cpu0"},
    };
    for (const auto &[if_index, name] : cases) {
        EXPECT_EQ(name_of(if_index), name);
        EXPECT_EQ(ipacl_host_if_index_parse(name), if_index) << name;
    }
    for (const char *bad : {"", "eth1", "eth1/", "eth1x2", "eth1/2/3/4", "eth1/256", "vlan70000",
                            "vlan1x", "wlan0", "lo123456"})
        EXPECT_EQ(ipacl_host_if_index_parse(bad), 0u) << bad;
    EXPECT_EQ(ipacl_host_if_index(0, 1, 1, 1), 0u);
    EXPECT_EQ(ipacl_host_if_index(IPACL_HOST_IF_ETH, 256, 0, 0), 0u);
    EXPECT_EQ(ipacl_host_if_index_num(IPACL_HOST_IF_LO, 65536), 0u);
    // Indexes that name no interface still get a recognisable name.
    EXPECT_EQ(name_of(0x0c000001), "ifindex-0x0c000001");

    // Names and bounded copies write at most the size given, terminated.
    uint32_t eth = ipacl_host_if_index(IPACL_HOST_IF_ETH, 12, 3, 200);  // "eth12/3/200"
    char buf[16];
    memset(buf, '#', sizeof buf);
    EXPECT_EQ(snprintf_if_index(buf, 5, eth), 11);
    EXPECT_STREQ(buf, "eth1");
    EXPECT_EQ(buf[5], '#');
    EXPECT_EQ(snprintf_if_index(nullptr, 40, eth), 11);
    memset(buf, '#', sizeof buf);
    EXPECT_EQ(__strcpy_to_buf(buf, "abcdefghij", 5), buf);
    EXPECT_STREQ(buf, "abcd");
    EXPECT_EQ(buf[5], '#');
    __strcpy_to_buf(buf, "xyz", 0);
    EXPECT_STREQ(buf, "abcd");
    __strcpy_to_buf(buf, nullptr, 8);
    EXPECT_STREQ(buf, "");
    // The source need not be terminated within the bound.
    const char unterminated[4] = {'w', 'x', 'y', 'z'};
    __strcpy_to_buf(buf, unterminated, 4);
    EXPECT_STREQ(buf, "wxy");
}

// The library's binding check accepts exactly the management port the
// service builds for a supervisor with port 0: the fields must come back.
TEST(HostIfIndex, TheLibraryChecksAgreeWithTheManagementPort) {
    uint8_t type = 0xee, first, second;
    EXPECT_EQ(if_index_get_type(0x0c000000, &type), int(IPACL_HOST_IF_E_NOENT));
    EXPECT_EQ(type, 0xee);  // untouched on failure
    EXPECT_EQ(if_index_get_type(0x01000000, nullptr), int(IPACL_HOST_IF_E_INVAL));
    const uint32_t eth = ipacl_host_if_index(IPACL_HOST_IF_ETH, 2, 1, 48);
    EXPECT_EQ(if_index_mgmt_sup_get_fields(eth, &first, &second), int(IPACL_HOST_IF_E_NOTMGMT));
    EXPECT_EQ(if_index_mgmt_sup_get_fields(0, &first, &second), int(IPACL_HOST_IF_E_NOENT));
    uint32_t mgmt = 0, other_port = 0, untouched = 77;
    ASSERT_EQ(if_index_mgmt_sup_port_init(&mgmt, 255, 0), 0);
    ASSERT_EQ(if_index_mgmt_sup_port_init(&other_port, 1, 2), 0);
    EXPECT_EQ(if_index_mgmt_sup_get_fields(mgmt, nullptr, &second), int(IPACL_HOST_IF_E_INVAL));
    EXPECT_EQ(if_index_mgmt_sup_port_init(&untouched, 0, 0), int(IPACL_HOST_IF_E_INVAL));
    EXPECT_EQ(if_index_mgmt_sup_port_init(&untouched, 256, 0), int(IPACL_HOST_IF_E_INVAL));
    EXPECT_EQ(if_index_mgmt_sup_port_init(&untouched, 1, 256), int(IPACL_HOST_IF_E_INVAL));
    EXPECT_EQ(if_index_mgmt_sup_port_init(nullptr, 1, 0), int(IPACL_HOST_IF_E_INVAL));
    EXPECT_EQ(untouched, 77u);

    char err[IPACL_ERR_TEXT_SIZE];
    for (auto [if_index, result] : {std::pair<uint32_t, uint32_t>{mgmt, IPACL_OK},
                                    {other_port, IPACL_E_BAD_MGMT_IF},
                                    {eth, IPACL_OK},
                                    {0, IPACL_HOST_IF_E_NOENT}}) {
        ipacl_if_prof b{};
        b.if_index = if_index;
        b.direction = 1;
        strcpy(b.prof_name, "web");
        EXPECT_EQ(ipacl_chk_quen_if_prof(&b, err), result) << err;
    }
}

// The library reports an internal error to the debug print and the history;
// the history keeps the last events in a bounded ring.
TEST(HostHistory, KeepsInternalErrorsInABoundedRing) {
    ipacl_host_hist_clear();
    ipacl_host_hist_enable(1);
    EXPECT_EQ(tivra_hist_event_subtype_check(0x730000, 100), 0);
    ipacl_host_debug_set(1);
    ipacl_inet_addr odd{};
    odd.family = 7;
    uint32_t any = 0;
    EXPECT_EQ(stderr_of([&] { any = is_prefix_any(&odd); }),
              "ipacl: impossible address type in is_prefix_any(): 7\n");
    ipacl_host_debug_set(0);
    EXPECT_EQ(any, 1u);
    ASSERT_EQ(ipacl_host_hist_count(), 1u);
    ipacl_host_hist_entry e;
    ASSERT_EQ(ipacl_host_hist_get(0, &e), 0);
    EXPECT_EQ(e.event, 0x730000u);
    EXPECT_STREQ(reinterpret_cast<const char *>(e.record + 4),
                 "impossible address type in is_prefix_any(): 7\n");
    const std::string dump = stderr_of([] { ipacl_host_hist_dump(stderr); });
    EXPECT_NE(dump.find("event 0x730000 length 51 subtype 100: impossible address type in "
                        "is_prefix_any(): 7\n"),
              std::string::npos)
        << dump;

    uint64_t first_seq = e.seq;
    for (uint32_t i = 0; i < IPACL_HOST_HIST_CAPACITY + 44; ++i) tivra_hist_event(1, 4, &i);
    EXPECT_EQ(ipacl_host_hist_count(), IPACL_HOST_HIST_CAPACITY);
    ASSERT_EQ(ipacl_host_hist_get(0, &e), 0);  // the oldest kept
    uint32_t value;
    memcpy(&value, e.record, 4);
    EXPECT_EQ(value, 44u);  // the first event and 44 more were pushed out
    EXPECT_EQ(e.seq, first_seq + 45);
    EXPECT_NE(ipacl_host_hist_get(IPACL_HOST_HIST_CAPACITY, &e), 0);
    EXPECT_EQ(errno, EINVAL);

    // A record longer than an entry holds keeps its length and a prefix.
    std::vector<uint8_t> big(2000, 0xab);
    ASSERT_EQ(tivra_hist_event(2, big.size(), big.data()), 0);
    ASSERT_EQ(ipacl_host_hist_get(ipacl_host_hist_count() - 1, &e), 0);
    EXPECT_EQ(e.length, 2000u);
    EXPECT_EQ(e.kept, IPACL_HOST_HIST_RECORD);
    EXPECT_NE(stderr_of([] { ipacl_host_hist_dump(stderr); }).find("length 2000: ab ab"),
              std::string::npos);
    EXPECT_NE(tivra_hist_event(3, 4, nullptr), 0);

    ipacl_host_hist_enable(0);
    EXPECT_NE(tivra_hist_event_subtype_check(0x730000, 100), 0);
    ipacl_host_hist_clear();
    tivra_hist_event(1, 4, &value);
    EXPECT_EQ(ipacl_host_hist_count(), 0u);
    ipacl_host_hist_enable(1);
}

TEST(HostDebugPrint, FollowsTheEnvironmentAndLevel) {
    setenv("IPACL_DEBUG", "1", 1);
    ipacl_host_debug_set(-1);
    EXPECT_NE(tivra_chk_int(100, 0, 0, 1), 0);
    EXPECT_EQ(tivra_chk_int(100, 0, 0, 2), 0);
    EXPECT_EQ(stderr_of([] {
                  zlogf(2, "acl", 0, "too detailed");
                  zlogf(1, "acl", 0, "no newline %s", "given");
              }),
              "acl: no newline given\n");

    for (const char *off : {"0", "", "-3", "1x"}) {
        setenv("IPACL_DEBUG", off, 1);
        ipacl_host_debug_set(-1);
        EXPECT_EQ(ipacl_host_debug_level(), 0) << off;
    }
    EXPECT_EQ(stderr_of([] { zlogf(1, "acl", 0, "quiet\n"); }), "");
    unsetenv("IPACL_DEBUG");
    ipacl_host_debug_set(3);
    EXPECT_NE(tivra_chk_int(100, 0, 0, 3), 0);
    ipacl_host_debug_set(0);
    EXPECT_EQ(tivra_chk_int(100, 0, 0, 1), 0);
}

// A manager, a client and a standby in one process: sends of this size never
// block, so one thread can play all three.
class HostVel : public ::testing::Test {
  protected:
    void SetUp() override {
        ASSERT_EQ(ipacl_host_open(IPACL_HOST_SERVICE_ACL, 0, &manager), 0) << strerror(errno);
        ASSERT_EQ(ipacl_host_open(0, 0, &client), 0);
    }
    void TearDown() override {
        ipacl_host_close(client);
        ipacl_host_close(manager);
    }

    // Sends a request as the request-response wrapper does; returns its token.
    uint32_t request(uint32_t opcode, const std::string &text) {
        uint8_t rr[IPACL_HOST_HANDLE_AREA] = {};
        EXPECT_EQ(vel_send(client, 0xfe000000, 98, opcode, text.data(), text.size(), rr, 0, 0), 0);
        uint32_t token = vel_rr_token_get(rr);
        EXPECT_EQ(vel_drop(client, rr), 0);
        return token;
    }

    static std::string payload_of(void *area) {
        return std::string(static_cast<char *>(vel_payload_get(area)), vel_payload_size(area));
    }

    // A received message: kind, opcode, service, size, awaited and token.
    static std::vector<uint32_t> info_of(void *area) {
        ipacl_host_msg_info i{};
        EXPECT_EQ(ipacl_host_msg_info_get(area, &i), 0);
        return {i.kind, i.opcode, i.service, i.size, i.awaited, i.token};
    }

    static int recv_answer(uint32_t handle, uint32_t token, void *area, uint32_t limit = 10) {
        uint32_t options[10] = {1, 0, limit, token};
        return vel_recv(handle, area, options);
    }

    EndpointDir dir;
    uint32_t manager = 0, client = 0;
};

TEST_F(HostVel, RequestsGoToTheManagerAnswersBackAndUpdatesToTheStandby) {
    EXPECT_NE(vel_send(manager, 0xfe000000, 0, 7, "sync", 4, nullptr, 0, 0), 0);
    EXPECT_EQ(errno, ECONNREFUSED);  // no standby yet
    uint32_t standby = 0;
    ASSERT_EQ(ipacl_host_open(98, IPACL_HOST_STANDBY, &standby), 0);
    ASSERT_EQ(vel_send(manager, 0xfe000000, 0, 7, "sync", 4, nullptr, 0, 0), 0);
    uint32_t token = request(0x1234, "add filter");

    uint8_t in[IPACL_HOST_HANDLE_AREA];
    ASSERT_EQ(ipacl_host_accept(standby, in, 1000), 0);
    EXPECT_EQ(info_of(in), (std::vector<uint32_t>{1, 7, 0, 4, 0, vel_rr_token_get(in)}));
    EXPECT_EQ(payload_of(in), "sync");
    vel_drop(standby, in);
    // The standby is not the manager: the request did not reach it.
    EXPECT_NE(ipacl_host_accept(standby, in, 0), 0);
    EXPECT_EQ(errno, ETIMEDOUT);
    ipacl_host_close(standby);

    // Unanswered yet: the wait limit passes, in units of the endpoint.
    uint8_t out[IPACL_HOST_HANDLE_AREA] = {};
    ASSERT_EQ(ipacl_host_set_wait_unit(client, 20), 0);
    auto started = std::chrono::steady_clock::now();
    EXPECT_NE(recv_answer(client, token, out, 10), 0);  // 10 x 20 ms
    EXPECT_EQ(errno, ETIMEDOUT);
    auto waited = std::chrono::steady_clock::now() - started;
    EXPECT_GE(waited, std::chrono::milliseconds(190));
    EXPECT_LT(waited, std::chrono::seconds(5));

    ASSERT_EQ(ipacl_host_accept(manager, in, 1000), 0) << strerror(errno);
    uint32_t answer_token = vel_rr_token_get(in);
    EXPECT_EQ(info_of(in), (std::vector<uint32_t>{1, 0x1234, 98, 10, 1, answer_token}));
    EXPECT_EQ(payload_of(in), "add filter");
    // An empty answer arrives as such, to a later wait for the same token.
    ASSERT_EQ(vel_send(manager, 0xfe000000, 0, 0, nullptr, 0, nullptr, answer_token, 0), 0);
    ASSERT_EQ(vel_drop(manager, in), 0);
    // Answered once: the token is spent.
    EXPECT_NE(vel_send(manager, 0xfe000000, 0, 0, "again", 5, nullptr, answer_token, 0), 0);
    EXPECT_EQ(errno, ENOENT);

    ASSERT_EQ(recv_answer(client, token, out), 0) << strerror(errno);
    EXPECT_EQ(vel_payload_size(out), 0u);
    EXPECT_NE(vel_payload_get(out), nullptr);
    EXPECT_EQ(info_of(out), (std::vector<uint32_t>{IPACL_HOST_MSG_ANSWER, 0, 0, 0, 0, token}));
    EXPECT_EQ(vel_rr_token_get(out), token);
    EXPECT_EQ(vel_drop(client, out), 0);
}

bool fails(int rc, int error) { return rc == -1 && errno == error; }

TEST_F(HostVel, BadCallsFailWithErrno) {
    char byte = 0;
    uint8_t area[IPACL_HOST_HANDLE_AREA] = {};
    uint32_t options[10] = {1, 0, 1, 12345}, bad_mode[10] = {7}, no_token[10] = {1, 0, 1, 0};
    EXPECT_TRUE(fails(vel_send(0, 0, 98, 1, &byte, 1, nullptr, 0, 0), EBADF));
    EXPECT_TRUE(fails(vel_send(client + 4096, 0, 98, 1, &byte, 1, nullptr, 0, 0), EBADF));
    EXPECT_TRUE(fails(vel_send(client, 0, 98, 1, &byte, 1, nullptr, 0, 1), EINVAL));
    EXPECT_TRUE(fails(vel_send(client, 0, 98, 1, nullptr, 1, nullptr, 0, 0), EINVAL));
    EXPECT_TRUE(fails(vel_send(client, 0, 98, 1, &byte, IPACL_HOST_MAX_PAYLOAD + 1, nullptr, 0, 0),
                      EMSGSIZE));
    EXPECT_TRUE(fails(vel_send(client, 0, 97, 1, &byte, 1, nullptr, 0, 0), ECONNREFUSED));
    EXPECT_TRUE(fails(vel_send(manager, 0, 0, 0, &byte, 1, nullptr, 999, 0), ENOENT));
    EXPECT_TRUE(fails(vel_recv(client, area, options), ENOENT));
    EXPECT_TRUE(fails(vel_recv(client, nullptr, options), EINVAL));
    EXPECT_TRUE(fails(vel_recv(client, area, nullptr), EINVAL));
    EXPECT_TRUE(fails(vel_recv(client, area, bad_mode), EINVAL));
    EXPECT_TRUE(fails(vel_recv(client, area, no_token), EINVAL));
    EXPECT_TRUE(fails(ipacl_host_accept(manager, nullptr, 0), EINVAL));
    EXPECT_TRUE(fails(ipacl_host_set_wait_unit(client, 0), EINVAL));
    EXPECT_TRUE(fails(ipacl_host_close(0x7ffff), EBADF));

    // A cleared area, a forged one and a released one are all refused.
    EXPECT_TRUE(fails(vel_drop(client, area), EINVAL));
    EXPECT_EQ(vel_payload_get(area), nullptr);
    EXPECT_EQ(vel_payload_size(area), 0u);
    EXPECT_EQ(vel_rr_token_get(area), 0u);
    request(3, "x");
    ASSERT_EQ(ipacl_host_accept(manager, area, 1000), 0);
    uint8_t copy[IPACL_HOST_HANDLE_AREA];
    memcpy(copy, area, sizeof copy);
    ASSERT_EQ(vel_drop(manager, area), 0);
    EXPECT_TRUE(fails(vel_drop(manager, copy), EINVAL));
    EXPECT_EQ(vel_payload_get(copy), nullptr);
    ipacl_host_msg_info info;
    EXPECT_TRUE(fails(ipacl_host_msg_info_get(copy, &info), EINVAL));
    copy[12] ^= 1;  // another slot
    EXPECT_TRUE(fails(vel_drop(manager, copy), EINVAL));
}

TEST(HostDir, OnlyAPrivateDirectoryIsUsed) {
    EndpointDir base;
    const std::string fresh = base.socket("new"), link = base.socket("link");
    uint32_t h = 0;
    setenv("IPACL_HOST_DIR", fresh.c_str(), 1);
    mode_t old_mask = umask(0);
    ASSERT_EQ(ipacl_host_open(98, 0, &h), 0) << strerror(errno);
    umask(old_mask);
    struct stat st;
    ASSERT_EQ(lstat(fresh.c_str(), &st), 0);
    EXPECT_EQ(st.st_mode & 0777, 0700u);
    char shown[128];
    ASSERT_EQ(ipacl_host_dir(shown, sizeof shown), 0);
    EXPECT_EQ(fresh, shown);
    ASSERT_EQ(ipacl_host_close(h), 0);
    EXPECT_NE(stat((fresh + "/svc-98").c_str(), &st), 0);  // unregistered
    EXPECT_TRUE(fails(ipacl_host_close(h), EBADF));        // a stale handle

    // Refused: a mode open to the group, a symbolic link, another owner.
    ASSERT_EQ(chmod(fresh.c_str(), 0750), 0);
    EXPECT_TRUE(fails(ipacl_host_open(98, 0, &h), EACCES));
    ASSERT_EQ(chmod(fresh.c_str(), 0700), 0);
    ASSERT_EQ(symlink(fresh.c_str(), link.c_str()), 0);
    setenv("IPACL_HOST_DIR", link.c_str(), 1);
    EXPECT_TRUE(fails(ipacl_host_open(0, 0, &h), EACCES));
    setenv("IPACL_HOST_DIR", fresh.c_str(), 1);
    if (geteuid() == 0) {  // only root can hand the directory to another user
        ASSERT_EQ(chown(fresh.c_str(), nobody_uid(), nobody_gid()), 0);
        EXPECT_TRUE(fails(ipacl_host_open(0, 0, &h), EACCES));
    }

    // Sockets are reached through the directory's descriptor: a long path serves.
    const std::string too_long = base.socket(std::string(120, 'd'));
    setenv("IPACL_HOST_DIR", too_long.c_str(), 1);
    ASSERT_EQ(ipacl_host_open(98, 0, &h), 0) << strerror(errno);
    EXPECT_EQ(stat((too_long + "/svc-98").c_str(), &st), 0);
    ipacl_host_close(h);
}

}  // namespace
