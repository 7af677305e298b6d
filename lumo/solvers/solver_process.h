#ifndef LUMO_SOLVERS_SOLVER_PROCESS_H
#define LUMO_SOLVERS_SOLVER_PROCESS_H

#include <span>
#include <string>

#include "lumo/solvers/answer.h"
#include "lumo/solvers/solver_limits.h"
#include "lumo/terms/term_manager.h"

namespace lumo::solvers {

/// Solves the conjunction of the assertions, Boolean terms of the manager, with a program that reads an
/// SMT-LIB 2 script from its standard input. `/bin/sh -c` runs the command, so that it may have arguments in
/// quotes, be a pipeline, and so on. The model is of the constants that occur in the assertions.
///
/// The answer is the first line of the output that is one, whatever comes after `unsat` and `unknown` and
/// whatever the exit status: solvers report an error if they are asked for a model that they do not have. If
/// the time is over first, the program is killed with all that it has started, and the answer is unknown. A
/// SolverError quotes what else was found, and names the line and column of a model that cannot be read.
[[nodiscard]] Solution solve_with_process(TermManager& mgr, const std::string& command,
                                          std::span<const Term* const> assertions,
                                          const SolverLimits& limits);

}  // namespace lumo::solvers

#endif
