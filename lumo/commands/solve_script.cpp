#include "lumo/commands/solve_script.h"

#include <algorithm>
#include <cmath>
#include <sstream>
#include <utility>
#include <vector>

#include "lumo/commands/complete_foreign_model.h"
#include "lumo/commands/complete_model.h"
#include "lumo/commands/script_elimination.h"
#include "lumo/commands/subcommand.h"
#include "lumo/elimination/eliminate.h"
#include "lumo/smtlib/script_printer.h"
#include "lumo/solvers/builtin_solver.h"
#include "lumo/solvers/solver_limits.h"
#include "lumo/solvers/solver_process.h"
#include "lumo/terms/term_walk.h"

namespace lumo::commands {

namespace {

solvers::SolverLimits make_limits(const SolveMethod& method)
{
  solvers::SolverLimits limits;
  limits.seconds = method.seconds;
  limits.wants_model = true;  // for the check, even if the model is not printed
  return limits;
}

solvers::Solution solve_rest(TermManager& mgr, const std::vector<const Term*>& rest,
                             const SolveMethod& method)
{
  if (rest.empty()) return {solvers::Answer::kSat, {}, {}};
  if (std::find(rest.begin(), rest.end(), mgr.make_false()) != rest.end())
    return {solvers::Answer::kUnsat, {}, {}};
  const solvers::SolverLimits limits = make_limits(method);
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

/// Asks the solver about a rest with foreign terms; the model gets what it says.
solvers::Solution ask_about_foreign(const smtlib::ForeignTerms& foreign, const ScriptElimination& rest,
                                    const SolveMethod& method, smtlib::ForeignModel& model)
{
  const std::vector<const Term*>& assertions = rest.elimination.assertions;
  if (assertions.empty()) return {solvers::Answer::kSat, {}, {}};
  std::vector<const Term*> roots = assertions;
  for (const smtlib::ForeignTerms::Index term : rest.needs.terms) {
    for (std::size_t i = 0; i < foreign.get_args(term).size(); ++i)
      roots.push_back(rest.forms->get_arg(term, i));
  }
  std::vector<const Term*> constants = collect_constants(roots);
  std::erase_if(constants, [&](const Term* t) { return foreign.find(t) != smtlib::ForeignTerms::kNone; });
  std::ostringstream script;
  smtlib::print_script(script, assertions, true, *rest.forms);
  const auto read = [&](std::string_view output) { model.read(constants, output); };
  const solvers::SolverLimits limits = make_limits(method);
  const std::string text = std::move(script).str();
  return method.solver_command ? solvers::solve_text_with_process(*method.solver_command, text, limits, read)
                               : solvers::solve_text_with_builtin(
                                     text, foreign.logic.empty() ? "ALL" : foreign.logic, limits, read);
}

solvers::Solution solve_foreign(TermManager& mgr, const smtlib::Script& script, ScriptElimination& rest,
                                const SolveMethod& method, Statistics& statistics, PhaseClock& clock)
{
  const smtlib::ForeignTerms& foreign = *script.foreign;
  add_questions(mgr, foreign, rest);
  clock.enter(Phase::kSolve, statistics.after.terms);
  const std::vector<const Term*>& assertions = rest.elimination.assertions;
  if (std::find(assertions.begin(), assertions.end(), mgr.make_false()) != assertions.end())
    return {solvers::Answer::kUnsat, {}, {}};
  smtlib::ForeignModel model(mgr, foreign);
  solvers::Solution solution = ask_about_foreign(foreign, rest, method, model);
  clock.leave();
  if (solution.answer != solvers::Answer::kSat) return solution;
  CompletedModel completed = complete_foreign_model(mgr, script, rest, model, statistics, clock);
  solution.model = std::move(completed.values);
  solution.definitions = std::move(completed.definitions);
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
  ScriptElimination rest = eliminate_script(mgr, script, method.eliminates);
  const Elimination& elimination = rest.elimination;
  clock.leave();
  statistics.before = measure_graph(script.get_asserted_terms());
  statistics.after = measure_graph(elimination.assertions);
  statistics.count_steps(elimination.trail);
  if (!rest.needs.terms.empty() || (script.foreign != nullptr && !script.foreign->functions.empty())) {
    if (method.certification.is_wanted || certificate != nullptr) {
      throw Exception("there are certificates only of Booleans and bit-vectors, but the script has others");
    }
    return solve_foreign(mgr, script, rest, method, statistics, clock);
  }

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
