#include "lumo/commands/solve_script.h"

#include <algorithm>
#include <cmath>
#include <utility>
#include <vector>

#include "lumo/commands/complete_model.h"
#include "lumo/commands/subcommand.h"
#include "lumo/elimination/eliminate.h"
#include "lumo/solvers/builtin_solver.h"
#include "lumo/solvers/solver_limits.h"
#include "lumo/solvers/solver_process.h"

namespace lumo::commands {

namespace {

Elimination eliminate_if_wanted(TermManager& mgr, const smtlib::Script& script, const SolveMethod& method)
{
  const std::vector<const Term*> assertions = script.get_asserted_terms();
  Elimination elimination = method.eliminates ? eliminate(mgr, assertions) : Elimination{assertions, {}};
  std::erase(elimination.assertions, mgr.make_true());
  return elimination;
}

solvers::Solution solve_rest(TermManager& mgr, const std::vector<const Term*>& rest,
                             const SolveMethod& method)
{
  if (rest.empty()) return {solvers::Answer::kSat, {}, {}};
  if (std::find(rest.begin(), rest.end(), mgr.make_false()) != rest.end())
    return {solvers::Answer::kUnsat, {}, {}};
  solvers::SolverLimits limits;
  limits.seconds = method.seconds;
  limits.wants_model = true;  // for the check, even if the model is not printed
  return method.solver_command ? solvers::solve_with_process(mgr, *method.solver_command, rest, limits)
                               : solvers::solve_with_builtin(mgr, rest, limits);
}

/// Makes the certificate of an unsat, and has it confirmed if that is wanted.
solvers::Solution certify(TermManager& mgr, const smtlib::Script& script, const Elimination& elimination,
                          const SolveMethod& method, Statistics& statistics, PhaseClock& clock,
                          std::string* certificate)
{
  clock.enter(Phase::kCertify, statistics.before.terms + statistics.after.terms);
  std::string text = make_certificate(mgr, script, elimination);
  solvers::Solution solution{solvers::Answer::kUnsat, {}, {}};
  if (method.certification.is_wanted) {
    solution = confirm_unsat(text, method.certification, method.seconds);
    if (solution.answer == solvers::Answer::kUnsat)
      statistics.confirmer = get_checker_name(method.certification);
  }
  if (certificate != nullptr) *certificate = std::move(text);
  clock.leave();
  return solution;
}

}  // namespace

void check_method(const SolveMethod& method)
{
  const std::optional<double>& seconds = method.seconds;
  if (seconds && !(std::isfinite(*seconds) && *seconds > 0)) {
    throw SubcommandFailure("lumo: the time limit must be a number of seconds above 0");
  }
  if (!method.solver_command && !solvers::has_builtin_solver()) {
    throw SubcommandFailure(
        "lumo: this lumo was built without Z3, so --solver COMMAND must say which solver to start");
  }
  check_certification(method.certification);
}

solvers::Solution solve_script(TermManager& mgr, const smtlib::Script& script, const SolveMethod& method,
                               Statistics& statistics, PhaseClock& clock, std::string* certificate)
{
  clock.enter(Phase::kEliminate, mgr.get_num_terms());
  const Elimination elimination = eliminate_if_wanted(mgr, script, method);
  clock.leave();
  statistics.before = measure_graph(script.get_asserted_terms());
  statistics.after = measure_graph(elimination.assertions);
  statistics.count_steps(elimination.trail);

  clock.enter(Phase::kSolve, statistics.after.terms);
  solvers::Solution solution = solve_rest(mgr, elimination.assertions, method);
  clock.leave();
  if (solution.answer == solvers::Answer::kSat) {
    solution.model = complete_model(mgr, script, elimination, solution.model, clock);
  }
  if (solution.answer == solvers::Answer::kUnsat &&
      (method.certification.is_wanted || certificate != nullptr))
    solution = certify(mgr, script, elimination, method, statistics, clock, certificate);
  return solution;
}

}  // namespace lumo::commands
