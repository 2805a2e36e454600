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
// sub-record of the filter, which has only an internal one).
enum class Rec : uint8_t {
    inet_addr,
    prof_key,
    if_prof_key,
    filter_key,
    list_key,
    data_key,
    group_key,
    prof,
    prof_info,
    if_prof,
    filter,
    data,
    data_info,
    group,
    group_info,
    intf,
    intf_info,
    list,
    mgmt,
    list_use,
    mem_use,
    ha,
    port_if_created_info,
    vni_if_chg,
    avm_if_chg,
    ipt_entry,
    ipt_chain,
    rule_info,
    ipt_rule,
    match,
    ipt_tcp,
    ipt_udp,
    ipt_icmp,
    ipt_tos,
    ipt_log,
    ipt_req,
    ipt_rsp,
    access_req,
    access_rsp,
    prof_req,
    if_prof_req,
    filter_req,
    prof_rsp,
    if_prof_rsp,
    filter_rsp,
    prof_cfg,
    if_prof_cfg,
    filter_cfg,
    cfm,
    prof_cfm,
    if_prof_cfm,
    filter_cfm,
    prof_sync,
    if_prof_sync,
    filter_sync,
    prof_sync_op,
    if_prof_sync_op,
    filter_sync_op,
    use_req,
    use_rsp,
    in_req,
    in_rsp,
    test_req,
    test_rsp,
    quen,
    count_  // number of records; not a record
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

constexpr Field none(uint16_t off, uint16_t width) { return {off, width, Conv::none, {}}; }
constexpr Field s16(uint16_t off, uint16_t count = 1) {
    return {off, uint16_t(2 * count), Conv::s16, {}};
}
constexpr Field s32(uint16_t off, uint16_t count = 1) {
    return {off, uint16_t(4 * count), Conv::s32, {}};
}
constexpr Field s64(uint16_t off, uint16_t count = 1) {
    return {off, uint16_t(8 * count), Conv::s64, {}};
}
constexpr Field str(uint16_t off, uint16_t width) { return {off, width, Conv::str, {}}; }
constexpr Field copy(uint16_t off, uint16_t width) { return {off, width, Conv::copy, {}}; }
constexpr Field zero(uint16_t off, uint16_t width) { return {off, width, Conv::zero, {}}; }

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
