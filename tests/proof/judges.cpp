#include "tests/proof/judges.h"

#include <sstream>
#include <stdexcept>

#include "lumo/smtlib/script_printer.h"
#include "lumo/solvers/child_process.h"
#include "tests/support/z3_terms.h"

namespace lumo::test {

using solvers::Answer;

/// Z3's limit counts its work: unlike a time limit, this needs no thread for each question.
Z3Judge::Z3Judge()
{
  z3::params params(z3_);
  params.set("rlimit", 200'000'000U);
  solver_.set(params);
  solver_.push();
}

Answer Z3Judge::ask(const TermManager& mgr, const std::vector<const Term*>& assertions)
{
  Z3Terms terms(mgr, z3_);
  solver_.pop();
  solver_.push();
  solver_.add(terms.make_conjunction(assertions));
  switch (solver_.check()) {
    case z3::sat:
      return Answer::kSat;
    case z3::unsat:
      return Answer::kUnsat;
    case z3::unknown:
      break;
  }
  return Answer::kUnknown;
}

bool Cvc5Judge::is_installed() { return !std::string(LUMO_CVC5_PROGRAM).empty(); }

void Cvc5Judge::add(const std::vector<const Term*>& assertions)
{
  std::ostringstream text;
  smtlib::print_script(text, {}, assertions, false);
  script_ += text.str() + "(reset)\n";
}

std::vector<std::string> Cvc5Judge::ask() const
{
  const solvers::ChildOutcome outcome = solvers::run_child(
      std::string(LUMO_CVC5_PROGRAM) + " --lang smt2 --tlimit-per=60000", script_, solvers::Deadline(3000));
  if (outcome.end != solvers::ChildEnd::kExit || outcome.code != 0)
    throw std::runtime_error("cvc5 failed: " + outcome.out + outcome.err);
  std::vector<std::string> answers;
  std::istringstream lines(outcome.out);
  for (std::string line; std::getline(lines, line);)
    answers.push_back(line);
  return answers;
}

}  // namespace lumo::test
