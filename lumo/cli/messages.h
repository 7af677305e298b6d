#ifndef LUMO_CLI_MESSAGES_H
#define LUMO_CLI_MESSAGES_H

#include <string>

#include <CLI/CLI.hpp>

namespace lumo::cli {

/// One sentence about a command line that cannot be parsed, with a suggestion if there is a near word, and the
/// command that prints the help. The app is the one that found the error.
[[nodiscard]] std::string explain(const CLI::App& app, const CLI::ParseError& error);

}  // namespace lumo::cli

#endif
