#ifndef LUMO_COMMANDS_RUN_SHELL_H
#define LUMO_COMMANDS_RUN_SHELL_H

#include <iosfwd>
#include <optional>
#include <string>
#include <string_view>

#include "lumo/commands/exit_status.h"
#include "lumo/commands/solve_script.h"

namespace lumo::commands {

struct ShellOptions
{
  std::string file = "-";  ///< `-` stands for the standard input
  SolveMethod method;
  bool wants_models = false;  ///< after each `sat`, print a model without being asked
  /// The file for the certificates of all queries that are unsat, if any
  std::optional<std::string> certificate{};
};

/// Does `lumo shell` and returns its exit status: kAnswered if no command was answered by an error, kCheckFailed if a
/// model did not pass the check or a certificate was refuted, else kRefused.
///
/// Commands are answered on `out` one by one, each as soon as it is complete in the input. The file for certificates gets
/// its content when the conversation is over.
int run_shell(const ShellOptions& options, std::istream& in, std::ostream& out, std::ostream& err);

/// The same for the commands of a text, without looking for a file.
int answer_commands(const ShellOptions& options, std::string_view text, std::ostream& out);

}  // namespace lumo::commands

#endif
