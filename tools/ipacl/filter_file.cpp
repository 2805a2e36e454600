#include "filter_file.h"

#include "parse/filter_parse.h"

namespace ipacl_tool {

filter_file read_filter_file(std::istream &in, const std::string &name) {
    filter_file file;
    parse_options options;
    std::string line;
    for (unsigned number = 1; std::getline(in, line); ++number) {
        line = line.substr(0, line.find('#'));
        if (split_words(line).empty()) continue;
        options.index = static_cast<uint32_t>(file.filters.size() + 1);
        std::string where = name + ":" + std::to_string(number);
        parse_result result = parse_filter(line, options);
        if (!result.ok) {
            file.error = where + ": " + result.error.message;
            return file;
        }
        file.filters.push_back({result.filter, where});
    }
    if (in.bad()) file.error = name + ": read error";
    return file;
}

}  // namespace ipacl_tool
