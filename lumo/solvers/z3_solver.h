#ifndef LUMO_SOLVERS_Z3_SOLVER_H
#define LUMO_SOLVERS_Z3_SOLVER_H

#include <span>

#include "lumo/solvers/answer.h"
#include "lumo/solvers/solver_limits.h"
#include "lumo/terms/term_manager.h"

namespace lumo::solvers {

/// Solves the conjunction of the assertions, Boolean terms of the manager, with Z3 in this process. The model
/// is of the constants that occur in them.
///
/// When the time is over, Z3 is asked to stop, which it does soon but not at once. If memory runs out, or Z3
/// gives up for another reason, the answer is unknown while it solves, and a SolverError before and after.
[[nodiscard]] Solution solve_with_z3(TermManager& mgr, std::span<const Term* const> assertions,
                                     const SolverLimits& limits);

}  // namespace lumo::solvers

#endif
