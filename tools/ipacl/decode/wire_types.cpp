#include "wire_types.h"

#include "field_lines.h"

#include <ipacl/enums.h>
#include <ipacl/wire.h>

#include <algorithm>
#include <cstdio>

namespace ipacl_tool {
namespace {

using ipacl::wire::Conv;
using ipacl::wire::RecordShape;

// The texts of a record and of the records nested in it, from `base`.
void collect_texts(const RecordShape &shape, std::size_t base, std::vector<text_field> &texts) {
    for (std::size_t i = 0; i < shape.field_count; ++i) {
        const ipacl::wire::Field &field = shape.fields[i];
        if (field.conv == Conv::str && field.width > 0)
            texts.push_back({base + field.off, field.width});
        if (field.conv == Conv::rec)
            collect_texts(ipacl::wire::shape(field.rec), base + field.off, texts);
    }
}

// A text of width 0 is open-ended: it runs to the end of the message.
bool ends_in_text(const RecordShape &shape) {
    for (std::size_t i = 0; i < shape.field_count; ++i)
        if (shape.fields[i].conv == Conv::str && shape.fields[i].width == 0) return true;
    return false;
}

// Completes a type from the library's table of its record.  Elements lie
// behind the fixed part when they start at the end of the C type; the
// elements of fixed slots (a rule's matches, a confirmation's key) are part
// of the record.
void describe(wire_type &type) {
    const RecordShape &shape = *ipacl::wire::find_shape(type.name);
    type.shape = &shape;
    const bool tail_behind = (shape.counted || shape.tagged) && shape.elems_at == shape.size;
    type.fixed = tail_behind ? shape.elems_at : shape.size;
    collect_texts(shape, 0, type.texts);
    std::sort(type.texts.begin(), type.texts.end(),
              [](const text_field &a, const text_field &b) { return a.offset < b.offset; });
    if (type.tail != tail_kind::none) return;
    if (ends_in_text(shape)) type.tail = tail_kind::text;
    if (!tail_behind) return;
    type.count_at = shape.count_at;
    if (shape.tagged) {
        type.tail = tail_kind::typed;
        type.tag_at = shape.tag_at;
    } else {
        type.tail = tail_kind::counted;
        type.element = ipacl::wire::shape(shape.elem).stem;
    }
}

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
        for (wire_type &type : all) describe(type);
        return all;
    }();
    return types;
}

const wire_type *find_wire_type(std::string_view name) {
    for (const wire_type &type : wire_types())
        if (type.name == name) return &type;
    return nullptr;
}

const wire_type *typed_element(const wire_type &type, uint32_t type_word) {
    const RecordShape &shape = *type.shape;
    for (std::size_t i = 0; i < shape.variant_count; ++i)
        if (ipacl::wire::picks(shape.pick, shape.variants[i].code, type_word))
            return find_wire_type(ipacl::wire::shape(shape.variants[i].rec).stem);
    return nullptr;
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
        case tail_kind::typed: {
            const wire_type *element = typed_element(type, big_endian_at(bytes, type.tag_at));
            if (element == nullptr) return nothing_after(type, type.fixed, size, error);
            return elements_fit(type, *element, big_endian_at(bytes, type.count_at), bytes, size,
                                error);
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
    if (type.tail == tail_kind::typed) {
        element = typed_element(type, word_at(bytes, type.tag_at));
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
