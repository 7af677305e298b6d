#include "lumo/elimination/eliminate.h"

#include <cctype>
#include <ostream>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "lumo/elimination/rules.h"
#include "lumo/terms/exception.h"
#include "tests/elimination/enumeration_judge.h"
#include "tests/support/notation.h"
#include "tests/support/refusal.h"
#include "tests/support/term_text.h"

namespace lumo {
namespace {

using test::Terms;

Terms parse_terms(TermManager& mgr, const std::vector<std::string>& texts)
{
  Terms terms;
  for (const std::string& text : texts)
    terms.push_back(test::parse_term(mgr, text));
  return terms;
}

std::vector<std::string> make_texts(const Terms& terms)
{
  std::vector<std::string> texts;
  for (const Term* t : terms)
    texts.push_back(test::make_term_text(t));
  return texts;
}

std::vector<std::string> make_texts(const std::vector<Step>& steps)
{
  std::vector<std::string> texts;
  for (const Step& step : steps) {
    std::string text = test::make_term_text(step.constant) + " = " + test::make_term_text(step.application);
    text += " for";
    for (std::size_t i = 0; i < step.application->get_num_args(); ++i) {
      if (step.free[i]) text += " " + test::make_term_text(step.application->get_arg(i));
    }
    texts.push_back(text);
  }
  return texts;
}

struct Row
{
  const char* name;
  std::vector<std::string> assertions;
  std::vector<std::string> rest;
  std::vector<std::string> steps;
  std::vector<std::string> facts;
};

std::ostream& operator<<(std::ostream& out, const Row& row) { return out << row.name; }

// The names of constants say their widths. Where an argument is to stay, it is a constant that an assertion
// `(bvult (bvurem a2 b2) a2)` uses twice, and that remains.
const Row kRows[] = {
    {"AssertedConstantIsAFact", {"p"}, {}, {}, {"p"}},
    {"AssertedConstantWithAnotherUseStays",
     {"p", "(= (ite p #b01 #b10) (bvurem #b11 #b01))"},
     {"p", "(= (ite p #b01 #b10) (bvurem #b11 #b01))"},
     {},
     {}},
    {"AssertionThatStandsTwiceIsOne", {"p", "p"}, {}, {}, {"p"}},
    {"TrueIsGone", {"true"}, {}, {}, {}},
    {"FalseStays", {"false"}, {"false"}, {}, {}},
    {"ConstantUsedTwiceInOneApplicationIsNotFree", {"(= x2 x2)"}, {"(= x2 x2)"}, {}, {}},
    {"SharedApplicationIsAConstantOfTwoUses",
     {"(bvult (bvurem (bvnot x2) (bvnot x2)) #b01)"},
     {"(bvult (bvurem u!0 u!0) #b01)"},
     {"u!0 = (bvnot x2) for x2"},
     {}},
    {"NotOfAFreeBoolean", {"(not p)"}, {}, {"u!0 = (not p) for p"}, {"u!0"}},
    {"LayersAreSteps",
     {"(= (bvnot (bvadd x2 #b01)) #b10)"},
     {},
     {"u!0 = (bvadd x2 #b01) for x2", "u!1 = (bvnot u!0) for u!0", "u!2 = (= u!1 #b10) for u!1"},
     {"u!2"}},
    {"AssertedConjunctionIsFactsAndTheRest",
     {"(and (and p (bvult (bvurem a2 b2) a2)) q)"},
     {"(bvult (bvurem a2 b2) a2)"},
     {},
     {"p", "q"}},
    {"FreeArgumentsOfADisjunctionComeTogether",
     {"(or (or p (bvult (bvurem a2 b2) a2)) q)"},
     {"(or (bvult (bvurem a2 b2) a2) u!0)"},
     {"u!0 = (or p q) for p q"},
     {}},
    {"ChainOfFreeArgumentsIsOneConstant",
     {"(or (or p q) r)"},
     {},
     {"u!0 = (or p q) for p q", "u!1 = (or u!0 r) for u!0 r"},
     {"u!1"}},
    {"FreeArgumentsOfNestedProductsComeTogether",
     {"(bvult (bvmul (bvmul x2 (bvurem a2 b2)) y2) a2)"},
     {"(bvult (bvmul (bvurem a2 b2) u!0) a2)"},
     {"u!0 = (bvmul x2 y2) for x2 y2"},
     {}},
    {"LoneFreeArgumentOfAChainStaysWhereItIs",
     {"(bvult (bvand (bvand x2 (bvurem a2 b2)) b2) a2)"},
     {"(bvult (bvand (bvand x2 (bvurem a2 b2)) b2) a2)"},
     {},
     {}},
    {"SharedPartOfAChainIsNotRegrouped",
     {"(bvult (bvand (bvand (bvurem a2 b2) x2) y2) (bvand (bvurem a2 b2) x2))"},
     {"(bvult (bvand (bvand (bvurem a2 b2) x2) y2) (bvand (bvurem a2 b2) x2))"},
     {},
     {}},
    {"ConstantIsFreeOnceItsOtherUseIsGone",
     {"(= x2 (bvurem y2 a2))", "(= (bvadd y2 #b01) (bvurem a2 a2))"},
     {},
     {"u!0 = (= x2 (bvurem y2 a2)) for x2", "u!1 = (bvadd y2 #b01) for y2",
      "u!2 = (= u!1 (bvurem a2 a2)) for u!1"},
     {"u!0", "u!2"}},
    {"StepMentionsAConstantThatALaterStepDefines",
     {"(= x2 (bvurem (bvadd y2 #b01) y2))", "(bvult (bvurem (bvadd y2 #b01) a2) a2)"},
     {"(bvult (bvurem u!1 a2) a2)"},
     {"u!0 = (= x2 (bvurem u!1 y2)) for x2", "u!1 = (bvadd y2 #b01) for y2"},
     {"u!0"}},
    {"LessThanATermHasAGuard",
     {"(or (bvult x2 (bvurem a2 b2)) (bvult a2 b2))"},
     {"(or (and u!0 (not (= (bvurem a2 b2) #b00))) (bvult a2 b2))"},
     {"u!0 = (bvult x2 (bvurem a2 b2)) for x2"},
     {}},
    {"AssertedLessThanLeavesItsGuard",
     {"(bvult x2 (bvurem a2 a2))"},
     {"(not (= (bvurem a2 a2) #b00))"},
     {"u!0 = (bvult x2 (bvurem a2 a2)) for x2"},
     {"u!0"}},
    {"AtMostATermHasAGuard",
     {"(not (bvule x2 (bvurem a2 a2)))"},
     {"(not (or u!0 (= (bvurem a2 a2) #b11)))"},
     {"u!0 = (bvule x2 (bvurem a2 a2)) for x2"},
     {}},
    {"SignedAtLeastATermHasAGuard",
     {"(not (bvsle (bvurem a2 a2) x2))"},
     {"(not (or u!0 (= (bvurem a2 a2) #b10)))"},
     {"u!0 = (bvsle (bvurem a2 a2) x2) for x2"},
     {}},
    {"SignedGreaterThanATermHasAGuard",
     {"(not (bvslt (bvurem a2 a2) x2))"},
     {"(not (and u!0 (not (= (bvurem a2 a2) #b01))))"},
     {"u!0 = (bvslt (bvurem a2 a2) x2) for x2"},
     {}},
    {"GuardThatIsAFreeEquationIsEliminatedToo",
     {"(or (bvult x2 y2) (bvult y2 (bvurem a2 a2)))"},
     {"(or (and u!0 (not (= y2 #b00))) (bvult y2 (bvurem a2 a2)))"},
     {"u!0 = (bvult x2 y2) for x2"},
     {}},
    {"TwoFreeArgumentsNeedNoGuard",
     {"(not (bvslt x1 y1))"},
     {},
     {"u!0 = (bvslt x1 y1) for x1 y1", "u!1 = (not u!0) for u!0"},
     {"u!1"}},
    {"AtomBesideAHarmlessNumeralNeedsNoGuard",
     {"(bvult x2 #b10)"},
     {},
     {"u!0 = (bvult x2 #b10) for x2"},
     {"u!0"}},
    {"NothingIsLessThanZero", {"(bvult x2 #b00)"}, {"false"}, {}, {}},
    {"AllIsAtMostTheGreatest", {"(bvsle x2 #b01)"}, {}, {}, {}},
    {"IteOfAFreeConditionAndFirstBranch",
     {"(= (ite p x2 (bvurem a2 a2)) a2)"},
     {},
     {"u!0 = (ite p x2 (bvurem a2 a2)) for p x2", "u!1 = (= u!0 a2) for u!0 a2"},
     {"u!1"}},
    {"IteOfAFreeConditionAndSecondBranch",
     {"(= (ite p (bvurem a2 a2) x2) a2)"},
     {},
     {"u!0 = (ite p (bvurem a2 a2) x2) for p x2", "u!1 = (= u!0 a2) for u!0 a2"},
     {"u!1"}},
    {"IteOfBooleansTakesItsFreeBranchFirst",
     {"(ite p (bvult a2 b2) q)", "(bvult (bvurem a2 b2) a2)"},
     {"(bvult (bvurem a2 b2) a2)"},
     {"u!0 = (not p) for p", "u!1 = (ite u!0 q (bvult a2 b2)) for u!0 q"},
     {"u!1"}},
    {"IteOfFreeBranches",
     {"(= (ite (bvult a2 b2) x2 y2) b2)", "(bvult (bvurem a2 b2) a2)"},
     {"(bvult (bvurem a2 b2) a2)"},
     {"u!0 = (ite (bvult a2 b2) x2 y2) for x2 y2", "u!1 = (= u!0 b2) for u!0"},
     {"u!1"}},
    {"IteOfOneFreeArgumentStays",
     {"(ite p (bvult a2 b2) (bvult b2 a2))"},
     {"(ite p (bvult a2 b2) (bvult b2 a2))"},
     {},
     {}},
    {"ShiftLeftByANumeral",
     {"(bvult (bvshl x3 #b001) (bvurem a3 a3))"},
     {"(bvult (concat u!0 #b0) (bvurem a3 a3))"},
     {"u!0 = ((_ extract 1 0) x3) for x3"},
     {}},
    {"ShiftRightByANumeral",
     {"(bvult (bvlshr x3 #b010) (bvurem a3 a3))"},
     {"(bvult (concat #b00 u!0) (bvurem a3 a3))"},
     {"u!0 = ((_ extract 2 2) x3) for x3"},
     {}},
    {"SignedShiftRightByANumeral",
     {"(bvult (bvashr x3 #b001) (bvurem a3 a3))"},
     {"(bvult ((_ sign_extend 1) u!0) (bvurem a3 a3))"},
     {"u!0 = ((_ extract 2 1) x3) for x3"},
     {}},
    {"SignedShiftRightByTooMuchLeavesTheSign",
     {"(bvult (bvashr x3 #b111) (bvurem a3 a3))"},
     {"(bvult ((_ sign_extend 2) u!0) (bvurem a3 a3))"},
     {"u!0 = ((_ extract 2 2) x3) for x3"},
     {}},
    {"ShiftByTooMuchIsZero",
     {"(bvult (bvshl x3 #b011) (bvurem a3 a3))"},
     {"(bvult #b000 (bvurem a3 a3))"},
     {},
     {}},
    {"ShiftByZeroIsItsArgument",
     {"(= (bvlshr x3 #b000) (bvurem a3 a3))"},
     {},
     {"u!0 = (= x3 (bvurem a3 a3)) for x3"},
     {"u!0"}},
    {"SignedShiftOfOneBitIsItsArgument",
     {"(= (bvashr x1 #b1) (bvurem a1 a1))"},
     {},
     {"u!0 = (= x1 (bvurem a1 a1)) for x1"},
     {"u!0"}},
    {"ShiftOfFreeArguments",
     {"(= (bvashr x3 y3) (bvurem a3 a3))"},
     {},
     {"u!0 = (bvashr x3 y3) for x3 y3", "u!1 = (= u!0 (bvurem a3 a3)) for u!0"},
     {"u!1"}},
    {"ShiftOfANumeralStays",
     {"(bvult (bvshl #b001 x3) (bvurem a3 a3))"},
     {"(bvult (bvshl #b001 x3) (bvurem a3 a3))"},
     {},
     {}},
    {"ProductWithAnOddNumeral",
     {"(= (bvmul #b101 x3) (bvurem a3 a3))"},
     {},
     {"u!0 = (bvmul #b101 x3) for x3", "u!1 = (= u!0 (bvurem a3 a3)) for u!0"},
     {"u!1"}},
    {"ProductWithAnEvenNumeral",
     {"(bvult (bvmul #b110 x3) (bvurem a3 a3))"},
     {"(bvult (concat u!1 #b0) (bvurem a3 a3))"},
     {"u!0 = (bvmul x3 #b011) for x3", "u!1 = ((_ extract 1 0) u!0) for u!0"},
     {}},
    {"ProductWithAPowerOfTwo",
     {"(bvult (bvmul x3 #b100) (bvurem a3 a3))"},
     {"(bvult (concat u!0 #b00) (bvurem a3 a3))"},
     {"u!0 = ((_ extract 0 0) x3) for x3"},
     {}},
    {"ProductWithZeroIsZero",
     {"(bvult (bvmul x3 #b000) (bvurem a3 a3))"},
     {"(bvult #b000 (bvurem a3 a3))"},
     {},
     {}},
    {"ProductOfATermAndAFreeConstantStays",
     {"(bvult (bvmul x3 (bvnot a3)) a3)"},
     {"(bvult (bvmul x3 (bvnot a3)) a3)"},
     {},
     {}},
    {"ConcatenationOfFreeArguments",
     {"(= (concat x1 y2) (bvurem a3 a3))"},
     {},
     {"u!0 = (concat x1 y2) for x1 y2", "u!1 = (= u!0 (bvurem a3 a3)) for u!0"},
     {"u!1"}},
    {"RemaindersAndExtensionsStay",
     {"(bvult (bvurem x2 y2) ((_ zero_extend 1) z1))", "(bvult (bvsrem v2 w2) ((_ sign_extend 1) t1))"},
     {"(bvult (bvurem x2 y2) ((_ zero_extend 1) z1))", "(bvult (bvsrem v2 w2) ((_ sign_extend 1) t1))"},
     {},
     {}},
};

class EliminateRow : public ::testing::TestWithParam<Row>
{};

TEST_P(EliminateRow, LeavesThisRestAndTheseSteps)
{
  TermManager mgr;
  const Terms assertions = parse_terms(mgr, GetParam().assertions);

  const Elimination result = eliminate(mgr, assertions);

  EXPECT_EQ(make_texts(result.assertions), GetParam().rest);
  EXPECT_EQ(make_texts(result.trail.steps), GetParam().steps);
  EXPECT_EQ(make_texts(result.trail.facts), GetParam().facts);
  EXPECT_EQ(test::judge_by_enumeration(mgr, assertions, result), "");
}

INSTANTIATE_TEST_SUITE_P(All, EliminateRow, ::testing::ValuesIn(kRows),
                         [](const auto& row_info) { return std::string(row_info.param.name); });

TEST(Eliminate, NothingLeavesNothing)
{
  TermManager mgr;
  const Elimination result = eliminate(mgr, {});
  EXPECT_TRUE(result.assertions.empty());
  EXPECT_TRUE(result.trail.steps.empty());
  EXPECT_TRUE(result.trail.facts.empty());
}

TEST(Eliminate, FreshNamesPassOverTakenOnes)
{
  TermManager mgr;
  const Terms assertions = parse_terms(mgr, {"(not p)"});
  (void)mgr.make_constant("u!0", mgr.make_bv_type(3));
  EXPECT_EQ(make_texts(eliminate(mgr, assertions).trail.steps),
            std::vector<std::string>{"u!1 = (not p) for p"});
}

TEST(Eliminate, UntouchedAssertionIsTheSameTerm)
{
  TermManager mgr;
  const Terms assertions = parse_terms(mgr, {"(bvult (bvurem a2 b2) a2)"});
  const std::size_t num_terms = mgr.get_num_terms();
  EXPECT_EQ(eliminate(mgr, assertions).assertions, assertions);
  EXPECT_EQ(mgr.get_num_terms(), num_terms);
}

TEST(Eliminate, StepsTellWhichApplicationsOfTheInputTheyReplace)
{
  TermManager mgr;
  const Terms assertions = parse_terms(mgr, {"(= (bvmul (bvnot x3) #b110) (bvurem a3 a3))"});
  const Elimination result = eliminate(mgr, assertions);
  ASSERT_EQ(result.trail.steps.size(), 3U);
  const Term* product = assertions[0]->get_arg(0);
  EXPECT_EQ(result.trail.steps[0].original, product->get_arg(0));
  EXPECT_EQ(result.trail.steps[1].original, nullptr);
  EXPECT_EQ(result.trail.steps[2].original, product);
}

TEST(Eliminate, BadAssertionIsRefused)
{
  TermManager mgr;
  TermManager other;
  const auto refuse = [&mgr](const Term* t) {
    return test::get_refusal([&mgr, t] { (void)eliminate(mgr, Terms{t}); });
  };
  EXPECT_EQ(refuse(nullptr), "an assertion is a null pointer, but a term was expected");
  EXPECT_EQ(refuse(other.make_true()),
            "an assertion belongs to another term manager, but a term of this one was expected");
  EXPECT_EQ(refuse(mgr.make_bv_number(3, 8)), "an assertion has sort (_ BitVec 8), but Bool was expected");
}

}  // namespace
}  // namespace lumo
