// The filter command parser of the ipacl tool, on arbitrary command lines.
//  - no crash and no exception escapes, whatever the words;
//  - a rejected line names a word position inside the line (or one past its
//    end when the filter ended early) and a non-empty message;
//  - an accepted filter prints with ipacl_str_filter_ipv6, the printed
//    command parses again, and printing that gives the same line (the
//    language reads what the library writes; protocols 0 and 41, whose
//    names the library also prints for "any protocol", excepted);
//  - the library's check chains take any parsed record without crashing.
#include <ipacl/chk.h>
#include <ipacl/str_record.h>

#include <cstring>
#include <string>
#include <string_view>

#include "fuzz_support.h"
#include "parse/filter_parse.h"
#include "platform_stub.h"

namespace {

using ipacl_tool::family_choice;
using ipacl_tool::parse_filter;
using ipacl_tool::parse_options;
using ipacl_tool::parse_result;

std::string print(const ipacl_filter &f) {
    char line[512];
    ipacl_rc rc = ipacl_str_filter_ipv6(&f, line, sizeof line);
    FUZZ_CHECK(rc == IPACL_OK, "ipacl_str_filter_ipv6 of a parsed filter: 0x%x", rc);
    return line;
}

// The words of a line joined by single blanks, for reports.
std::string joined(std::string_view text) {
    std::string line;
    for (const std::string &w : ipacl_tool::split_words(text))
        line += (line.empty() ? "" : " ") + w;
    return line;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    if (size == 0) return 0;
    fuzz_platform::reset();
    parse_options options;
    options.family = static_cast<family_choice>(data[0] % 3);
    std::string_view text(reinterpret_cast<const char *>(data + 1), size - 1);

    parse_result r = parse_filter(text, options);
    if (!r.ok) {
        size_t words = ipacl_tool::split_words(text).size();
        FUZZ_CHECK(r.error.position >= 1 && r.error.position <= words + 1,
                   "error at word %zu of %zu", r.error.position, words);
        FUZZ_CHECK(!r.error.message.empty(), "error without a message");
        return 0;
    }

    char err[IPACL_ERR_TEXT_SIZE];
    ipacl_chk_cli_filter(&r.filter, err);
    ipacl_chk_quen_filter(&r.filter, err);

    std::string first = print(r.filter);
    // Protocols 0 and 41 print as "ip" and "ipv6", the library's names of
    // the any-protocol of IPv4 and IPv6 filters: such a line reads back as
    // "any protocol", so it is not compared.
    if (r.filter.protocol == 0 || r.filter.protocol == 41) return 0;
    parse_options again = options;
    again.family = family_choice::automatic;
    parse_result r2 = parse_filter(first, again);
    FUZZ_CHECK(r2.ok, "the printed filter \"%s\" does not parse: %s", first.c_str(),
               r2.error.message.c_str());
    std::string second = print(r2.filter);
    FUZZ_CHECK(second == first, "\"%s\" prints as \"%s\", which reads back as \"%s\"",
               joined(text).c_str(), first.c_str(), second.c_str());
    return 0;
}
