#ifndef LUMO_SMTLIB_Z3_SOLVER_H
#define LUMO_SMTLIB_Z3_SOLVER_H

#include <span>

#include "smtlib/answer.h"
#include "smtlib/solver_limits.h"
#include "terms/term_manager.h"

namespace lumo::smtlib {

/// Solves the conjunction of the assertions, Boolean terms of the manager, with Z3 in this process. The model
/// is of the constants that occur in them.
///
/// When the time is over, Z3 is asked to stop, which it does soon but not at once. If memory runs out, or Z3
/// gives up for another reason, the answer is unknown while it solves, and a SolverError before and after.
[[nodiscard]] Solution solve_with_z3(TermManager& mgr, std::span<const Term* const> assertions,
                                     const SolverLimits& limits);

}  // namespace lumo::smtlib

#endif
