#ifndef LUMO_COMMANDS_SOLVE_SCRIPT_H
#define LUMO_COMMANDS_SOLVE_SCRIPT_H

#include <optional>
#include <string>

#include "lumo/commands/certify.h"
#include "lumo/commands/phase_clock.h"
#include "lumo/commands/statistics.h"
#include "lumo/smtlib/script_reader.h"
#include "lumo/solvers/answer.h"
#include "lumo/terms/term_manager.h"

namespace lumo::commands {

/// How to solve a script.
struct SolveMethod
{
  bool eliminates = true;
  std::optional<std::string> solver_command;  ///< the built-in solver if empty
  std::optional<double> seconds;              ///< the time limit of the solver, and of the checker
  Certification certification{};              ///< of the answer unsat
};

/// Refuses a time limit that is not one, and a method without a solver or checker, as a SubcommandFailure.
void check_method(const SolveMethod& method);

/// Eliminates, solves the rest, extends the model and checks it. If the answer is sat, the solution has a value
/// for each constant of the script, in the order of their declaration, and every assertion is true under them.
/// No solver is started if nothing is left, or if an assertion of the rest is false.
///
/// If the answer is unsat, stores the certificate in `certificate`, unless it is null. If a certification is wanted, the
/// answer is unsat only if the checker confirms the certificate.
///
/// Throws a CheckFailure if the model does not pass the check or the certificate is refuted, and a SolverError if the
/// solver or the checker fails.
[[nodiscard]] solvers::Solution solve_script(TermManager& mgr, const smtlib::Script& script,
                                             const SolveMethod& method, Statistics& statistics,
                                             PhaseClock& clock, std::string* certificate = nullptr);

}  // namespace lumo::commands

#endif
