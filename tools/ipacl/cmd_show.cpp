// ipacl show: the library's block display of a filter.
#include "commands.h"
#include "filter_input.h"

#include <ipacl/show.h>

#include <memory>

namespace ipacl_tool {

void add_show_command(CLI::App &app, int &status) {
    auto input = std::make_shared<filter_input>();
    CLI::App *sub = app.add_subcommand("show", "Print a filter with ipacl_show_filter");
    add_filter_arguments(*sub, *input);
    sub->callback([input, &status] {
        auto filter = read_filter(*input);
        if (!filter) {
            status = exit_usage;
            return;
        }
        ipacl_show_filter(&*filter);
        status = exit_ok;
    });
}

}  // namespace ipacl_tool
