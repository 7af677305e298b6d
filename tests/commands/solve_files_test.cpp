// Whole files, from text to model: the answer is the one that the file states, and Z3 accepts the model for the text.

#include <bitset>
#include <optional>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <z3++.h>

#include "lumo/commands/run_invert.h"
#include "lumo/commands/solve_script.h"
#include "lumo/smtlib/script_reader.h"
#include "lumo/smtlib/symbol_text.h"
#include "lumo/terms/term_walk.h"
#include "tests/support/smt2_files.h"
#include "tests/support/text_file.h"

namespace lumo::test {
namespace {

using solvers::Answer;

std::string get_stated_status(const std::string& text)
{
  static const std::string kKey = "(set-info :status ";
  const std::size_t start = text.find(kKey);
  if (start == std::string::npos) return "unknown";
  return text.substr(start + kKey.size(), text.find(')', start) - start - kKey.size());
}

/// The text with the model's values as further assertions is satisfiable.
void expect_accepted(const std::string& text, const std::vector<ModelValue>& model)
{
  std::string question = text;
  for (const auto& [constant, value] : model) {
    question += "(assert (= " + smtlib::make_symbol_text(constant->get_symbol()->get_name()) + " " +
                value->get_symbol()->get_name() + "))\n";
  }
  z3::context z3;
  z3::solver solver(z3, "QF_BV");
  solver.add(z3.parse_string(question.c_str()));
  EXPECT_EQ(solver.check(), z3::sat) << question;
}

/// Solves the text and checks the result; the caller checks the answer unknown.
Answer solve(const std::string& text, const commands::SolveMethod& method)
{
  TermManager mgr;
  const smtlib::Script script = smtlib::read_script(mgr, text);
  commands::Statistics statistics;
  commands::PhaseClock clock;
  const solvers::Solution solution = commands::solve_script(mgr, script, method, statistics, clock);
  if (solution.answer == Answer::kUnknown) return solution.answer;

  const std::string stated = get_stated_status(text);
  if (stated != "unknown") {
    EXPECT_EQ(solvers::to_string(solution.answer), stated);
  }
  if (solution.answer == Answer::kSat) {
    EXPECT_EQ(solution.model.size(), script.constants.size());
    expect_accepted(text, solution.model);
  }
  return solution.answer;
}

/// Two of the foreign files bind a name twice in one let, which the standard does not allow.
bool binds_a_name_twice(const std::string& message)
{
  return message.find("is bound already in this let, but names must differ") != std::string::npos;
}

TEST(OwnFiles, AreSolvedAsTheyState)
{
  const std::vector<std::string> files = list_own_files();
  EXPECT_GE(files.size(), 40U);
  for (const std::string& file : files) {
    SCOPED_TRACE(file);
    const std::string text = read_text_file(file);
    EXPECT_NE(get_stated_status(text), "unknown");
    for (const bool eliminates : {true, false}) {
      commands::SolveMethod method;
      method.eliminates = eliminates;
      method.seconds = 60;
      EXPECT_NE(solve(text, method), Answer::kUnknown) << (eliminates ? "with" : "without") << " elimination";
    }
  }
}

TEST(OwnFiles, HaveEveryOperator)
{
  std::bitset<kNumOperators> met;
  for (const std::string& file : list_own_files()) {
    TermManager mgr;
    std::vector<const Term*> assertions;
    for (const smtlib::Assertion& assertion : smtlib::read_script(mgr, read_text_file(file)).assertions)
      assertions.push_back(assertion.term);
    for (const Term* t : collect_terms(assertions)) {
      const Kind kind = t->get_symbol()->get_kind();
      if (is_operator(kind)) met.set(static_cast<std::size_t>(kind));
    }
  }
  EXPECT_TRUE(met.all()) << met;
}

TEST(ForeignFiles, AreSolvedAsTheyStateOrNotInTwoSeconds)
{
  const std::vector<std::string> files = list_foreign_files();
  if (files.empty()) GTEST_SKIP() << "no folder of SMT-LIB 2 files";
  std::size_t num_solved = 0;
  std::size_t num_refused = 0;
  for (const std::string& file : files) {
    SCOPED_TRACE(file);
    commands::SolveMethod method;
    method.seconds = 2;
    try {
      if (solve(read_text_file(file), method) != Answer::kUnknown) ++num_solved;
    } catch (const smtlib::InputError& e) {
      EXPECT_TRUE(binds_a_name_twice(e.what())) << e.what();
      ++num_refused;
    }
  }
  EXPECT_LE(num_refused, 2U);
  EXPECT_GT(num_solved, files.size() / 2);
}

TEST(SolveFiles, ForeignOnesCanBeInvertedOrAreRefusedPolitely)
{
  const std::vector<std::string> files = list_foreign_files();
  if (files.empty()) GTEST_SKIP() << "no folder of SMT-LIB 2 files";
  std::size_t num_refused = 0;
  for (const std::string& file : files) {
    SCOPED_TRACE(file);
    std::istringstream in;
    std::ostringstream out;
    std::ostringstream err;
    if (commands::run_invert({file}, in, out, err) == commands::kFailed) {
      EXPECT_TRUE(binds_a_name_twice(err.str())) << err.str();
      ++num_refused;
    }
  }
  EXPECT_LE(num_refused, 2U);
}

}  // namespace
}  // namespace lumo::test
