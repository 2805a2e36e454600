// The source and destination forms of a filter: any, host A, A/LEN and, for
// IPv4, A WILDCARD.
#pragma once

#include "word_cursor.h"

#include <ipacl/records.h>

#include <cstdint>

namespace ipacl_tool {

enum class address_family { unknown, ipv4, ipv6 };  // unknown: "any"

struct address_form {
    address_family family = address_family::unknown;
    uint8_t bytes[16] = {};  // network order, IPv4 in the first 4
    uint32_t prefix_len = 0;
    uint32_t wildcard = 0;     // IPv4: host order, as typed or from the length
    std::size_t position = 0;  // the first word of the form
};

// Reads one address form; `role` names it in errors ("source").
address_form read_address(word_cursor &words, std::string_view role);

// Fills the record's prefix for a filter of `family` (an "any" takes the
// family of the filter) and returns the wildcard word that goes with it.
uint32_t store_address(const address_form &form, address_family family, ipacl_inet_addr &prefix);

}  // namespace ipacl_tool
