// Block display of an iptables rule entry as the kernel reports it:
// addresses and interfaces with their masks, protocol and fragment test,
// each marked "not " when the rule inverts it, and the counters.
#include <cstdio>

#include <ipacl/enums.h>
#include <ipacl/show.h>

#include "show/block.h"

namespace {

using namespace ipacl::show;

// The iptables invert flags of an entry.
constexpr uint8_t kInvInIf = 0x01;
constexpr uint8_t kInvOutIf = 0x02;
constexpr uint8_t kInvSrc = 0x08;
constexpr uint8_t kInvDst = 0x10;
constexpr uint8_t kInvFrag = 0x20;
constexpr uint8_t kInvProto = 0x40;
// The entry's flags: the fragment test is present.
constexpr uint8_t kFlagFrag = 0x01;

const char *negation(const ipacl_ipt_entry &e, uint8_t bit) {
    return (e.inv_flags & bit) ? "not " : "";
}

const ipacl_ipt_entry &entry(const uint8_t *p) {
    return *reinterpret_cast<const ipacl_ipt_entry *>(p);
}

// Address and mask as dotted quads, taken byte by byte from the
// network-order fields: the most significant octet comes first.
template <size_t Addr, size_t Mask, uint8_t Invert>
void address(const uint8_t *p, char *out) {
    const uint8_t *a = p + Addr;
    const uint8_t *m = p + Mask;
    snprintf(out, kValueSize, "%s%u.%u.%u.%u %u.%u.%u.%u", negation(entry(p), Invert), a[0], a[1],
             a[2], a[3], m[0], m[1], m[2], m[3]);
}

// The name's bytes where the mask keeps them, "+" where the mask byte is 0
// (a wildcard, as in "eth+"); zero bytes of the name are skipped, not taken
// as its end.  No name at all prints "-".
template <size_t Name, size_t Mask, uint8_t Invert>
void interface(const uint8_t *p, char *out) {
    const uint8_t *name = p + Name;
    const uint8_t *mask = p + Mask;
    if (name[0] == 0) {
        snprintf(out, kValueSize, "-");
        return;
    }
    int len = snprintf(out, kValueSize, "%s", negation(entry(p), Invert));
    for (size_t i = 0; i < IPACL_KERNEL_IF_SIZE; ++i) {
        if (name[i] == 0) continue;
        out[len++] = mask[i] != 0 ? static_cast<char>(name[i]) : '+';
    }
    out[len] = '\0';
}

void protocol(const uint8_t *p, char *out) {
    char name[IPACL_STR_SIZE];
    ipacl_str_ip_proto(entry(p).proto, name);
    snprintf(out, kValueSize, "%s%s", negation(entry(p), kInvProto), name);
}

void fragment(const uint8_t *p, char *out) {
    const ipacl_ipt_entry &e = entry(p);
    const char *text = !(e.flags & kFlagFrag) ? "-" : (e.inv_flags & kInvFrag) ? "false" : "true";
    snprintf(out, kValueSize, "%s", text);
}

// Each label stands in 23 columns and one blank: the block's 24 columns.
constexpr Row kEntry[] = {
    field("Source Address", 0,
          address<offsetof(ipacl_ipt_entry, src), offsetof(ipacl_ipt_entry, src_mask), kInvSrc>),
    field("Destination Address", 0,
          address<offsetof(ipacl_ipt_entry, dst), offsetof(ipacl_ipt_entry, dst_mask), kInvDst>),
    field("Ingress Interface", 0,
          interface<offsetof(ipacl_ipt_entry, in_if), offsetof(ipacl_ipt_entry, in_if_mask),
                    kInvInIf>),
    field("Egress Interface", 0,
          interface<offsetof(ipacl_ipt_entry, out_if), offsetof(ipacl_ipt_entry, out_if_mask),
                    kInvOutIf>),
    field("Protocol", 0, protocol),
    field("Fragment", 0, fragment),
    field("# Packets", offsetof(ipacl_ipt_entry, packets), number<uint64_t>),
    field("# Bytes", offsetof(ipacl_ipt_entry, bytes), number<uint64_t>),
};

}  // namespace

extern "C" {

void ipacl_show_ipt_entry(const ipacl_ipt_entry *entry) {
    if (entry != nullptr) print_block(entry, kEntry);
}

}  // extern "C"
