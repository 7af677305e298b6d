// Replaces builtin_solver.cpp in a build without Z3.

#include "lumo/solvers/builtin_solver.h"

namespace lumo::solvers {

bool has_builtin_solver() { return false; }

Solution solve_with_builtin(TermManager& /*mgr*/, std::span<const Term* const> /*assertions*/,
                            const SolverLimits& /*limits*/)
{
  throw SolverError("there is no built-in solver, since lumo was built without Z3");
}

Solution solve_text_with_builtin(std::string_view /*script*/, const SolverLimits& /*limits*/)
{
  throw SolverError("there is no built-in solver, since lumo was built without Z3");
}

void serve_builtin(int /*in*/, int /*out*/, bool /*takes_any_terms*/) {}

Solution solve_text_with_builtin(const std::string& /*script*/, const std::string& /*logic*/,
                                 const SolverLimits& /*limits*/, const ReadModel& /*read*/)
{
  throw SolverError("there is no built-in solver, since lumo was built without Z3");
}

}  // namespace lumo::solvers
