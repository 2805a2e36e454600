// The records: keys, profiles, bindings, filters, the manager's tables,
// usage and state, notices and the iptables records.
#include "field_lines.h"
#include "wire_types.h"

#include <ipacl/mm.h>
#include <ipacl/show.h>
#include <ipacl/str_record.h>
#include <ipacl/wire.h>

#include <cstdio>

namespace ipacl_tool {
namespace {

template <typename T, void (*Convert)(T *, T *)>
void in_place(uint8_t *bytes) {
    T *record = reinterpret_cast<T *>(bytes);
    Convert(record, record);
}

template <typename T, void (*Show)(const T *)>
void block(const uint8_t *bytes, bool) {
    Show(reinterpret_cast<const T *>(bytes));
}

template <typename T, void (*Show)(uint32_t, const T *)>
void table(const uint8_t *bytes, bool first) {
    Show(first ? 1 : 0, reinterpret_cast<const T *>(bytes));
}

template <typename T, uint32_t (*Line)(const T *, char *)>
void line(const char *label, const uint8_t *bytes) {
    char text[512];
    Line(reinterpret_cast<const T *>(bytes), text);
    show_text(label, text);
}

void show_prof_key(const uint8_t *bytes, bool) {
    char text[512];
    ipacl_str_prof_key(reinterpret_cast<const ipacl_prof_key *>(bytes), text);
    show_text("Profile Key", text);
}
void show_if_prof_key(const uint8_t *bytes, bool) {
    line<ipacl_if_prof_key, ipacl_str_if_prof_key>("Interface Profile Key", bytes);
}
void show_filter_key(const uint8_t *bytes, bool) {
    line<ipacl_filter_key, ipacl_str_filter_key>("Filter Key", bytes);
}

void show_prof_info(const uint8_t *bytes, bool) {
    const auto *info = reinterpret_cast<const ipacl_prof_info *>(bytes);
    show_number("Info", info->info);
    ipacl_show_prof(&info->prof);
}

void show_port_if_created_info(const uint8_t *bytes, bool) {
    const auto *info = reinterpret_cast<const ipacl_port_if_created_info *>(bytes);
    show_number("Word 0", info->word0);
    show_number("Byte 4", info->byte4);
    show_number("Word 5", info->word5);
}

void show_if_chg(const uint8_t *bytes, bool) {
    const auto *change = reinterpret_cast<const ipacl_vni_if_chg *>(bytes);
    show_number("Word 0", change->word0);
    show_number("Word 4", change->word4);
    show_text("Text", change->text);
}

void show_match(const uint8_t *bytes, bool) {
    const auto *match = reinterpret_cast<const ipacl_match *>(bytes);
    show_number("Match Type", match->type);
    switch (match->type) {
        case IPACL_MATCH_TCP:
            ipacl_show_ipt_tcp(&match->info.tcp);
            break;
        case IPACL_MATCH_UDP:
            ipacl_show_ipt_udp(&match->info.udp);
            break;
        case IPACL_MATCH_ICMP:
            ipacl_show_ipt_icmp(&match->info.icmp);
            break;
        case IPACL_MATCH_TOS:
            ipacl_show_ipt_tos(&match->info.tos);
            break;
        case IPACL_MATCH_LOG:
            ipacl_show_ipt_log(&match->info.log);
            break;
        default:
            show_bytes("Match Data (no display for this type)", match->info.raw, 32);
            break;
    }
}

constexpr std::size_t log_prefix_at = 2;
constexpr std::size_t log_prefix_size = IPACL_TARGET_NAME_SIZE;

bool has_nul(const uint8_t *text, std::size_t size) {
    for (std::size_t i = 0; i < size; ++i)
        if (text[i] == 0) return true;
    return false;
}

// A log match's prefix is a text; other match types carry none.
bool check_match(const uint8_t *bytes, std::string &error) {
    if (big_endian_at(bytes, 0) != IPACL_MATCH_LOG) return true;
    if (has_nul(bytes + 4 + log_prefix_at, log_prefix_size)) return true;
    error = "the log prefix of the match has no terminating NUL";
    return false;
}

// The rule's match count is trusted by its converter: keep it to the slots.
bool check_rule(const uint8_t *bytes, std::string &error) {
    uint32_t count = big_endian_at(bytes, offsetof(ipacl_ipt_rule, match_count));
    if (count > IPACL_RULE_MATCHES) {
        error = "match count " + std::to_string(count) + " exceeds the rule's " +
                std::to_string(IPACL_RULE_MATCHES) + " match slots";
        return false;
    }
    for (uint32_t i = 0; i < count; ++i)
        if (!check_match(bytes + offsetof(ipacl_ipt_rule, matches) + i * sizeof(ipacl_match),
                         error))
            return false;
    return true;
}

constexpr std::size_t name = IPACL_NAME_SIZE;
constexpr std::size_t chain = IPACL_CHAIN_NAME_SIZE;
constexpr std::size_t target = IPACL_TARGET_NAME_SIZE;
constexpr std::size_t kernel_if = IPACL_KERNEL_IF_SIZE;

#define IPACL_CONVERT(stem) in_place<ipacl_##stem, ipacl_ntoh_##stem>

}  // namespace

void add_record_types(std::vector<wire_type> &types) {
    const std::vector<wire_type> records = {
        {"prof_key",
         "protocol profile key",
         sizeof(ipacl_prof_key),
         {{0, name}},
         IPACL_CONVERT(prof_key),
         show_prof_key},
        {"if_prof_key",
         "interface profile key",
         sizeof(ipacl_if_prof_key),
         {},
         IPACL_CONVERT(if_prof_key),
         show_if_prof_key},
        {"filter_key",
         "filter key",
         sizeof(ipacl_filter_key),
         {{0, name}},
         IPACL_CONVERT(filter_key),
         show_filter_key},
        {"list_key",
         "access list key",
         sizeof(ipacl_list_key),
         {{0, name}},
         IPACL_CONVERT(list_key),
         table<ipacl_list_key, ipacl_show_list_key>},
        {"data_key",
         "access data key",
         sizeof(ipacl_data_key),
         {{0, name}},
         IPACL_CONVERT(data_key),
         table<ipacl_data_key, ipacl_show_data_key>},
        {"group_key",
         "access group key",
         sizeof(ipacl_group_key),
         {},
         IPACL_CONVERT(group_key),
         table<ipacl_group_key, ipacl_show_group_key>},
        {"prof",
         "protocol profile",
         sizeof(ipacl_prof),
         {{0, name}},
         IPACL_CONVERT(prof),
         block<ipacl_prof, ipacl_show_prof>},
        {"prof_info",
         "protocol profile with its info word",
         sizeof(ipacl_prof_info),
         {{4, name}},
         IPACL_CONVERT(prof_info),
         show_prof_info},
        {"if_prof",
         "interface profile binding",
         sizeof(ipacl_if_prof),
         {{8, name}},
         IPACL_CONVERT(if_prof),
         block<ipacl_if_prof, ipacl_show_if_prof>},
        {"filter",
         "filter",
         sizeof(ipacl_filter),
         {{0, name}},
         IPACL_CONVERT(filter),
         block<ipacl_filter, ipacl_show_filter>},
        {"data",
         "installed filter (access data)",
         sizeof(ipacl_data),
         {{0, name}, {242, chain}},
         IPACL_CONVERT(data),
         block<ipacl_data, ipacl_show_access_data>},
        {"data_info",
         "installed filter summary",
         sizeof(ipacl_data_info),
         {{0, name}},
         IPACL_CONVERT(data_info),
         table<ipacl_data_info, ipacl_show_data_info>},
        {"group",
         "installed binding (access group)",
         sizeof(ipacl_group),
         {{8, name}, {88, chain}, {124, kernel_if}},
         IPACL_CONVERT(group),
         block<ipacl_group, ipacl_show_access_group>},
        {"group_info",
         "installed binding summary",
         sizeof(ipacl_group_info),
         {{8, name}},
         IPACL_CONVERT(group_info),
         table<ipacl_group_info, ipacl_show_group_info>},
        {"intf",
         "interface (access intf)",
         sizeof(ipacl_intf),
         {{12, kernel_if}},
         IPACL_CONVERT(intf),
         block<ipacl_intf, ipacl_show_access_intf>},
        {"intf_info",
         "interface summary",
         sizeof(ipacl_intf_info),
         {{4, kernel_if}},
         IPACL_CONVERT(intf_info),
         table<ipacl_intf_info, ipacl_show_intf_info>},
        {"list",
         "installed protocol profile (access list)",
         sizeof(ipacl_list),
         {{0, name}, {88, chain}},
         IPACL_CONVERT(list),
         block<ipacl_list, ipacl_show_access_list>},
        {"mgmt",
         "the manager's summary",
         sizeof(ipacl_mgmt),
         {},
         IPACL_CONVERT(mgmt),
         block<ipacl_mgmt, ipacl_show_access_mgmt>},
        {"list_use",
         "access list usage",
         sizeof(ipacl_list_use),
         {{0, name}},
         IPACL_CONVERT(list_use),
         table<ipacl_list_use, ipacl_show_list_use>},
        {"mem_use",
         "memory usage",
         sizeof(ipacl_mem_use),
         {},
         IPACL_CONVERT(mem_use),
         table<ipacl_mem_use, ipacl_show_mem_use>},
        {"ha",
         "high-availability state",
         sizeof(ipacl_ha),
         {},
         IPACL_CONVERT(ha),
         table<ipacl_ha, ipacl_show_ha>},
        {"port_if_created_info",
         "port interface created notice",
         sizeof(ipacl_port_if_created_info),
         {},
         IPACL_CONVERT(port_if_created_info),
         show_port_if_created_info},
        {"vni_if_chg",
         "vni interface change notice",
         sizeof(ipacl_vni_if_chg),
         {},
         IPACL_CONVERT(vni_if_chg),
         show_if_chg,
         tail_kind::text},
        {"avm_if_chg",
         "avm interface change notice",
         sizeof(ipacl_avm_if_chg),
         {},
         IPACL_CONVERT(avm_if_chg),
         show_if_chg,
         tail_kind::text},
        {"ipt_entry",
         "iptables entry",
         sizeof(ipacl_ipt_entry),
         {},
         IPACL_CONVERT(ipt_entry),
         block<ipacl_ipt_entry, ipacl_show_ipt_entry>},
        {"ipt_chain",
         "iptables chain row",
         sizeof(ipacl_ipt_chain),
         {{4, chain}, {36, target}},
         IPACL_CONVERT(ipt_chain),
         table<ipacl_ipt_chain, ipacl_show_ipt_chain>},
        {"rule_info",
         "iptables rule summary",
         sizeof(ipacl_rule_info),
         {{116, target}},
         IPACL_CONVERT(rule_info),
         table<ipacl_rule_info, ipacl_show_rule_info>},
        {"ipt_rule",
         "iptables rule with its matches",
         sizeof(ipacl_ipt_rule),
         {{0, chain}, {148, target}},
         IPACL_CONVERT(ipt_rule),
         block<ipacl_ipt_rule, ipacl_show_ipt_rule>,
         tail_kind::none,
         0,
         {},
         check_rule},
        {"match",
         "iptables match",
         sizeof(ipacl_match),
         {},
         IPACL_CONVERT(match),
         show_match,
         tail_kind::none,
         0,
         {},
         check_match},
        {"ipt_tcp",
         "iptables tcp match",
         sizeof(ipacl_ipt_tcp),
         {},
         IPACL_CONVERT(ipt_tcp),
         block<ipacl_ipt_tcp, ipacl_show_ipt_tcp>},
        {"ipt_udp",
         "iptables udp match",
         sizeof(ipacl_ipt_udp),
         {},
         IPACL_CONVERT(ipt_udp),
         block<ipacl_ipt_udp, ipacl_show_ipt_udp>},
        {"ipt_icmp",
         "iptables icmp match",
         sizeof(ipacl_ipt_icmp),
         {},
         IPACL_CONVERT(ipt_icmp),
         block<ipacl_ipt_icmp, ipacl_show_ipt_icmp>},
        {"ipt_tos",
         "iptables tos match",
         sizeof(ipacl_ipt_tos),
         {},
         IPACL_CONVERT(ipt_tos),
         block<ipacl_ipt_tos, ipacl_show_ipt_tos>},
        {"ipt_log",
         "iptables log target",
         sizeof(ipacl_ipt_log),
         {{log_prefix_at, log_prefix_size}},
         IPACL_CONVERT(ipt_log),
         block<ipacl_ipt_log, ipacl_show_ipt_log>},
    };
    types.insert(types.end(), records.begin(), records.end());
}

}  // namespace ipacl_tool
