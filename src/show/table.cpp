#include "show/table.h"

#include <cstdio>

namespace ipacl::show {

void print_header(uint32_t first, const char *const *lines, size_t count) {
    if (first != 1) return;
    for (size_t i = 0; i < count; ++i) printf("%s\n", lines[i]);
}

void print_row(const void *record, const Column *columns, size_t count) {
    const auto *base = static_cast<const uint8_t *>(record);
    char line[2 * kValueSize];
    line[0] = '\0';
    size_t used = 0;
    char value[kValueSize];
    for (size_t i = 0; i < count && used < sizeof line; ++i) {
        const Column &c = columns[i];
        c.format(base + c.offset, value);
        if (c.width > 0) ipacl_str_n(value, c.width);
        const int n = snprintf(line + used, sizeof line - used, "%s%s", value, c.after);
        if (n < 0) break;
        used += static_cast<size_t>(n);
    }
    printf("%s", line);
}

}  // namespace ipacl::show
