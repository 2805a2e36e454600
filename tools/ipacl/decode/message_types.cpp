// The messages: requests, responses, configurations, confirmations, syncs,
// usage, internal state, test, iptables queries and the quen header.
#include "field_lines.h"
#include "wire_types.h"

#include <ipacl/enums.h>
#include <ipacl/str_record.h>
#include <ipacl/wire.h>

#include <cstdio>

namespace ipacl_tool {
namespace {

template <typename T, void (*Convert)(T *, T *)>
void in_place(uint8_t *bytes) {
    T *message = reinterpret_cast<T *>(bytes);
    Convert(message, message);
}

#define IPACL_CONVERT(stem) in_place<ipacl_##stem, ipacl_ntoh_##stem>

// Shows the record of another type found at `offset` of a message.
void show_nested(std::string_view type, const uint8_t *bytes, std::size_t offset) {
    find_wire_type(type)->show(bytes + offset, true);
}

void show_words(const uint8_t *bytes, std::initializer_list<std::size_t> offsets) {
    char label[16];
    for (std::size_t offset : offsets) {
        std::snprintf(label, sizeof label, "Word %zu", offset);
        show_number(label, word_at(bytes, offset));
    }
}

void show_access_req(const uint8_t *bytes, bool) {
    show_words(bytes, {0, 4, 8});
    show_text("Name", reinterpret_cast<const ipacl_access_req *>(bytes)->name);
    show_words(bytes, {80, 84, 88});
}

void show_count(const uint8_t *bytes, bool) { show_number("Count", word_at(bytes, 0)); }

void show_access_rsp(const uint8_t *bytes, bool) {
    show_number("Count", word_at(bytes, 0));
    show_named("Access Type", ipacl_str_access_type, word_at(bytes, 4));
}

void show_in_rsp(const uint8_t *bytes, bool) {
    show_number("Count", word_at(bytes, 0));
    show_named("Type", ipacl_str_in_type, word_at(bytes, 4));
}

void show_ipt_rsp(const uint8_t *bytes, bool) {
    show_number("Count", word_at(bytes, 0));
    show_named("Operation", ipacl_str_ipt_op, word_at(bytes, 4));
    show_words(bytes, {8});
}

void show_prof_req(const uint8_t *bytes, bool) {
    show_words(bytes, {0, 4});
    show_nested("prof_key", bytes, 8);
}
void show_if_prof_req(const uint8_t *bytes, bool) {
    show_words(bytes, {0, 4});
    show_nested("if_prof_key", bytes, 8);
}
void show_filter_req(const uint8_t *bytes, bool) {
    show_words(bytes, {0, 4});
    show_nested("filter_key", bytes, 8);
}

void show_rsp_three_words(const uint8_t *bytes, bool) {
    show_number("Count", word_at(bytes, 0));
    show_words(bytes, {4, 8});
}
void show_rsp_two_words(const uint8_t *bytes, bool) {
    show_number("Count", word_at(bytes, 0));
    show_words(bytes, {4});
}

void show_cfg(const uint8_t *bytes, bool) {
    show_number("Count", word_at(bytes, 0));
    show_named("Operation", ipacl_str_conf_op, word_at(bytes, 4));
}

const char *cfm_key_type(uint32_t key_type) {
    switch (key_type) {
        case IPACL_DALVE_TYPE_IF_PROF:
            return "if_prof_key";
        case IPACL_DALVE_TYPE_FILTER:
            return "filter_key";
        case IPACL_DALVE_TYPE_PROTO_PROF:
            return "prof_key";
        default:
            return nullptr;
    }
}

void show_cfm(const uint8_t *bytes, bool) {
    const auto *cfm = reinterpret_cast<const ipacl_cfm *>(bytes);
    show_named("Key Type", ipacl_str_dalve_type, cfm->key_type);
    show_hex("Result", cfm->result);
    if (const char *key = cfm_key_type(cfm->key_type)) show_nested(key, bytes, 8);
}

bool check_cfm(const uint8_t *bytes, std::string &error) {
    uint32_t key_type = big_endian_at(bytes, 0);
    if (key_type != IPACL_DALVE_TYPE_FILTER && key_type != IPACL_DALVE_TYPE_PROTO_PROF) return true;
    for (std::size_t i = 8; i < 8 + IPACL_NAME_SIZE; ++i)
        if (bytes[i] == 0) return true;
    error = "the confirmation's profile name has no terminating NUL";
    return false;
}

void show_cfm_list(const uint8_t *bytes, bool) {
    show_number("Count", word_at(bytes, 0));
    show_hex("Word 4 (not converted)", word_at(bytes, 4));
}

void show_sync_words(const uint8_t *bytes) {
    show_named("Operation", ipacl_str_sync_op, word_at(bytes, 0));
    show_number("Sequence", word_at(bytes, 4));
}

template <const char *Record>
void show_sync(const uint8_t *bytes, bool) {
    show_sync_words(bytes);
    show_nested(Record, bytes, 8);
}

template <const char *Record, std::size_t CountAt>
void show_sync_op(const uint8_t *bytes, bool) {
    show_sync<Record>(bytes, true);
    show_number("Count", word_at(bytes, CountAt));
}

constexpr char prof_record[] = "prof";
constexpr char if_prof_record[] = "if_prof";
constexpr char filter_record[] = "filter";

void show_use_req(const uint8_t *bytes, bool) {
    show_words(bytes, {0});
    show_text("List Name", reinterpret_cast<const ipacl_use_req *>(bytes)->name);
}

void show_in_req(const uint8_t *bytes, bool) { show_words(bytes, {0, 4}); }

void show_test_req(const uint8_t *bytes, bool) {
    show_hex("Word 0 (not converted)", word_at(bytes, 0));
    show_words(bytes, {4});
    show_bytes("Data", bytes + 8, 40);
}

void show_test_rsp(const uint8_t *bytes, bool) {
    show_hex("Word 0 (not converted)", word_at(bytes, 0));
    show_words(bytes, {4, 8});
}

void show_ipt_req(const uint8_t *bytes, bool) {
    show_words(bytes, {0, 4});
    show_text("Chain", reinterpret_cast<const ipacl_ipt_req *>(bytes)->chain);
    show_words(bytes, {40, 44});
}

void show_quen(const uint8_t *bytes, bool) {
    const auto *quen = reinterpret_cast<const ipacl_quen *>(bytes);
    show_named("Operation", ipacl_str_quen_msg, quen->op);
    show_number("Length", quen->length);
    show_number("Reserved", quen->reserved);
    show_bounded_text("Text 1", reinterpret_cast<const uint8_t *>(quen->text1), sizeof quen->text1);
    show_bounded_text("Text 2", reinterpret_cast<const uint8_t *>(quen->text2), sizeof quen->text2);
}

constexpr std::size_t name = IPACL_NAME_SIZE;

}  // namespace

void add_message_types(std::vector<wire_type> &types) {
    const std::vector<wire_type> messages = {
        {"access_req",
         "access (query) request",
         sizeof(ipacl_access_req),
         {{12, name}},
         IPACL_CONVERT(access_req),
         show_access_req},
        {"access_rsp",
         "access response: manager records by access type",
         sizeof(ipacl_access_rsp),
         {},
         IPACL_CONVERT(access_rsp),
         show_access_rsp,
         tail_kind::access_typed},
        {"prof_req",
         "protocol profile request",
         sizeof(ipacl_prof_req),
         {{8, name}},
         IPACL_CONVERT(prof_req),
         show_prof_req},
        {"if_prof_req",
         "interface profile request",
         sizeof(ipacl_if_prof_req),
         {},
         IPACL_CONVERT(if_prof_req),
         show_if_prof_req},
        {"filter_req",
         "filter request",
         sizeof(ipacl_filter_req),
         {{8, name}},
         IPACL_CONVERT(filter_req),
         show_filter_req},
        {"prof_rsp",
         "protocol profile response",
         sizeof(ipacl_prof_rsp),
         {},
         IPACL_CONVERT(prof_rsp),
         show_rsp_three_words,
         tail_kind::counted,
         0,
         "prof"},
        {"if_prof_rsp",
         "interface profile response",
         sizeof(ipacl_if_prof_rsp),
         {},
         IPACL_CONVERT(if_prof_rsp),
         show_rsp_two_words,
         tail_kind::counted,
         0,
         "if_prof"},
        {"filter_rsp",
         "filter response",
         sizeof(ipacl_filter_rsp),
         {},
         IPACL_CONVERT(filter_rsp),
         show_rsp_three_words,
         tail_kind::counted,
         0,
         "filter"},
        {"prof_cfg",
         "protocol profile configuration",
         sizeof(ipacl_prof_cfg),
         {},
         IPACL_CONVERT(prof_cfg),
         show_cfg,
         tail_kind::counted,
         0,
         "prof"},
        {"if_prof_cfg",
         "interface profile configuration",
         sizeof(ipacl_if_prof_cfg),
         {},
         IPACL_CONVERT(if_prof_cfg),
         show_cfg,
         tail_kind::counted,
         0,
         "if_prof"},
        {"filter_cfg",
         "filter configuration",
         sizeof(ipacl_filter_cfg),
         {},
         IPACL_CONVERT(filter_cfg),
         show_cfg,
         tail_kind::counted,
         0,
         "filter"},
        {"cfm",
         "confirmation of one key",
         sizeof(ipacl_cfm),
         {},
         IPACL_CONVERT(cfm),
         show_cfm,
         tail_kind::none,
         0,
         {},
         check_cfm},
        {"prof_cfm",
         "protocol profile confirmations",
         sizeof(ipacl_prof_cfm),
         {},
         IPACL_CONVERT(prof_cfm),
         show_cfm_list,
         tail_kind::counted,
         0,
         "cfm"},
        {"if_prof_cfm",
         "interface profile confirmations",
         sizeof(ipacl_if_prof_cfm),
         {},
         IPACL_CONVERT(if_prof_cfm),
         show_cfm_list,
         tail_kind::counted,
         0,
         "cfm"},
        {"filter_cfm",
         "filter confirmations",
         sizeof(ipacl_filter_cfm),
         {},
         IPACL_CONVERT(filter_cfm),
         show_cfm_list,
         tail_kind::counted,
         0,
         "cfm"},
        {"prof_sync",
         "protocol profile sync",
         sizeof(ipacl_prof_sync),
         {{8, name}},
         IPACL_CONVERT(prof_sync),
         show_sync<prof_record>},
        {"if_prof_sync",
         "interface profile sync",
         sizeof(ipacl_if_prof_sync),
         {{16, name}},
         IPACL_CONVERT(if_prof_sync),
         show_sync<if_prof_record>},
        {"filter_sync",
         "filter sync",
         sizeof(ipacl_filter_sync),
         {{8, name}},
         IPACL_CONVERT(filter_sync),
         show_sync<filter_record>},
        {"prof_sync_op",
         "protocol profile sync with its filter keys",
         sizeof(ipacl_prof_sync_op),
         {{8, name}},
         IPACL_CONVERT(prof_sync_op),
         show_sync_op<prof_record, 88>,
         tail_kind::counted,
         88,
         "filter_key"},
        {"if_prof_sync_op",
         "interface profile sync with its profile infos",
         sizeof(ipacl_if_prof_sync_op),
         {{16, name}},
         IPACL_CONVERT(if_prof_sync_op),
         show_sync_op<if_prof_record, 92>,
         tail_kind::counted,
         92,
         "prof_info"},
        {"filter_sync_op",
         "filter sync with filter keys",
         sizeof(ipacl_filter_sync_op),
         {{8, name}},
         IPACL_CONVERT(filter_sync_op),
         show_sync_op<filter_record, 246>,
         tail_kind::counted,
         246,
         "filter_key"},
        {"use_req",
         "access list usage request",
         sizeof(ipacl_use_req),
         {},
         IPACL_CONVERT(use_req),
         show_use_req,
         tail_kind::text},
        {"use_rsp",
         "access list usage response",
         sizeof(ipacl_use_rsp),
         {},
         IPACL_CONVERT(use_rsp),
         show_count,
         tail_kind::counted,
         0,
         "list_use"},
        {"in_req",
         "internal state request",
         sizeof(ipacl_in_req),
         {},
         IPACL_CONVERT(in_req),
         show_in_req},
        {"in_rsp",
         "internal state response",
         sizeof(ipacl_in_rsp),
         {},
         IPACL_CONVERT(in_rsp),
         show_in_rsp,
         tail_kind::in_typed},
        {"test_req",
         "test request",
         sizeof(ipacl_test_req),
         {},
         IPACL_CONVERT(test_req),
         show_test_req},
        {"test_rsp",
         "test response",
         sizeof(ipacl_test_rsp),
         {},
         IPACL_CONVERT(test_rsp),
         show_test_rsp},
        {"ipt_req",
         "iptables query",
         sizeof(ipacl_ipt_req),
         {{8, IPACL_CHAIN_NAME_SIZE}},
         IPACL_CONVERT(ipt_req),
         show_ipt_req},
        {"ipt_rsp",
         "iptables query response",
         sizeof(ipacl_ipt_rsp),
         {},
         IPACL_CONVERT(ipt_rsp),
         show_ipt_rsp,
         tail_kind::ipt_typed},
        {"quen",
         "quen envelope header (and the payload behind it)",
         sizeof(ipacl_quen),
         {},
         IPACL_CONVERT(quen),
         show_quen,
         tail_kind::quen_payload},
    };
    types.insert(types.end(), messages.begin(), messages.end());
}

}  // namespace ipacl_tool
