// Block displays of the manager's access tables: lists, groups, interfaces,
// installed filters and the manager's own summary.  Groups and interfaces
// carry entry ids, installed filters (data) carry rule ids.
#include <cstdio>

#include <ipacl/enums.h>
#include <ipacl/mm.h>
#include <ipacl/show.h>

#include "show/block.h"

namespace {

using namespace ipacl::show;

constexpr Row kList[] = {
    kBlankLine,
    field("Creation Time", offsetof(ipacl_list, creation_time), date),
    field("Type", offsetof(ipacl_list, list_type), named<ipacl_str_list_type>),
    field("Chain", offsetof(ipacl_list, chain), chars<IPACL_CHAIN_NAME_SIZE>),
    field("# Data", offsetof(ipacl_list, data_count), number<uint32_t>),
    field("# Groups", offsetof(ipacl_list, group_count), number<uint32_t>),
    field("Max Filter Index", offsetof(ipacl_list, max_filter_index), number<uint32_t>),
    field("Access Data", offsetof(ipacl_list, access_data), link),
    field("Access Group", offsetof(ipacl_list, access_group), link),
    field("This Access List", offsetof(ipacl_list, this_list), link),
    field("Next Access List", offsetof(ipacl_list, next_list), link),
};

constexpr Row kGroup[] = {
    kBlankLine,
    field("Creation Time", offsetof(ipacl_group, creation_time), date),
    field("Chain", offsetof(ipacl_group, chain), chars<IPACL_CHAIN_NAME_SIZE>),
    field("Rule #", offsetof(ipacl_group, rule_id), named<ipacl_str_entry_id>),
    field("Kernel Interface", offsetof(ipacl_group, kernel_if), chars<IPACL_KERNEL_IF_SIZE>),
    field("Access List", offsetof(ipacl_group, access_list), link),
    field("Access Interface", offsetof(ipacl_group, access_intf), link),
    field("This Access Group", offsetof(ipacl_group, this_group), link),
    field("Next Access Group", offsetof(ipacl_group, next_group), link),
    field("Next Global Group", offsetof(ipacl_group, next_global_group), link),
};

constexpr Row kIntf[] = {
    kBlankLine,
    field("Creation Time", offsetof(ipacl_intf, creation_time), date),
    field("Rule #", offsetof(ipacl_intf, rule_id), named<ipacl_str_entry_id>),
    field("Interface", offsetof(ipacl_intf, if_index), named<ipacl_str_if_index>),
    field("Kernel Interface", offsetof(ipacl_intf, kernel_if), chars<IPACL_KERNEL_IF_SIZE>),
    field("Marker", offsetof(ipacl_intf, marker), hex4),
    field("This Access Interface", offsetof(ipacl_intf, this_intf), link),
    field("Next Access Interface", offsetof(ipacl_intf, next_intf), link),
};

constexpr Row kData[] = {
    kBlankLine,
    field("Creation Time", offsetof(ipacl_data, creation_time), date),
    field("Chain", offsetof(ipacl_data, chain), chars<IPACL_CHAIN_NAME_SIZE>),
    field("Rule #", offsetof(ipacl_data, rule_id), named<ipacl_str_rule_id>),
    field("Access List", offsetof(ipacl_data, access_list), link),
    field("This Access Data", offsetof(ipacl_data, this_data), link),
    field("Next Access Data", offsetof(ipacl_data, next_data), link),
};

constexpr Row kMgmt[] = {
    kBlankLine,
    field("Creation Time", offsetof(ipacl_mgmt, creation_time), date),
    field("# Lists", offsetof(ipacl_mgmt, list_count), number<uint32_t>),
    field("# Interfaces", offsetof(ipacl_mgmt, intf_count), number<uint32_t>),
    field("# Groups", offsetof(ipacl_mgmt, group_count), number<uint32_t>),
    field("Access List", offsetof(ipacl_mgmt, access_list), link),
    field("Access Interface", offsetof(ipacl_mgmt, access_intf), link),
    field("Access Group", offsetof(ipacl_mgmt, access_group), link),
    field("IPv6 references", offsetof(ipacl_mgmt, ipv6_refs), signed_number),
};

// The entry slots in use: slot number and the filter index it holds.
void print_entries(const ipacl_list &list) {
    printf("Entry      Filter Index\n");
    printf("-----      ------------\n");
    for (uint32_t slot = 0; slot < IPACL_LIST_SLOTS; ++slot) {
        const uint32_t index = list.filter_index_by_entry[slot];
        if (index != 0) printf("%-5u      %u\n", slot, index);
    }
}

}  // namespace

extern "C" {

void ipacl_show_access_list(const ipacl_list *list) {
    if (list == nullptr) return;
    print_block(list, kList);
    ipacl_show_prof(&list->prof);
    ipacl_show_bm(list->filter_bitmap, sizeof list->filter_bitmap, "Filter Bitmap");
    print_entries(*list);
}

void ipacl_show_access_group(const ipacl_group *group) {
    if (group == nullptr) return;
    print_block(group, kGroup);
    ipacl_show_if_prof(&group->binding);
}

void ipacl_show_access_intf(const ipacl_intf *intf) {
    if (intf != nullptr) print_block(intf, kIntf);
}

void ipacl_show_access_data(const ipacl_data *data) {
    if (data == nullptr) return;
    print_block(data, kData);
    ipacl_show_filter(&data->filter);
}

void ipacl_show_access_mgmt(const ipacl_mgmt *mgmt) {
    if (mgmt != nullptr) print_block(mgmt, kMgmt);
}

}  // extern "C"
