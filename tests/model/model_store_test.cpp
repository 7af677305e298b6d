#include "lumo/model/model_store.h"

#include <stack>
#include <string>
#include <type_traits>
#include <vector>

#include <gtest/gtest.h>

#include "lumo/numbers/bvnumber.h"
#include "tests/support/numbered.h"
#include "tests/support/refusal.h"

namespace lumo::test {

namespace {

using Definition = ModelStore::ModelDefinition;
using Stack = ModelStore::DefinitionStack;

class Model : public testing::Test
{
 protected:
  const Term* byte(const std::string& name) { return mgr_.make_constant(name, mgr_.make_bv_type(8)); }
  const Term* boolean(const std::string& name) { return mgr_.make_constant(name, mgr_.make_bool_type()); }
  const Term* number(int n) { return mgr_.make_bv_number(n, 8); }
  const Term* add(const Term* a, const Term* b) { return mgr_.make_term(mgr_.make_bv_add_symbol(8), {a, b}); }

  /// Pushes in the given order, so that the last definition is the newest, and replays.
  void replay(const std::vector<Definition>& definitions)
  {
    Stack defs;
    for (const Definition& definition : definitions)
      defs.push(definition);
    model_.replay(defs);
    EXPECT_TRUE(defs.empty());
  }
  void define(const Term* term, const Term* value) { replay({{term, value, true}}); }

  TermManager mgr_;
  ModelStore model_{&mgr_};
  const Term* x_ = byte("x");
  const Term* y_ = byte("y");
  const Term* p_ = boolean("p");
};

}  // namespace

// -----------------------------------------------------------------------------------------------------------
// the record

TEST_F(Model, DefinitionHoldsItsThreeFields)
{
  const Definition in_force(x_, number(5), true);
  EXPECT_EQ(in_force.term, x_);
  EXPECT_EQ(in_force.value, number(5));
  EXPECT_TRUE(in_force.flag);
  const Definition dropped(p_, mgr_.make_true(), false);
  EXPECT_EQ(dropped.term, p_);
  EXPECT_EQ(dropped.value, mgr_.make_true());
  EXPECT_FALSE(dropped.flag);
  static_assert(std::is_same_v<Stack, std::stack<Definition, std::vector<Definition>>>);
  static_assert(std::is_copy_constructible_v<Definition> && std::is_copy_assignable_v<Definition>);
  static_assert(std::is_same_v<decltype(Definition::term), const Term*>);
  static_assert(std::is_same_v<decltype(Definition::value), const Term*>);
}

// -----------------------------------------------------------------------------------------------------------
// values without definitions

TEST_F(Model, CompletesConstantsWithZeroAndFalse)
{
  EXPECT_EQ(model_.get_value(x_), number(0));
  EXPECT_EQ(model_.get_value(p_), mgr_.make_false());
  const Term* wide = mgr_.make_constant("wide", mgr_.make_bv_type(1000));
  EXPECT_EQ(model_.get_value(wide), mgr_.make_bv_number(0, 1000));
}

TEST_F(Model, GivesValuesTheirOwnValue)
{
  const Term* wide = mgr_.make_bv_number(BVNumber::pow2(100), 128);
  for (const Term* t : {number(0), number(255), wide, mgr_.make_true(), mgr_.make_false()})
    EXPECT_EQ(model_.get_value(t), t);
}

TEST_F(Model, EvaluatesApplicationsOverCompletedConstants)
{
  EXPECT_EQ(model_.get_value(add(x_, number(7))), number(7));
  EXPECT_EQ(model_.get_value(mgr_.make_term(mgr_.make_not_symbol(), {p_})), mgr_.make_true());
  EXPECT_EQ(model_.get_value(mgr_.make_term(mgr_.make_bv_udiv_symbol(8), {x_, y_})), number(255));
  EXPECT_EQ(model_.get_value(mgr_.make_term(mgr_.make_eq_symbol(mgr_.make_bv_type(8)), {x_, y_})),
            mgr_.make_true());
}

// -----------------------------------------------------------------------------------------------------------
// replay

TEST_F(Model, ReplayOfNothingChangesNothing)
{
  replay({});
  EXPECT_EQ(model_.get_value(x_), number(0));
}

TEST_F(Model, TakesValuesOfBothSorts)
{
  replay({{x_, number(12), true}, {p_, mgr_.make_true(), true}});
  EXPECT_EQ(model_.get_value(x_), number(12));
  EXPECT_EQ(model_.get_value(p_), mgr_.make_true());
  EXPECT_EQ(model_.get_value(y_), number(0));
}

TEST_F(Model, TakesTheNewestFirstSoThatTheOldestPrevails)
{
  replay({{x_, number(1), true}, {x_, number(2), true}, {x_, number(3), true}});
  EXPECT_EQ(model_.get_value(x_), number(1));
}

TEST_F(Model, EvaluatesADefiningTermUnderTheModelSoFar)
{
  // Newest first: x is 5, then y is x + 1 = 6, then x is y + y = 12; y stays what it was.
  replay({{x_, add(y_, y_), true}, {y_, add(x_, number(1)), true}, {x_, number(5), true}});
  EXPECT_EQ(model_.get_value(x_), number(12));
  EXPECT_EQ(model_.get_value(y_), number(6));
}

TEST_F(Model, CompletesWhatADefiningTermDoesNotKnowYet)
{
  // y is not defined when x takes its value.
  replay({{y_, number(9), true}, {x_, y_, true}});
  EXPECT_EQ(model_.get_value(x_), number(0));
  EXPECT_EQ(model_.get_value(y_), number(9));
}

TEST_F(Model, TakesADefinitionInTermsOfItself)
{
  define(x_, add(x_, number(1)));
  EXPECT_EQ(model_.get_value(x_), number(1));
  define(x_, add(x_, x_));
  EXPECT_EQ(model_.get_value(x_), number(2));
  define(x_, x_);
  EXPECT_EQ(model_.get_value(x_), number(2));
}

TEST_F(Model, DropsDefinitionsThatAreNotInForce)
{
  replay({{x_, number(1), false}, {x_, number(2), true}, {p_, mgr_.make_true(), false}});
  EXPECT_EQ(model_.get_value(x_), number(2));
  EXPECT_EQ(model_.get_value(p_), mgr_.make_false());
}

TEST_F(Model, KeepsEarlierReplays)
{
  define(x_, number(3));
  define(y_, add(x_, number(1)));
  EXPECT_EQ(model_.get_value(x_), number(3));
  EXPECT_EQ(model_.get_value(y_), number(4));
}

TEST_F(Model, TakesALongStack)
{
  const auto constant = [this](std::size_t i) { return byte(numbered("c", i)); };
  Stack defs;
  for (std::size_t i = 0; i < 1000; ++i)
    defs.emplace(constant(i), add(constant(i + 1), number(1)), true);
  model_.replay(defs);
  EXPECT_TRUE(defs.empty());
  for (std::size_t i = 0; i <= 1000; ++i)
    EXPECT_EQ(model_.get_value(constant(i)), number(static_cast<int>(1000 - i))) << i;
}

// -----------------------------------------------------------------------------------------------------------
// what may be defined

TEST_F(Model, TakesTheValueOfACompoundTerm)
{
  const Term* sum = add(x_, y_);
  replay({{sum, number(100), true}, {x_, number(1), true}});
  EXPECT_EQ(model_.get_value(sum), number(100));
  EXPECT_EQ(model_.get_value(add(sum, number(1))), number(101));
  EXPECT_EQ(model_.get_value(x_), number(1));
  EXPECT_EQ(model_.get_value(add(y_, x_)), number(1)) << "another term is not concerned";
}

TEST_F(Model, TakesTheValueOfACompoundTermAfterItWasEvaluated)
{
  const Term* sum = add(x_, y_);
  const Term* above = add(sum, number(1));
  EXPECT_EQ(model_.get_value(above), number(1));
  define(sum, number(100));
  EXPECT_EQ(model_.get_value(above), number(101));
  define(x_, number(5));
  EXPECT_EQ(model_.get_value(sum), number(100));
  EXPECT_EQ(model_.get_value(above), number(101));
}

TEST_F(Model, LeavesNumeralsTrueAndFalseAlone)
{
  replay({{number(5), number(6), true},
          {mgr_.make_true(), mgr_.make_false(), true},
          {mgr_.make_false(), mgr_.make_true(), true}});
  EXPECT_EQ(model_.get_value(number(5)), number(5));
  EXPECT_EQ(model_.get_value(add(number(5), number(1))), number(6));
  EXPECT_EQ(model_.get_value(mgr_.make_true()), mgr_.make_true());
  EXPECT_EQ(model_.get_value(mgr_.make_false()), mgr_.make_false());
}

TEST_F(Model, ForgetsResultsThatARedefinitionOverthrows)
{
  const Term* sum = add(x_, y_);
  const Term* is_eight =
      mgr_.make_term(mgr_.make_eq_symbol(mgr_.make_bv_type(8)), {add(sum, number(1)), number(8)});
  define(x_, number(3));
  EXPECT_EQ(model_.get_value(is_eight), mgr_.make_false());
  define(x_, number(7));
  EXPECT_EQ(model_.get_value(sum), number(7));
  EXPECT_EQ(model_.get_value(is_eight), mgr_.make_true());
  // Also where the value was only completed before
  define(y_, number(1));
  EXPECT_EQ(model_.get_value(is_eight), mgr_.make_false());
  EXPECT_EQ(model_.get_value(sum), number(8));
  // and where it is as it was
  define(y_, number(1));
  EXPECT_EQ(model_.get_value(sum), number(8));
}

TEST_F(Model, KnowsTermsThatAreMadeLater)
{
  define(x_, number(3));
  EXPECT_EQ(model_.get_value(x_), number(3));
  const Term* z = byte("z");
  EXPECT_EQ(model_.get_value(add(x_, z)), number(3));
  define(z, add(x_, number(1)));
  EXPECT_EQ(model_.get_value(add(x_, z)), number(7));
}

TEST_F(Model, ModelsOfOneManagerAreIndependent)
{
  ModelStore other(&mgr_);
  define(x_, number(3));
  EXPECT_EQ(other.get_value(x_), number(0));
}

// -----------------------------------------------------------------------------------------------------------
// refusals

namespace {

/// A stack of three whose middle definition is refused with the text; what lies above it is taken.
class RefusedDefinition : public Model
{
 protected:
  void expect_refused(const Definition& refused, const std::string& text)
  {
    Stack defs;
    defs.emplace(p_, mgr_.make_true(), true);
    defs.push(refused);
    defs.emplace(y_, number(9), true);
    EXPECT_EQ(get_refusal([&] { model_.replay(defs); }), text);
    ASSERT_EQ(defs.size(), 2);
    EXPECT_EQ(defs.top().term, refused.term);
    EXPECT_EQ(defs.top().value, refused.value);
    EXPECT_EQ(model_.get_value(y_), number(9));
    EXPECT_EQ(model_.get_value(x_), number(0));
    EXPECT_EQ(model_.get_value(p_), mgr_.make_false());

    defs.pop();
    model_.replay(defs);
    EXPECT_TRUE(defs.empty());
    EXPECT_EQ(model_.get_value(p_), mgr_.make_true());
  }
};

}  // namespace

TEST_F(RefusedDefinition, OfANarrowerSortStaysOnTheStack)
{
  expect_refused({x_, mgr_.make_bv_number(5, 7), true},
                 "the value of x has sort (_ BitVec 7), but (_ BitVec 8) was expected");
}

TEST_F(RefusedDefinition, OfABooleanForABitVectorStaysOnTheStack)
{
  expect_refused({x_, mgr_.make_true(), true}, "the value of x has sort Bool, but (_ BitVec 8) was expected");
}

TEST_F(RefusedDefinition, OfABitVectorForABooleanTermStaysOnTheStack)
{
  expect_refused({mgr_.make_term(mgr_.make_not_symbol(), {p_}), mgr_.make_bv_number(1, 1), true},
                 "the value of not has sort (_ BitVec 1), but Bool was expected");
}

TEST_F(RefusedDefinition, StaysOnTheStackEvenIfNotInForce)
{
  expect_refused({x_, mgr_.make_true(), false},
                 "the value of x has sort Bool, but (_ BitVec 8) was expected");
}

TEST_F(RefusedDefinition, OfNullPointersStaysOnTheStack)
{
  const std::string text = "a model was given a null pointer, but a term was expected";
  expect_refused({x_, nullptr, true}, text);
  define(p_, mgr_.make_false());
  expect_refused({nullptr, number(1), true}, text);
}

TEST_F(RefusedDefinition, OfForeignTermsStaysOnTheStack)
{
  TermManager other;
  const Term* x = other.make_constant("x", other.make_bv_type(8));
  const std::string text =
      "a model was given a term of another term manager, but a term of its own one was expected";
  expect_refused({x_, other.make_bv_number(1, 8), true}, text);
  define(p_, mgr_.make_false());
  expect_refused({x, number(1), true}, text);
  define(p_, mgr_.make_false());
  expect_refused({x, other.make_bv_number(1, 8), true}, text);
}

TEST_F(Model, RefusesToValueNullAndForeignTerms)
{
  TermManager other;
  EXPECT_EQ(get_refusal([&] { (void)model_.get_value(nullptr); }),
            "a model was given a null pointer, but a term was expected");
  EXPECT_EQ(get_refusal([&] { (void)model_.get_value(other.make_true()); }),
            "a model was given a term of another term manager, but a term of its own one was expected");
  EXPECT_EQ(model_.get_value(x_), number(0));
}

}  // namespace lumo::test
