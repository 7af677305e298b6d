#include "lumo/solvers/solution_message.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "lumo/numbers/bvnumber.h"
#include "tests/support/gmp_number.h"
#include "tests/support/numbered.h"
#include "tests/support/random.h"

namespace lumo::test {
namespace {

using solvers::Answer;
using solvers::read_solution;
using solvers::Solution;
using solvers::write_solution;

class SolutionMessage : public testing::Test
{
 protected:
  const Term* add_constant(const DataType* sort)
  {
    constants_.push_back(mgr_.make_constant(numbered("c", constants_.size()), sort));
    return constants_.back();
  }
  /// Writes and reads.
  Solution pass_on(const Solution& solution)
  {
    return read_solution(mgr_, constants_, write_solution(mgr_, solution, constants_));
  }
  std::string find_failure(const std::string& message)
  {
    try {
      static_cast<void>(read_solution(mgr_, constants_, message));
    } catch (const solvers::SolverError& e) {
      return e.what();
    }
    return "(no failure)";
  }

  TermManager mgr_;
  std::vector<const Term*> constants_;
};

TEST_F(SolutionMessage, KeepsAnswersAndReasons)
{
  EXPECT_EQ(pass_on({Answer::kUnsat, {}, {}}).answer, Answer::kUnsat);
  EXPECT_EQ(pass_on({Answer::kSat, {}, {}}).answer, Answer::kSat);
  for (const std::string reason : {"", ".", "some reason"}) {
    const Solution unknown = pass_on({Answer::kUnknown, {}, reason});
    EXPECT_EQ(unknown.answer, Answer::kUnknown);
    EXPECT_EQ(unknown.reason, reason);
  }
}

TEST_F(SolutionMessage, KeepsTheValuesOfAllSorts)
{
  Random random;
  SCOPED_TRACE(random);
  Solution solution{Answer::kSat, {}, {}};
  for (const bool value : {false, true}) {
    const Term* truth = value ? mgr_.make_true() : mgr_.make_false();
    solution.model.push_back({add_constant(mgr_.make_bool_type()), truth});
  }
  for (const unsigned long w : {1UL, 7UL, 8UL, 9UL, 63UL, 64UL, 65UL, 1000UL, 4097UL}) {
    add_constant(mgr_.make_bv_type(w));  // without a value
    for (int i = 0; i < 5; ++i) {
      Integer number;
      random.natural(number, w);
      const QNumber value = i == 0 ? QNumber(0L) : i == 1 ? QNumber(-1L) : BVNumber::from_integer(number);
      solution.model.push_back({add_constant(mgr_.make_bv_type(w)), mgr_.make_bv_number(value, w)});
    }
  }
  const Solution result = pass_on(solution);
  ASSERT_EQ(result.answer, Answer::kSat);
  ASSERT_EQ(result.model.size(), solution.model.size());
  for (std::size_t i = 0; i < result.model.size(); ++i) {
    EXPECT_EQ(result.model[i].constant, solution.model[i].constant);
    EXPECT_EQ(result.model[i].value, solution.model[i].value);
  }
}

TEST_F(SolutionMessage, KeepsFailures)
{
  EXPECT_EQ(find_failure(solvers::write_failure("the built-in solver fell.")), "the built-in solver fell.");
  EXPECT_EQ(find_failure(solvers::write_out_of_memory()), "the built-in solver ran out of memory");
}

TEST_F(SolutionMessage, RefusesMessagesThatAreCut)
{
  const std::string failure = "the built-in solver ended before its answer was complete";
  const Term* x = add_constant(mgr_.make_bv_type(64));
  // All bytes of this value are equal to the mark at the end of a message.
  const Term* dots = mgr_.make_bv_number(QNumber(0x2e2e2e2e2e2e2e2eL), 64);
  const std::string message = write_solution(mgr_, {Answer::kSat, {{x, dots}}, {}}, constants_);
  for (std::size_t size = 0; size < message.size(); ++size)
    EXPECT_EQ(find_failure(message.substr(0, size)), failure) << size;
  EXPECT_EQ(find_failure(message), "(no failure)");
  EXPECT_EQ(find_failure("x."), failure);
  constants_.clear();
  EXPECT_EQ(find_failure(message), failure);
}

}  // namespace
}  // namespace lumo::test
