#ifndef LUMO_SOLVERS_Z3_SOLVER_H
#define LUMO_SOLVERS_Z3_SOLVER_H

#include <span>

#include "lumo/solvers/answer.h"
#include "lumo/terms/term_manager.h"

namespace lumo::solvers {

/// Solves the conjunction of the assertions, Boolean terms of the manager, with Z3 in this process. The model,
/// if one is wanted, is of the constants that occur in them.
///
/// There is no time limit, and Z3 may take three quarters of the machine's memory for its terms alone: call this
/// in a process of its own. A SolverError if memory runs out where Z3 notices it.
[[nodiscard]] Solution solve_with_z3(TermManager& mgr, std::span<const Term* const> assertions,
                                     bool wants_model);

}  // namespace lumo::solvers

#endif
