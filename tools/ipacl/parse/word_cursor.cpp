#include "word_cursor.h"

namespace ipacl_tool {

std::string_view word_cursor::take(std::string_view expected) {
    if (at_end())
        throw word_failure{position(), "",
                           "expected " + std::string(expected) + ", found the end of the filter"};
    return words_[next_++];
}

bool word_cursor::take_if(std::string_view word) {
    if (at_end() || words_[next_] != word) return false;
    ++next_;
    return true;
}

void word_cursor::fail_at(std::size_t position, std::string_view what) const {
    std::string word = position >= 1 && position <= words_.size() ? words_[position - 1] : "";
    throw word_failure{position, word, std::string(what)};
}

std::optional<uint32_t> read_u32(std::string_view word) {
    if (word.empty() || word.size() > 10) return std::nullopt;
    uint64_t value = 0;
    for (char c : word) {
        if (c < '0' || c > '9') return std::nullopt;
        value = value * 10 + static_cast<uint64_t>(c - '0');
    }
    if (value > UINT32_MAX) return std::nullopt;
    return static_cast<uint32_t>(value);
}

}  // namespace ipacl_tool
