// Table displays of the manager's records: one row a record, under a header
// that the caller asks for with the first row.
#include <ipacl/enums.h>
#include <ipacl/show.h>

#include "show/table.h"

namespace {

using namespace ipacl::show;

constexpr const char *kListUseHeader[] = {
    "                              #       #",
    "Access List Name/Number       Filters IF      Status    Creation Time",
    "----------------------------- ------- ------- --------- -------------",
};
constexpr Column kListUse[] = {
    column(offsetof(ipacl_list_use, name), profile_name, 29, " "),
    column(offsetof(ipacl_list_use, filter_count), left_number<uint32_t, 7>, 0, " "),
    column(offsetof(ipacl_list_use, if_count), left_number<uint32_t, 7>, 0, " "),
    column(offsetof(ipacl_list_use, snmp_status), named<ipacl_str_snmp_status>, 9, " "),
    column(offsetof(ipacl_list_use, creation_time), date, 0, "\n"),
};

constexpr const char *kListKeyHeader[] = {
    "Protocol Profile    Type       Creation time",
    "----------------    -------    -------------",
};
constexpr Column kListKey[] = {
    column(offsetof(ipacl_list_key, name), profile_name, 16, "    "),
    column(offsetof(ipacl_list_key, list_type), named<ipacl_str_list_type>, 7, "    "),
    column(offsetof(ipacl_list_key, creation_time), date, 0, "\n"),
};

constexpr const char *kGroupKeyHeader[] = {
    "\nRule    Interface           Direction    Creation time",
    "----    ----------------    ---------    -------------",
};
constexpr Column kGroupKey[] = {
    column(offsetof(ipacl_group_key, rule_id), named<ipacl_str_entry_id>, 4, "    "),
    column(offsetof(ipacl_group_key, if_index), named<ipacl_str_if_index>, 16, "    "),
    column(offsetof(ipacl_group_key, direction), named<ipacl_str_dir>, 9, "    "),
    column(offsetof(ipacl_group_key, creation_time), date, 0, "\n"),
};

// The interface column is the platform's name fitted to 16, directly
// followed by the raw index.
constexpr const char *kGroupInfoHeader[] = {
    "\nRule  Kernel Interface  Direction  Protocol Profile  Creation time",
    "----  ----------------  ---------  ----------------  -------------",
};
constexpr Column kGroupInfo[] = {
    column(offsetof(ipacl_group_info, rule_id), named<ipacl_str_entry_id>, 4, "  "),
    column(offsetof(ipacl_group_info, binding.if_index), named<ipacl_str_if_index>, 16, ""),
    column(offsetof(ipacl_group_info, binding.if_index), raw_hex_in_parens, 0, "  "),
    column(offsetof(ipacl_group_info, binding.direction), named<ipacl_str_dir>, 9, "  "),
    column(offsetof(ipacl_group_info, binding.prof_name), profile_name, 16, "  "),
    column(offsetof(ipacl_group_info, creation_time), date, 0, "\n"),
};

constexpr const char *kDataKeyHeader[] = {
    "\nRule    Protocol Profile    Filter Index    Creation time",
    "----    ----------------    ------------    -------------",
};
constexpr Column kDataKey[] = {
    column(offsetof(ipacl_data_key, rule_id), named<ipacl_str_rule_id>, 4, "    "),
    column(offsetof(ipacl_data_key, filter_key.prof_name), profile_name, 16, "    "),
    column(offsetof(ipacl_data_key, filter_key.filter_index), named<ipacl_str_index>, 12, "    "),
    column(offsetof(ipacl_data_key, creation_time), date, 0, "\n"),
};

// The flattened addresses of a data-info row keep the layout of an
// ipacl_inet_addr: family, 16 address bytes, prefix length.
static_assert(offsetof(ipacl_data_info, src_prefix_len) - offsetof(ipacl_data_info, src_family) ==
              offsetof(ipacl_inet_addr, prefix_len));
static_assert(offsetof(ipacl_data_info, dst_prefix_len) - offsetof(ipacl_data_info, dst_family) ==
              offsetof(ipacl_inet_addr, prefix_len));

constexpr const char *kDataInfoHeader[] = {
    "\nRule Order Index Proto Source IP          Dest IP            # Packets",
    "---- ----- ----- ----- ------------------ ------------------ ---------",
};
constexpr Column kDataInfo[] = {
    column(offsetof(ipacl_data_info, rule_id), named<ipacl_str_rule_id>, 4, " "),
    column(offsetof(ipacl_data_info, order), named<ipacl_str_order>, 5, " "),
    column(offsetof(ipacl_data_info, filter_index), named<ipacl_str_index>, 5, " "),
    column(offsetof(ipacl_data_info, protocol), named<ipacl_str_proto>, 5, " "),
    column(offsetof(ipacl_data_info, src_family), prefix<kValueSize>, 18, " "),
    column(offsetof(ipacl_data_info, dst_family), prefix<kValueSize>, 18, " "),
    column(offsetof(ipacl_data_info, packets), number<uint64_t>, 0, "\n"),
};

constexpr const char *kIntfInfoHeader[] = {
    "\nRule  Interface         Kernel Interface  Mark  Creation Time",
    "----  ----------------  ----------------  ----  -------------",
};
constexpr Column kIntfInfo[] = {
    column(offsetof(ipacl_intf_info, rule_id), named<ipacl_str_entry_id>, 4, "  "),
    column(offsetof(ipacl_intf_info, if_index), named<ipacl_str_if_index>, 16, "  "),
    column(offsetof(ipacl_intf_info, kernel_if), chars<IPACL_KERNEL_IF_SIZE>, 16, "  "),
    column(offsetof(ipacl_intf_info, marker), hex4, 0, "  "),
    column(offsetof(ipacl_intf_info, creation_time), date, 0, "\n"),
};

}  // namespace

extern "C" {

void ipacl_show_list_use(uint32_t first, const ipacl_list_use *use) {
    if (use != nullptr) print_table(first, use, kListUseHeader, kListUse);
}

void ipacl_show_list_key(uint32_t first, const ipacl_list_key *key) {
    if (key != nullptr) print_table(first, key, kListKeyHeader, kListKey);
}

void ipacl_show_group_key(uint32_t first, const ipacl_group_key *key) {
    if (key != nullptr) print_table(first, key, kGroupKeyHeader, kGroupKey);
}

void ipacl_show_group_info(uint32_t first, const ipacl_group_info *info) {
    if (info != nullptr) print_table(first, info, kGroupInfoHeader, kGroupInfo);
}

void ipacl_show_data_key(uint32_t first, const ipacl_data_key *key) {
    if (key != nullptr) print_table(first, key, kDataKeyHeader, kDataKey);
}

void ipacl_show_data_info(uint32_t first, const ipacl_data_info *info) {
    if (info != nullptr) print_table(first, info, kDataInfoHeader, kDataInfo);
}

void ipacl_show_intf_info(uint32_t first, const ipacl_intf_info *info) {
    if (info != nullptr) print_table(first, info, kIntfInfoHeader, kIntfInfo);
}

}  // extern "C"
