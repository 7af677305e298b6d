// Terms that are used outside of the assertions: their forms after elimination.

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "lumo/elimination/eliminate.h"
#include "lumo/elimination/extend.h"
#include "lumo/terms/term_walk.h"
#include "tests/elimination/enumeration_judge.h"
#include "tests/support/notation.h"
#include "tests/support/random_formula.h"
#include "tests/support/refusal.h"
#include "tests/support/term_text.h"

namespace lumo {
namespace {

using test::Terms;

class Kept : public testing::Test
{
 protected:
  const Term* parse(const std::string& text) { return test::parse_term(mgr_, text); }
  /// Eliminates one assertion, judges the result, and returns it.
  Elimination eliminate_one(const std::string& assertion, const Terms& kept)
  {
    const Terms assertions{parse(assertion)};
    Elimination result = eliminate(mgr_, assertions, {.kept = kept});
    EXPECT_EQ(test::judge_by_enumeration(mgr_, assertions, result, kept), "");
    return result;
  }

  TermManager mgr_;
};

TEST_F(Kept, ConstantIsNotFree)
{
  const Term* x = parse("x2");
  const Elimination result = eliminate_one("(= (bvnot x2) (bvurem a2 a2))", {x});
  EXPECT_EQ(result.assertions, Terms{parse("(= (bvnot x2) (bvurem a2 a2))")});
  EXPECT_TRUE(result.trail.steps.empty());
  EXPECT_EQ(result.kept, Terms{x});
}

TEST_F(Kept, BooleanThatIsAssertedIsNotAFact)
{
  const Term* p = parse("p");
  const Elimination result = eliminate_one("p", {p});
  EXPECT_EQ(result.assertions, Terms{p});
  EXPECT_TRUE(result.trail.facts.empty());
}

TEST_F(Kept, FactsAreTakenFromAConjunctionWithoutTheKeptOnes)
{
  const Elimination result = eliminate_one("(and (and p q) r)", {parse("q")});
  EXPECT_EQ(result.assertions, Terms{parse("q")});
  EXPECT_EQ(result.trail.facts.size(), 2U);
}

TEST_F(Kept, FreeArgumentNextToAKeptOneIsStillEliminated)
{
  const Term* y = parse("y2");
  const Elimination result = eliminate_one("(= (bvadd x2 y2) #b01)", {y});
  EXPECT_TRUE(result.assertions.empty());
  EXPECT_EQ(result.trail.steps.size(), 2U);
}

TEST_F(Kept, ApplicationIsReplacedByItsForm)
{
  const Elimination result =
      eliminate_one("(bvult (bvadd x2 #b01) (bvurem a2 a2))", {parse("(bvadd x2 #b01)")});
  ASSERT_EQ(result.trail.steps.size(), 1U);
  EXPECT_EQ(result.kept, Terms{result.trail.steps[0].constant});
}

TEST_F(Kept, ApplicationInsideOfAChainIsNotRegrouped)
{
  const Term* inner = parse("(or p (= #b1 (bvurem a1 b1)))");
  const Elimination result = eliminate_one("(or (or p (= #b1 (bvurem a1 b1))) q)", {inner});
  EXPECT_EQ(result.kept, Terms{inner});
}

TEST_F(Kept, TermThatNoAssertionMentionsIsItsOwnForm)
{
  const Term* alone = parse("x3");
  const Term* value = parse("#b101");
  const Elimination result = eliminate_one("p", {alone, value, mgr_.make_true(), alone});
  EXPECT_EQ(result.kept, (Terms{alone, value, mgr_.make_true(), alone}));
  EXPECT_EQ(result.trail.facts.size(), 1U);
}

TEST_F(Kept, ConstantsKeepTheValueThatTheModelGives)
{
  const Term* y = parse("y2");
  const Terms assertions{parse("(= (bvadd x2 y2) #b01)")};
  const Elimination result = eliminate(mgr_, assertions, {.kept = Terms{y}});
  ModelStore model(&mgr_);
  model.set_value(y, QNumber(3));
  extend(mgr_, result.trail, model);
  EXPECT_EQ(model.get_number(y), QNumber(3));
  EXPECT_EQ(find_violated(mgr_, assertions, model), 1U);
}

TEST_F(Kept, BadTermIsRefused)
{
  TermManager other;
  const auto refuse = [this](const Term* t) {
    return test::get_refusal([this, t] { (void)eliminate(mgr_, {}, {.kept = Terms{t}}); });
  };
  EXPECT_EQ(refuse(nullptr), "a kept term is a null pointer, but a term was expected");
  EXPECT_EQ(refuse(other.make_true()),
            "a kept term belongs to another term manager, but a term of this one was expected");
}

TEST_F(Kept, FreshConstantsHaveTheChosenPrefix)
{
  const Terms assertions{parse("(not p)")};
  const Elimination result = eliminate(mgr_, assertions, {.prefix = "solver.fresh"});
  ASSERT_EQ(result.trail.steps.size(), 1U);
  EXPECT_EQ(result.trail.steps[0].constant->get_symbol()->get_name(), "solver.fresh!0");
}

/// The number of assignments that an enumeration for the constants of the terms would try
std::size_t count_bits(const Terms& terms)
{
  std::size_t num_bits = 0;
  for (const Term* constant : collect_constants(terms))
    num_bits += constant->get_sort()->is_bool() ? 1 : constant->get_sort()->get_width();
  return num_bits;
}

TEST(KeptRandomly, TermsHaveTheValuesOfTheirForms)
{
  constexpr std::size_t kMaxBits = 9;
  constexpr std::size_t kNumFormulas = 1500;
  test::Random random;
  SCOPED_TRACE(random);
  std::size_t num_steps = 0;
  std::size_t num_changed = 0;
  for (std::size_t round = 0; round < kNumFormulas;) {
    TermManager mgr;
    const Terms assertions =
        test::make_random_formula(mgr, random, {.widths = {1, 2}, .max_applications = 6}).assertions;
    if (count_bits(assertions) > kMaxBits) continue;
    ++round;
    Terms kept;
    for (const Term* t : lumo::collect_terms(assertions)) {
      if (random.index(4) == 0) kept.push_back(t);
    }
    const Elimination result = eliminate(mgr, assertions, {.kept = kept});
    num_steps += result.trail.steps.size();
    for (std::size_t i = 0; i < kept.size(); ++i)
      num_changed += kept[i] == result.kept[i] ? 0 : 1;
    if (count_bits(result.assertions) + count_bits(result.kept) > kMaxBits + 3) continue;
    const std::string complaint = test::judge_by_enumeration(mgr, assertions, result, kept);
    ASSERT_EQ(complaint, "") << test::make_term_text(assertions.front()) << " in round " << round;
  }
  EXPECT_GT(num_steps, kNumFormulas / 4) << "hardly anything was eliminated";
  EXPECT_GT(num_changed, kNumFormulas / 4) << "hardly any kept term has another form";
}

}  // namespace
}  // namespace lumo
