#include "lumo/solvers/builtin_solver.h"

#include <csignal>
#include <functional>
#include <optional>
#include <sstream>
#include <string>
#include <thread>
#include <unistd.h>
#include <vector>

#include <gtest/gtest.h>

#include "lumo/model/model_store.h"
#include "tests/solvers/apart.h"
#include "tests/solvers/no_more_files.h"
#include "tests/support/waiting.h"

namespace lumo::test {
namespace {

using solvers::Answer;
using solvers::Solution;
using solvers::SolverLimits;

class BuiltinSolver : public testing::Test
{
 protected:
  const Term* make_constant(const std::string& name, unsigned long w)
  {
    return mgr_.make_constant(name, mgr_.make_bv_type(w));
  }
  void assert_equal(const Term* lhs, const Term* rhs)
  {
    assertions_.push_back(
        mgr_.make_term(mgr_.make_eq_symbol(lhs->get_symbol()->get_output_type()), {lhs, rhs}));
  }
  /// Asserts that a number of 126 bits is the product of two numbers of 64 bits other than 1, which takes long to
  /// solve.
  void assert_factors()
  {
    std::vector<const Term*> factors;
    for (const char* name : {"u", "v"}) {
      const Term* half = make_constant(name, 64);
      factors.push_back(mgr_.make_term(mgr_.make_bv_zero_extend_symbol(64, 64), {half}));
      assertions_.push_back(mgr_.make_term(mgr_.make_bv_ult_symbol(64), {mgr_.make_bv_number(1, 64), half}));
    }
    const QNumber product = QNumber(0x6a09e667f3bcc9L) * QNumber(0x3c6ef372fe94f8L) + QNumber(7L);
    assert_equal(mgr_.make_bv_number(product, 128), mgr_.make_term(mgr_.make_bv_mul_symbol(128), factors));
  }
  Solution solve(const SolverLimits& limits = {})
  {
    return solvers::solve_with_builtin(mgr_, assertions_, limits);
  }

  TermManager mgr_;
  std::vector<const Term*> assertions_;
};

TEST_F(BuiltinSolver, IsThere) { EXPECT_TRUE(solvers::has_builtin_solver()); }

TEST_F(BuiltinSolver, AnswersATextThatItReadsItself)
{
  const auto answer = [](const std::string& text) {
    return solvers::solve_text_with_builtin(text, {}).answer;
  };
  const std::string head = "(set-logic QF_BV)(declare-fun p () Bool)(define-fun q () Bool (not p))";
  EXPECT_EQ(answer(head + "(assert p)(check-sat)"), Answer::kSat);
  EXPECT_EQ(answer(head + "(assert (and p q))(check-sat)"), Answer::kUnsat);
  EXPECT_EQ(answer(""), Answer::kSat);
  for (const std::string wrong : {"(assert r)", "(assert", ")", "(assert #x01)"})
    EXPECT_THROW(static_cast<void>(answer(head + wrong)), solvers::SolverError) << wrong;
}

TEST_F(BuiltinSolver, GivesAModel)
{
  const Term* x = make_constant("x", 70);
  const Term* y = make_constant("y", 70);
  const Term* p = mgr_.make_constant("p", mgr_.make_bool_type());
  assert_equal(mgr_.make_term(mgr_.make_bv_mul_symbol(70), {x, y}), mgr_.make_bv_number(-15, 70));
  assertions_.push_back(mgr_.make_term(mgr_.make_bv_ult_symbol(70), {x, y}));
  assertions_.push_back(mgr_.make_term(mgr_.make_not_symbol(), {p}));
  const Solution solution = solve();
  ASSERT_EQ(solution.answer, Answer::kSat);
  ASSERT_EQ(solution.model.size(), 3U);
  ModelStore model(&mgr_);
  ModelStore::DefinitionStack definitions;
  for (const ModelValue& definition : solution.model)
    definitions.emplace(definition.constant, definition.value, true);
  model.replay(definitions);
  for (const Term* assertion : assertions_)
    EXPECT_EQ(model.get_value(assertion), mgr_.make_true());
  EXPECT_TRUE(solve({std::nullopt, false}).model.empty());
}

TEST_F(BuiltinSolver, SaysUnsat)
{
  const Term* x = make_constant("x", 8);
  assert_equal(x, mgr_.make_bv_number(1, 8));
  assert_equal(x, mgr_.make_bv_number(2, 8));
  EXPECT_EQ(solve().answer, Answer::kUnsat);
}

TEST_F(BuiltinSolver, SaysUnknownWhenTheTimeIsOver)
{
  assert_factors();
  for (const double seconds : {0.5, 0.0, -1.0}) {
    const Solution solution = solve({seconds, true});
    EXPECT_EQ(solution.answer, Answer::kUnknown);
    std::ostringstream reason;
    reason << "the time limit of " << seconds << " s was reached";
    EXPECT_EQ(solution.reason, reason.str());
  }
  assertions_ = {mgr_.make_true()};
  EXPECT_EQ(solve({1e300, true}).answer, Answer::kSat);
}

/// Sends a signal to the first child that this thread has while the solver runs.
std::string find_failure_after(int signal, const std::function<void()>& run)
{
  std::thread killer([signal, thread = getpid()] {
    wait_until([&] { return !list_children(thread).empty(); });
    kill(std::stoi(list_children(thread)), signal);
  });
  std::string failure = "(no failure)";
  try {
    run();
  } catch (const solvers::SolverError& e) {
    failure = e.what();
  }
  killer.join();
  return failure;
}

TEST_F(BuiltinSolver, DiesAlone)
{
  assert_factors();
  const auto run = [this] { static_cast<void>(solve({60.0, true})); };
  EXPECT_EQ(find_failure_after(SIGKILL, run),
            "the built-in solver was ended by signal 9, perhaps since memory ran out");
  EXPECT_EQ(find_failure_after(SIGUSR1, run), "the built-in solver was ended by signal 10");
}

TEST_F(BuiltinSolver, SaysWhyItCannotBeStarted)
{
  const NoMoreFiles guard;
  try {
    static_cast<void>(solve());
    FAIL();
  } catch (const solvers::SolverError& e) {
    EXPECT_STREQ(e.what(),
                 "the built-in solver was not started: no process can be made: no pipe: Too many open files");
  }
}

TEST_F(BuiltinSolver, EndsWithTheProgram)
{
  assert_factors();
  for (const int signal : {SIGKILL, SIGALRM, SIGTERM}) {
    const Apart apart([this] { static_cast<void>(solve()); });
    ASSERT_TRUE(wait_until([&] { return !list_children(apart.get_id()).empty(); }));
    const std::string solver = list_children(apart.get_id());
    apart.signal(signal);
    EXPECT_EQ(apart.wait(), -signal);
    EXPECT_TRUE(goes_away(solver)) << signal;
  }
}

}  // namespace
}  // namespace lumo::test
