// Every record and message of the library that `decode` reads: its size,
// the texts it holds, its network-to-host converter and its display.  The
// displays are the library's own where it has one; header words that only
// the manager and its clients give a meaning to print as labelled numbers.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "wire/catalog.h"

namespace ipacl_tool {

// A NUL-terminated text inside a record: the converters copy it with an
// unbounded string copy, so a text without its NUL is refused up front.
struct text_field {
    std::size_t offset;
    std::size_t size;
};

enum class tail_kind {
    none,          // a fixed record or message
    counted,       // a count word and that many elements of one type
    typed,         // a count word and a type word that picks the element type
    text,          // a NUL-terminated text to the end
    quen_payload,  // the quen header and the payload behind it
};

// A type as the decode tables name it; the rest of its description comes
// from the library's conversion table of the record.
struct wire_type {
    std::string_view name;
    void (*to_host)(uint8_t *bytes);  // in place, on the whole message
    std::string_view summary;
    void (*show)(const uint8_t *bytes, bool first);  // the fixed part, in host order
    // Checks beyond sizes and texts (network order), or null.
    bool (*check)(const uint8_t *bytes, std::string &error) = nullptr;
    tail_kind tail = tail_kind::none;  // set here only for the quen payload

    // From the conversion table:
    std::size_t fixed = 0;            // a record's size; a message's fixed part
    std::vector<text_field> texts{};  // within the fixed part
    std::size_t count_at = 0;         // the count word of a counted or typed tail
    std::size_t tag_at = 0;           // the type word of a typed tail
    std::string_view element{};       // the element type of a counted tail
    const ipacl::wire::RecordShape *shape = nullptr;
};

// The name of a record type and its network-to-host converter, in place.
#define IPACL_WIRE_TYPE(stem) \
#stem, [](uint8_t *bytes) {                                                  \
        auto *record = reinterpret_cast<ipacl_##stem *>(bytes);                  \
        ipacl_ntoh_##stem(record, record);                                      \
    }

const std::vector<wire_type> &wire_types();
const wire_type *find_wire_type(std::string_view name);

// The element type of a typed tail from its (host-order) type word, or null.
const wire_type *typed_element(const wire_type &type, uint32_t type_word);

// True when `size` bytes in network order are exactly one message of the
// type, its texts terminated and its counts within the bytes; else false
// and the reason in `error`.
bool measure(const wire_type &type, const uint8_t *bytes, std::size_t size, std::string &error);

// Converts a measured message to host order in place and prints it.
void decode_and_show(const wire_type &type, uint8_t *bytes, std::size_t size);

// Record and message tables (one file each).
void add_record_types(std::vector<wire_type> &types);
void add_message_types(std::vector<wire_type> &types);

}  // namespace ipacl_tool
