// Random formulas, most of whose constants are free: Z3 judges the result of their elimination.

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/elimination/elimination_judge.h"
#include "tests/support/notation.h"
#include "tests/support/numbered.h"
#include "tests/support/random_formula.h"

namespace lumo::test {
namespace {

struct Family
{
  const char* name;
  FormulaLimits limits;
  Equivalence equivalence;
  std::size_t num_formulas;  ///< in one share
};

const Family kFamilies[] = {
    {"Narrow", {.widths = {1, 2, 3, 4}}, Equivalence::kAsked, 590},
    {"Large", {.widths = {1, 2, 4}, .max_applications = 200}, Equivalence::kAsked, 10},
    {"Medium", {.widths = {1, 2, 3, 4, 5, 6, 7, 8}, .max_applications = 16}, Equivalence::kSkipped, 340},
    {"Wide",
     {.widths = {33, 64, 65}, .max_applications = 16, .has_products = false},
     Equivalence::kSkipped,
     60},
    {"WideWithProducts", {.widths = {33, 64, 65}, .max_applications = 6}, Equivalence::kSkipped, 10},
};

/// The number of shares of the formulas; each has its own random stream, so they can run in parallel
constexpr std::size_t kNumShares = 20;

class Differential : public testing::TestWithParam<std::size_t>
{};

TEST_P(Differential, EliminationLosesAndGainsNoModel)
{
  for (std::size_t i = 0; i < std::size(kFamilies); ++i) {
    const Family& family = kFamilies[i];
    Random random(GetParam() * std::size(kFamilies) + i);
    SCOPED_TRACE(random);
    SCOPED_TRACE(family.name);
    EliminationJudge judge;
    for (std::size_t round = 0; round < family.num_formulas; ++round) {
      TermManager mgr;
      judge.check(mgr, make_random_formula(mgr, random, family.limits).assertions, family.equivalence);
      ASSERT_FALSE(HasFailure()) << "in round " << round;
    }
    EXPECT_GT(judge.get_num_steps(), family.num_formulas / 4) << "hardly anything was eliminated";
    // Elimination may miss an argument that loses its second use only while the rest is built.
    EXPECT_LT(judge.get_num_unfinished(), 3 + family.num_formulas / 30) << "much was overlooked";
    EXPECT_LT(judge.get_num_unknown(), 3 + family.num_formulas / 10) << "Z3 took too long for too many";
  }
}

// The inner exclusive or has one use left after the comparison is eliminated, and only then becomes a constant.
TEST(DifferentialCases, ApplicationWithOneUseLeftBecomesAFreeConstantOnce)
{
  TermManager mgr;
  const std::string t = "(bvxor (bvand #x0 (bvsub a4 b4)) c4)";
  const std::string text = "(bvule (bvand " + t + " d4) (bvxor (bvxor a4 " + t + ") c4))";
  EliminationJudge judge;
  judge.check(mgr, {parse_term(mgr, text)}, Equivalence::kAsked);
}

INSTANTIATE_TEST_SUITE_P(Shares, Differential, testing::Range(std::size_t{0}, kNumShares),
                         [](const testing::TestParamInfo<std::size_t>& share) {
                           return numbered("Share", share.param);
                         });

}  // namespace
}  // namespace lumo::test
