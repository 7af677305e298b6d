#ifndef LUMO_SMTLIB_COMMAND_SOLVER_H
#define LUMO_SMTLIB_COMMAND_SOLVER_H

#include <span>
#include <string>

#include "smtlib/answer.h"
#include "smtlib/solver_limits.h"
#include "terms/term_manager.h"

namespace lumo::smtlib {

/// Solves the conjunction of the assertions, Boolean terms of the manager, with a program that reads an
/// SMT-LIB 2 script from its standard input. `/bin/sh -c` runs the command, so that it may have arguments in
/// quotes, be a pipeline, and so on. The model is of the constants that occur in the assertions.
///
/// The answer is the first line of the output that is one, whatever comes behind `unsat` and `unknown` and
/// whatever the exit status: solvers report an error if they are asked for a model that they do not have. If
/// the time is over first, the program is killed with all that it has started, and the answer is unknown. A
/// SolverError quotes what else was found.
[[nodiscard]] Solution solve_with_command(TermManager& mgr, const std::string& command,
                                          std::span<const Term* const> assertions,
                                          const SolverLimits& limits);

}  // namespace lumo::smtlib

#endif
