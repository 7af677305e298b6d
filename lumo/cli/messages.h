#ifndef LUMO_CLI_MESSAGES_H
#define LUMO_CLI_MESSAGES_H

#include <string>

#include <CLI/CLI.hpp>

namespace lumo::cli {

/// One sentence on a command line that cannot be read, with what may have been meant, if that can be told, and
/// where to find help. The app is the one that found the error.
[[nodiscard]] std::string explain(const CLI::App& app, const CLI::ParseError& error);

}  // namespace lumo::cli

#endif
