// Requests, responses, configurations, confirmations and sync messages:
// header words, fixed records, counted arrays and typed arrays.
#pragma once

#include <ipacl/enums.h>

#include "wire/layout_records.h"

namespace ipacl::wire {

// A counted array or a record with a counted tail: fixed fields, the count
// word, then `count` elements of one record; the count word and the first
// element are named by their members.
#define IPACL_WIRE_COUNTED(stem, count_word, first_elem, elem_rec, ...) \
    template <>                                                         \
    struct Layout<Rec::stem> {                                          \
        using type = ::ipacl_##stem;                                    \
        static constexpr Field fields[] = {__VA_ARGS__};                \
        static constexpr uint16_t count_at = IPACL_WIRE_AT(count_word); \
        static constexpr uint16_t elems_at = IPACL_WIRE_AT(first_elem); \
        static constexpr Rec elem = Rec::elem_rec;                      \
    }

// Members of the record each table describes; named so only while the
// tables are written.
#define at(member) IPACL_WIRE_AT(member)

// ---- fixed requests and syncs ----
IPACL_WIRE_PLAIN(access_req, s32(at(word0), 3), str(at(name)), s32(at(word80), 3));
IPACL_WIRE_PLAIN(prof_req, s32(at(word0), 2), rec<Rec::prof_key>(at(key)));
IPACL_WIRE_PLAIN(if_prof_req, s32(at(word0), 2), rec<Rec::if_prof_key>(at(key)));
IPACL_WIRE_PLAIN(filter_req, s32(at(word0), 2), rec<Rec::filter_key>(at(key)));
IPACL_WIRE_PLAIN(prof_sync, s32(at(word0), 2), rec<Rec::prof>(at(prof)));
IPACL_WIRE_PLAIN(if_prof_sync, s32(at(word0), 2), rec<Rec::if_prof>(at(if_prof)));
IPACL_WIRE_PLAIN(filter_sync, s32(at(word0), 2), rec<Rec::filter>(at(filter)));
IPACL_WIRE_PLAIN(use_req, s32(at(word0)), str(at(name)));
IPACL_WIRE_PLAIN(in_req, s32(at(word0), 2));
// The first word of the test messages is the sender's own and stays as is.
IPACL_WIRE_PLAIN(test_req, none(at(word0)), s32(at(word4)), copy(at(data)));
IPACL_WIRE_PLAIN(test_rsp, none(at(word0)), s32(at(word4), 2));
// The envelope header: three words, then two text fields copied whole.
IPACL_WIRE_PLAIN(quen, s32(at(op), 3), copy(at(text1)), copy(at(text2)));

// ---- counted arrays ----
IPACL_WIRE_COUNTED(prof_rsp, count, profs, prof, s32(at(word4), 2));
IPACL_WIRE_COUNTED(if_prof_rsp, count, if_profs, if_prof, s32(at(word4)));
IPACL_WIRE_COUNTED(filter_rsp, count, filters, filter, s32(at(word4), 2));
IPACL_WIRE_COUNTED(prof_cfg, count, profs, prof, s32(at(word4)));
IPACL_WIRE_COUNTED(if_prof_cfg, count, if_profs, if_prof, s32(at(word4)));
IPACL_WIRE_COUNTED(filter_cfg, count, filters, filter, s32(at(word4)));

template <>
struct Layout<Rec::use_rsp> {
    using type = ipacl_use_rsp;
    static constexpr uint16_t count_at = at(count);
    static constexpr uint16_t elems_at = at(uses);
    static constexpr Rec elem = Rec::list_use;
};

// A confirmation names what it confirms by the key type word; an unknown
// type carries no key that could be converted.
template <>
struct Layout<Rec::cfm> {
    using type = ipacl_cfm;
    static constexpr Field fields[] = {s32(at(result))};
    static constexpr uint16_t tag_at = at(key_type);
    static constexpr Pick pick = Pick::equal;
    static constexpr Variant variants[] = {variant<Rec::if_prof_key>(IPACL_DALVE_TYPE_IF_PROF),
                                           variant<Rec::filter_key>(IPACL_DALVE_TYPE_FILTER),
                                           variant<Rec::prof_key>(IPACL_DALVE_TYPE_PROTO_PROF)};
    static constexpr uint16_t elems_at = at(key);
};

// The word after the count of a confirmation list is left alone both ways.
IPACL_WIRE_COUNTED(prof_cfm, count, cfms, cfm, none(at(word4)));
IPACL_WIRE_COUNTED(if_prof_cfm, count, cfms, cfm, none(at(word4)));
IPACL_WIRE_COUNTED(filter_cfm, count, cfms, cfm, none(at(word4)));

// ---- records with a counted tail ----
IPACL_WIRE_COUNTED(prof_sync_op, count, keys, filter_key, s32(at(word0), 2),
                   rec<Rec::prof>(at(prof)));
IPACL_WIRE_COUNTED(if_prof_sync_op, count, infos, prof_info, s32(at(word0), 2),
                   rec<Rec::if_prof>(at(if_prof)));
IPACL_WIRE_COUNTED(filter_sync_op, count, keys, filter_key, s32(at(word0), 2),
                   rec<Rec::filter>(at(filter)));

// ---- typed arrays: the type word selects the element record ----
template <>
struct Layout<Rec::access_rsp> {
    using type = ipacl_access_rsp;
    static constexpr uint16_t count_at = at(count);
    static constexpr uint16_t tag_at = at(access_type);
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
    static constexpr uint16_t elems_at = at(records);
};

template <>
struct Layout<Rec::in_rsp> {
    using type = ipacl_in_rsp;
    static constexpr uint16_t count_at = at(count);
    static constexpr uint16_t tag_at = at(in_type);
    static constexpr Pick pick = Pick::equal;
    static constexpr Variant variants[] = {variant<Rec::ha>(IPACL_IN_TYPE_HA_INFO),
                                           variant<Rec::mem_use>(IPACL_IN_TYPE_MEMORY_USAGE)};
    static constexpr uint16_t elems_at = at(records);
};

#undef at

}  // namespace ipacl::wire
