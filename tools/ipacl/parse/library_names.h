// Reading a word back into the value whose text the library prints.  The
// library is the only source of the vocabulary: a value has a name exactly
// when its ipacl_str_* text is not its plain decimal number.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace ipacl_tool {

using text_function = uint32_t (*)(uint32_t value, char *dst);

// The value in [first, last] whose text is `word`, the lowest if several.
std::optional<uint32_t> value_named(text_function text, uint32_t first, uint32_t last,
                                    std::string_view word);

// Every name of the range, joined with ", " and a final " or ", for messages.
std::string names_of(text_function text, uint32_t first, uint32_t last);

// The library's text of one value, for messages.
std::string_view text_of(text_function text, uint32_t value, char (&buffer)[64]);

}  // namespace ipacl_tool
