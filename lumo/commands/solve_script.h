#ifndef LUMO_COMMANDS_SOLVE_SCRIPT_H
#define LUMO_COMMANDS_SOLVE_SCRIPT_H

#include <optional>
#include <string>

#include "lumo/commands/phase_clock.h"
#include "lumo/commands/statistics.h"
#include "lumo/smtlib/script_reader.h"
#include "lumo/solvers/answer.h"
#include "lumo/terms/term_manager.h"

namespace lumo::commands {

/// How a script is solved.
struct SolveMethod
{
  bool eliminates = true;
  std::optional<std::string> solver_command;  ///< else the built-in solver
  std::optional<double> seconds;              ///< that the solver may take
};

/// Eliminates, solves the rest, extends the model and checks it. If the answer is sat, the solution has a value
/// for each constant of the script, in the order of their declaration, and every assertion is true under them.
/// No solver is started if nothing is left to ask or if one of the assertions that are left is false.
///
/// A model that does not pass the check is a CheckFailure, a solver that fails a SolverError.
[[nodiscard]] solvers::Solution solve_script(TermManager& mgr, const smtlib::Script& script,
                                             const SolveMethod& method, Statistics& statistics,
                                             PhaseClock& clock);

}  // namespace lumo::commands

#endif
