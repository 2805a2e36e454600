// The standard library's character classes and lower-case mapping, read
// from the current locale's tables once per call site rather than through
// one library call per character (the C macros do the same; C++ gets only
// the functions).  Results are those of isalnum, isdigit and tolower.
#pragma once

#include <cctype>

#if defined(__GLIBC__)
#include <ctype.h>
#endif

namespace ipacl {

class CharClass {
  public:
#if defined(__GLIBC__)
    CharClass() : classes_(*__ctype_b_loc()), lower_(*__ctype_tolower_loc()) {}

    bool is_alnum(char c) const { return classes_[byte(c)] & _ISalnum; }
    bool is_digit(char c) const { return classes_[byte(c)] & _ISdigit; }
    char lower(char c) const { return static_cast<char>(lower_[byte(c)]); }

  private:
    static int byte(char c) { return static_cast<unsigned char>(c); }

    const unsigned short *classes_;
    const int *lower_;
#else
    bool is_alnum(char c) const { return isalnum(static_cast<unsigned char>(c)); }
    bool is_digit(char c) const { return isdigit(static_cast<unsigned char>(c)); }
    char lower(char c) const { return static_cast<char>(tolower(static_cast<unsigned char>(c))); }
#endif
};

}  // namespace ipacl
