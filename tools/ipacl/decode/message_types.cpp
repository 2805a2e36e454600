// The messages: requests, responses, configurations, confirmations, syncs,
// usage, internal state, test, iptables queries and the quen header.
#include "field_lines.h"
#include "wire_types.h"

#include <ipacl/enums.h>
#include <ipacl/str_record.h>
#include <ipacl/wire.h>

#include <cstddef>
#include <cstdio>

namespace ipacl_tool {
namespace {

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

}  // namespace

void add_message_types(std::vector<wire_type> &types) {
    const std::vector<wire_type> messages = {
        {IPACL_WIRE_TYPE(access_req), "access (query) request", show_access_req},
        {IPACL_WIRE_TYPE(access_rsp), "access response: manager records by access type",
         show_access_rsp},
        {IPACL_WIRE_TYPE(prof_req), "protocol profile request", show_prof_req},
        {IPACL_WIRE_TYPE(if_prof_req), "interface profile request", show_if_prof_req},
        {IPACL_WIRE_TYPE(filter_req), "filter request", show_filter_req},
        {IPACL_WIRE_TYPE(prof_rsp), "protocol profile response", show_rsp_three_words},
        {IPACL_WIRE_TYPE(if_prof_rsp), "interface profile response", show_rsp_two_words},
        {IPACL_WIRE_TYPE(filter_rsp), "filter response", show_rsp_three_words},
        {IPACL_WIRE_TYPE(prof_cfg), "protocol profile configuration", show_cfg},
        {IPACL_WIRE_TYPE(if_prof_cfg), "interface profile configuration", show_cfg},
        {IPACL_WIRE_TYPE(filter_cfg), "filter configuration", show_cfg},
        {IPACL_WIRE_TYPE(cfm), "confirmation of one key", show_cfm, check_cfm},
        {IPACL_WIRE_TYPE(prof_cfm), "protocol profile confirmations", show_cfm_list},
        {IPACL_WIRE_TYPE(if_prof_cfm), "interface profile confirmations", show_cfm_list},
        {IPACL_WIRE_TYPE(filter_cfm), "filter confirmations", show_cfm_list},
        {IPACL_WIRE_TYPE(prof_sync), "protocol profile sync", show_sync<prof_record>},
        {IPACL_WIRE_TYPE(if_prof_sync), "interface profile sync", show_sync<if_prof_record>},
        {IPACL_WIRE_TYPE(filter_sync), "filter sync", show_sync<filter_record>},
        {IPACL_WIRE_TYPE(prof_sync_op), "protocol profile sync with its filter keys",
         show_sync_op<prof_record, offsetof(ipacl_prof_sync_op, count)>},
        {IPACL_WIRE_TYPE(if_prof_sync_op), "interface profile sync with its profile infos",
         show_sync_op<if_prof_record, offsetof(ipacl_if_prof_sync_op, count)>},
        {IPACL_WIRE_TYPE(filter_sync_op), "filter sync with filter keys",
         show_sync_op<filter_record, offsetof(ipacl_filter_sync_op, count)>},
        {IPACL_WIRE_TYPE(use_req), "access list usage request", show_use_req},
        {IPACL_WIRE_TYPE(use_rsp), "access list usage response", show_count},
        {IPACL_WIRE_TYPE(in_req), "internal state request", show_in_req},
        {IPACL_WIRE_TYPE(in_rsp), "internal state response", show_in_rsp},
        {IPACL_WIRE_TYPE(test_req), "test request", show_test_req},
        {IPACL_WIRE_TYPE(test_rsp), "test response", show_test_rsp},
        {IPACL_WIRE_TYPE(ipt_req), "iptables query", show_ipt_req},
        {IPACL_WIRE_TYPE(ipt_rsp), "iptables query response", show_ipt_rsp},
        {IPACL_WIRE_TYPE(quen), "quen envelope header (and the payload behind it)", show_quen,
         nullptr, tail_kind::quen_payload},
    };
    types.insert(types.end(), messages.begin(), messages.end());
}

}  // namespace ipacl_tool
