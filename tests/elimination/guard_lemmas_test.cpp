#include "lumo/elimination/guard_lemmas.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "lumo/elimination/eliminate.h"
#include "tests/elimination/enumeration_judge.h"
#include "tests/support/notation.h"
#include "tests/support/numbered.h"
#include "tests/support/random_formula.h"
#include "tests/support/small_stack.h"
#include "tests/support/term_text.h"

namespace lumo::test {
namespace {

std::vector<std::string> print(const Terms& terms)
{
  std::vector<std::string> texts;
  for (const Term* t : terms)
    texts.push_back(make_term_text(t));
  return texts;
}

TEST(GuardLemmas, StandForGuardedAtomsInTheRestAndInSteps)
{
  TermManager mgr;
  const Terms kept = {
      parse_term(mgr, "(bvmul (ite (bvult x2 s2) s2 t2) (bvxor (ite (bvsle t2 z2) s2 t2) y2))"),
      parse_term(mgr, "s2"), parse_term(mgr, "t2")};
  const Elimination elimination = eliminate(mgr, {}, {kept, "u"});
  const GuardLemmas lemmas = separate_guards(mgr, elimination.trail, elimination.kept);
  EXPECT_EQ(print(lemmas.rest),
            (std::vector<std::string>{"(= u!1 (or u!1 (= t2 #b10)))", "(= u!0 (and u!0 (not (= s2 #b00))))",
                                      "(bvmul (ite u!0 s2 t2) u!2)", "s2", "t2"}));
  ASSERT_EQ(lemmas.trail.steps.size(), 3U);
  EXPECT_EQ(make_term_text(lemmas.trail.steps[2].application), "(bvxor (ite u!1 s2 t2) y2)");
}

TEST(GuardLemmas, LeaveEverythingElseAlone)
{
  TermManager mgr;
  const Terms assertions = {parse_term(mgr, "(or (bvult x2 #b10) (= (bvurem s2 s2) s2))"),
                            parse_term(mgr, "(= (bvurem s2 s2) (bvadd y2 s2))")};
  const Elimination elimination = eliminate(mgr, assertions);
  const GuardLemmas lemmas = separate_guards(mgr, elimination.trail, elimination.assertions);
  EXPECT_EQ(lemmas.rest, elimination.assertions);
}

/// Under the definitions of the steps, which are the same with and without lemmas, both rests have the same value.
TEST(GuardLemmas, AreTrueAndSayTheSameAsTheRest)
{
  Random random(19);
  SCOPED_TRACE(random);
  std::size_t num_lemmas = 0;
  for (int round = 0; round < 2000; ++round) {
    TermManager mgr;
    const RandomFormula formula =
        make_random_formula(mgr, random, {.widths = {1, 2, 3}, .max_applications = 10});
    const Elimination elimination = eliminate(mgr, formula.assertions);
    const GuardLemmas lemmas = separate_guards(mgr, elimination.trail, elimination.assertions);
    const std::size_t num_added = lemmas.rest.size() - elimination.assertions.size();
    if (num_added == 0) continue;
    num_lemmas += num_added;
    for (int i = 0; i < 20; ++i) {
      ModelStore model = make_model(mgr, formula.constants, random.bits());
      for (std::size_t times = 0; times < lemmas.trail.steps.size(); ++times) {
        for (const Step& step : lemmas.trail.steps)
          model.set_value(step.constant, model.get_value(step.application));
      }
      EXPECT_TRUE(
          holds(mgr, {lemmas.rest.begin(), lemmas.rest.begin() + static_cast<long>(num_added)}, model));
      EXPECT_EQ(holds(mgr, elimination.assertions, model), holds(mgr, lemmas.rest, model));
      for (const Step& step : elimination.trail.steps)
        EXPECT_EQ(model.get_value(step.constant), model.get_value(step.application));
    }
  }
  EXPECT_GT(num_lemmas, 100U);
}

TEST(GuardLemmas, AreFoundInDeepTermsInLinearTime)
{
  run_on_small_stack([] {
    constexpr std::size_t kSize = 100'000;
    TermManager mgr;
    const Term* shared = parse_term(mgr, "s8");
    const Term* t = shared;
    for (std::size_t i = 0; i < kSize; ++i) {
      const Term* x = mgr.make_constant(numbered("x", i), mgr.make_bv_type(8));
      const Term* atom = mgr.make_term(mgr.make_bv_ult_symbol(8), {x, t});
      t = mgr.make_term(mgr.make_ite_symbol(mgr.make_bv_type(8)), {atom, shared, t});
    }
    const Terms kept{t, shared};
    const Elimination elimination = eliminate(mgr, {}, {kept, "u"});
    const GuardLemmas lemmas = separate_guards(mgr, elimination.trail, elimination.kept);
    EXPECT_EQ(lemmas.rest.size(), kSize + 2);
  });
}

}  // namespace
}  // namespace lumo::test
