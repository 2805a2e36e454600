// Table-style displays as data: a header of column titles, printed when the
// caller asks for the first row, and the columns of one row.  Each column is
// formatted, fitted to its width with ipacl_str_n (cut or padded with
// blanks; width 0 keeps the text as formatted) and followed by its own
// separator; the whole row then goes out in one printf.
#pragma once

#include <cstddef>
#include <cstdint>

#include "show/field_text.h"

namespace ipacl::show {

struct Column {
    uint32_t offset;  // of the field inside the record
    Format format;
    int32_t width;      // 0: as formatted
    const char *after;  // text between this column and the next ("\n" last)
};

constexpr Column column(size_t offset, Format format, int32_t width, const char *after) {
    return Column{static_cast<uint32_t>(offset), format, width, after};
}

void print_header(uint32_t first, const char *const *lines, size_t count);
void print_row(const void *record, const Column *columns, size_t count);

template <size_t H, size_t C>
void print_table(uint32_t first, const void *record, const char *const (&header)[H],
                 const Column (&columns)[C]) {
    print_header(first, header, H);
    print_row(record, columns, C);
}

}  // namespace ipacl::show
