#ifndef LUMO_COMMANDS_RUN_SOLVE_H
#define LUMO_COMMANDS_RUN_SOLVE_H

#include <iosfwd>
#include <optional>
#include <string>

#include "lumo/commands/exit_status.h"
#include "lumo/commands/progress.h"
#include "lumo/commands/solve_script.h"

namespace lumo::commands {

struct SolveOptions
{
  std::string file;  ///< `-` stands for the standard input
  SolveMethod method;
  bool wants_model = false;
  bool wants_statistics = false;
  bool wants_json = false;
  /// The file for the certificate of unsat, if any
  std::optional<std::string> certificate{};
};

/// Does `lumo solve` and returns its exit status: kAnswered for every answer, unknown included.
///
/// Writes the answer to `out` on a line of its own, then the model if the answer is sat and a model was requested.
/// Writes statistics to `err`, and the reason for unknown, if it is known. As JSON, writes one object with all of
/// this to `out`. If the answer is unsat, first writes its certificate, if that is wanted. If a model does not pass the
/// check or the checker refutes the certificate, returns kCheckFailed and writes nothing to `out` or the file.
int run_solve(const SolveOptions& options, std::istream& in, std::ostream& out, std::ostream& err,
              Progress* progress = nullptr);

}  // namespace lumo::commands

#endif
