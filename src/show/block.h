// Block-style displays as data: a display is a constexpr list of rows, each
// a label and the formatter of one field, printed by one engine as
// "<label padded to the column><value>\n".
#pragma once

#include <cstddef>
#include <cstdint>

#include "show/field_text.h"

namespace ipacl::show {

inline constexpr int kLabelWidth = 24;

enum class Line : uint8_t { Field, Separator, Blank };

struct Row {
    Line line;
    const char *label;
    uint32_t offset;  // of the field inside the record
    Format format;
};

constexpr Row field(const char *label, size_t offset, Format format) {
    return Row{Line::Field, label, static_cast<uint32_t>(offset), format};
}

// "----------------------  ", framing a record's fields.
inline constexpr Row kSeparator{Line::Separator, nullptr, 0, nullptr};
// An empty line, opening the displays of the manager's tables.
inline constexpr Row kBlankLine{Line::Blank, nullptr, 0, nullptr};

void print_rows(const void *record, const Row *rows, size_t count, int label_width);

template <size_t N>
void print_block(const void *record, const Row (&rows)[N], int label_width = kLabelWidth) {
    print_rows(record, rows, N, label_width);
}

}  // namespace ipacl::show
