#include "library_names.h"

#include <cstdio>
#include <map>
#include <string>
#include <tuple>
#include <vector>

namespace ipacl_tool {
namespace {

struct named_value {
    std::string name;
    uint32_t value;
};

using name_table = std::vector<named_value>;

// Asking the library for every value of the range once per process keeps a
// port word (65536 candidates) from costing 65536 calls each time.
const name_table &names_in(text_function text, uint32_t first, uint32_t last) {
    static std::map<std::tuple<text_function, uint32_t, uint32_t>, name_table> tables;
    auto key = std::make_tuple(text, first, last);
    auto found = tables.find(key);
    if (found != tables.end()) return found->second;

    name_table table;
    char buffer[64];
    char number[16];
    for (uint64_t value = first; value <= last; ++value) {
        buffer[0] = '\0';
        text(static_cast<uint32_t>(value), buffer);
        std::snprintf(number, sizeof number, "%u", static_cast<uint32_t>(value));
        if (std::string_view(buffer) != number && buffer[0] != '\0')
            table.push_back({buffer, static_cast<uint32_t>(value)});
    }
    return tables.emplace(key, std::move(table)).first->second;
}

}  // namespace

std::optional<uint32_t> value_named(text_function text, uint32_t first, uint32_t last,
                                    std::string_view word) {
    for (const named_value &entry : names_in(text, first, last))
        if (entry.name == word) return entry.value;
    return std::nullopt;
}

std::string names_of(text_function text, uint32_t first, uint32_t last) {
    const name_table &table = names_in(text, first, last);
    std::string joined;
    for (std::size_t i = 0; i < table.size(); ++i) {
        if (i > 0) joined += i + 1 == table.size() ? " or " : ", ";
        joined += table[i].name;
    }
    return joined;
}

std::string_view text_of(text_function text, uint32_t value, char (&buffer)[64]) {
    buffer[0] = '\0';
    text(value, buffer);
    return buffer;
}

}  // namespace ipacl_tool
