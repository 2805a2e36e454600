// An independent description of every wire record, field by field, and a
// reference converter driven by it.  The converter fuzz targets use it three
// ways: to make a fuzzer buffer honour the records' contract (text fields
// terminated inside their field, counts that fit the buffer), to predict the
// exact bytes a converter must leave in its destination (and, for the one
// converter that writes back into its source, in its source), and to build
// network-order seeds.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace wire_model {

enum class Kind : uint8_t {
    s16,       // 16-bit byte reversal
    s32,       // 32-bit byte reversal (size may cover several words)
    s64,       // 8 bytes reversed as one number
    str,       // NUL-terminated text inside a field of `size` bytes
    copy,      // bytes copied unchanged
    none,      // never touched
    zero,      // the destination byte is set to 0
    rec,       // nested record converted by its own converter
    swapped,   // nested record that the host-to-network direction converts
               // from destination into source (the profile-info quirk)
    tail_str,  // NUL-terminated text up to the end of the message
    counted,   // count word at `off`, `rec` elements from `elem_off`
    typed,     // count word at `off`, type word at `type_off`, elements
               // from `elem_off` chosen by `select`
    tagged,    // type word at `off`, one body at `elem_off` chosen by `select`
};

struct Layout;
using Select = const Layout *(*)(uint32_t type);

struct Field {
    Kind kind;
    uint32_t off;
    uint32_t size = 0;
    const Layout *rec = nullptr;
    uint32_t type_off = 0;
    uint32_t elem_off = 0;
    uint32_t max_count = 0;  // 0: bounded by the buffer only
    Select select = nullptr;
};

struct Layout {
    const char *name;
    uint32_t size;  // fixed part (for tail texts: header plus one byte)
    const Field *fields;
    size_t nfields;
};

enum class Dir { hton, ntoh };

// Reference conversion with the library's argument order (source first; the
// two may be the same buffer).
void convert(const Layout &layout, Dir dir, uint8_t *src, uint8_t *dst);

// Makes `buf` (already at least layout.size long) a record that the
// converter of `dir` may be given: every text terminated inside its field,
// every count clamped so that its elements fit the buffer (ipt rules to
// their three match slots), counts of unknown element types kept small.
// Returns the number of bytes the record occupies; the caller trims to it.
size_t fit(const Layout &layout, Dir dir, std::vector<uint8_t> &buf);

// True when the host-to-network converter of `layout` reads its destination
// (nested profile infos).
bool reads_destination(const Layout &layout);

// ---- field constructors ---------------------------------------------------
constexpr Field S16(uint32_t off) { return {Kind::s16, off, 2}; }
constexpr Field S32(uint32_t off, uint32_t words = 1) { return {Kind::s32, off, 4 * words}; }
constexpr Field S64(uint32_t off) { return {Kind::s64, off, 8}; }
constexpr Field STR(uint32_t off, uint32_t size) { return {Kind::str, off, size}; }
constexpr Field COPY(uint32_t off, uint32_t size) { return {Kind::copy, off, size}; }
constexpr Field NONE(uint32_t off, uint32_t size) { return {Kind::none, off, size}; }
constexpr Field ZERO(uint32_t off) { return {Kind::zero, off, 1}; }
constexpr Field REC(uint32_t off, const Layout &l) { return {Kind::rec, off, l.size, &l}; }
constexpr Field SWAPPED(uint32_t off, const Layout &l) { return {Kind::swapped, off, l.size, &l}; }
constexpr Field TAIL_STR(uint32_t off) { return {Kind::tail_str, off, 1}; }
constexpr Field COUNTED(uint32_t count_off, uint32_t elem_off, const Layout &l,
                        uint32_t max_count = 0) {
    return {Kind::counted, count_off, 4, &l, 0, elem_off, max_count};
}
constexpr Field TYPED(uint32_t count_off, uint32_t type_off, uint32_t elem_off, Select s) {
    return {Kind::typed, count_off, 4, nullptr, type_off, elem_off, 0, s};
}
constexpr Field TAGGED(uint32_t type_off, uint32_t body_off, Select s) {
    return {Kind::tagged, type_off, 4, nullptr, 0, body_off, 0, s};
}

#define WIRE_LAYOUT(id, bytes, ...)                       \
    inline constexpr Field id##_fields[] = {__VA_ARGS__}; \
    inline constexpr Layout id { #id, bytes, id##_fields, sizeof(id##_fields) / sizeof(Field) }

// ---- records --------------------------------------------------------------
WIRE_LAYOUT(inet_addr, 24, S32(0), COPY(4, 16), S32(20));
WIRE_LAYOUT(prof_key, 68, STR(0, 68));
WIRE_LAYOUT(if_prof_key, 8, S32(0), S32(4));
WIRE_LAYOUT(filter_key, 72, STR(0, 68), S32(68));
WIRE_LAYOUT(list_key, 76, REC(0, prof_key), S32(68), S32(72));
WIRE_LAYOUT(data_key, 80, REC(0, filter_key), S32(72), S32(76));
WIRE_LAYOUT(group_key, 16, REC(0, if_prof_key), S32(8), S32(12));
WIRE_LAYOUT(prof, 80, STR(0, 68), S32(68, 3));
WIRE_LAYOUT(prof_info, 84, S32(0), SWAPPED(4, prof));
WIRE_LAYOUT(if_prof, 84, S32(0, 2), STR(8, 68), S32(76), ZERO(80), NONE(81, 3));
WIRE_LAYOUT(filter, 238, STR(0, 68), S32(68, 23), S64(160), S64(168), REC(176, inet_addr),
            REC(200, inet_addr), NONE(224, 14));
WIRE_LAYOUT(data, 290, REC(0, filter), S32(238), STR(242, 32), S32(274), COPY(278, 12));
WIRE_LAYOUT(data_info, 148, STR(0, 68), S32(68, 4), NONE(84, 16), S32(100, 2), NONE(108, 16),
            S32(124, 2), S64(132), S32(140, 2));
WIRE_LAYOUT(group, 160, REC(0, if_prof), S32(84), STR(88, 32), S32(120), STR(124, 16),
            COPY(140, 20));
WIRE_LAYOUT(group_info, 92, REC(0, if_prof), S32(84, 2));
WIRE_LAYOUT(intf, 40, S32(0, 3), STR(12, 16), S32(28), COPY(32, 8));
WIRE_LAYOUT(intf_info, 32, S32(0), STR(4, 16), S32(20, 3));
WIRE_LAYOUT(list, 1204, REC(0, prof), S32(80, 2), STR(88, 32), S32(120, 2), COPY(128, 32),
            S32(160, 256), S32(1184), COPY(1188, 16));
WIRE_LAYOUT(mgmt, 32, S32(0, 4), COPY(16, 12), NONE(28, 4));
WIRE_LAYOUT(list_use, 84, STR(0, 68), S32(68, 4));
WIRE_LAYOUT(mem_use, 12, S32(0, 3));
WIRE_LAYOUT(ha, 24, S32(0, 6));
WIRE_LAYOUT(port_if_created_info, 9, S32(0), COPY(4, 1), S32(5));
WIRE_LAYOUT(vni_if_chg, 9, S32(0, 2), TAIL_STR(8));
WIRE_LAYOUT(avm_if_chg, 9, S32(0, 2), TAIL_STR(8));

// ---- messages ---------------------------------------------------------------
const Layout *access_element(uint32_t type);
const Layout *in_element(uint32_t type);
const Layout *cfm_key(uint32_t type);

WIRE_LAYOUT(access_req, 92, S32(0, 3), STR(12, 68), S32(80, 3));
WIRE_LAYOUT(access_rsp, 8, TYPED(0, 4, 8, access_element));
WIRE_LAYOUT(prof_req, 76, S32(0, 2), REC(8, prof_key));
WIRE_LAYOUT(if_prof_req, 16, S32(0, 2), REC(8, if_prof_key));
WIRE_LAYOUT(filter_req, 80, S32(0, 2), REC(8, filter_key));
WIRE_LAYOUT(prof_rsp, 12, S32(4, 2), COUNTED(0, 12, prof));
WIRE_LAYOUT(if_prof_rsp, 8, S32(4), COUNTED(0, 8, if_prof));
WIRE_LAYOUT(filter_rsp, 12, S32(4, 2), COUNTED(0, 12, filter));
WIRE_LAYOUT(prof_cfg, 8, S32(4), COUNTED(0, 8, prof));
WIRE_LAYOUT(if_prof_cfg, 8, S32(4), COUNTED(0, 8, if_prof));
WIRE_LAYOUT(filter_cfg, 8, S32(4), COUNTED(0, 8, filter));
WIRE_LAYOUT(cfm, 80, TAGGED(0, 8, cfm_key), S32(4));
WIRE_LAYOUT(prof_cfm, 8, NONE(4, 4), COUNTED(0, 8, cfm));
WIRE_LAYOUT(if_prof_cfm, 8, NONE(4, 4), COUNTED(0, 8, cfm));
WIRE_LAYOUT(filter_cfm, 8, NONE(4, 4), COUNTED(0, 8, cfm));
WIRE_LAYOUT(prof_sync, 88, S32(0, 2), REC(8, prof));
WIRE_LAYOUT(if_prof_sync, 92, S32(0, 2), REC(8, if_prof));
WIRE_LAYOUT(filter_sync, 246, S32(0, 2), REC(8, filter));
WIRE_LAYOUT(prof_sync_op, 92, S32(0, 2), REC(8, prof), COUNTED(88, 92, filter_key));
WIRE_LAYOUT(if_prof_sync_op, 96, S32(0, 2), REC(8, if_prof), COUNTED(92, 96, prof_info));
WIRE_LAYOUT(filter_sync_op, 250, S32(0, 2), REC(8, filter), COUNTED(246, 250, filter_key));
WIRE_LAYOUT(use_req, 5, S32(0), TAIL_STR(4));
WIRE_LAYOUT(use_rsp, 4, COUNTED(0, 4, list_use));
WIRE_LAYOUT(in_req, 8, S32(0, 2));
WIRE_LAYOUT(in_rsp, 8, TYPED(0, 4, 8, in_element));
WIRE_LAYOUT(test_req, 48, NONE(0, 4), S32(4), COPY(8, 40));
WIRE_LAYOUT(test_rsp, 12, NONE(0, 4), S32(4, 2));
WIRE_LAYOUT(quen, 112, S32(0, 3), COPY(12, 40), COPY(52, 60));

// ---- iptables records ---------------------------------------------------------
const Layout *match_info(uint32_t type);
const Layout *ipt_element(uint32_t flags);

WIRE_LAYOUT(ipt_entry, 112, COPY(0, 80), S16(80), COPY(82, 2), S32(84), S16(88), S16(90), S32(92),
            S64(96), S64(104));
WIRE_LAYOUT(ipt_chain, 74, S32(0), STR(4, 32), STR(36, 30), S64(66));
WIRE_LAYOUT(rule_info, 146, STR(116, 30), REC(4, ipt_entry), S32(0));
WIRE_LAYOUT(ipt_tcp, 12, S16(0), S16(2), S16(4), S16(6), COPY(8, 4));
WIRE_LAYOUT(ipt_udp, 10, S16(0), S16(2), S16(4), S16(6), COPY(8, 1), NONE(9, 1));
WIRE_LAYOUT(ipt_icmp, 4, COPY(0, 4));
WIRE_LAYOUT(ipt_tos, 2, COPY(0, 2));
WIRE_LAYOUT(ipt_log, 32, COPY(0, 2), STR(2, 30));
WIRE_LAYOUT(match, 36, TAGGED(0, 4, match_info));
WIRE_LAYOUT(ipt_rule, 290, STR(0, 32), STR(148, 30), REC(36, ipt_entry), S32(32),
            COUNTED(178, 182, match, 3));
WIRE_LAYOUT(ipt_req, 48, S32(0, 2), STR(8, 32), S32(40, 2));
WIRE_LAYOUT(ipt_rsp, 12, S32(8), TYPED(0, 4, 12, ipt_element));

#undef WIRE_LAYOUT

}  // namespace wire_model
