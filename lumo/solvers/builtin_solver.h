#ifndef LUMO_SOLVERS_BUILTIN_SOLVER_H
#define LUMO_SOLVERS_BUILTIN_SOLVER_H

#include <span>
#include <string>
#include <string_view>

#include "lumo/solvers/answer.h"
#include "lumo/solvers/solver_limits.h"
#include "lumo/solvers/solver_process.h"
#include "lumo/terms/term_manager.h"

namespace lumo::solvers {

/// Whether this build contains a solver, which is Z3. It does not if it was configured with `LUMO_WITH_Z3=OFF`.
[[nodiscard]] bool has_builtin_solver();

/// Solves the conjunction of the assertions, Boolean terms of the manager, with the built-in solver. The model has
/// values for the constants that occur in them.
///
/// The solver works in a copy of this process, so the time limit always holds, and this process
/// gets only the values of the model. Throws a SolverError if there is no answer: the solver dies or runs out of
/// memory, or this build contains no solver.
[[nodiscard]] Solution solve_with_builtin(TermManager& mgr, std::span<const Term* const> assertions,
                                          const SolverLimits& limits);

/// The answer of the built-in solver to the single query of an SMT-LIB 2 script, without a model. Its own parser reads
/// the text, so nothing but the text is trusted. Limits and failures are as above.
[[nodiscard]] Solution solve_text_with_builtin(std::string_view script, const SolverLimits& limits);

/// The same for a complete script with any terms of that logic, which the built-in solver reads as text; `read` gets what
/// it prints after `sat`.
[[nodiscard]] Solution solve_text_with_builtin(const std::string& script, const std::string& logic,
                                               const SolverLimits& limits, const ReadModel& read);

/// Answers the commands of a conversation, which come from one descriptor, on the other one, until the end of the
/// commands, as an SMT-LIB 2 solver does. To be called in a process of its own; `SolverSession` does that.
void serve_builtin(int in, int out, bool takes_any_terms);

}  // namespace lumo::solvers

#endif
