#ifndef LUMO_SOLVERS_SOLVER_LIMITS_H
#define LUMO_SOLVERS_SOLVER_LIMITS_H

#include <optional>

namespace lumo::solvers {

/// What a solver is given to work with.
struct SolverLimits
{
  std::optional<double> seconds;  ///< of wall-clock time; beyond, the answer is unknown
  bool wants_model = true;
};

}  // namespace lumo::solvers

#endif
