// Properties of every converter over many generated records.
//
// Each record kind is described here independently of the library: which
// bytes are texts, which are never transferred, which are cleared.  For
// every generated record the suite checks that
//   - host to network and back, in place, restores the record;
//   - out of place gives the in-place result on every transferred byte and
//     leaves every other destination byte as it was;
//   - out of place leaves the source alone.
#include <gtest/gtest.h>

#include <cstring>
#include <functional>
#include <random>
#include <string>
#include <vector>

#include <ipacl/ipacl.h>

namespace {

using Bytes = std::vector<uint8_t>;

// Deterministic on every platform: mt19937 output is fixed by the standard.
struct Rng {
    std::mt19937 gen;
    explicit Rng(uint32_t seed) : gen(seed) {}
    uint32_t below(uint32_t n) { return gen() % n; }
    uint8_t byte() { return uint8_t(gen()); }
    uint8_t nonzero() { return uint8_t(1 + below(255)); }
};

// A generated record in host order and what the test knows about it.
struct Sample {
    Bytes host;
    std::vector<bool> kept;    // bytes a conversion does not transfer
    std::vector<bool> zeroed;  // bytes a conversion sets to 0
    std::string what;
};

class Builder {
  public:
    explicit Builder(Rng &rng) : rng_(rng) {}

    void size(size_t n) {
        while (s_.host.size() < n) {
            s_.host.push_back(rng_.byte());
            s_.kept.push_back(false);
            s_.zeroed.push_back(false);
        }
    }
    // A NUL-terminated text of room `width` at `off`; the bytes after the
    // NUL are not transferred.
    void text(size_t off, size_t width) {
        size_t len = rng_.below(uint32_t(width));
        for (size_t i = 0; i < len; ++i) s_.host[off + i] = rng_.nonzero();
        s_.host[off + len] = 0;
        keep(off + len + 1, width - len - 1);
    }
    // An open-ended text at the end of a message, with bytes after its NUL.
    void tail_text(size_t off) {
        size_t len = rng_.below(40), after = rng_.below(8);
        size(off + len + 1 + after);
        for (size_t i = 0; i < len; ++i) s_.host[off + i] = rng_.nonzero();
        s_.host[off + len] = 0;
        keep(off + len + 1, after);
    }
    void keep(size_t off, size_t n) {
        for (size_t i = 0; i < n; ++i) s_.kept[off + i] = true;
    }
    void zero(size_t off) { s_.zeroed[off] = true; }
    void u32(size_t off, uint32_t v) { std::memcpy(&s_.host[off], &v, 4); }
    // A type or count chosen at random, noted for the failure trace.
    uint32_t pick(std::vector<uint32_t> values) {
        uint32_t v = values[rng_.below(uint32_t(values.size()))];
        s_.what += " " + std::to_string(v);
        return v;
    }
    uint32_t count() { return pick({0, 1, 2, 3}); }
    Sample take() { return std::move(s_); }

  private:
    Rng &rng_;
    Sample s_;
};

// ---- what each record holds besides plain numbers and copied bytes ----

void prof_key(Builder &b, size_t at) { b.text(at, 68); }
void filter_key(Builder &b, size_t at) { b.text(at, 68); }
void prof(Builder &b, size_t at) { b.text(at, 68); }
void prof_info(Builder &b, size_t at) { prof(b, at + 4); }
void if_prof(Builder &b, size_t at) {
    b.text(at + 8, 68);
    b.zero(at + 80);
    b.keep(at + 81, 3);
}
void filter(Builder &b, size_t at) {
    b.text(at, 68);
    b.keep(at + 224, 14);
}
void data(Builder &b, size_t at) {
    filter(b, at);
    b.text(at + 242, 32);
}
void data_info(Builder &b, size_t at) {
    b.text(at, 68);
    b.keep(at + 84, 16);
    b.keep(at + 108, 16);
}
void group(Builder &b, size_t at) {
    if_prof(b, at);
    b.text(at + 88, 32);
    b.text(at + 124, 16);
}
void intf(Builder &b, size_t at) { b.text(at + 12, 16); }
void intf_info(Builder &b, size_t at) { b.text(at + 4, 16); }
void list(Builder &b, size_t at) {
    prof(b, at);
    b.text(at + 88, 32);
}
void mgmt(Builder &b, size_t at) { b.keep(at + 28, 4); }
void plain(Builder &, size_t) {}
void kept_word4(Builder &b, size_t) { b.keep(4, 4); }
void ipt_chain(Builder &b, size_t at) {
    b.text(at + 4, 32);
    b.text(at + 36, 30);
}
void rule_info(Builder &b, size_t at) { b.text(at + 116, 30); }

void match(Builder &b, size_t at) {
    uint32_t type = b.pick({1, 2, 3, 9, 10, 0, 4, 11, 13});
    b.u32(at, type);
    size_t info = at + 4;
    switch (type) {
        case 1:
            b.keep(info + 12, 20);
            break;
        case 2:
            b.keep(info + 9, 23);
            break;
        case 3:
            b.keep(info + 4, 28);
            break;
        case 9:
            b.keep(info + 2, 30);
            break;
        case 10:
            b.text(info + 2, 30);
            break;
        default:
            b.keep(info, 32);
    }
}
void ipt_rule(Builder &b, size_t at) {
    b.text(at, 32);
    b.text(at + 148, 30);
    uint32_t n = b.count();
    b.u32(at + 178, n);
    for (uint32_t i = 0; i < 3; ++i) {
        if (i < n)
            match(b, at + 182 + 36 * i);
        else
            b.keep(at + 182 + 36 * i, 36);
    }
}
void cfm(Builder &b, size_t at) {
    uint32_t type = b.pick({1, 2, 3, 0, 4});
    b.u32(at, type);
    switch (type) {
        case 1:
            b.keep(at + 16, 64);
            break;
        case 2:
            b.text(at + 8, 68);
            break;
        case 3:
            b.text(at + 8, 68);
            b.keep(at + 76, 4);
            break;
        default:
            b.keep(at + 8, 72);
    }
}

using Describe = void (*)(Builder &, size_t);

// A counted array: `count` at `count_at`, elements from `first`.
void counted(Builder &b, size_t count_at, size_t first, size_t elem_size, Describe elem) {
    uint32_t n = b.count();
    b.size(first + n * elem_size);
    b.u32(count_at, n);
    for (uint32_t i = 0; i < n; ++i) elem(b, first + i * elem_size);
}

struct Element {
    uint32_t type;
    size_t size;
    Describe describe;
};

// A typed array: count at 0, type at 4, elements from `first`.  Other types
// carry some bytes that no conversion touches.
void typed(Builder &b, size_t first, std::vector<Element> elems, std::vector<uint32_t> others) {
    for (const Element &e : elems) others.push_back(e.type);
    uint32_t type = b.pick(others), n = b.count();
    b.size(first);
    b.u32(0, n);
    b.u32(4, type);
    for (const Element &e : elems) {
        if (e.type != type) continue;
        b.size(first + n * e.size);
        for (uint32_t i = 0; i < n; ++i) e.describe(b, first + i * e.size);
        return;
    }
    b.size(first + 64);
    b.keep(first, 64);
}

using Convert = std::function<void(void *, void *)>;

struct Kind {
    const char *name;
    std::function<void(Builder &)> build;
    Convert hton;  // empty for records that only arrive
    Convert ntoh;
    bool hton_writes_source = false;  // the profile-info asymmetry
};

#define CONV(dir, stem)                                                                       \
    [](void *s, void *d) {                                                                    \
        ipacl_##dir##_##stem(static_cast<ipacl_##stem *>(s), static_cast<ipacl_##stem *>(d)); \
    }
#define PAIR(stem) CONV(hton, stem), CONV(ntoh, stem)
// A fixed record of `size` bytes.
#define FIXED(stem, bytes, describe)                                 \
    {                                                                \
#stem, [](Builder &b) { b.size(bytes); describe(b, 0); }, PAIR(stem) \
    }
// A fixed record of `bytes` with `describe` at `at`.
#define HOLDS(stem, bytes, describe, at)                              \
    {                                                                 \
#stem, [](Builder &b) { b.size(bytes); describe(b, at); }, PAIR(stem) \
    }
// A counted array after a fixed part of `bytes`.
#define COUNTED(stem, bytes, fixed, count_at, first, elem_size, elem)                                  \
    {                                                                                                  \
#stem, [](Builder &b) { b.size(bytes); fixed(b, 8); counted(b, count_at, first, elem_size, elem); }, \
     PAIR(stem) \
    }

std::vector<Kind> kinds() {
    return {
        FIXED(prof_key, 68, prof_key),
        FIXED(if_prof_key, 8, plain),
        FIXED(filter_key, 72, filter_key),
        FIXED(list_key, 76, prof_key),
        FIXED(data_key, 80, filter_key),
        FIXED(group_key, 16, plain),
        FIXED(prof, 80, prof),
        {"prof_info",
         [](Builder &b) {
             b.size(84);
             prof_info(b, 0);
         },
         PAIR(prof_info), true},
        FIXED(if_prof, 84, if_prof),
        FIXED(filter, 238, filter),
        FIXED(data, 290, data),
        FIXED(data_info, 148, data_info),
        FIXED(group, 160, group),
        FIXED(group_info, 92, if_prof),
        FIXED(intf, 40, intf),
        FIXED(intf_info, 32, intf_info),
        FIXED(list, 1204, list),
        FIXED(mgmt, 32, mgmt),
        FIXED(list_use, 84, prof),
        FIXED(mem_use, 12, plain),
        FIXED(ha, 24, plain),
        {"port_if_created_info",
         [](Builder &b) { b.size(9); },
         {},
         CONV(ntoh, port_if_created_info)},
        {"vni_if_chg",
         [](Builder &b) {
             b.size(8);
             b.tail_text(8);
         },
         {},
         CONV(ntoh, vni_if_chg)},
        {"avm_if_chg",
         [](Builder &b) {
             b.size(8);
             b.tail_text(8);
         },
         {},
         CONV(ntoh, avm_if_chg)},

        FIXED(ipt_entry, 112, plain),
        FIXED(ipt_chain, 74, ipt_chain),
        FIXED(rule_info, 146, rule_info),
        FIXED(ipt_rule, 290, ipt_rule),
        FIXED(match, 36, match),
        FIXED(ipt_tcp, 12, plain),
        {"ipt_udp",
         [](Builder &b) {
             b.size(10);
             b.keep(9, 1);
         },
         PAIR(ipt_udp)},
        FIXED(ipt_icmp, 4, plain),
        FIXED(ipt_tos, 2, plain),
        {"ipt_log",
         [](Builder &b) {
             b.size(32);
             b.text(2, 30);
         },
         PAIR(ipt_log)},
        {"ipt_req",
         [](Builder &b) {
             b.size(48);
             b.text(8, 32);
         },
         PAIR(ipt_req)},
        // Flag bits, first match wins: chain rows, then rules, then summaries.
        {"ipt_rsp",
         [](Builder &b) {
             typed(b, 12,
                   {{1, 74, ipt_chain},
                    {2, 74, ipt_chain},
                    {3, 74, ipt_chain},
                    {19, 74, ipt_chain},
                    {16, 146, rule_info},
                    {32, 290, ipt_rule},
                    {48, 290, ipt_rule}},
                   {0, 256, 512});
         },
         PAIR(ipt_rsp)},

        {"access_req",
         [](Builder &b) {
             b.size(92);
             b.text(12, 68);
         },
         PAIR(access_req)},
        {"access_rsp",
         [](Builder &b) {
             typed(b, 8,
                   {{1, 290, data},
                    {2, 148, data_info},
                    {3, 80, filter_key},
                    {4, 160, group},
                    {5, 92, if_prof},
                    {6, 16, plain},
                    {7, 40, intf},
                    {8, 32, intf_info},
                    {9, 1204, list},
                    {10, 76, prof_key},
                    {11, 32, mgmt}},
                   {0, 12, 0x01000000});
         },
         PAIR(access_rsp)},
        HOLDS(prof_req, 76, prof_key, 8),
        FIXED(if_prof_req, 16, plain),
        HOLDS(filter_req, 80, filter_key, 8),
        COUNTED(prof_rsp, 12, plain, 0, 12, 80, prof),
        COUNTED(if_prof_rsp, 8, plain, 0, 8, 84, if_prof),
        COUNTED(filter_rsp, 12, plain, 0, 12, 238, filter),
        COUNTED(prof_cfg, 8, plain, 0, 8, 80, prof),
        COUNTED(if_prof_cfg, 8, plain, 0, 8, 84, if_prof),
        COUNTED(filter_cfg, 8, plain, 0, 8, 238, filter),
        FIXED(cfm, 80, cfm),
        COUNTED(prof_cfm, 8, kept_word4, 0, 8, 80, cfm),
        COUNTED(if_prof_cfm, 8, kept_word4, 0, 8, 80, cfm),
        COUNTED(filter_cfm, 8, kept_word4, 0, 8, 80, cfm),
        HOLDS(prof_sync, 88, prof, 8),
        HOLDS(if_prof_sync, 92, if_prof, 8),
        HOLDS(filter_sync, 246, filter, 8),
        COUNTED(prof_sync_op, 92, prof, 88, 92, 72, filter_key),
        {"if_prof_sync_op",
         [](Builder &b) {
             b.size(96);
             if_prof(b, 8);
             counted(b, 92, 96, 84, prof_info);
         },
         PAIR(if_prof_sync_op), true},
        COUNTED(filter_sync_op, 250, filter, 246, 250, 72, filter_key),
        {"use_req",
         [](Builder &b) {
             b.size(4);
             b.tail_text(4);
         },
         PAIR(use_req)},
        COUNTED(use_rsp, 4, plain, 0, 4, 84, prof),
        FIXED(in_req, 8, plain),
        {"in_rsp",
         [](Builder &b) {
             typed(b, 8, {{1, 24, plain}, {2, 12, plain}}, {0, 3, 0x02000000});
         },
         PAIR(in_rsp)},
        {"test_req",
         [](Builder &b) {
             b.size(48);
             b.keep(0, 4);
         },
         PAIR(test_req)},
        {"test_rsp",
         [](Builder &b) {
             b.size(12);
             b.keep(0, 4);
         },
         PAIR(test_rsp)},
        FIXED(quen, 112, plain),
    };
}

Bytes noise(Rng &rng, size_t n) {
    Bytes b(n);
    for (uint8_t &x : b) x = rng.byte();
    return b;
}

// Converts `in` out of place over `fill` and checks the result against the
// in-place result `want`: transferred bytes equal, the rest as filled.
void expect_out_of_place(const Convert &conv, const Sample &s, const Bytes &in, const Bytes &want,
                         const Bytes &fill) {
    Bytes src = in, dst = fill;
    conv(src.data(), dst.data());
    for (size_t i = 0; i < in.size(); ++i) {
        if (s.kept[i])
            ASSERT_EQ(dst[i], fill[i]) << "byte " << i << " was written";
        else
            ASSERT_EQ(dst[i], want[i]) << "byte " << i << " differs from in place";
    }
    ASSERT_EQ(src, in) << "the source changed";
}

void PrintTo(const Kind &k, std::ostream *os) { *os << k.name; }

class WireProperty : public ::testing::TestWithParam<Kind> {};

TEST_P(WireProperty, InPlaceAndOutOfPlaceAgree) {
    const Kind &k = GetParam();
    Rng rng(0x1ACE0000u + uint32_t(std::hash<std::string>{}(k.name) & 0xFFFF));
    for (int iter = 0; iter < 300; ++iter) {
        Builder b(rng);
        k.build(b);
        Sample s = b.take();
        SCOPED_TRACE(std::string(k.name) + s.what);
        const size_t n = s.host.size();

        Bytes expected = s.host;
        for (size_t i = 0; i < n; ++i)
            if (s.zeroed[i]) expected[i] = 0;

        if (!k.hton) {
            // Received only: converting twice in place restores the record.
            Bytes twice = s.host;
            k.ntoh(twice.data(), twice.data());
            Bytes once = twice;
            k.ntoh(twice.data(), twice.data());
            ASSERT_EQ(twice, expected);
            expect_out_of_place(k.ntoh, s, s.host, once, noise(rng, n));
            continue;
        }

        Bytes wire = s.host;
        k.hton(wire.data(), wire.data());
        Bytes back = wire;
        k.ntoh(back.data(), back.data());
        ASSERT_EQ(back, expected) << "host to network and back in place";

        if (!k.hton_writes_source) expect_out_of_place(k.hton, s, s.host, wire, noise(rng, n));
        expect_out_of_place(k.ntoh, s, wire, back, noise(rng, n));
    }
}

INSTANTIATE_TEST_SUITE_P(EveryRecord, WireProperty, ::testing::ValuesIn(kinds()),
                         [](const auto &info) { return std::string(info.param.name); });

}  // namespace
