#include "smtlib/solve.h"

#include <algorithm>
#include <vector>

#include "elimination/eliminate.h"
#include "smtlib/command_solver.h"
#include "smtlib/complete_model.h"
#include "smtlib/solver_limits.h"
#include "smtlib/z3_solver.h"

namespace lumo::smtlib {

namespace {

Elimination eliminate_if_wanted(TermManager& mgr, const Script& script, const SolveMethod& method,
                                Statistics& statistics)
{
  const PhaseTimer timer(statistics, Phase::kEliminate);
  const std::vector<const Term*> assertions = script.get_asserted_terms();
  Elimination elimination = method.eliminates ? eliminate(mgr, assertions) : Elimination{assertions, {}};
  std::erase(elimination.assertions, mgr.make_true());
  return elimination;
}

Solution solve_rest(TermManager& mgr, const std::vector<const Term*>& rest, const SolveMethod& method,
                    Statistics& statistics)
{
  const PhaseTimer timer(statistics, Phase::kSolve);
  if (rest.empty()) return {Answer::kSat, {}};
  if (std::find(rest.begin(), rest.end(), mgr.make_false()) != rest.end()) return {Answer::kUnsat, {}};
  SolverLimits limits;
  limits.seconds = method.seconds;
  limits.wants_model = true;  // for the check, whether or not somebody wants to see it
  return method.solver_command ? solve_with_command(mgr, *method.solver_command, rest, limits)
                               : solve_with_z3(mgr, rest, limits);
}

}  // namespace

Solution solve_script(TermManager& mgr, const Script& script, const SolveMethod& method,
                      Statistics& statistics, Progress* progress)
{
  enter(progress, Activity::kEliminating, mgr.get_num_terms());
  const Elimination elimination = eliminate_if_wanted(mgr, script, method, statistics);
  statistics.before = measure_graph(script.get_asserted_terms());
  statistics.after = measure_graph(elimination.assertions);
  statistics.count_steps(elimination.trail);

  enter(progress, Activity::kSolving, statistics.after.terms);
  Solution solution = solve_rest(mgr, elimination.assertions, method, statistics);
  if (solution.answer == Answer::kSat) {
    solution.model = complete_model(mgr, script, elimination, solution.model, statistics, progress);
  }
  return solution;
}

}  // namespace lumo::smtlib
