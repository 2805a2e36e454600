// A file of filters, one a line in the language of `ipacl check`; `#` starts
// a comment and blank lines are skipped.
#pragma once

#include <ipacl/records.h>

#include <istream>
#include <string>
#include <vector>

namespace ipacl_tool {

struct filter_line {
    ipacl_filter filter;
    std::string where;  // NAME:LINE, for messages
};

struct filter_file {
    std::vector<filter_line> filters;
    std::string error;  // NAME:LINE: message, when a line could not be read
};

// Reads every line of `in`; `name` is how messages call the file.  Filter
// indexes count from 1 in the order of the file.  Stops at the first line
// that fails.
filter_file read_filter_file(std::istream &in, const std::string &name);

}  // namespace ipacl_tool
