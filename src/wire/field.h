// The vocabulary of the record tables: what a converter does with each field
// of a packed record, and the names of the records themselves.
#pragma once

#include <cstdint>

namespace ipacl::wire {

// Direction of a conversion.  A byte reversal is its own inverse, so both
// directions apply the same field rules; they differ only in which copy of a
// count or type word still holds the host-order value that steers the walk.
enum class Dir : uint8_t { hton, ntoh };

// What a converter does with one field.
enum class Conv : uint8_t {
    none,  // not touched: in place it keeps its bytes, out of place the destination's
    s16,   // each 16-bit number byte-reversed
    s32,   // each 32-bit number byte-reversed
    s64,   // each 64-bit counter byte-reversed as one number
    str,   // NUL-terminated text, copied up to and including its NUL
    copy,  // bytes copied unchanged (addresses, byte fields, bitmaps, pointers)
    zero,  // bytes of the destination set to 0, whatever the source holds
    rec,   // a nested record, converted by its own converter
};

// Every record, key and message that has a converter (and the address
// sub-record of the filter, which has only an internal one), by the stem of
// its C type ipacl_<stem>.  One entry a line; clang-format would fold it.
// clang-format off
#define IPACL_WIRE_RECORDS(X) \
    X(inet_addr) \
    X(prof_key) \
    X(if_prof_key) \
    X(filter_key) \
    X(list_key) \
    X(data_key) \
    X(group_key) \
    X(prof) \
    X(prof_info) \
    X(if_prof) \
    X(filter) \
    X(data) \
    X(data_info) \
    X(group) \
    X(group_info) \
    X(intf) \
    X(intf_info) \
    X(list) \
    X(mgmt) \
    X(list_use) \
    X(mem_use) \
    X(ha) \
    X(port_if_created_info) \
    X(vni_if_chg) \
    X(avm_if_chg) \
    X(ipt_entry) \
    X(ipt_chain) \
    X(rule_info) \
    X(ipt_rule) \
    X(match) \
    X(ipt_tcp) \
    X(ipt_udp) \
    X(ipt_icmp) \
    X(ipt_tos) \
    X(ipt_log) \
    X(ipt_req) \
    X(ipt_rsp) \
    X(access_req) \
    X(access_rsp) \
    X(prof_req) \
    X(if_prof_req) \
    X(filter_req) \
    X(prof_rsp) \
    X(if_prof_rsp) \
    X(filter_rsp) \
    X(prof_cfg) \
    X(if_prof_cfg) \
    X(filter_cfg) \
    X(cfm) \
    X(prof_cfm) \
    X(if_prof_cfm) \
    X(filter_cfm) \
    X(prof_sync) \
    X(if_prof_sync) \
    X(filter_sync) \
    X(prof_sync_op) \
    X(if_prof_sync_op) \
    X(filter_sync_op) \
    X(use_req) \
    X(use_rsp) \
    X(in_req) \
    X(in_rsp) \
    X(test_req) \
    X(test_rsp) \
    X(quen)
// clang-format on

enum class Rec : uint8_t {
#define IPACL_WIRE_REC_ENUM(stem) stem,
    IPACL_WIRE_RECORDS(IPACL_WIRE_REC_ENUM)
#undef IPACL_WIRE_REC_ENUM
        count_  // number of records; not a record
};

// A stretch of a record's bytes: one member, or a run of members, named in
// the tables (IPACL_WIRE_AT in layout.h) so that every offset, and the
// width of every text and byte run, comes from the C type.  Read as a
// number it is where the stretch starts, which places the count, type and
// element words of a message.
struct Stretch {
    uint16_t off;
    uint16_t size;  // 0 for an open-ended member at the end of a message
    constexpr operator uint16_t() const { return off; }
};

// One field: where it starts, how many bytes it spans, what is done with
// it.  A text's width is its room in the record (the copy itself stops at
// the NUL); 0 for the open-ended texts at the end of a message.
struct Field {
    uint16_t off;
    uint16_t width;
    Conv conv;
    Rec rec;  // the nested record of a Conv::rec field
};

// Texts and byte runs span their whole stretch; numbers run `count` times
// from the start of theirs.
constexpr Field none(Stretch place) { return {place.off, place.size, Conv::none, {}}; }
constexpr Field s16(Stretch place, uint16_t count = 1) {
    return {place.off, uint16_t(2 * count), Conv::s16, {}};
}
constexpr Field s32(Stretch place, uint16_t count = 1) {
    return {place.off, uint16_t(4 * count), Conv::s32, {}};
}
constexpr Field s64(Stretch place, uint16_t count = 1) {
    return {place.off, uint16_t(8 * count), Conv::s64, {}};
}
constexpr Field str(Stretch place) { return {place.off, place.size, Conv::str, {}}; }
constexpr Field copy(Stretch place) { return {place.off, place.size, Conv::copy, {}}; }
constexpr Field zero(Stretch place) { return {place.off, place.size, Conv::zero, {}}; }

// How a type word picks the element record of a message: by its value, or
// by the first table entry whose bits it shares.
enum class Pick : uint8_t { equal, any_bit };

// One element kind of a typed message: the type code and its record.
struct Variant {
    uint32_t code;
    Rec rec;
    uint32_t size;  // bytes of one element
};

constexpr bool picks(Pick pick, uint32_t code, uint32_t type) {
    return pick == Pick::equal ? type == code : (type & code) != 0;
}

}  // namespace ipacl::wire
