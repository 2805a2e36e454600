// Writes the seed corpora of the fuzz targets: small, meaningful inputs in
// each target's input format (valid records in host and in network order,
// records that fail a check at one known step, envelopes right and wrong).
//
//   make_seeds <corpus-dir>      (fuzz/run seeds)
#include <ipacl/records.h>

#include <cstdint>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <string>
#include <vector>

#include "wire_model.h"
#include "wire_tables.h"

namespace fs = std::filesystem;
using Bytes = std::vector<uint8_t>;

namespace {

fs::path g_root;

void write_seed(const std::string &target, const std::string &name, const Bytes &bytes) {
    fs::path dir = g_root / target;
    fs::create_directories(dir);
    FILE *f = std::fopen((dir / name).c_str(), "wb");
    if (!f) {
        std::perror((dir / name).c_str());
        std::exit(1);
    }
    std::fwrite(bytes.data(), 1, bytes.size(), f);
    std::fclose(f);
}

void put32(Bytes &b, size_t at, uint32_t v) { std::memcpy(&b[at], &v, 4); }

template <typename T>
void append(Bytes &b, const T &v) {
    const uint8_t *p = reinterpret_cast<const uint8_t *>(&v);
    b.insert(b.end(), p, p + sizeof v);
}

// ---- wire records -----------------------------------------------------------

using wire_model::Field;
using wire_model::Kind;
using wire_model::Layout;

// The first type value of each distinct element a selector knows.
std::vector<uint32_t> element_types(wire_model::Select select) {
    std::vector<uint32_t> types;
    std::vector<const Layout *> seen;
    for (uint32_t t = 0; t < 64; ++t) {
        const Layout *l = select(t);
        bool fresh = l != nullptr;
        for (const Layout *s : seen) fresh = fresh && s != l;
        if (fresh) {
            types.push_back(t);
            seen.push_back(l);
        }
    }
    return types;
}

// Fills a host-order record of `l` at `base` with plausible values; `variant`
// picks the element types of typed messages and tagged bodies.
void fill(const Layout &l, Bytes &b, size_t base, unsigned variant) {
    if (b.size() < base + l.size) b.resize(base + l.size, 0);
    for (size_t k = 0; k < l.nfields; ++k) {
        const Field &f = l.fields[k];
        size_t at = base + f.off;
        switch (f.kind) {
            case Kind::s16:
                b[at] = 80;
                b[at + 1] = 0;
                break;
            case Kind::s32:
                for (uint32_t w = 0; w < f.size; w += 4)
                    put32(b, at + w, 1 + (w / 4 + variant) % 7);
                break;
            case Kind::s64:
                put32(b, at, 5);
                put32(b, at + 4, 1);
                break;
            case Kind::str: {
                const char *text = f.size >= 32 ? "acl-10" : "eth0";
                std::memcpy(&b[at], text, std::strlen(text));
                break;
            }
            case Kind::tail_str: {
                const char *text = "list1";
                b.resize(at + std::strlen(text) + 1, 0);
                std::memcpy(&b[at], text, std::strlen(text));
                break;
            }
            case Kind::copy:
                for (uint32_t i = 0; i < f.size; ++i) b[at + i] = uint8_t(0x10 + i);
                break;
            case Kind::rec:
            case Kind::swapped:
                fill(*f.rec, b, at, variant);
                break;
            case Kind::counted: {
                uint32_t n = f.max_count ? 1 + variant % f.max_count : 2;
                put32(b, at, n);
                for (uint32_t i = 0; i < n; ++i)
                    fill(*f.rec, b, base + f.elem_off + i * f.rec->size, variant + i);
                break;
            }
            case Kind::typed: {
                std::vector<uint32_t> types = element_types(f.select);
                uint32_t t = types[variant % types.size()];
                const Layout *e = f.select(t);
                put32(b, at, 2);
                put32(b, base + f.type_off, t);
                for (uint32_t i = 0; i < 2; ++i)
                    fill(*e, b, base + f.elem_off + i * e->size, variant + i);
                break;
            }
            case Kind::tagged: {
                std::vector<uint32_t> types = element_types(f.select);
                uint32_t t = types[variant % types.size()];
                put32(b, at, t);
                fill(*f.select(t), b, base + f.elem_off, variant);
                break;
            }
            default:
                break;
        }
    }
}

unsigned variants_of(const Layout &l) {
    unsigned n = 1;
    for (size_t k = 0; k < l.nfields; ++k)
        if (l.fields[k].kind == Kind::typed || l.fields[k].kind == Kind::tagged)
            n = std::max<unsigned>(n, unsigned(element_types(l.fields[k].select).size()));
    return n;
}

void wire_seeds(const std::string &target,
                const std::vector<std::pair<const Layout *, bool>> &pairs) {
    for (size_t i = 0; i < pairs.size(); ++i) {
        const Layout &l = *pairs[i].first;
        for (unsigned v = 0; v < variants_of(l); ++v) {
            Bytes host;
            fill(l, host, 0, v);
            Bytes net = host;
            wire_model::convert(l, wire_model::Dir::hton, net.data(), net.data());
            std::string name = std::string(l.name) + "-" + std::to_string(v);
            if (pairs[i].second) {
                Bytes seed{uint8_t(i), 0};
                seed.insert(seed.end(), host.begin(), host.end());
                write_seed(target, name + "-host", seed);
            }
            Bytes seed{uint8_t(i), 1};
            seed.insert(seed.end(), net.begin(), net.end());
            write_seed(target, name + "-net", seed);
        }
    }
}

#define SEED_PAIR(stem) {&wire_model::stem, true},
#define SEED_NTOH(stem) {&wire_model::stem, false},

// ---- check chains -------------------------------------------------------------

ipacl_filter good_filter() {
    ipacl_filter f{};
    std::strcpy(f.prof_name, "acl1");
    f.filter_index = 10;
    f.action = 2;
    f.addr_type = 1;
    f.src_wildcard = 0x000000ff;
    f.dst_wildcard = 0;
    f.protocol = 6;
    f.src_port_low = 0;
    f.src_port_high = 65535;
    f.dst_port_low = 80;
    f.dst_port_high = 80;
    f.dst_port_op = 4;
    f.icmp_type = f.icmp_code = f.precedence = f.tos = 0xFFFFFFFFu;
    f.snmp_status = 1;
    f.src_addr.family = f.dst_addr.family = 1;
    f.src_addr.prefix_len = 24;
    f.src_addr.addr[0] = 10;
    f.dst_addr.prefix_len = 32;
    f.dst_addr.addr[0] = 192;
    f.dst_addr.addr[1] = 168;
    f.dst_addr.addr[3] = 1;
    return f;
}

Bytes chk_seed(uint8_t chain, uint8_t ctl, uint8_t if_type, uint8_t second, uint32_t port_index,
               const Bytes &record) {
    Bytes b{chain, ctl, if_type, 0, second};
    append(b, port_index);
    b.insert(b.end(), record.begin(), record.end());
    return b;
}

template <typename T>
Bytes bytes_of(const T &v) {
    Bytes b;
    append(b, v);
    return b;
}

void chk_seeds() {
    const char *chains[] = {"filter",      "quen_filter", "cli_filter", "gen_filter",
                            "prof",        "quen_prof",   "if_prof",    "gen_if_prof",
                            "cli_if_prof", "quen_if_prof"};
    ipacl_filter good = good_filter();
    std::vector<std::pair<std::string, ipacl_filter>> filters = {{"good", good}};
    auto variant = [&](const char *name, auto change) {
        ipacl_filter f = good;
        change(f);
        filters.push_back({name, f});
    };
    variant("noname", [](ipacl_filter &f) { f.prof_name[0] = 0; });
    variant("reserved", [](ipacl_filter &f) { std::strcpy(f.prof_name, "ACCESS"); });
    variant("long", [](ipacl_filter &f) {
        std::memset(f.prof_name, 'a', 66);
        f.prof_name[66] = 0;
    });
    variant("logdeny", [](ipacl_filter &f) {
        f.action = 1;
        f.log_deny = 2;
    });
    variant("ipv6", [](ipacl_filter &f) { f.addr_type = 2; });
    variant("proto300", [](ipacl_filter &f) { f.protocol = 300; });
    variant("wildcard", [](ipacl_filter &f) { f.src_wildcard = 0x00ff00ff; });
    variant("gtrange", [](ipacl_filter &f) {
        f.src_port_op = 2;
        f.src_port_low = 1024;
        f.src_port_high = 2000;
    });
    variant("udpest", [](ipacl_filter &f) {
        f.protocol = 17;
        f.established = 1;
    });
    variant("icmpcode", [](ipacl_filter &f) {
        f.protocol = 1;
        f.icmp_type = 3;
        f.icmp_code = 300;
        f.dst_port_op = 0;
        f.dst_port_low = 0;
        f.dst_port_high = 65535;
    });
    variant("prectos", [](ipacl_filter &f) {
        f.precedence = 0;
        f.tos = 0;
    });
    for (uint8_t c = 0; c < 4; ++c)
        for (auto &[name, f] : filters)
            write_seed("chk_chains", std::string(chains[c]) + "-" + name,
                       chk_seed(c, 0, 2, 0, 0, bytes_of(f)));

    ipacl_prof p{};
    std::strcpy(p.name, "acl1");
    p.prof_type = 2;
    p.snmp_status = 1;
    ipacl_prof simple = p;
    simple.prof_type = 1;
    for (uint8_t c = 4; c < 6; ++c) {
        write_seed("chk_chains", std::string(chains[c]) + "-good",
                   chk_seed(c, 0, 2, 0, 0, bytes_of(p)));
        write_seed("chk_chains", std::string(chains[c]) + "-simple",
                   chk_seed(c, 0, 2, 0, 0, bytes_of(simple)));
    }

    ipacl_if_prof b{};
    b.if_index = 0x50001;
    b.direction = 1;
    std::strcpy(b.prof_name, "acl1");
    b.snmp_status = 1;
    ipacl_if_prof dir5 = b;
    dir5.direction = 5;
    for (uint8_t c = 6; c < 10; ++c) {
        write_seed("chk_chains", std::string(chains[c]) + "-good",
                   chk_seed(c, 0, 2, 0, 0, bytes_of(b)));
        write_seed("chk_chains", std::string(chains[c]) + "-dir5",
                   chk_seed(c, 0, 2, 0, 0, bytes_of(dir5)));
    }
    // Management interfaces: the supervisor's own port, another port, a
    // second field set, and each platform failure.
    write_seed("chk_chains", "quen_if_prof-mgmt-own", chk_seed(9, 8, 5, 0, 0, bytes_of(b)));
    write_seed("chk_chains", "quen_if_prof-mgmt-other", chk_seed(9, 0, 5, 0, 7, bytes_of(b)));
    write_seed("chk_chains", "quen_if_prof-mgmt-second", chk_seed(9, 8, 5, 1, 0, bytes_of(b)));
    for (uint8_t fail = 1; fail <= 4; fail <<= 1)
        write_seed("chk_chains", "quen_if_prof-mgmt-fail" + std::to_string(fail),
                   chk_seed(9, uint8_t(8 | fail), 5, 0, 0, bytes_of(b)));
}

// ---- name order and successors -------------------------------------------------

void order_seeds() {
    struct Case {
        const char *name;
        uint32_t words[6];
        std::string names;
    };
    const Case cases[] = {
        {"shorter-first", {5, 7, 5, 1, 5, 2}, std::string("zz\0aaa\0ab", 9)},
        {"case", {1, 1, 4, 2, 6, 1}, std::string("abc\0ABC\0aBc", 11)},
        {"digits", {0xFFFFFFFF, 3, 0xFFFFFFFF, 2, 9, 0}, std::string("10\00009\00099", 12)},
        {"walk-end", {0xFFFFFFFF, 0, 0xFFFFFFFF, 1, 0, 0}, std::string("4294967295\0~~~\0~bc", 19)},
        {"long",
         {1, 2, 3, 4, 5, 6},
         std::string(40, 'a') + std::string(1, '\0') + std::string(28, 'a') + "B" +
             std::string(11, 'c') + std::string(1, '\0') + "x"},
        {"high-bytes", {0, 0, 0, 0, 0, 0}, std::string("\xff\x80z\0\x7f\x7e\0a", 9)},
        {"empty", {0xFFFFFFFF, 1, 0, 3, 0, 4}, std::string("\0\0", 2)},
    };
    for (const Case &c : cases) {
        Bytes b;
        for (uint32_t w : c.words) append(b, w);
        b.insert(b.end(), c.names.begin(), c.names.end());
        write_seed("order", c.name, b);
    }
}

// ---- filter text ------------------------------------------------------------------

void str_filter_seeds() {
    ipacl_filter f = good_filter();
    f.addr_type = 2;
    f.src_addr = {};
    f.src_addr.family = 2;
    f.dst_addr = {};
    f.dst_addr.family = 2;
    f.dst_addr.prefix_len = 32;
    const uint8_t db8[] = {0x20, 0x01, 0x0d, 0xb8};
    std::memcpy(f.dst_addr.addr, db8, 4);
    f.dst_port_op = 0;
    f.established = 1;
    write_seed("str_filter", "ipv6-tcp-www-established", bytes_of(f));

    ipacl_filter icmp = f;
    icmp.protocol = 58;
    icmp.icmp_type = 8;
    icmp.established = 0;
    icmp.log_deny = 1;
    icmp.fragments = 1;
    icmp.action = 1;
    icmp.dst_port_low = 0;
    icmp.dst_port_high = 65535;
    write_seed("str_filter", "ipv6-icmp-log-fragments", bytes_of(icmp));

    ipacl_filter ranges = f;
    ranges.src_port_op = 5;
    ranges.src_port_low = 20;
    ranges.src_port_high = 21;
    ranges.dst_port_op = 0;
    ranges.dst_port_low = 1024;
    ranges.dst_port_high = 65535;
    write_seed("str_filter", "ipv6-range-gt", bytes_of(ranges));

    write_seed("str_filter", "ipv4-long-form", bytes_of(good_filter()));
    ipacl_filter odd = good_filter();
    odd.src_addr.family = 7;
    odd.action = 9;
    odd.src_port_op = 6;
    write_seed("str_filter", "unknown-values", bytes_of(odd));
}

// ---- quen envelope ------------------------------------------------------------------

Bytes envelope(uint32_t op, uint32_t length_word, const Bytes &payload) {
    Bytes e(IPACL_QUEN_SIZE, 0);
    auto be = [&](size_t at, uint32_t v) {
        e[at] = uint8_t(v >> 24);
        e[at + 1] = uint8_t(v >> 16);
        e[at + 2] = uint8_t(v >> 8);
        e[at + 3] = uint8_t(v);
    };
    be(0, op);
    be(4, length_word);
    std::memcpy(&e[12], "text one", 8);
    e.insert(e.end(), payload.begin(), payload.end());
    return e;
}

Bytes quen_seed(uint8_t ctl, const char *t1, const char *t2, const Bytes &payload,
                const Bytes &answer) {
    Bytes b{ctl, 5};
    append(b, uint32_t(7));     // opcode
    append(b, uint32_t(0x99));  // token
    b.push_back(uint8_t(std::strlen(t1)));
    b.insert(b.end(), t1, t1 + std::strlen(t1));
    b.push_back(uint8_t(std::strlen(t2)));
    b.insert(b.end(), t2, t2 + std::strlen(t2));
    b.push_back(uint8_t(payload.size()));
    b.insert(b.end(), payload.begin(), payload.end());
    b.insert(b.end(), answer.begin(), answer.end());
    return b;
}

void quen_seeds() {
    Bytes payload{1, 2, 3, 4, 5, 6, 7, 8};
    write_seed("quen", "answer-ok",
               quen_seed(0, "acl1", "filter", payload, envelope(0, 8, payload)));
    write_seed("quen", "answer-empty", quen_seed(0, "", "", {}, envelope(0, 0, {})));
    write_seed("quen", "answer-length-mismatch",
               quen_seed(0, "a", "b", payload, envelope(0, 9, payload)));
    write_seed("quen", "answer-short",
               quen_seed(0, "a", "b", payload, Bytes{0, 0, 0, 2, 0, 0, 0, 0}));
    write_seed("quen", "send-fails", quen_seed(1 | 4, "a", "b", payload, {}));
    write_seed("quen", "recv-fails-null-texts", quen_seed(2 | 8 | 16, "", "", payload, {}));
}

// ---- the ipacl tool's filter commands ---------------------------------------------

void tool_parse_seeds() {
    const char *lines[] = {
        "permit tcp any 2001:db8::/32 eq www established",
        "deny udp host 10.1.1.1 range 20 21 10.0.0.0 0.0.0.255 gt 1023 log-deny",
        "permit icmp6 any any 8 0 fragments",
        "permit ip any any precedence 5",
        "deny 58 ::/0 host ::1 lt 1024 tos 3",
        "permit tcp 192.168.0.0/16 neq 22 any",
        "deny tcp any any range",
    };
    for (size_t i = 0; i < sizeof lines / sizeof lines[0]; ++i) {
        Bytes b{uint8_t(i % 3)};
        b.insert(b.end(), lines[i], lines[i] + std::strlen(lines[i]));
        write_seed("tool_parse", "line-" + std::to_string(i), b);
    }
}

}  // namespace

int main(int argc, char **argv) {
    if (argc != 2) {
        std::fprintf(stderr, "usage: %s <corpus-dir>\n", argv[0]);
        return 2;
    }
    g_root = argv[1];
    wire_seeds("wire_records", {WIRE_RECORD_PAIRS(SEED_PAIR, SEED_NTOH)});
    wire_seeds("wire_messages", {WIRE_MESSAGE_PAIRS(SEED_PAIR, SEED_NTOH)});
    wire_seeds("wire_ipt", {WIRE_IPT_PAIRS(SEED_PAIR, SEED_NTOH)});
    chk_seeds();
    order_seeds();
    str_filter_seeds();
    quen_seeds();
    tool_parse_seeds();
    return 0;
}
