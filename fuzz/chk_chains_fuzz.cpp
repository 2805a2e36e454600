// The whole-record check chains on arbitrary filters, profiles and bindings.
// For every chain and record:
//  - no crash, and the record is only read (it lives in an exact-size block);
//  - the result is 0, a code that one of the chain's steps can return, or
//    (quen bindings) the platform's own code;
//  - on success the buffer holds the empty string; on a failure with text it
//    holds exactly one message, which matches one of that code's formats
//    and fits IPACL_ERR_TEXT_SIZE with its terminator; nothing is written
//    past it;
//  - a NULL buffer gives the same result (except the two chains that need a
//    buffer for the address-type messages).
#include <ipacl/chk.h>

#include <cstdlib>
#include <cstring>
#include <initializer_list>

#include "fuzz_support.h"
#include "message_match.h"
#include "platform_stub.h"

namespace {

enum Rec { kFilter, kProf, kIfProf };

struct Chain {
    const char *name;
    Rec rec;
    uint32_t (*check)(const void *record, char *err);
    std::initializer_list<uint32_t> codes;
    bool needs_buffer;
};

#define CHK(fn, type) [](const void *r, char *err) { return fn(static_cast<const type *>(r), err); }

// Codes of the field checks, by step.
#define NAME 0x407f0022u, 0x407f001cu
#define RSV 0x407f002cu, 0x407f002bu
#define ACTION 0x407f0008u, 0x407f000fu, 0x407f002au
#define ADDR 0x407f0009u
#define PROTO 0x407f0016u
#define MASK 0x407f0018u
#define PORTS 0x407f0011u, 0x407f0010u, 0x407f0013u, 0x407f0012u, 0x407f0029u
#define TCP 0x407f000bu, 0x407f0024u
#define ICMP 0x407f000du, 0x407f000cu, 0x407f0025u, 0x407f0026u
#define PREC 0x407f002eu, 0x407f0014u, 0x407f0017u

const Chain kChains[] = {
    {"ipacl_chk_filter",
     kFilter,
     CHK(ipacl_chk_filter, ipacl_filter),
     {NAME, ACTION, ADDR, PROTO, PORTS, TCP, ICMP, PREC},
     true},
    {"ipacl_chk_quen_filter",
     kFilter,
     CHK(ipacl_chk_quen_filter, ipacl_filter),
     {NAME, RSV, ACTION, ADDR, PROTO, MASK, PORTS, TCP, ICMP, PREC},
     true},
    {"ipacl_chk_cli_filter",
     kFilter,
     CHK(ipacl_chk_cli_filter, ipacl_filter),
     {RSV, ACTION, MASK, PORTS, TCP, ICMP},
     false},
    {"ipacl_chk_gen_filter",
     kFilter,
     CHK(ipacl_chk_gen_filter, ipacl_filter),
     {NAME, ACTION, PROTO, MASK},
     false},
    {"ipacl_chk_prof", kProf, CHK(ipacl_chk_prof, ipacl_prof), {NAME, 0x407f0015u}, false},
    {"ipacl_chk_quen_prof", kProf, CHK(ipacl_chk_quen_prof, ipacl_prof), {NAME, RSV}, false},
    {"ipacl_chk_if_prof",
     kIfProf,
     CHK(ipacl_chk_if_prof, ipacl_if_prof),
     {0x407f000au, NAME},
     false},
    {"ipacl_chk_gen_if_prof",
     kIfProf,
     CHK(ipacl_chk_gen_if_prof, ipacl_if_prof),
     {0x407f000au, NAME},
     false},
    {"ipacl_chk_cli_if_prof", kIfProf, CHK(ipacl_chk_cli_if_prof, ipacl_if_prof), {RSV}, false},
    {"ipacl_chk_quen_if_prof",
     kIfProf,
     CHK(ipacl_chk_quen_if_prof, ipacl_if_prof),
     {0x407f000au, NAME, RSV, 0x407f000eu},
     false},
};

struct Format {
    uint32_t code;
    const char *text;
};

const Format kFormats[] = {
    {0x407f0008u, "bad action %s"},
    {0x407f0009u, "bad address type %s"},
    {0x407f0009u, "source prefix type should be IPv4"},
    {0x407f0009u, "destination prefix type should be IPv4"},
    {0x407f0009u, "source prefix type should be IPv6"},
    {0x407f0009u, "destination prefix type should be IPv6"},
    {0x407f000au, "bad interface direction %s"},
    {0x407f000bu, "invalid established %u"},
    {0x407f000cu, "invalid icmp code %s"},
    {0x407f000du, "invalid icmp type %s"},
    {0x407f000fu, "invalid log-deny %u"},
    {0x407f0010u, "bad high %s %s"},
    {0x407f0011u, "bad low %s %s"},
    {0x407f0012u, "bad %s operation %s"},
    {0x407f0013u, "%s low %s > high %s"},
    {0x407f0013u, "bad low %s high %s for %s operation %s"},
    {0x407f0013u, "low %s != high %s for %s operation %s"},
    {0x407f0014u, "bad precedence %s"},
    {0x407f0015u, "bad profile type %s"},
    {0x407f0016u, "bad protocol %s"},
    {0x407f0017u, "bad tos %s"},
    {0x407f0018u, "invalid wildcard %u.%u.%u.%u"},
    {0x407f001cu, "length of '%s' exceed %u characters"},
    {0x407f0022u, "missing name"},
    {0x407f0024u, "establshed is not allowed for %s"},
    {0x407f0025u, "icmp code %s is not allowed for %s"},
    {0x407f0025u, "icmp code %s is not allowed without icmp type"},
    {0x407f0026u, "icmp type %s is not allowed for %s"},
    {0x407f0029u, "%s %s is not allowed for %s"},
    {0x407f0029u, "%s operation %s low %s high %s is not allowed for %s"},
    {0x407f002au, "log-deny is not allowed for %s"},
    {0x407f002bu, "%s is reserved and is not allowed as part of an access list name"},
    {0x407f002cu, "%s is not alphanumeric"},
    {0x407f002eu, "setting both precedence %s and tos %s is not allowed"},
};

// Platform codes the stub can answer with; none is a library code.
constexpr int kTypeRc = 7, kFieldsRc = 0x10001, kPortInitRc = 0x20002;

size_t record_size(Rec r) {
    return r == kFilter ? sizeof(ipacl_filter)
           : r == kProf ? sizeof(ipacl_prof)
                        : sizeof(ipacl_if_prof);
}

// The name field of each record ends inside it: names are at most 64
// characters in a 68-byte field.
void terminate_name(Rec r, uint8_t *rec) {
    size_t off = r == kIfProf ? offsetof(ipacl_if_prof, prof_name) : 0;
    rec[off + IPACL_NAME_SIZE - 1] = 0;
}

constexpr size_t kGuard = 256;
constexpr uint8_t kGuardByte = 0xEE;

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    fuzz::Reader in(data, size);
    const Chain &chain = kChains[in.u8() % (sizeof kChains / sizeof kChains[0])];

    fuzz_platform::reset();
    auto &plat = fuzz_platform::state();
    uint8_t ctl = in.u8();
    plat.if_type = in.u8();
    plat.field_first = in.u8();
    plat.field_second = in.u8();
    plat.port_init_index = in.u32();
    if (ctl & 1) plat.type_rc = kTypeRc;
    if (ctl & 2) plat.fields_rc = kFieldsRc;
    if (ctl & 4) plat.port_init_rc = kPortInitRc;

    size_t rsize = record_size(chain.rec);
    uint8_t *rec = static_cast<uint8_t *>(std::malloc(rsize));
    in.bytes(rec, rsize);
    terminate_name(chain.rec, rec);
    if (chain.rec == kIfProf && (ctl & 8)) {
        // Let the management-port test reach its last comparison's equal case.
        std::memcpy(&plat.port_init_index, rec + offsetof(ipacl_if_prof, if_index), 4);
    }
    uint8_t *before = static_cast<uint8_t *>(std::malloc(rsize));
    std::memcpy(before, rec, rsize);

    char *err = static_cast<char *>(std::malloc(IPACL_ERR_TEXT_SIZE + kGuard));
    std::memset(err, 'X', IPACL_ERR_TEXT_SIZE);
    std::memset(err + IPACL_ERR_TEXT_SIZE, kGuardByte, kGuard);

    uint32_t rc = chain.check(rec, err);

    FUZZ_CHECK(std::memcmp(rec, before, rsize) == 0, "%s changed its record", chain.name);
    for (size_t i = 0; i < kGuard; ++i)
        FUZZ_CHECK(uint8_t(err[IPACL_ERR_TEXT_SIZE + i]) == kGuardByte,
                   "%s wrote past the %d-byte error buffer (rc 0x%x)", chain.name,
                   IPACL_ERR_TEXT_SIZE, rc);
    FUZZ_CHECK(std::memchr(err, 0, IPACL_ERR_TEXT_SIZE) != nullptr,
               "%s left no terminated text in the error buffer (rc 0x%x)", chain.name, rc);

    bool platform_code =
        chain.rec == kIfProf &&
        (rc == uint32_t(kTypeRc) || rc == uint32_t(kFieldsRc) || rc == uint32_t(kPortInitRc));
    bool known = rc == 0 || platform_code;
    for (uint32_t c : chain.codes) known = known || rc == c;
    FUZZ_CHECK(known, "%s returned 0x%x, which none of its steps returns (text \"%s\")", chain.name,
               rc, err);

    if (rc == 0 || rc == 0x407f000eu || platform_code) {
        FUZZ_CHECK(err[0] == 0, "%s returned 0x%x and left text \"%s\"", chain.name, rc, err);
    } else {
        size_t n = 0;
        for (const Format &f : kFormats)
            if (f.code == rc && fuzz::matches_format(err, f.text)) ++n;
        FUZZ_CHECK(n >= 1, "%s returned 0x%x with text \"%s\", which is none of its messages",
                   chain.name, rc, err);
    }

    if (!chain.needs_buffer) {
        uint32_t again = chain.check(rec, nullptr);
        FUZZ_CHECK(again == rc, "%s: 0x%x with a buffer, 0x%x without", chain.name, rc, again);
    }

    std::free(err);
    std::free(before);
    std::free(rec);
    return 0;
}
