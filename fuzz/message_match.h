// Matches an error text against the library's message formats: "%s" stands
// for any text (possibly empty), "%u" for one or more decimal digits, every
// other character for itself.  The whole text must match.
#pragma once

#include <cctype>

namespace fuzz {

inline bool matches_format(const char *text, const char *format) {
    if (*format == 0) return *text == 0;
    if (format[0] == '%' && format[1] == 's') {
        for (const char *t = text;; ++t) {
            if (matches_format(t, format + 2)) return true;
            if (*t == 0) return false;
        }
    }
    if (format[0] == '%' && format[1] == 'u') {
        if (!std::isdigit(static_cast<unsigned char>(*text))) return false;
        const char *t = text;
        while (std::isdigit(static_cast<unsigned char>(*t))) {
            ++t;
            if (matches_format(t, format + 2)) return true;
        }
        return false;
    }
    return *text == *format && matches_format(text + 1, format + 1);
}

}  // namespace fuzz
