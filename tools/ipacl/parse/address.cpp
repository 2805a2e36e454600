#include "address.h"

#include <ipacl/bm.h>
#include <ipacl/enums.h>

#include <arpa/inet.h>

#include <cstring>
#include <string>

#include "wire/endian.h"

namespace ipacl_tool {
namespace {

constexpr uint32_t ipv4_bits = 32;
constexpr uint32_t ipv6_bits = 128;

uint32_t host_order(const uint8_t bytes[4]) {
    return ipacl::wire::load<uint32_t, ipacl::wire::Order::big>(bytes);
}

// The address part alone; false when it is neither IPv4 nor IPv6.
bool read_literal(std::string_view text, address_form &form) {
    std::string copy(text);
    if (copy.find(':') != std::string::npos) {
        form.family = address_family::ipv6;
        return inet_pton(AF_INET6, copy.c_str(), form.bytes) == 1;
    }
    form.family = address_family::ipv4;
    return inet_pton(AF_INET, copy.c_str(), form.bytes) == 1;
}

uint32_t full_length(address_family family) {
    return family == address_family::ipv4 ? ipv4_bits : ipv6_bits;
}

// The wildcard word of an IPv4 prefix length, by the library's mask rules.
uint32_t wildcard_of_length(uint32_t length) {
    uint8_t mask[5] = {};  // one spare byte: the mask writer may touch it
    ipacl_bm_len_to_mask(mask, 4, length, 1);
    return host_order(mask);
}

// The prefix length of a wildcard as typed.  A mask that is not one run of
// ones keeps the length counted up to its first gap; the check chains are
// the ones to refuse it, with their own message.
uint32_t length_of_wildcard(const uint8_t wildcard[4]) {
    uint32_t length = 0;
    ipacl_bm_mask_to_len(wildcard, 4, &length, 1);
    return length;
}

void read_prefix(word_cursor &words, std::string_view word, address_form &form) {
    std::size_t slash = word.find('/');
    if (!read_literal(word.substr(0, slash), form)) words.fail_last("not an IPv4 or IPv6 address");
    auto length = read_u32(word.substr(slash + 1));
    if (!length || *length > full_length(form.family))
        words.fail_last("prefix length must be a number from 0 to " +
                        std::to_string(full_length(form.family)));
    form.prefix_len = *length;
    if (form.family == address_family::ipv4) form.wildcard = wildcard_of_length(*length);
}

void read_wildcard_form(word_cursor &words, address_form &form) {
    uint8_t wildcard[4];
    std::string next(words.peek());
    if (words.at_end() || next.find(':') != std::string::npos ||
        inet_pton(AF_INET, next.c_str(), wildcard) != 1)
        words.fail_last(
            "an IPv4 address needs /LEN, a wildcard mask after it, or 'host' before it");
    words.take("a wildcard mask");
    form.wildcard = host_order(wildcard);
    form.prefix_len = length_of_wildcard(wildcard);
}

}  // namespace

address_form read_address(word_cursor &words, std::string_view role) {
    address_form form;
    form.position = words.position();
    std::string expected = "a " + std::string(role) + " address (any, host A, A/LEN or A WILDCARD)";
    std::string_view word = words.take(expected);

    if (word == "any") return form;
    if (word == "host") {
        std::string_view host = words.take("the address of the host");
        if (host.find('/') != std::string_view::npos || !read_literal(host, form))
            words.fail_last("not an IPv4 or IPv6 host address");
        form.prefix_len = full_length(form.family);
        form.wildcard = 0;
        return form;
    }
    if (word.find('/') != std::string_view::npos) {
        read_prefix(words, word, form);
        return form;
    }
    if (!read_literal(word, form)) words.fail_last("expected " + expected);
    if (form.family == address_family::ipv6)
        words.fail_last("an IPv6 address needs /LEN after it or 'host' before it");
    read_wildcard_form(words, form);
    return form;
}

uint32_t store_address(const address_form &form, address_family family, ipacl_inet_addr &prefix) {
    std::memcpy(prefix.addr, form.bytes, sizeof prefix.addr);
    prefix.prefix_len = form.prefix_len;
    if (family == address_family::ipv6) {
        prefix.family = IPACL_ADDR_TYPE_IPV6;
        return 0;
    }
    prefix.family = IPACL_ADDR_TYPE_IPV4;
    return form.family == address_family::unknown ? IPACL_MASK_ANY : form.wildcard;
}

}  // namespace ipacl_tool
