#ifndef LUMO_CLI_BASH_COMPLETION_H
#define LUMO_CLI_BASH_COMPLETION_H

#include <iosfwd>

#include <CLI/CLI.hpp>

namespace lumo::cli {

/// Prints a script that tells bash how to complete command lines of lumo, for all commands and options of the table.
void print_bash_completion(std::ostream& out, const CLI::App& app);

}  // namespace lumo::cli

#endif
