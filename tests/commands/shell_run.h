#ifndef LUMO_TESTS_COMMANDS_SHELL_RUN_H
#define LUMO_TESTS_COMMANDS_SHELL_RUN_H

#include <optional>
#include <sstream>
#include <string>

#include "lumo/commands/run_shell.h"
#include "tests/commands/subcommand_run.h"

namespace lumo::test {

/// How a conversation is held: with the built-in solver, or with a command.
struct ShellMethod
{
  std::optional<std::string> solver;
  bool eliminates = true;
  std::optional<double> seconds;
};

/// Holds a whole conversation.
[[nodiscard]] inline SubcommandRun run_shell_on(const std::string& text, const ShellMethod& method = {})
{
  commands::ShellOptions options;
  options.method.solver_command = method.solver;
  options.method.eliminates = method.eliminates;
  options.method.seconds = method.seconds;
  std::istringstream in(text);
  std::ostringstream out;
  std::ostringstream err;
  const int status = commands::run_shell(options, in, out, err);
  return {status, out.str(), err.str()};
}

}  // namespace lumo::test

#endif
