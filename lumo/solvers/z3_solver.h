#ifndef LUMO_SOLVERS_Z3_SOLVER_H
#define LUMO_SOLVERS_Z3_SOLVER_H

#include <span>
#include <string>

#include "lumo/solvers/answer.h"
#include "lumo/terms/term_manager.h"

namespace lumo::solvers {

/// Bounds the memory of all that Z3 does in this process: when it has none left, it gives up, while the system would
/// end the process.
void limit_z3_memory();

/// Solves the conjunction of the assertions, Boolean terms of the manager, with Z3 in this process. The model,
/// if one is requested, has values for the constants that occur in them.
///
/// There is no time limit, and Z3 may use three quarters of the machine's memory for its terms alone: call this
/// in a separate process. Throws a SolverError if memory runs out and Z3 detects it.
[[nodiscard]] Solution solve_with_z3(TermManager& mgr, std::span<const Term* const> assertions,
                                     bool wants_model);

/// The answer of Z3 in this process to the single query of a script, without a model. A text that Z3 cannot read is a
/// SolverError; the rest is as above.
[[nodiscard]] Solution solve_text_with_z3(const std::string& script);
/// What Z3 answers to a script, with its model if the answer is sat, as a solver process would print it.
[[nodiscard]] std::string solve_text_with_z3(const std::string& script, const std::string& logic);

}  // namespace lumo::solvers

#endif
