// The command form of an IPv6 filter: only what the filter sets, in the
// order of a filter command, bounded by the caller's buffer at every step.
#include <cstdio>

#include <ipacl/enums.h>
#include <ipacl/str_record.h>
#include <ipacl/str_scalar.h>

#include "str/record/port_spec.h"

namespace {

constexpr int32_t kPrefixSlashForm = IPACL_INET_FORMAT_PREFIX;
constexpr uint32_t kAnyAllowed = 1;
constexpr uint32_t kNotSet = 0xFFFFFFFFu;

// Appends the parts of the line one at a time into the caller's buffer.
class CommandLine {
  public:
    CommandLine(char *dst, uint32_t size) : dst_(dst), size_(size) { dst_[0] = '\0'; }

    // Appends `text`, after a blank unless it is the first part.  Fails when
    // the part does not fit the space left; a part that fills it exactly is
    // taken although the terminator cut its last character, so the next
    // part finds no space at all.
    bool append(const char *text) {
        const uint32_t left = size_ - used_;
        const int n = snprintf(dst_ + used_, left, used_ == 0 ? "%s" : " %s", text);
        if (n < 0 || static_cast<uint32_t>(n) > left) return false;
        used_ += static_cast<uint32_t>(n);
        return true;
    }

  private:
    char *dst_;
    uint32_t size_;
    uint32_t used_ = 0;
};

// Each step forms its part in the scratch buffer; nullptr means the step
// has nothing to say for this filter.
using Step = const char *(*)(const ipacl_filter &f, char *scratch);

const char *action(const ipacl_filter &f, char *s) {
    ipacl_str_action(f.action, s);
    return s;
}
// Always the IPv6 names: the protocol "any" reads "ipv6".
const char *protocol(const ipacl_filter &f, char *s) {
    ipacl_str_ipv6_proto(f.protocol, s);
    return s;
}

const char *prefix(const ipacl_inet_addr &a, char *s) {
    return ipacl_str_inet_addr(kPrefixSlashForm, kAnyAllowed, &a, s, ipacl::kPortSpecSize);
}
const char *source(const ipacl_filter &f, char *s) { return prefix(f.src_addr, s); }
const char *destination(const ipacl_filter &f, char *s) { return prefix(f.dst_addr, s); }

const char *source_ports(const ipacl_filter &f, char *s) {
    return ipacl::str_port_spec(f.src_port_op, f.src_port_low, f.src_port_high, s);
}
const char *destination_ports(const ipacl_filter &f, char *s) {
    return ipacl::str_port_spec(f.dst_port_op, f.dst_port_low, f.dst_port_high, s);
}

// Flags count here only when they are exactly 1.
const char *established(const ipacl_filter &f, char *) {
    return f.established == 1 ? "established" : nullptr;
}
const char *log_deny(const ipacl_filter &f, char *) {
    return f.log_deny == 1 ? "log-deny" : nullptr;
}
const char *fragments(const ipacl_filter &f, char *) {
    return f.fragments == 1 ? "fragments" : nullptr;
}

// ICMP type and code print as numbers; no type means no code either.
const char *icmp_type(const ipacl_filter &f, char *s) {
    if (f.icmp_type == kNotSet) return nullptr;
    snprintf(s, ipacl::kPortSpecSize, "%u", f.icmp_type);
    return s;
}
const char *icmp_code(const ipacl_filter &f, char *s) {
    if (f.icmp_type == kNotSet || f.icmp_code == kNotSet) return nullptr;
    snprintf(s, ipacl::kPortSpecSize, "%u", f.icmp_code);
    return s;
}

constexpr Step kSteps[] = {
    action,      protocol,  source,    source_ports, destination, destination_ports,
    established, icmp_type, icmp_code, log_deny,     fragments,
};

}  // namespace

extern "C" {

ipacl_rc ipacl_str_filter_ipv6(const ipacl_filter *filter, char *dst, int32_t size) {
    if (filter == nullptr || dst == nullptr || size <= 0) return IPACL_E_BAD_ARG;
    CommandLine line(dst, static_cast<uint32_t>(size));
    char scratch[ipacl::kPortSpecSize];
    for (Step step : kSteps) {
        const char *part = step(*filter, scratch);
        if (part != nullptr && !line.append(part)) return IPACL_E_NO_MEM;
    }
    return IPACL_OK;
}

}  // extern "C"
