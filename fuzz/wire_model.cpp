// The reference converter and the record fitter over the layouts of
// wire_model.h.  Host order is little-endian on every machine the library
// runs on, so "host value" means a little-endian read.
#include "wire_model.h"

#include <algorithm>
#include <cstring>

namespace wire_model {

const Layout *access_element(uint32_t type) {
    static const Layout *const by_type[] = {nullptr,    &data,       &data_info, &data_key,
                                            &group,     &group_info, &group_key, &intf,
                                            &intf_info, &list,       &list_key,  &mgmt};
    return type < 12 ? by_type[type] : nullptr;
}

const Layout *in_element(uint32_t type) { return type == 1 ? &ha : type == 2 ? &mem_use : nullptr; }

const Layout *cfm_key(uint32_t type) {
    return type == 1 ? &if_prof_key : type == 2 ? &filter_key : type == 3 ? &prof_key : nullptr;
}

const Layout *match_info(uint32_t type) {
    switch (type) {
        case 1:
            return &ipt_tcp;
        case 2:
            return &ipt_udp;
        case 3:
            return &ipt_icmp;
        case 9:
            return &ipt_tos;
        case 10:
            return &ipt_log;
        default:
            return nullptr;
    }
}

const Layout *ipt_element(uint32_t flags) {
    if (flags & 3) return &ipt_chain;
    if (flags & 32) return &ipt_rule;
    if (flags & 16) return &rule_info;
    return nullptr;
}

namespace {

uint32_t host32(const uint8_t *p) {
    uint32_t v;
    std::memcpy(&v, p, 4);
    return v;
}

void put_host32(uint8_t *p, uint32_t v) { std::memcpy(p, &v, 4); }

// Reverses n bytes from s into d; s and d may be the same place.
void reverse(const uint8_t *s, uint8_t *d, size_t n) {
    uint8_t tmp[8];
    for (size_t i = 0; i < n; ++i) tmp[i] = s[n - 1 - i];
    std::memcpy(d, tmp, n);
}

void text_copy(const uint8_t *s, uint8_t *d) {
    size_t n = std::strlen(reinterpret_cast<const char *>(s)) + 1;
    std::memmove(d, s, n);
}

// A counting word as the converter of `dir` reads it: from the source before
// conversion (host order) or from the destination after reversal.
uint32_t read_word(Dir dir, uint8_t *s, uint8_t *d, uint32_t off) {
    if (dir == Dir::hton) return host32(s + off);
    reverse(s + off, d + off, 4);
    return host32(d + off);
}

void finish_word(Dir dir, uint8_t *s, uint8_t *d, uint32_t off) {
    if (dir == Dir::hton) reverse(s + off, d + off, 4);
}

void walk(const Layout &l, Dir dir, uint8_t *s, uint8_t *d) {
    for (size_t k = 0; k < l.nfields; ++k) {
        const Field &f = l.fields[k];
        switch (f.kind) {
            case Kind::s16:
                reverse(s + f.off, d + f.off, 2);
                break;
            case Kind::s32:
                for (uint32_t w = 0; w < f.size; w += 4) reverse(s + f.off + w, d + f.off + w, 4);
                break;
            case Kind::s64:
                reverse(s + f.off, d + f.off, 8);
                break;
            case Kind::str:
            case Kind::tail_str:
                text_copy(s + f.off, d + f.off);
                break;
            case Kind::copy:
                std::memmove(d + f.off, s + f.off, f.size);
                break;
            case Kind::none:
                break;
            case Kind::zero:
                d[f.off] = 0;
                break;
            case Kind::rec:
                walk(*f.rec, dir, s + f.off, d + f.off);
                break;
            case Kind::swapped:
                if (dir == Dir::hton)
                    walk(*f.rec, dir, d + f.off, s + f.off);
                else
                    walk(*f.rec, dir, s + f.off, d + f.off);
                break;
            case Kind::counted: {
                uint32_t n = read_word(dir, s, d, f.off);
                for (uint32_t i = 0; i < n; ++i) {
                    uint32_t at = f.elem_off + i * f.rec->size;
                    walk(*f.rec, dir, s + at, d + at);
                }
                finish_word(dir, s, d, f.off);
                break;
            }
            case Kind::typed: {
                uint32_t n = read_word(dir, s, d, f.off);
                uint32_t t = read_word(dir, s, d, f.type_off);
                if (const Layout *e = f.select(t))
                    for (uint32_t i = 0; i < n; ++i) {
                        uint32_t at = f.elem_off + i * e->size;
                        walk(*e, dir, s + at, d + at);
                    }
                finish_word(dir, s, d, f.off);
                finish_word(dir, s, d, f.type_off);
                break;
            }
            case Kind::tagged: {
                uint32_t t = read_word(dir, s, d, f.off);
                if (const Layout *e = f.select(t)) walk(*e, dir, s + f.elem_off, d + f.elem_off);
                finish_word(dir, s, d, f.off);
                break;
            }
        }
    }
}

// Reads a count or type word of the unconverted record in `dir`'s order.
uint32_t read_input(Dir dir, const std::vector<uint8_t> &buf, size_t at) {
    uint32_t v = host32(buf.data() + at);
    return dir == Dir::hton ? v : __builtin_bswap32(v);
}

void write_input(Dir dir, std::vector<uint8_t> &buf, size_t at, uint32_t v) {
    put_host32(buf.data() + at, dir == Dir::hton ? v : __builtin_bswap32(v));
}

constexpr uint32_t kMaxIdleCount = 1024;  // elements walked but not converted

uint32_t clamp_count(uint32_t n, const std::vector<uint8_t> &buf, size_t first, uint32_t size,
                     uint32_t max_count) {
    size_t room = buf.size() > first ? (buf.size() - first) / size : 0;
    if (max_count && n > max_count) n = max_count;
    return n > room ? uint32_t(room) : n;
}

size_t fit_at(const Layout &l, Dir dir, std::vector<uint8_t> &buf, size_t base) {
    size_t end = base + l.size;
    for (size_t k = 0; k < l.nfields; ++k) {
        const Field &f = l.fields[k];
        switch (f.kind) {
            case Kind::str:
                buf[base + f.off + f.size - 1] = 0;
                break;
            case Kind::tail_str:
                buf.back() = 0;
                end = std::max(end, buf.size());
                break;
            case Kind::rec:
            case Kind::swapped:
                fit_at(*f.rec, dir, buf, base + f.off);
                break;
            case Kind::counted: {
                size_t first = base + f.elem_off;
                uint32_t n = clamp_count(read_input(dir, buf, base + f.off), buf, first,
                                         f.rec->size, f.max_count);
                write_input(dir, buf, base + f.off, n);
                for (uint32_t i = 0; i < n; ++i) fit_at(*f.rec, dir, buf, first + i * f.rec->size);
                end = std::max(end, first + size_t(n) * f.rec->size);
                break;
            }
            case Kind::typed: {
                size_t first = base + f.elem_off;
                uint32_t n = read_input(dir, buf, base + f.off);
                const Layout *e = f.select(read_input(dir, buf, base + f.type_off));
                n = e ? clamp_count(n, buf, first, e->size, 0) : std::min(n, kMaxIdleCount);
                write_input(dir, buf, base + f.off, n);
                if (e) {
                    for (uint32_t i = 0; i < n; ++i) fit_at(*e, dir, buf, first + i * e->size);
                    end = std::max(end, first + size_t(n) * e->size);
                }
                break;
            }
            case Kind::tagged:
                if (const Layout *e = f.select(read_input(dir, buf, base + f.off)))
                    fit_at(*e, dir, buf, base + f.elem_off);
                break;
            default:
                break;
        }
    }
    return end;
}

}  // namespace

void convert(const Layout &layout, Dir dir, uint8_t *src, uint8_t *dst) {
    walk(layout, dir, src, dst);
}

size_t fit(const Layout &layout, Dir dir, std::vector<uint8_t> &buf) {
    if (buf.size() < layout.size) buf.resize(layout.size, 0);
    return fit_at(layout, dir, buf, 0);
}

bool reads_destination(const Layout &layout) {
    for (size_t k = 0; k < layout.nfields; ++k) {
        const Field &f = layout.fields[k];
        if (f.kind == Kind::swapped) return true;
        if ((f.kind == Kind::rec || f.kind == Kind::counted) && reads_destination(*f.rec))
            return true;
    }
    return false;
}

}  // namespace wire_model
