#include "lumo/elimination/extend.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "lumo/elimination/eliminate.h"
#include "tests/elimination/enumeration_judge.h"
#include "tests/support/notation.h"
#include "tests/support/refusal.h"

namespace lumo {
namespace {

using test::Terms;

class Extension : public ::testing::Test
{
 protected:
  const Term* parse(const std::string& text) { return test::parse_term(mgr_, text); }
  std::string get_value(const std::string& text)
  {
    return model_.get_value(parse(text))->get_symbol()->get_name();
  }
  void set(const std::string& constant, const std::string& value)
  {
    ModelStore::DefinitionStack defs;
    defs.emplace(parse(constant), parse(value), true);
    model_.replay(defs);
  }

  TermManager mgr_;
  ModelStore model_{&mgr_};
};

TEST_F(Extension, WalksFromTheNewestStepToTheOldest)
{
  const Terms assertions{parse("(= (bvnot (bvadd x8 #x05)) #xf0)")};
  extend(mgr_, eliminate(mgr_, assertions).trail, model_);
  EXPECT_EQ(get_value("x8"), "#x0a");
  EXPECT_EQ(find_violated(mgr_, assertions, model_), 1U);
}

TEST_F(Extension, ArgumentThatIsNotFreeCountsAsTheModelSays)
{
  const Terms assertions{parse("(= (bvadd x8 y8) #x05)"), parse("(bvult #x10 (bvurem y8 #x80))")};
  set("y8", "#x11");
  extend(mgr_, eliminate(mgr_, assertions).trail, model_);
  EXPECT_EQ(get_value("x8"), "#xf4");
  EXPECT_EQ(get_value("y8"), "#x11");
}

TEST_F(Extension, ConstantsWithoutAValueAreZeroBeforeTheWalk)
{
  const Terms assertions{parse("(= x8 (bvurem y8 z8))"), parse("(bvule y8 (bvurem y8 z8))")};
  extend(mgr_, eliminate(mgr_, assertions).trail, model_);
  EXPECT_EQ(get_value("x8"), "#x00");
  EXPECT_EQ(get_value("y8"), "#x00");
}

TEST_F(Extension, FactsAreTrue)
{
  const Terms assertions{parse("p"), parse("(and q (not r))")};
  extend(mgr_, eliminate(mgr_, assertions).trail, model_);
  EXPECT_EQ(get_value("p"), "true");
  EXPECT_EQ(get_value("q"), "true");
  EXPECT_EQ(get_value("r"), "false");
}

TEST_F(Extension, AtomWithoutAChoiceIsWhatItMustBe)
{
  const Terms assertions{parse("(or (bvult x8 (bvurem a8 #x80)) (bvule #x00 a8))")};
  const Elimination elimination = eliminate(mgr_, assertions);
  ASSERT_EQ(elimination.trail.steps.size(), 1U);
  // The fresh constant is true, but its guard is false.
  ModelStore::DefinitionStack defs;
  defs.emplace(elimination.trail.steps[0].constant, mgr_.make_true(), true);
  model_.replay(defs);
  extend(mgr_, elimination.trail, model_);
  EXPECT_EQ(find_violated(mgr_, assertions, model_), 1U);
}

TEST_F(Extension, BranchThatDoesNotMatterGetsNoValue)
{
  const Term* branch = parse("(bvurem a8 #x80)");
  const Terms assertions{mgr_.make_term(mgr_.make_eq_symbol(mgr_.make_bv_type(8)),
                                        {parse("(ite p x8 (bvurem a8 #x80))"), parse("#x07")}),
                         mgr_.make_term(mgr_.make_bv_ule_symbol(8), {branch, parse("a8")})};
  set("a8", "#x83");
  extend(mgr_, eliminate(mgr_, assertions).trail, model_);
  EXPECT_EQ(get_value("(bvurem a8 #x80)"), "#x03");
  EXPECT_EQ(get_value("(ite p x8 (bvurem a8 #x80))"), "#x07");
}

TEST_F(Extension, OneAssertionAfterTheOtherIsLookedAt)
{
  const Terms assertions{parse("(= x8 #x00)"), parse("(= x8 #x01)"), parse("(= x8 #x02)")};
  EXPECT_EQ(find_violated(mgr_, assertions, model_), 1U);
  set("x8", "#x01");
  EXPECT_EQ(find_violated(mgr_, assertions, model_), 0U);
  EXPECT_EQ(find_violated(mgr_, {}, model_), 0U);
}

TEST_F(Extension, TrailOfAnOperatorWithoutAnswerIsRefused)
{
  const Term* application = parse("(bvurem x8 y8)");
  Trail trail;
  trail.steps.push_back({parse("z8"), application, FreeArguments(0b11), application});
  EXPECT_EQ(test::get_refusal([&] { extend(mgr_, trail, model_); }), "Should not be called is never free!");
}

TEST_F(Extension, AssertionThatIsNoBooleanIsRefused)
{
  TermManager other;
  const auto refuse = [this](const Term* t) {
    return test::get_refusal([this, t] { (void)find_violated(mgr_, Terms{t}, model_); });
  };
  EXPECT_EQ(
      refuse(parse("x1")),
      "a model was asked whether a term of sort (_ BitVec 1) holds, but a term of sort Bool was expected");
  EXPECT_EQ(refuse(nullptr), "a model was given a null pointer, but a term was expected");
  EXPECT_EQ(refuse(other.make_true()),
            "a model was given a term of another term manager, but a term of its own one was expected");
}

TEST_F(Extension, StepsOfNullPointersAndForeignTermsAreRefused)
{
  TermManager other;
  const Term* x = parse("x8");
  const Term* application = parse("(bvnot x8)");
  const auto refuse = [this](const Step& step) {
    return test::get_refusal([&] { extend(mgr_, {{step}, {}}, model_); });
  };
  const std::string null = "a step of a trail has a null pointer, but a term was expected";
  const std::string foreign =
      "a step of a trail has a term of another term manager, but a term of this one was expected";
  EXPECT_EQ(refuse({nullptr, application, FreeArguments(1), nullptr}),
            "a model was given a null pointer, but a term was expected");
  EXPECT_EQ(refuse({x, nullptr, FreeArguments(1), nullptr}), null);
  EXPECT_EQ(refuse({other.make_true(), application, FreeArguments(1), nullptr}),
            "a model was given a term of another term manager, but a term of its own one was expected");
  EXPECT_EQ(refuse({x, other.make_true(), FreeArguments(1), nullptr}), foreign);
}

TEST_F(Extension, ModelOfAnotherManagerIsRefused)
{
  TermManager other;
  ModelStore model(&other);
  const std::string text = "a model of another term manager was given, but one of this manager was expected";
  EXPECT_EQ(test::get_refusal([&] { extend(mgr_, {}, model); }), text);
  EXPECT_EQ(test::get_refusal([&] { (void)find_violated(mgr_, {}, model); }), text);
}

TEST_F(Extension, DefinitionOfACompoundTermDoesNotMakeAnAssertionTrue)
{
  const Terms assertions{parse("(= (bvadd x8 y8) #x05)")};
  set("(bvadd x8 y8)", "#x05");
  EXPECT_EQ(find_violated(mgr_, assertions, model_), 0U);
  EXPECT_EQ(model_.find_contradicted(), parse("(bvadd x8 y8)"));
  set("y8", "#x05");
  EXPECT_EQ(find_violated(mgr_, assertions, model_), 1U);
  EXPECT_EQ(model_.find_contradicted(), nullptr);
}

TEST_F(Extension, TakesNoTermsButValues)
{
  const Terms assertions{parse("(= (bvadd x8 (bvmul y8 y8)) #x05)"), parse("(bvult #x10 (bvurem y8 #x80))")};
  const Elimination elimination = eliminate(mgr_, assertions);
  set("y8", "#x11");
  const std::size_t num_terms = mgr_.get_num_terms();
  extend(mgr_, elimination.trail, model_);
  for (std::size_t round = 0; round < 3; ++round)
    EXPECT_EQ(find_violated(mgr_, assertions, model_), 2U);
  // The value of the product, and the value of x; #x05 existed before.
  EXPECT_EQ(mgr_.get_num_terms(), num_terms + 2);
}

}  // namespace
}  // namespace lumo
