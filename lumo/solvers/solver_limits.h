#ifndef LUMO_SOLVERS_SOLVER_LIMITS_H
#define LUMO_SOLVERS_SOLVER_LIMITS_H

#include <optional>

namespace lumo::solvers {

/// The limits and wishes for one call of a solver.
struct SolverLimits
{
  std::optional<double> seconds;  ///< of wall-clock time; after that, the answer is unknown
  bool wants_model = true;
};

}  // namespace lumo::solvers

#endif
