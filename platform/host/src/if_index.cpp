// The host's interface indexes: type in bits 31..24, slot 23..16, module
// 15..8, port 7..0; numbered interfaces keep their number in bits 15..0.
// One table gives every type its name prefix and form.
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "ipacl_host.h"
#include "platform/if_index.h"

namespace {

enum class Form { Slotted, Numbered };

struct IfType {
    uint32_t type;
    const char *prefix;
    Form form;
};

constexpr IfType kTypes[] = {
    {IPACL_HOST_IF_CPU, "cpu", Form::Numbered},
    {IPACL_HOST_IF_ETH, "eth", Form::Slotted},
    {IPACL_HOST_IF_LO, "lo", Form::Numbered},
    {IPACL_HOST_IF_AGG, "agg", Form::Numbered},
    {IPACL_HOST_IF_MGMT, "mgmt", Form::Slotted},
    {IPACL_HOST_IF_VLAN, "vlan", Form::Numbered},
    {IPACL_HOST_IF_TUNNEL, "tunnel", Form::Numbered},
    {IPACL_HOST_IF_SUB, "sub", Form::Slotted},
    {IPACL_HOST_IF_BR, "br", Form::Numbered},
    {IPACL_HOST_IF_DUMMY, "dummy", Form::Numbered},
    {IPACL_HOST_IF_VETH, "veth", Form::Numbered},
};

const IfType *type_of(uint32_t if_index) {
    uint32_t type = if_index >> 24;
    for (const IfType &t : kTypes)
        if (t.type == type) return &t;
    return nullptr;
}

uint32_t slot_of(uint32_t i) { return (i >> 16) & 0xff; }
uint32_t module_of(uint32_t i) { return (i >> 8) & 0xff; }
uint32_t port_of(uint32_t i) { return i & 0xff; }
uint32_t number_of(uint32_t i) { return i & 0xffff; }

// Reads a decimal number of at most 5 digits; nullptr if there is none.
const char *read_number(const char *s, uint32_t &value) {
    if (*s < '0' || *s > '9') return nullptr;
    value = 0;
    int digits = 0;
    for (; *s >= '0' && *s <= '9'; ++s)
        if (++digits > 5)
            return nullptr;
        else
            value = value * 10 + static_cast<uint32_t>(*s - '0');
    return s;
}

uint32_t parse_slotted(uint32_t type, const char *s) {
    uint32_t parts[3];
    int count = 0;
    for (;;) {
        if (count == 3 || !(s = read_number(s, parts[count]))) return 0;
        ++count;
        if (*s == '\0') break;
        if (*s++ != '/') return 0;
    }
    if (count == 2) return ipacl_host_if_index(type, parts[0], 0, parts[1]);
    if (count == 3) return ipacl_host_if_index(type, parts[0], parts[1], parts[2]);
    return 0;
}

}  // namespace

extern "C" {

IPACL_HOST_API uint32_t ipacl_host_if_index(uint32_t type, uint32_t slot, uint32_t module,
                                            uint32_t port) {
    if (type == 0 || type > 0xff || slot > 0xff || module > 0xff || port > 0xff) return 0;
    return type << 24 | slot << 16 | module << 8 | port;
}

IPACL_HOST_API uint32_t ipacl_host_if_index_num(uint32_t type, uint32_t number) {
    if (type == 0 || type > 0xff || number > 0xffff) return 0;
    return type << 24 | number;
}

IPACL_HOST_API uint32_t ipacl_host_if_index_parse(const char *name) {
    if (!name) return 0;
    const IfType *best = nullptr;
    for (const IfType &t : kTypes)
        if (strncmp(name, t.prefix, strlen(t.prefix)) == 0 &&
            (!best || strlen(t.prefix) > strlen(best->prefix)))
            best = &t;
    if (!best) return 0;
    const char *rest = name + strlen(best->prefix);
    if (best->form == Form::Slotted) return parse_slotted(best->type, rest);
    uint32_t number;
    const char *end = read_number(rest, number);
    return end && *end == '\0' ? ipacl_host_if_index_num(best->type, number) : 0;
}

IPACL_HOST_API int if_index_get_type(uint32_t if_index, uint8_t *type) {
    if (!type) return static_cast<int>(IPACL_HOST_IF_E_INVAL);
    const IfType *t = type_of(if_index);
    if (!t) return static_cast<int>(IPACL_HOST_IF_E_NOENT);
    *type = static_cast<uint8_t>(t->type);
    return 0;
}

// The management port of a supervisor: first = the supervisor's slot,
// second = the port on it (0 for the management port proper).
IPACL_HOST_API int if_index_mgmt_sup_get_fields(uint32_t if_index, uint8_t *first,
                                                uint8_t *second) {
    if (!first || !second) return static_cast<int>(IPACL_HOST_IF_E_INVAL);
    const IfType *t = type_of(if_index);
    if (!t) return static_cast<int>(IPACL_HOST_IF_E_NOENT);
    if (t->type != IPACL_HOST_IF_MGMT) return static_cast<int>(IPACL_HOST_IF_E_NOTMGMT);
    *first = static_cast<uint8_t>(slot_of(if_index));
    *second = static_cast<uint8_t>(port_of(if_index));
    return 0;
}

IPACL_HOST_API int if_index_mgmt_sup_port_init(uint32_t *if_index, uint32_t first, uint32_t port) {
    if (!if_index || first == 0 || first > 0xff || port > 0xff)
        return static_cast<int>(IPACL_HOST_IF_E_INVAL);
    *if_index = ipacl_host_if_index(IPACL_HOST_IF_MGMT, first, 0, port);
    return 0;
}

// Writes the interface's name into at most size bytes (always terminated
// when size > 0) and returns the name's full length, as snprintf does.
IPACL_HOST_API int snprintf_if_index(char *buf, uint32_t size, uint32_t if_index) {
    if (!buf) size = 0;
    const IfType *t = type_of(if_index);
    if (!t) return snprintf(buf, size, "ifindex-0x%08x", static_cast<unsigned>(if_index));
    if (t->form == Form::Numbered)
        return snprintf(buf, size, "%s%u", t->prefix, static_cast<unsigned>(number_of(if_index)));
    if (module_of(if_index) == 0)
        return snprintf(buf, size, "%s%u/%u", t->prefix, static_cast<unsigned>(slot_of(if_index)),
                        static_cast<unsigned>(port_of(if_index)));
    return snprintf(buf, size, "%s%u/%u/%u", t->prefix, static_cast<unsigned>(slot_of(if_index)),
                    static_cast<unsigned>(module_of(if_index)),
                    static_cast<unsigned>(port_of(if_index)));
}

IPACL_HOST_API char *__strcpy_to_buf(char *dst, const char *src, uint32_t size) {
    if (!dst || size == 0) return dst;
    size_t n = src ? strnlen(src, size - 1) : 0;
    memcpy(dst, src ? src : "", n);
    dst[n] = '\0';
    return dst;
}

}  // extern "C"
