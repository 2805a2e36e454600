#include "wire_types.h"

#include "field_lines.h"

#include <ipacl/enums.h>
#include <ipacl/wire.h>

#include <cstdio>

namespace ipacl_tool {
namespace {

// Content flags of an ipacl_ipt_rsp, tested in the converters' order.
constexpr uint32_t ipt_chain_flags = IPACL_IPT_OP_ALL_CHAINS | IPACL_IPT_OP_MATCHED_CHAIN;

bool texts_terminated(const wire_type &type, const uint8_t *bytes, std::string &error) {
    for (const text_field &field : type.texts) {
        bool terminated = false;
        for (std::size_t i = 0; i < field.size && !terminated; ++i)
            terminated = bytes[field.offset + i] == 0;
        if (!terminated) {
            error = "the text at offset " + std::to_string(field.offset) + " of the " +
                    std::string(type.name) + " has no terminating NUL within its " +
                    std::to_string(field.size) + " bytes";
            return false;
        }
    }
    return type.check == nullptr || type.check(bytes, error);
}

// The fixed part and `count` elements of `element` must fill `size` exactly.
bool elements_fit(const wire_type &type, const wire_type &element, uint32_t count,
                  const uint8_t *bytes, std::size_t size, std::string &error) {
    uint64_t needed = type.fixed + uint64_t{count} * element.fixed;
    if (needed != size) {
        error = "count " + std::to_string(count) + " of " + std::string(element.name) + " (" +
                std::to_string(element.fixed) + " bytes each) needs " + std::to_string(needed) +
                " bytes, the message has " + std::to_string(size);
        return false;
    }
    for (uint32_t i = 0; i < count; ++i) {
        std::string why;
        if (!texts_terminated(element, bytes + type.fixed + i * element.fixed, why)) {
            error = "element " + std::to_string(i + 1) + ": " + why;
            return false;
        }
    }
    return true;
}

bool nothing_after(const wire_type &type, std::size_t end, std::size_t size, std::string &error) {
    if (size == end) return true;
    error = std::to_string(size - end) + " bytes left over after the " + std::string(type.name);
    return false;
}

bool text_tail_fits(const wire_type &type, const uint8_t *bytes, std::size_t size,
                    std::string &error) {
    for (std::size_t i = type.fixed; i < size; ++i)
        if (bytes[i] == 0) return nothing_after(type, i + 1, size, error);
    error = "the text of the " + std::string(type.name) + " has no terminating NUL";
    return false;
}

bool quen_payload_fits(const uint8_t *bytes, std::size_t size, std::string &error) {
    uint32_t length = big_endian_at(bytes, 4);
    if (size == sizeof(ipacl_quen) || size - sizeof(ipacl_quen) == length) return true;
    error = "the header's length " + std::to_string(length) + " does not match the " +
            std::to_string(size - sizeof(ipacl_quen)) + " payload bytes behind it";
    return false;
}

}  // namespace

const std::vector<wire_type> &wire_types() {
    static const std::vector<wire_type> types = [] {
        std::vector<wire_type> all;
        add_record_types(all);
        add_message_types(all);
        return all;
    }();
    return types;
}

const wire_type *find_wire_type(std::string_view name) {
    for (const wire_type &type : wire_types())
        if (type.name == name) return &type;
    return nullptr;
}

const wire_type *typed_element(tail_kind tail, uint32_t type_word) {
    static const char *const access_elements[] = {
        nullptr,     "data", "data_info", "data_key", "group",    "group_info",
        "group_key", "intf", "intf_info", "list",     "list_key", "mgmt"};
    switch (tail) {
        case tail_kind::access_typed:
            if (type_word >= 1 && type_word <= IPACL_ACCESS_TYPE_ACCESS_MGMT)
                return find_wire_type(access_elements[type_word]);
            return nullptr;
        case tail_kind::in_typed:
            if (type_word == IPACL_IN_TYPE_HA_INFO) return find_wire_type("ha");
            if (type_word == IPACL_IN_TYPE_MEMORY_USAGE) return find_wire_type("mem_use");
            return nullptr;
        case tail_kind::ipt_typed:
            if (type_word & ipt_chain_flags) return find_wire_type("ipt_chain");
            if (type_word & IPACL_IPT_OP_MATCHED_RULE) return find_wire_type("ipt_rule");
            if (type_word & IPACL_IPT_OP_ALL_RULES) return find_wire_type("rule_info");
            return nullptr;
        default:
            return nullptr;
    }
}

bool measure(const wire_type &type, const uint8_t *bytes, std::size_t size, std::string &error) {
    if (size < type.fixed) {
        error = std::to_string(size) + " bytes are too few for the " + std::string(type.name) +
                " (" + std::to_string(type.fixed) + " bytes" +
                (type.tail == tail_kind::none ? "" : " at least") + ")";
        return false;
    }
    if (!texts_terminated(type, bytes, error)) return false;
    switch (type.tail) {
        case tail_kind::none:
            return nothing_after(type, type.fixed, size, error);
        case tail_kind::counted:
            return elements_fit(type, *find_wire_type(type.element),
                                big_endian_at(bytes, type.count_at), bytes, size, error);
        case tail_kind::access_typed:
        case tail_kind::in_typed:
        case tail_kind::ipt_typed: {
            const wire_type *element = typed_element(type.tail, big_endian_at(bytes, 4));
            if (element == nullptr) return nothing_after(type, type.fixed, size, error);
            return elements_fit(type, *element, big_endian_at(bytes, 0), bytes, size, error);
        }
        case tail_kind::text:
            return text_tail_fits(type, bytes, size, error);
        case tail_kind::quen_payload:
            return quen_payload_fits(bytes, size, error);
    }
    return false;
}

void decode_and_show(const wire_type &type, uint8_t *bytes, std::size_t size) {
    type.to_host(bytes);
    type.show(bytes, true);
    const wire_type *element = nullptr;
    if (type.tail == tail_kind::counted) element = find_wire_type(type.element);
    if (type.tail == tail_kind::access_typed || type.tail == tail_kind::in_typed ||
        type.tail == tail_kind::ipt_typed) {
        element = typed_element(type.tail, word_at(bytes, 4));
        if (element == nullptr) std::printf("(no records of this type to show)\n");
    }
    if (element != nullptr) {
        for (std::size_t at = type.fixed, i = 0; at < size; at += element->fixed, ++i)
            element->show(bytes + at, i == 0);
    }
    if (type.tail == tail_kind::quen_payload && size > sizeof(ipacl_quen))
        show_bytes("Payload (not converted)", bytes + sizeof(ipacl_quen),
                   size - sizeof(ipacl_quen));
}

}  // namespace ipacl_tool
