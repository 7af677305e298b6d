#ifndef LUMO_CLI_MAN_PAGE_H
#define LUMO_CLI_MAN_PAGE_H

#include <iosfwd>
#include <string_view>

#include <CLI/CLI.hpp>

namespace lumo::cli {

/// Prints the manual page lumo(1), with all subcommands and options of the table. The date is that of the page.
void print_man_page(std::ostream& out, const CLI::App& app, std::string_view date);

}  // namespace lumo::cli

#endif
