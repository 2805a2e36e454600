// Walking the words of one filter, with errors that name the word and its
// position.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace ipacl_tool {

// Thrown inside the parser, turned into a parse_error at its edge.
struct word_failure {
    std::size_t position;
    std::string word;
    std::string what;
};

class word_cursor {
  public:
    explicit word_cursor(const std::vector<std::string> &words) : words_(words) {}

    bool at_end() const { return next_ >= words_.size(); }
    // The next word, or "" at the end.
    std::string_view peek() const { return at_end() ? std::string_view() : words_[next_]; }
    // Position (1-based) of the next word.
    std::size_t position() const { return next_ + 1; }

    // Takes the next word; at the end fails with "expected <expected>".
    std::string_view take(std::string_view expected);
    // Takes the next word when it equals `word`.
    bool take_if(std::string_view word);

    [[noreturn]] void fail_at(std::size_t position, std::string_view what) const;
    // Fails on the word just taken.
    [[noreturn]] void fail_last(std::string_view what) const { fail_at(next_, what); }

  private:
    const std::vector<std::string> &words_;
    std::size_t next_ = 0;
};

// A decimal number of 32 bits: digits only, no sign, no blanks.
std::optional<uint32_t> read_u32(std::string_view word);

}  // namespace ipacl_tool
