#ifndef LUMO_SOLVERS_SOLVER_PROCESS_H
#define LUMO_SOLVERS_SOLVER_PROCESS_H

#include <functional>
#include <span>
#include <string>
#include <string_view>

#include "lumo/solvers/answer.h"
#include "lumo/solvers/child_process.h"
#include "lumo/solvers/solver_limits.h"
#include "lumo/terms/term_manager.h"

namespace lumo::solvers {

/// Solves the conjunction of the assertions, Boolean terms of the manager, with a program that reads an
/// SMT-LIB 2 script from its standard input. `/bin/sh -c` runs the command, so it may have arguments in
/// quotes, be a pipeline, and so on. The model has values for constants that occur in the assertions.
///
/// The first line of the output that is an answer counts, whatever follows `unsat` and `unknown` and whatever the
/// exit status: solvers report an error if they are asked for a model that they do not have. At the time limit, the
/// program is killed with all processes that it has started, and the answer is unknown. Throws a SolverError for
/// other output, which it quotes; for a model that cannot be read, it contains the line and column.
[[nodiscard]] Solution solve_with_process(TermManager& mgr, const std::string& command,
                                          std::span<const Term* const> assertions,
                                          const SolverLimits& limits);

/// The answer of such a program to the single query of a script, without a model. The limits and failures are those
/// above; the script must not ask for a model.
[[nodiscard]] Solution solve_text_with_process(const std::string& command, std::string_view script,
                                               const SolverLimits& limits);

/// Takes the output of a solver after `sat`. An InputError becomes a SolverError.
using ReadModel = std::function<void(std::string_view output)>;

/// The same for a complete script, which asks for a model if `limits` says so; `read` gets the model.
[[nodiscard]] Solution solve_text_with_process(const std::string& command, std::string_view script,
                                               const SolverLimits& limits, const ReadModel& read);
/// The same for the output of a solver, which `name` names in messages.
[[nodiscard]] Solution read_solver_output(const std::string& name, const ChildOutcome& outcome,
                                          const SolverLimits& limits, const ReadModel& read);

}  // namespace lumo::solvers

#endif
