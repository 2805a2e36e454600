// Name ordering and key successors, against a small model of their rules and
// against the properties every ordering must keep:
//  - ipacl_cmp_name returns 1, 2 or 4, is reflexive and antisymmetric, and
//    equals the model (shorter first; equal lengths by the first 29
//    characters lowered, all-digit forms by value, others as signed bytes);
//  - ipacl_cmp_eq_name is symmetric, equals the model (whole names, case
//    ignored), and equality there implies equality in ipacl_cmp_name;
//  - ipacl_cmp_prof, ipacl_cmp_filter and ipacl_cmp_if_prof agree with the
//    name and index orders, given bare keys in exact-size blocks (the order
//    reads only the key fields);
//  - ipacl_next_prof, ipacl_next_filter and ipacl_next_if_prof step each key
//    exactly as the model does, stay inside the key, and leave it unchanged
//    when they report the end of the walk.
#include <ipacl/cmp.h>
#include <ipacl/mm.h>

#include <cctype>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "fuzz_support.h"
#include "platform_stub.h"

namespace {

constexpr size_t kNameMax = IPACL_NAME_SIZE - 1;  // a name ends inside its field

// ---- model ----------------------------------------------------------------

void canonical(const char *name, char out[32]) {
    std::memset(out, 0, 32);
    size_t n = std::strlen(name);
    if (n > 29) n = 29;
    for (size_t i = 0; i < n; ++i) out[i] = char(std::tolower(static_cast<unsigned char>(name[i])));
}

bool all_digits(const char *s) {
    for (; *s; ++s)
        if (!std::isdigit(static_cast<unsigned char>(*s))) return false;
    return true;
}

uint32_t to_int(const char *s) {
    uint32_t v = 0, place = 1;
    for (size_t i = std::strlen(s); i-- > 0;) {
        v += uint32_t(s[i] - '0') * place;
        place *= 10;
    }
    return v;
}

uint32_t model_cmp_name(const char *a, const char *b) {
    size_t la = std::strlen(a), lb = std::strlen(b);
    if (la != lb) return la < lb ? IPACL_CMP_LT : IPACL_CMP_GT;
    if (la == 0) return IPACL_CMP_EQ;
    char ca[32], cb[32];
    canonical(a, ca);
    canonical(b, cb);
    if (all_digits(ca) && all_digits(cb)) {
        uint32_t va = to_int(ca), vb = to_int(cb);
        return va < vb ? IPACL_CMP_LT : va > vb ? IPACL_CMP_GT : IPACL_CMP_EQ;
    }
    for (int i = 0; i < 31; ++i) {
        int8_t x = int8_t(ca[i]), y = int8_t(cb[i]);
        if (x != y) return x < y ? IPACL_CMP_LT : IPACL_CMP_GT;
        if (x == 0) return IPACL_CMP_EQ;
    }
    return IPACL_CMP_EQ;
}

uint32_t model_cmp_eq_name(const char *a, const char *b) {
    size_t la = std::strlen(a), lb = std::strlen(b);
    if (la != lb) return IPACL_CMP_NE;
    for (size_t i = 0; i < la; ++i)
        if (std::tolower(static_cast<unsigned char>(a[i])) !=
            std::tolower(static_cast<unsigned char>(b[i])))
            return IPACL_CMP_NE;
    return IPACL_CMP_EQ;
}

uint32_t model_cmp_index(uint32_t a, uint32_t b) {
    return a < b ? IPACL_CMP_LT : a > b ? IPACL_CMP_GT : IPACL_CMP_EQ;
}

uint32_t mirror(uint32_t r) {
    return r == IPACL_CMP_LT ? IPACL_CMP_GT : r == IPACL_CMP_GT ? IPACL_CMP_LT : r;
}

// Steps a name held in a 68-byte field; false at the end of the walk.
bool model_next_name(char *name) {
    if (all_digits(name) && name[0]) {
        uint32_t v = to_int(name);
        if (v == 0xFFFFFFFFu) return false;
        std::snprintf(name, IPACL_NAME_SIZE, "%u", v + 1);
        return true;
    }
    if (name[0] == 0) return false;
    for (size_t i = 0; name[i]; ++i) {
        int c = int8_t(name[i]);
        if (c + 1 < 0 || c + 1 > 127) continue;
        for (int ch = c + 1; ch <= 127; ++ch)
            if (std::isprint(ch)) {
                name[i] = char(ch);
                return true;
            }
    }
    return false;
}

// ---- checks ---------------------------------------------------------------

template <typename T>
T *exact_copy(const T &v) {
    T *p = static_cast<T *>(std::malloc(sizeof(T)));
    std::memcpy(p, &v, sizeof(T));
    return p;
}

void check_names(const char *a, const char *b) {
    uint32_t ab = ipacl_cmp_name(a, b), ba = ipacl_cmp_name(b, a);
    FUZZ_CHECK(ab == IPACL_CMP_LT || ab == IPACL_CMP_GT || ab == IPACL_CMP_EQ,
               "ipacl_cmp_name returned %u", ab);
    FUZZ_CHECK(ba == mirror(ab),
               "ipacl_cmp_name not antisymmetric: (a,b) %u, (b,a) %u for \"%s\" \"%s\"", ab, ba, a,
               b);
    FUZZ_CHECK(ipacl_cmp_name(a, a) == IPACL_CMP_EQ, "ipacl_cmp_name(a, a) not equal for \"%s\"",
               a);
    uint32_t want = model_cmp_name(a, b);
    FUZZ_CHECK(ab == want, "ipacl_cmp_name(\"%s\", \"%s\") = %u, rules give %u", a, b, ab, want);

    uint32_t eq = ipacl_cmp_eq_name(a, b);
    FUZZ_CHECK(eq == ipacl_cmp_eq_name(b, a), "ipacl_cmp_eq_name not symmetric");
    FUZZ_CHECK(eq == model_cmp_eq_name(a, b), "ipacl_cmp_eq_name(\"%s\", \"%s\") = %u", a, b, eq);
    FUZZ_CHECK(eq != IPACL_CMP_EQ || ab == IPACL_CMP_EQ,
               "names equal ignoring case but ordered apart: \"%s\" \"%s\"", a, b);
}

void check_keys(const char *a, const char *b, uint32_t fa, uint32_t fb, uint32_t ia, uint32_t da,
                uint32_t ib, uint32_t db) {
    ipacl_prof_key pa{}, pb{};
    std::strcpy(pa.name, a);
    std::strcpy(pb.name, b);
    ipacl_prof_key *xa = exact_copy(pa), *xb = exact_copy(pb);
    uint32_t names = model_cmp_name(a, b);
    FUZZ_CHECK(ipacl_cmp_prof(reinterpret_cast<const ipacl_prof *>(xa),
                              reinterpret_cast<const ipacl_prof *>(xb)) == names,
               "ipacl_cmp_prof differs from the name order");
    FUZZ_CHECK(
        ipacl_cmp_eq_prof(reinterpret_cast<const ipacl_prof *>(xa),
                          reinterpret_cast<const ipacl_prof *>(xb)) == model_cmp_eq_name(a, b),
        "ipacl_cmp_eq_prof differs from the name equality");
    std::free(xa);
    std::free(xb);

    ipacl_filter_key ka{}, kb{};
    std::strcpy(ka.prof_name, a);
    std::strcpy(kb.prof_name, b);
    ka.filter_index = fa;
    kb.filter_index = fb;
    ipacl_filter_key *ya = exact_copy(ka), *yb = exact_copy(kb);
    uint32_t want = names != IPACL_CMP_EQ ? names : model_cmp_index(fa, fb);
    uint32_t got = ipacl_cmp_filter(reinterpret_cast<const ipacl_filter *>(ya),
                                    reinterpret_cast<const ipacl_filter *>(yb));
    FUZZ_CHECK(got == want, "ipacl_cmp_filter = %u, name then index give %u", got, want);
    std::free(ya);
    std::free(yb);

    ipacl_if_prof_key ba{ia, da}, bb{ib, db};
    ipacl_if_prof_key *za = exact_copy(ba), *zb = exact_copy(bb);
    want = ia != ib ? model_cmp_index(ia, ib) : model_cmp_index(da, db);
    got = ipacl_cmp_if_prof(reinterpret_cast<const ipacl_if_prof *>(za),
                            reinterpret_cast<const ipacl_if_prof *>(zb));
    FUZZ_CHECK(got == want, "ipacl_cmp_if_prof = %u, index then direction give %u", got, want);
    FUZZ_CHECK(ipacl_cmp_eq_if_prof(za, zb) == (ia == ib && da == db ? IPACL_CMP_EQ : IPACL_CMP_NE),
               "ipacl_cmp_eq_if_prof");
    std::free(za);
    std::free(zb);
}

void check_successors(const char *name, uint32_t index, uint32_t if_index, uint32_t dir) {
    // Profile key.
    ipacl_prof_key start{};
    std::strcpy(start.name, name);
    ipacl_prof_key *key = exact_copy(start);
    ipacl_prof_key want = start;
    bool stepped = model_next_name(want.name);
    ipacl_rc rc = ipacl_next_prof(key);
    bool empty_quirk = name[0] == 0;  // "" is all digits to ipacl_str_isdigit
    if (!empty_quirk) {
        FUZZ_CHECK(rc == (stepped ? IPACL_OK : IPACL_E_FAIL), "ipacl_next_prof(\"%s\") = 0x%x",
                   name, rc);
        FUZZ_CHECK(std::memcmp(key, &want, sizeof want) == 0,
                   "ipacl_next_prof(\"%s\") gave \"%.67s\", the rules give \"%s\"", name, key->name,
                   want.name);
    } else {
        FUZZ_CHECK(rc == IPACL_E_FAIL ? std::memcmp(key, &start, sizeof start) == 0
                                      : rc == IPACL_OK && std::strcmp(key->name, "1") == 0,
                   "ipacl_next_prof of the empty name = 0x%x \"%.67s\"", rc, key->name);
    }
    std::free(key);

    // Filter key.
    ipacl_filter_key fstart{};
    std::strcpy(fstart.prof_name, name);
    fstart.filter_index = index;
    ipacl_filter_key *fkey = exact_copy(fstart);
    ipacl_filter_key fwant = fstart;
    bool fstepped = true;
    if (index != 0xFFFFFFFFu) {
        fwant.filter_index = index + 1;
    } else if (model_next_name(fwant.prof_name)) {
        fwant.filter_index = 0;
    } else {
        fstepped = false;
        fwant = fstart;
    }
    rc = ipacl_next_filter(fkey);
    if (!(empty_quirk && index == 0xFFFFFFFFu)) {
        FUZZ_CHECK(rc == (fstepped ? IPACL_OK : IPACL_E_FAIL), "ipacl_next_filter = 0x%x", rc);
        FUZZ_CHECK(std::memcmp(fkey, &fwant, sizeof fwant) == 0,
                   "ipacl_next_filter(\"%s\", %u) gave (\"%.67s\", %u)", name, index,
                   fkey->prof_name, fkey->filter_index);
    }
    std::free(fkey);

    // Binding key.
    ipacl_if_prof_key bstart{if_index, dir};
    ipacl_if_prof_key *bkey = exact_copy(bstart);
    ipacl_if_prof_key bwant = bstart;
    bool bstepped = true;
    if (dir == 1) {
        bwant.direction = 2;
    } else if (if_index < 0xFFFFFFFFu) {
        bwant.if_index = if_index + 1;
        bwant.direction = 1;
    } else {
        bstepped = false;
    }
    rc = ipacl_next_if_prof(bkey);
    FUZZ_CHECK(rc == (bstepped ? IPACL_OK : IPACL_E_FAIL), "ipacl_next_if_prof = 0x%x", rc);
    FUZZ_CHECK(bkey->if_index == bwant.if_index && bkey->direction == bwant.direction,
               "ipacl_next_if_prof(%u, %u) gave (%u, %u)", if_index, dir, bkey->if_index,
               bkey->direction);
    std::free(bkey);
}

// Next NUL-separated name of the input, cut to what a name field holds.
void take_name(fuzz::Reader &in, char out[IPACL_NAME_SIZE]) {
    size_t n = 0;
    while (in.left()) {
        char c = char(in.u8());
        if (c == 0) break;
        if (n < kNameMax) out[n++] = c;
    }
    out[n] = 0;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    fuzz_platform::reset();
    fuzz::Reader in(data, size);
    uint32_t fa = in.u32(), fb = in.u32(), ia = in.u32(), da = in.u32(), ib = in.u32(),
             db = in.u32();
    char a[IPACL_NAME_SIZE], b[IPACL_NAME_SIZE], c[IPACL_NAME_SIZE];
    take_name(in, a);
    take_name(in, b);
    take_name(in, c);

    check_names(a, b);
    check_names(b, c);
    check_names(a, c);
    check_keys(a, b, fa, fb, ia, da, ib, db);
    check_successors(a, fa, ia, da);
    check_successors(b, fb, ib, db);
    return 0;
}
