// The filter that check, show and encode read: its words and the options
// that complete the record (profile, index, address family).
#pragma once

#include "parse/filter_parse.h"

#include <CLI/CLI.hpp>

#include <optional>
#include <string>
#include <vector>

namespace ipacl_tool {

struct filter_input {
    std::vector<std::string> words;
    parse_options options;
    bool ipv4 = false;
    bool ipv6 = false;
};

// Adds FILTER (the words, or one quoted argument), --profile, --index, -4, -6.
void add_filter_arguments(CLI::App &command, filter_input &input);

// The record, or nothing after printing the language's error to stderr.
std::optional<ipacl_filter> read_filter(filter_input &input);

// The filter language in brief, for the commands' help.
extern const char *const filter_language_help;

}  // namespace ipacl_tool
