#include "show/block.h"

#include <cstdio>

namespace ipacl::show {

void print_rows(const void *record, const Row *rows, size_t count, int label_width) {
    const auto *base = static_cast<const uint8_t *>(record);
    char value[kValueSize];
    for (size_t i = 0; i < count; ++i) {
        const Row &row = rows[i];
        switch (row.line) {
            case Line::Separator:
                printf("----------------------  \n");
                break;
            case Line::Blank:
                printf("\n");
                break;
            case Line::Field:
                row.format(base + row.offset, value);
                printf("%-*s%s\n", label_width, row.label, value);
                break;
        }
    }
}

}  // namespace ipacl::show
