// One-line text of profiles, bindings, keys and filters: the long form, the
// bounded command form and the network-order twins.
#include <gtest/gtest.h>

#include <arpa/inet.h>

#include <cstring>
#include <string>
#include <type_traits>

#include <ipacl/ipacl.h>

#include "platform_double.h"
#include "sample_records.h"

namespace {

ipacl_inet_addr v6(const char *text, uint32_t len) {
    ipacl_inet_addr p{};
    p.family = 2;
    EXPECT_EQ(inet_pton(AF_INET6, text, p.addr), 1);
    p.prefix_len = len;
    return p;
}

// The sample filter with a log flag of 2, which no text calls set.
ipacl_filter tcp_filter() {
    ipacl_filter f = ipacl_sample::filter();
    f.log_deny = 2;
    return f;
}

// The IPv6 filter of a command "permit tcp any 2001:db8::/32 eq www established".
ipacl_filter v6_filter() {
    ipacl_filter f = tcp_filter();
    f.addr_type = IPACL_ADDR_TYPE_IPV6;
    f.src_addr = v6("::", 0);
    f.dst_addr = v6("2001:db8::", 32);
    f.log_deny = 0;
    return f;
}

std::string command(const ipacl_filter &f, ipacl_rc *rc = nullptr) {
    char buf[512];
    ipacl_rc r = ipacl_str_filter_ipv6(&f, buf, sizeof buf);
    if (rc) *rc = r;
    return buf;
}

class StrRecord : public ::testing::Test {
  protected:
    void SetUp() override { ipacl_double::reset(); }
};

}  // namespace

TEST_F(StrRecord, ProfilesBindingsAndKeys) {
    char buf[256];
    ipacl_prof prof{};
    prof.prof_type = IPACL_PROF_TYPE_SIMPLE;
    prof.last_filter_index = 3;
    prof.snmp_status = IPACL_SNMP_STATUS_ACTIVE;
    EXPECT_EQ(ipacl_str_prof(&prof, buf), 23u);
    EXPECT_STREQ(buf, "active prof '' simple 3");

    ipacl_if_prof_key if_key{0, 6};
    ipacl_str_if_prof_key(&if_key, buf);
    EXPECT_STREQ(buf, "no-if 6h[dir]");
    ipacl_filter_key filter_key{};
    strcpy(filter_key.prof_name, "acl1");
    EXPECT_EQ(ipacl_str_filter_key(&filter_key, buf), 18u);
    EXPECT_STREQ(buf, "prof acl1 no-index");

    // The binding shows the interface by name and index.
    ipacl_if_prof b{};
    b.if_index = 26;
    b.direction = IPACL_DIR_IN_OUT;
    b.prof_name[0] = '\0';
    b.snmp_status = IPACL_SNMP_STATUS_DESTROY;
    EXPECT_EQ(ipacl_str_if_prof(&b, buf), strlen("destroy if26(0x1a) in+out prof ''"));
    EXPECT_STREQ(buf, "destroy if26(0x1a) in+out prof ''");

    // A name filling its whole field is cut by the bounded copy.
    memset(filter_key.prof_name, 'n', sizeof filter_key.prof_name);
    filter_key.filter_index = 1;
    ipacl_str_filter_key(&filter_key, buf);
    EXPECT_EQ(std::string(buf), "prof " + std::string(67, 'n') + " 1");
}

TEST_F(StrRecord, LongFormDumpsEveryField) {
    char buf[512];
    ipacl_filter f = tcp_filter();
    const char *expected =
        "active prof acl1 10 2 permit tcp s-ip 10.1.0.0/16 d-ip any any-port-op s-port 0:65535 "
        "eq d-port www:www any-icmp:any-code est:T any-prec any-tos log:T frag:F";
    EXPECT_EQ(ipacl_str_filter(&f, buf), strlen(expected));
    EXPECT_STREQ(buf, expected);

    // IPv6 protocol names follow the address type; ports of an ICMP filter
    // still print; flags print T for any non-zero value.
    f = v6_filter();
    f.prof_name[0] = '\0';
    f.filter_index = f.order_position = f.action = f.established = f.icmp_code = 0;
    f.protocol = 0xFFFFFFFF;
    f.src_port_op = 6, f.src_port_low = 143, f.src_port_high = 443;
    f.icmp_type = 8, f.precedence = 5, f.tos = 8, f.fragments = 7, f.snmp_status = 9;
    ipacl_str_filter(&f, buf);
    EXPECT_STREQ(buf,
                 "9h[rs] prof '' no-index no-order 0h[action] ipv6 s-ip any d-ip 2001:db8::/32 "
                 "6h[port-op] s-port http:443 eq d-port www:www echo:0 est:F critical delay "
                 "log:F frag:T");
    f.addr_type = 1;
    ipacl_str_filter(&f, buf);
    EXPECT_NE(strstr(buf, " 0h[action] ip s-ip "), nullptr) << buf;
}

TEST_F(StrRecord, CommandFormPrintsOnlyWhatIsSet) {
    ipacl_rc rc = 1;
    EXPECT_EQ(command(v6_filter(), &rc), "permit tcp any 2001:db8::/32 eq www established");
    EXPECT_EQ(rc, IPACL_OK);

    ipacl_filter f = v6_filter();
    f.action = IPACL_ACTION_DENY;
    f.protocol = f.icmp_code = 0xFFFFFFFF;
    f.src_addr = v6("2001:db8:1::", 48);
    f.dst_addr = v6("::", 0);
    f.dst_port_op = f.dst_port_low = f.dst_port_high = 0;
    f.established = 2;  // only exactly 1 counts here
    f.icmp_type = 8, f.log_deny = 1, f.fragments = 1;
    EXPECT_EQ(command(f), "deny ipv6 2001:db8:1::/48 any 8 log-deny fragments");
    f.icmp_code = 3, f.log_deny = 2, f.fragments = 0;
    EXPECT_EQ(command(f), "deny ipv6 2001:db8:1::/48 any 8 3");
    f.icmp_type = 0xFFFFFFFF;  // no type: the code is not printed either
    f.protocol = 58;
    EXPECT_EQ(command(f), "deny icmp6 2001:db8:1::/48 any");
}

TEST_F(StrRecord, CommandFormPortConditions) {
    struct Case {
        uint32_t op, low, high;
        const char *text;  // nullptr: no condition
    };
    const Case cases[] = {
        {0, 0, 65535, nullptr},      {0, 0, 0, nullptr},
        {0, 80, 80, "eq www"},       {0, 0, 1023, "lt 1023"},
        {0, 1024, 65535, "gt 1024"}, {0, 10, 30, "range 10 30"},
        {1, 5, 1000, "lt 1000"},     {2, 1023, 9, "gt 1023"},
        {3, 22, 9, "neq ssh"},       {5, 20, 21, "range ftp-data ftp"},
        {6, 1, 2, "6h[port-op]"},
    };
    for (const Case &c : cases) {
        ipacl_filter f = v6_filter();
        f.established = 0;
        f.src_port_op = c.op, f.src_port_low = c.low, f.src_port_high = c.high;
        std::string expected = "permit tcp any ";
        if (c.text) expected += std::string(c.text) + " ";
        expected += "2001:db8::/32 eq www";
        EXPECT_EQ(command(f), expected) << c.op << " " << c.low << " " << c.high;
    }
}

TEST_F(StrRecord, CommandFormArguments) {
    ipacl_filter f = v6_filter();
    char buf[16];
    memset(buf, 'X', sizeof buf);
    EXPECT_EQ(ipacl_str_filter_ipv6(&f, buf, 0), IPACL_E_BAD_ARG);
    EXPECT_EQ(ipacl_str_filter_ipv6(&f, nullptr, 16), IPACL_E_BAD_ARG);
    EXPECT_EQ(ipacl_str_filter_ipv6(nullptr, buf, 16), IPACL_E_BAD_ARG);
    EXPECT_EQ(buf[0], 'X');  // nothing written
}

TEST_F(StrRecord, CommandFormNeverWritesPastItsSize) {
    const ipacl_filter f = v6_filter();
    const std::string full = command(f);
    constexpr size_t kGuard = 64;
    for (int32_t size = 1; size <= static_cast<int32_t>(full.size()) + 4; ++size) {
        char area[512 + kGuard];
        memset(area, 0xA5, sizeof area);
        const ipacl_rc rc = ipacl_str_filter_ipv6(&f, area, size);
        for (size_t i = static_cast<size_t>(size); i < static_cast<size_t>(size) + kGuard; ++i)
            ASSERT_EQ(static_cast<uint8_t>(area[i]), 0xA5) << "size " << size << " byte " << i;
        // A last part that fills the space exactly still counts as written.
        EXPECT_EQ(rc, size >= static_cast<int32_t>(full.size()) ? IPACL_OK : IPACL_E_NO_MEM)
            << size;
        EXPECT_EQ(std::string(area), full.substr(0, static_cast<size_t>(size) - 1)) << size;
    }
}

// The network twin, given the converted copy, prints what the host form
// prints of the record, with the same length, and leaves the copy as it is.
template <class T, class R>
std::string twin(T host, void (*hton)(T *, T *), R (*str)(const T *, char *),
                 R (*str_net)(const T *, char *)) {
    char host_text[512], net_text[512];
    T net{};
    hton(&host, &net);
    const T before = net;
    if constexpr (std::is_void_v<R>) {
        str(&host, host_text), str_net(&net, net_text);
    } else {
        EXPECT_EQ(str_net(&net, net_text), str(&host, host_text));
    }
    EXPECT_STREQ(net_text, host_text);
    EXPECT_EQ(memcmp(&before, &net, sizeof net), 0);
    return net_text;
}

TEST_F(StrRecord, NetworkTwinsFormatAConvertedCopy) {
    twin(tcp_filter(), ipacl_hton_filter, ipacl_str_filter, ipacl_str_filter_net);

    EXPECT_EQ(twin(ipacl_sample::profile(), ipacl_hton_prof, ipacl_str_prof, ipacl_str_prof_net),
              "active prof acl1 extended 7");
    EXPECT_EQ(
        twin(ipacl_prof_key{}, ipacl_hton_prof_key, ipacl_str_prof_key, ipacl_str_prof_key_net),
        "prof ''");
    EXPECT_EQ(twin(ipacl_if_prof_key{258, IPACL_DIR_OUT}, ipacl_hton_if_prof_key,
                   ipacl_str_if_prof_key, ipacl_str_if_prof_key_net),
              "if258 out");

    ipacl_if_prof b = ipacl_sample::binding();
    b.if_index = 258;
    b.local_flag = 1;
    EXPECT_EQ(twin(b, ipacl_hton_if_prof, ipacl_str_if_prof, ipacl_str_if_prof_net),
              "active if258(0x102) out prof web");

    ipacl_filter_key fk{};
    strcpy(fk.prof_name, "acl1");
    fk.filter_index = 65536;
    EXPECT_EQ(twin(fk, ipacl_hton_filter_key, ipacl_str_filter_key, ipacl_str_filter_key_net),
              "prof acl1 65536");
}

TEST_F(StrRecord, NullArgumentsWriteNothingHarmful) {
    char buf[8] = "XYZ";
    EXPECT_EQ(ipacl_str_prof(nullptr, buf), 0u);
    EXPECT_STREQ(buf, "");
    ipacl_prof prof{};
    EXPECT_EQ(ipacl_str_prof(&prof, nullptr), 0u);
    EXPECT_EQ(ipacl_str_filter_net(nullptr, buf), 0u);
    ipacl_str_prof_key_net(nullptr, buf);
    EXPECT_STREQ(buf, "");
}
