#include "lumo/model/model_store.h"

#include <stack>
#include <string>
#include <type_traits>
#include <utility>
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
  // Newest first: x is 5, then y is x + 1 = 6, then x is y + y = 12; y stays unchanged.
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

TEST_F(Model, ChecksWithTheValuesOfConstantsOnly)
{
  const Term* sum = add(x_, y_);
  const Term* is_hundred = mgr_.make_term(mgr_.make_eq_symbol(mgr_.make_bv_type(8)), {sum, number(100)});
  define(y_, number(2));
  EXPECT_FALSE(model_.holds(is_hundred));
  replay({{sum, number(100), true}, {x_, number(1), true}});
  EXPECT_EQ(model_.get_value(is_hundred), mgr_.make_true());
  EXPECT_FALSE(model_.holds(is_hundred));
  EXPECT_EQ(model_.find_contradicted(), sum);
  define(y_, number(99));
  EXPECT_TRUE(model_.holds(is_hundred));
  EXPECT_EQ(model_.find_contradicted(), nullptr);
  model_.unset_value(y_);
  EXPECT_EQ(model_.find_contradicted(), sum);
  model_.unset_value(sum);
  EXPECT_EQ(model_.find_contradicted(), nullptr);
  EXPECT_EQ(model_.get_value(is_hundred), mgr_.make_false());
}

TEST_F(Model, ReportsTheFirstOfSeveralContradictedDefinitions)
{
  const Term* first = add(x_, y_);
  const Term* second = add(y_, x_);
  replay({{second, number(5), true}, {first, number(6), true}});
  EXPECT_EQ(model_.find_contradicted(), first) << "the newest on the stack is the first to be taken";
  define(first, number(0));
  EXPECT_EQ(model_.find_contradicted(), second) << "a later definition replaces an earlier one";
  model_.clear();
  EXPECT_EQ(model_.find_contradicted(), nullptr);
  EXPECT_FALSE(model_.has_value(second));
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
  // and where it stays the same
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
// single values

TEST_F(Model, SetsValuesByTermsAndByNumbers)
{
  model_.set_value(x_, number(7));
  model_.set_value(y_, QNumber(-1));
  model_.set_value(p_, QNumber(1));
  EXPECT_EQ(model_.get_value(x_), number(7));
  EXPECT_EQ(model_.get_value(y_), number(255)) << "modulo 2^8";
  EXPECT_EQ(model_.get_value(p_), mgr_.make_true());
  model_.set_value(y_, add(x_, x_));
  model_.set_value(x_, number(0));
  EXPECT_EQ(model_.get_value(y_), number(14)) << "the value at the time";
  model_.set_value(number(5), QNumber(6));
  EXPECT_EQ(model_.get_value(number(5)), number(5));
}

TEST_F(Model, KnowsWhichTermsItDefines)
{
  EXPECT_FALSE(model_.has_value(x_));
  EXPECT_EQ(model_.get_value(x_), number(0));
  EXPECT_FALSE(model_.has_value(x_)) << "to complete is not to define";
  define(x_, number(0));
  EXPECT_TRUE(model_.has_value(x_));
  EXPECT_FALSE(model_.has_value(number(0)));
  EXPECT_FALSE(model_.has_value(mgr_.make_constant("later", mgr_.make_bool_type())));
}

TEST_F(Model, TakesValuesAway)
{
  const Term* sum = add(x_, y_);
  define(x_, number(3));
  EXPECT_EQ(model_.get_value(sum), number(3));
  model_.unset_value(x_);
  EXPECT_FALSE(model_.has_value(x_));
  EXPECT_EQ(model_.get_value(sum), number(0));
  model_.unset_value(x_);
  model_.unset_value(sum);
  model_.unset_value(number(1));
  EXPECT_EQ(model_.get_num_values(), 0U);
  define(x_, number(4));
  EXPECT_EQ(model_.get_value(sum), number(4));
  model_.clear();
  EXPECT_EQ(model_.get_value(sum), number(0));
  EXPECT_EQ(model_.get_num_values(), 0U);
}

TEST_F(Model, ListsItsValuesInTheOrderInWhichTheyCame)
{
  std::vector<const Term*> constants;
  for (std::size_t i = 0; i < 100; ++i) {
    constants.push_back(byte(numbered("c", 99 - i)));
    model_.set_value(constants.back(), QNumber(static_cast<long>(i)));
  }
  model_.set_value(constants[7], QNumber(200));  // keeps its place
  for (std::size_t i = 0; i < 100; ++i) {
    if (i % 5 != 2) model_.unset_value(constants[i]);
  }
  model_.set_value(constants[0], QNumber(11));
  std::vector<const Term*> expected;
  for (std::size_t i = 2; i < 100; i += 5)
    expected.push_back(constants[i]);
  expected.push_back(constants[0]);

  std::vector<const Term*> listed;
  const ModelStore& model = model_;
  model.for_each_value([&](const Term* t, const QNumber& value) {
    listed.push_back(t);
    EXPECT_EQ(value, model.get_number(t));
  });
  EXPECT_EQ(listed, expected);
  EXPECT_EQ(model.get_num_values(), expected.size());
  EXPECT_EQ(model.get_number(constants[7]), QNumber(200));
}

TEST_F(Model, ReadsNumbersWithoutMakingTerms)
{
  const Term* product = mgr_.make_term(mgr_.make_bv_mul_symbol(8), {add(x_, y_), add(x_, y_)});
  define(x_, number(13));
  const std::size_t num_terms = mgr_.get_num_terms();
  const ModelStore& model = model_;
  EXPECT_EQ(model.get_number(product), QNumber(169));
  EXPECT_EQ(model.get_number(p_), QNumber(0));
  EXPECT_EQ(model.get_number(mgr_.make_true()), QNumber(1));
  EXPECT_EQ(model.get_number(number(13)), QNumber(13));
  EXPECT_EQ(mgr_.get_num_terms(), num_terms);
  // Cached results are used, and later definitions take effect.
  EXPECT_EQ(model_.get_value(add(x_, y_)), number(13));
  EXPECT_EQ(model.get_number(product), QNumber(169));
  define(y_, number(1));
  EXPECT_EQ(model.get_number(product), QNumber(196));
}

TEST_F(Model, ReplaysAStackThatIsKept)
{
  Stack defs;
  defs.emplace(x_, add(y_, number(1)), true);
  defs.emplace(y_, number(4), true);
  for (int round = 0; round < 2; ++round) {
    ModelStore model(&mgr_);
    model.replay_keeping(defs);
    EXPECT_EQ(model.get_number(x_), QNumber(5));
    EXPECT_EQ(model.get_number(y_), QNumber(4));
    ASSERT_EQ(defs.size(), 2U);
  }
  defs.emplace(p_, number(1), true);
  defs.emplace(x_, number(9), true);
  EXPECT_EQ(get_refusal([&] { model_.replay_keeping(defs); }),
            "the value of p has sort (_ BitVec 8), but Bool was expected");
  EXPECT_EQ(defs.size(), 4U);
  EXPECT_EQ(model_.get_number(x_), QNumber(9));
  EXPECT_FALSE(model_.has_value(y_));
}

TEST_F(Model, TellsWhetherABooleanHolds)
{
  EXPECT_FALSE(model_.holds(p_));
  EXPECT_TRUE(model_.holds(mgr_.make_term(mgr_.make_not_symbol(), {p_})));
  EXPECT_EQ(
      get_refusal([&] { (void)model_.holds(x_); }),
      "a model was asked whether a term of sort (_ BitVec 8) holds, but a term of sort Bool was expected");
}

TEST_F(Model, CopiesAreIndependent)
{
  define(x_, number(3));
  EXPECT_EQ(model_.get_value(add(x_, y_)), number(3));
  ModelStore copy(model_);
  copy.set_value(x_, number(4));
  EXPECT_EQ(copy.get_value(add(x_, y_)), number(4));
  EXPECT_EQ(model_.get_value(add(x_, y_)), number(3));
  model_ = copy;
  EXPECT_EQ(model_.get_value(add(x_, y_)), number(4));
  const ModelStore moved(std::move(copy));
  EXPECT_EQ(moved.get_number(add(x_, y_)), QNumber(4));
}

// -----------------------------------------------------------------------------------------------------------
// refusals

namespace {

/// A stack of three whose middle definition is refused with the text; the one above it is taken.
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

TEST_F(Model, EveryMemberRefusesNullAndForeignTerms)
{
  TermManager other;
  const auto expect_refused = [this](const Term* t, const std::string& text) {
    EXPECT_EQ(get_refusal([&] { model_.set_value(t, number(1)); }), text);
    EXPECT_EQ(get_refusal([&] { model_.set_value(x_, t); }), text);
    EXPECT_EQ(get_refusal([&] { model_.set_value(t, QNumber(1)); }), text);
    EXPECT_EQ(get_refusal([&] { model_.unset_value(t); }), text);
    EXPECT_EQ(get_refusal([&] { (void)model_.has_value(t); }), text);
    EXPECT_EQ(get_refusal([&] { (void)model_.get_number(t); }), text);
    EXPECT_EQ(get_refusal([&] { (void)model_.holds(t); }), text);
  };
  expect_refused(nullptr, "a model was given a null pointer, but a term was expected");
  expect_refused(other.make_bv_number(1, 8),
                 "a model was given a term of another term manager, but a term of its own one was expected");
}

TEST_F(Model, RefusesNumbersThatAreNoValuesOfTheSort)
{
  EXPECT_EQ(get_refusal([&] { model_.set_value(x_, QNumber(1, 2)); }),
            "a model was given the number 1/2, but an integer was expected");
  EXPECT_EQ(get_refusal([&] { model_.set_value(p_, QNumber(2)); }),
            "a Boolean was given the number 2, but 0 or 1 was expected");
}

}  // namespace lumo::test
