// Words of the command language that may not name an access list.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

namespace ipacl {

// In this order, closed by "".  "syslogtacacs-ds" is one word.  The words
// with a hyphen are kept although a name that holds one is refused as not
// alphanumeric before the table is searched.
inline constexpr const char *kReservedWords[] = {
    "access",
    "access-list",
    "access-group",
    "access-management",
    "any",
    "chains",
    "critical",
    "data",
    "delay",
    "deny",
    "domain",
    "echo",
    "echo-reply",
    "gt",
    "flash",
    "forward",
    "fwd-in",
    "fwd-out",
    "engineering",
    "eq",
    "established",
    "ftp",
    "ftp-data",
    "fragment",
    "ha",
    "http",
    "icmp",
    "icmp-code",
    "icmp-type",
    "immediate",
    "in",
    "input",
    "internal",
    "internetwork",
    "ip",
    "ipacl",
    "iptables",
    "list",
    "log-deny",
    "lt",
    "management",
    "mgmt0",
    "monetary-cost",
    "network",
    "normal-service",
    "ntp",
    "out",
    "output",
    "override",
    "permit",
    "port",
    "precedence",
    "priority",
    "kest",
    "radius",
    "range",
    "redirect",
    "reliability",
    "routine",
    "rules",
    "set",
    "sftp",
    "smtp",
    "snmp",
    "snmp-trap",
    "ssh",
    "syslogtacacs-ds",
    "tcp",
    "telnet",
    "time-exceeded",
    "tftp",
    "throughput",
    "tos",
    "traceroute",
    "udp",
    "unreachable",
    "wbem-http",
    "wbem-https",
    "www",
    "",
};

inline constexpr size_t kReservedWordCount = sizeof kReservedWords / sizeof *kReservedWords - 1;

// A quick "cannot be reserved" answer for most names: for each length, the
// first letters with which some reserved word of that length begins.  Only
// names that pass it are compared with the table, in its order.
class ReservedIndex {
  public:
    static constexpr size_t kMaxLength = 31;

    constexpr ReservedIndex() : first_letters_{} {
        for (size_t i = 0; i < kReservedWordCount; ++i) {
            const char *word = kReservedWords[i];
            first_letters_[length_of(word)] |= letter_bit(word[0]);
        }
    }

    // `first` is the lowered first character of a name of `length`.
    constexpr bool may_hold(char first, size_t length) const {
        return length <= kMaxLength && (first_letters_[length] & letter_bit(first)) != 0;
    }
    constexpr bool may_hold(const char *form, size_t length) const {
        return may_hold(form[0], length);
    }

  private:
    static constexpr size_t length_of(const char *s) {
        size_t n = 0;
        while (s[n]) ++n;
        return n;
    }
    static constexpr uint32_t letter_bit(char c) {
        return c >= 'a' && c <= 'z' ? 1u << (c - 'a') : 0;
    }

    uint32_t first_letters_[kMaxLength + 1];
};

inline constexpr ReservedIndex kReservedIndex{};

static_assert(kReservedWordCount == 79, "the reserved-word table holds 79 words");

// The first reserved word that equals the canonical form `form` of a name
// (`length` characters), or null.
inline const char *find_reserved(const char *form, size_t length) {
    if (!kReservedIndex.may_hold(form, length)) return nullptr;
    for (size_t i = 0; i < kReservedWordCount; ++i)
        if (strcmp(form, kReservedWords[i]) == 0) return kReservedWords[i];
    return nullptr;
}

}  // namespace ipacl
