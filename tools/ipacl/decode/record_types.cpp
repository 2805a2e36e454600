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

}  // namespace

void add_record_types(std::vector<wire_type> &types) {
    const std::vector<wire_type> records = {
        {IPACL_WIRE_TYPE(prof_key), "protocol profile key", show_prof_key},
        {IPACL_WIRE_TYPE(if_prof_key), "interface profile key", show_if_prof_key},
        {IPACL_WIRE_TYPE(filter_key), "filter key", show_filter_key},
        {IPACL_WIRE_TYPE(list_key), "access list key", table<ipacl_list_key, ipacl_show_list_key>},
        {IPACL_WIRE_TYPE(data_key), "access data key", table<ipacl_data_key, ipacl_show_data_key>},
        {IPACL_WIRE_TYPE(group_key), "access group key",
         table<ipacl_group_key, ipacl_show_group_key>},
        {IPACL_WIRE_TYPE(prof), "protocol profile", block<ipacl_prof, ipacl_show_prof>},
        {IPACL_WIRE_TYPE(prof_info), "protocol profile with its info word", show_prof_info},
        {IPACL_WIRE_TYPE(if_prof), "interface profile binding",
         block<ipacl_if_prof, ipacl_show_if_prof>},
        {IPACL_WIRE_TYPE(filter), "filter", block<ipacl_filter, ipacl_show_filter>},
        {IPACL_WIRE_TYPE(data), "installed filter (access data)",
         block<ipacl_data, ipacl_show_access_data>},
        {IPACL_WIRE_TYPE(data_info), "installed filter summary",
         table<ipacl_data_info, ipacl_show_data_info>},
        {IPACL_WIRE_TYPE(group), "installed binding (access group)",
         block<ipacl_group, ipacl_show_access_group>},
        {IPACL_WIRE_TYPE(group_info), "installed binding summary",
         table<ipacl_group_info, ipacl_show_group_info>},
        {IPACL_WIRE_TYPE(intf), "interface (access intf)",
         block<ipacl_intf, ipacl_show_access_intf>},
        {IPACL_WIRE_TYPE(intf_info), "interface summary",
         table<ipacl_intf_info, ipacl_show_intf_info>},
        {IPACL_WIRE_TYPE(list), "installed protocol profile (access list)",
         block<ipacl_list, ipacl_show_access_list>},
        {IPACL_WIRE_TYPE(mgmt), "the manager's summary", block<ipacl_mgmt, ipacl_show_access_mgmt>},
        {IPACL_WIRE_TYPE(list_use), "access list usage",
         table<ipacl_list_use, ipacl_show_list_use>},
        {IPACL_WIRE_TYPE(mem_use), "memory usage", table<ipacl_mem_use, ipacl_show_mem_use>},
        {IPACL_WIRE_TYPE(ha), "high-availability state", table<ipacl_ha, ipacl_show_ha>},
        {IPACL_WIRE_TYPE(port_if_created_info), "port interface created notice",
         show_port_if_created_info},
        {IPACL_WIRE_TYPE(vni_if_chg), "vni interface change notice", show_if_chg},
        {IPACL_WIRE_TYPE(avm_if_chg), "avm interface change notice", show_if_chg},
        {IPACL_WIRE_TYPE(ipt_entry), "iptables entry",
         block<ipacl_ipt_entry, ipacl_show_ipt_entry>},
        {IPACL_WIRE_TYPE(ipt_chain), "iptables chain row",
         table<ipacl_ipt_chain, ipacl_show_ipt_chain>},
        {IPACL_WIRE_TYPE(rule_info), "iptables rule summary",
         table<ipacl_rule_info, ipacl_show_rule_info>},
        {IPACL_WIRE_TYPE(ipt_rule), "iptables rule with its matches",
         block<ipacl_ipt_rule, ipacl_show_ipt_rule>, check_rule},
        {IPACL_WIRE_TYPE(match), "iptables match", show_match, check_match},
        {IPACL_WIRE_TYPE(ipt_tcp), "iptables tcp match", block<ipacl_ipt_tcp, ipacl_show_ipt_tcp>},
        {IPACL_WIRE_TYPE(ipt_udp), "iptables udp match", block<ipacl_ipt_udp, ipacl_show_ipt_udp>},
        {IPACL_WIRE_TYPE(ipt_icmp), "iptables icmp match",
         block<ipacl_ipt_icmp, ipacl_show_ipt_icmp>},
        {IPACL_WIRE_TYPE(ipt_tos), "iptables tos match", block<ipacl_ipt_tos, ipacl_show_ipt_tos>},
        {IPACL_WIRE_TYPE(ipt_log), "iptables log target", block<ipacl_ipt_log, ipacl_show_ipt_log>},
    };
    types.insert(types.end(), records.begin(), records.end());
}

}  // namespace ipacl_tool
