// Requests, responses, configurations, confirmations and sync messages:
// header words, fixed records, counted arrays and typed arrays.
#pragma once

#include <ipacl/enums.h>

#include "wire/layout_records.h"

namespace ipacl::wire {

// A counted array or a record with a counted tail: fixed fields, the count
// word, then `count` elements of one record.
#define IPACL_WIRE_COUNTED(stem, count_word, first_elem, elem_rec, ...) \
    template <>                                                         \
    struct Layout<Rec::stem> {                                          \
        using type = ::ipacl_##stem;                                    \
        static constexpr Field fields[] = {__VA_ARGS__};                \
        static constexpr uint16_t count_at = count_word;                \
        static constexpr uint16_t elems_at = first_elem;                \
        static constexpr Rec elem = Rec::elem_rec;                      \
    }

// ---- fixed requests and syncs ----
IPACL_WIRE_PLAIN(access_req, s32(0, 3), str(12, 68), s32(80, 3));
IPACL_WIRE_PLAIN(prof_req, s32(0, 2), rec<Rec::prof_key>(8));
IPACL_WIRE_PLAIN(if_prof_req, s32(0, 2), rec<Rec::if_prof_key>(8));
IPACL_WIRE_PLAIN(filter_req, s32(0, 2), rec<Rec::filter_key>(8));
IPACL_WIRE_PLAIN(prof_sync, s32(0, 2), rec<Rec::prof>(8));
IPACL_WIRE_PLAIN(if_prof_sync, s32(0, 2), rec<Rec::if_prof>(8));
IPACL_WIRE_PLAIN(filter_sync, s32(0, 2), rec<Rec::filter>(8));
IPACL_WIRE_PLAIN(use_req, s32(0), str(4, 0));
IPACL_WIRE_PLAIN(in_req, s32(0, 2));
// The first word of the test messages is the sender's own and stays as is.
IPACL_WIRE_PLAIN(test_req, none(0, 4), s32(4), copy(8, 40));
IPACL_WIRE_PLAIN(test_rsp, none(0, 4), s32(4, 2));
// The envelope header: three words, then two text fields copied whole.
IPACL_WIRE_PLAIN(quen, s32(0, 3), copy(12, IPACL_QUEN_TEXT1_SIZE), copy(52, IPACL_QUEN_TEXT2_SIZE));

// ---- counted arrays ----
IPACL_WIRE_COUNTED(prof_rsp, 0, 12, prof, s32(4, 2));
IPACL_WIRE_COUNTED(if_prof_rsp, 0, 8, if_prof, s32(4));
IPACL_WIRE_COUNTED(filter_rsp, 0, 12, filter, s32(4, 2));
IPACL_WIRE_COUNTED(prof_cfg, 0, 8, prof, s32(4));
IPACL_WIRE_COUNTED(if_prof_cfg, 0, 8, if_prof, s32(4));
IPACL_WIRE_COUNTED(filter_cfg, 0, 8, filter, s32(4));

template <>
struct Layout<Rec::use_rsp> {
    using type = ipacl_use_rsp;
    static constexpr uint16_t count_at = 0;
    static constexpr uint16_t elems_at = 4;
    static constexpr Rec elem = Rec::list_use;
};

// A confirmation names what it confirms by the key type word; an unknown
// type carries no key that could be converted.
template <>
struct Layout<Rec::cfm> {
    using type = ipacl_cfm;
    static constexpr Field fields[] = {s32(4)};
    static constexpr uint16_t tag_at = 0;
    static constexpr Pick pick = Pick::equal;
    static constexpr Variant variants[] = {variant<Rec::if_prof_key>(IPACL_DALVE_TYPE_IF_PROF),
                                           variant<Rec::filter_key>(IPACL_DALVE_TYPE_FILTER),
                                           variant<Rec::prof_key>(IPACL_DALVE_TYPE_PROTO_PROF)};
    static constexpr uint16_t elems_at = 8;
};

// The word after the count of a confirmation list is left alone both ways.
IPACL_WIRE_COUNTED(prof_cfm, 0, 8, cfm, none(4, 4));
IPACL_WIRE_COUNTED(if_prof_cfm, 0, 8, cfm, none(4, 4));
IPACL_WIRE_COUNTED(filter_cfm, 0, 8, cfm, none(4, 4));

// ---- records with a counted tail ----
IPACL_WIRE_COUNTED(prof_sync_op, 88, 92, filter_key, s32(0, 2), rec<Rec::prof>(8));
IPACL_WIRE_COUNTED(if_prof_sync_op, 92, 96, prof_info, s32(0, 2), rec<Rec::if_prof>(8));
IPACL_WIRE_COUNTED(filter_sync_op, 246, 250, filter_key, s32(0, 2), rec<Rec::filter>(8));

// ---- typed arrays: the type word selects the element record ----
template <>
struct Layout<Rec::access_rsp> {
    using type = ipacl_access_rsp;
    static constexpr uint16_t count_at = 0;
    static constexpr uint16_t tag_at = 4;
    static constexpr Pick pick = Pick::equal;
    static constexpr Variant variants[] = {variant<Rec::data>(IPACL_ACCESS_TYPE_ACCESS_DATA),
                                           variant<Rec::data_info>(IPACL_ACCESS_TYPE_DATA_INFO),
                                           variant<Rec::data_key>(IPACL_ACCESS_TYPE_DATA_KEY),
                                           variant<Rec::group>(IPACL_ACCESS_TYPE_ACCESS_GROUP),
                                           variant<Rec::group_info>(IPACL_ACCESS_TYPE_GROUP_INFO),
                                           variant<Rec::group_key>(IPACL_ACCESS_TYPE_GROUP_KEY),
                                           variant<Rec::intf>(IPACL_ACCESS_TYPE_ACCESS_INTF),
                                           variant<Rec::intf_info>(IPACL_ACCESS_TYPE_INTF_INFO),
                                           variant<Rec::list>(IPACL_ACCESS_TYPE_ACCESS_LIST),
                                           variant<Rec::list_key>(IPACL_ACCESS_TYPE_LIST_KEY),
                                           variant<Rec::mgmt>(IPACL_ACCESS_TYPE_ACCESS_MGMT)};
    static constexpr uint16_t elems_at = 8;
};

template <>
struct Layout<Rec::in_rsp> {
    using type = ipacl_in_rsp;
    static constexpr uint16_t count_at = 0;
    static constexpr uint16_t tag_at = 4;
    static constexpr Pick pick = Pick::equal;
    static constexpr Variant variants[] = {variant<Rec::ha>(IPACL_IN_TYPE_HA_INFO),
                                           variant<Rec::mem_use>(IPACL_IN_TYPE_MEMORY_USAGE)};
    static constexpr uint16_t elems_at = 8;
};

}  // namespace ipacl::wire
