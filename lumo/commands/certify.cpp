#include "lumo/commands/certify.h"

#include <sstream>
#include <utility>
#include <vector>

#include "lumo/commands/complete_model.h"
#include "lumo/commands/subcommand.h"
#include "lumo/elimination/guard_lemmas.h"
#include "lumo/smtlib/certificate_printer.h"
#include "lumo/solvers/builtin_solver.h"
#include "lumo/solvers/solver_limits.h"
#include "lumo/solvers/solver_process.h"
#include "lumo/terms/term_walk.h"

namespace lumo::commands {

void check_certification(const Certification& certification)
{
  if (!certification.is_wanted || certification.checker_command || solvers::has_builtin_solver()) return;
  throw SubcommandFailure(
      "lumo: this lumo was built without Z3, so --checker COMMAND must say which solver confirms unsat");
}

std::string get_checker_name(const Certification& certification)
{
  if (!certification.checker_command) return "Z3";
  return '"' + smtlib::make_excerpt(*certification.checker_command) + '"';
}

void print_certificate(std::ostream& out, TermManager& mgr, const smtlib::Script& script,
                       const Elimination& elimination)
{
  const std::vector<const Term*> assertions = script.get_asserted_terms();
  const GuardLemmas lemmas = separate_guards(mgr, elimination.trail, elimination.assertions);
  smtlib::print_certificate(out, {script.constants, assertions, lemmas.trail, lemmas.rest});
}

std::string make_certificate(TermManager& mgr, const smtlib::Script& script, const Elimination& elimination)
{
  std::ostringstream text;
  print_certificate(text, mgr, script, elimination);
  return std::move(text).str();
}

std::string make_query_certificate(TermManager& mgr, const QuerySource& queries,
                                   std::span<const Term* const> assumptions,
                                   std::span<const Term* const> told)
{
  const std::span<const Term* const> asserted = queries.get_assertions();
  std::vector<const Term*> assertions(asserted.begin(), asserted.end());
  assertions.insert(assertions.end(), assumptions.begin(), assumptions.end());
  const GuardLemmas lemmas = separate_guards(mgr, queries.get_trail(), told);
  std::ostringstream text;
  smtlib::print_certificate(text, {collect_constants(assertions), assertions, lemmas.trail, lemmas.rest});
  return std::move(text).str();
}

solvers::Solution confirm_unsat(std::string_view certificate, const Certification& certification,
                                std::optional<double> seconds)
{
  solvers::SolverLimits limits;
  limits.seconds = seconds;
  limits.wants_model = false;
  const std::optional<std::string>& command = certification.checker_command;
  solvers::Solution solution = command ? solvers::solve_text_with_process(*command, certificate, limits)
                                       : solvers::solve_text_with_builtin(certificate, limits);
  switch (solution.answer) {
    case solvers::Answer::kUnsat:
      break;
    case solvers::Answer::kSat:
      throw CheckFailure({}, "what elimination leaves is unsatisfiable, but " +
                                 get_checker_name(certification) +
                                 " finds that it does not follow from the script");
    case solvers::Answer::kUnknown:
      solution.reason = get_checker_name(certification) + " did not confirm the certificate of unsat" +
                        (solution.reason.empty() ? "" : ": " + solution.reason);
      break;
  }
  return solution;
}

}  // namespace lumo::commands
