// If a calculator solves a case with distinct constants and a proper value, the application takes that
// value.

#include "tests/calculators/soundness.h"

#include <gtest/gtest.h>

#include "lumo/calculators/calculator_table.h"
#include "lumo/numbers/bvnumber.h"
#include "tests/calculators/calls.h"
#include "tests/calculators/enumeration.h"
#include "tests/support/gmp_number.h"
#include "tests/support/make_operator.h"
#include "tests/support/numbered.h"
#include "tests/support/random.h"

namespace lumo::test {
namespace {

enum class Result
{
  kRefused,
  kSound,
  kUnsound
};

/// Calls the calculator, replays its definitions into an empty model, and evaluates t.
Result solve_and_evaluate(TermManager& mgr, const Term* t, const Term* value)
{
  ModelStore::DefinitionStack defs;
  try {
    (*find_calculator(mgr, t->get_symbol()))(&mgr, t, value, defs);
  } catch (const Exception&) {
    EXPECT_TRUE(defs.empty());
    return Result::kRefused;
  }
  ModelStore model(&mgr);
  model.replay(defs);
  return model.get_value(t) == value ? Result::kSound : Result::kUnsound;
}

class SmallSoundnessTest : public testing::TestWithParam<OperatorInfo>
{};

TEST_P(SmallSoundnessTest, DefinitionsMakeTheApplicationTakeTheValueSaveForTheKnownExceptions)
{
  TermManager mgr;
  Reference reference(&mgr);
  int num_sound = 0;
  for (unsigned long w = 1; w <= 3; ++w) {
    for (const Parameters& p : enumerate_parameters(GetParam().kind, w)) {
      const Symbol* s = make_operator(mgr, GetParam().kind, p);
      const std::vector<const Term*> values = enumerate_values(mgr, reference, s->get_output_type());
      for_each_application(mgr, reference, s, [&](const Term* t) {
        if (!has_distinct_constants(mgr, t)) return;
        for (const Term* value : values) {
          if (!is_value_of(reference, mgr, value, s->get_output_type())) continue;
          const Result result = solve_and_evaluate(mgr, t, value);
          num_sound += result == Result::kSound ? 1 : 0;
          EXPECT_TRUE(result != Result::kUnsound || is_known_exception(mgr, t))
              << describe(t) << " is " << describe(value);
        }
      });
    }
  }
  const bool is_remainder = GetParam().kind == Kind::kBvUrem || GetParam().kind == Kind::kBvSrem;
  EXPECT_EQ(num_sound == 0, is_remainder);
}

INSTANTIATE_TEST_SUITE_P(AllOperators, SmallSoundnessTest, testing::ValuesIn(kOperators), name_operator);

TEST(SoundnessException, OneBitSignExtensionOfTheValueOneGivesAllOnesInstead)
{
  TermManager mgr;
  const Term* x = mgr.make_constant("x", mgr.make_bv_type(1));
  int num_unsound = 0;
  for (unsigned long k = 0; k <= 8; ++k) {
    const Term* t = mgr.make_term(mgr.make_bv_sign_extend_symbol(k, 1), {x});
    if (solve_and_evaluate(mgr, t, mgr.make_bv_number(1, k + 1)) == Result::kUnsound) ++num_unsound;
    EXPECT_EQ(solve_and_evaluate(mgr, t, mgr.make_bv_number(0, k + 1)), Result::kSound);
  }
  EXPECT_EQ(num_unsound, 8) << "by any number of bits but none";
}

TEST(SoundnessException, ExtensionOfANumeralTakesAValueThatTheNumeralDoesNotHave)
{
  TermManager mgr;
  const Term* seven = mgr.make_bv_number(7, 4);
  for (const Symbol* s : {mgr.make_bv_zero_extend_symbol(4, 4), mgr.make_bv_sign_extend_symbol(4, 4)}) {
    const Term* t = mgr.make_term(s, {seven});
    EXPECT_EQ(solve_and_evaluate(mgr, t, mgr.make_bv_number(1, 8)), Result::kUnsound);
    EXPECT_EQ(solve_and_evaluate(mgr, t, mgr.make_bv_number(0, 8)), Result::kUnsound);
  }
}

TEST(SoundnessException, IfThenElseCountsATruthValueAsAFreeBranch)
{
  TermManager mgr;
  const DataType* boolean = mgr.make_bool_type();
  const Term* c = mgr.make_constant("c", boolean);
  const Term* q = mgr.make_constant("q", boolean);
  const Term* t = mgr.make_term(mgr.make_ite_symbol(boolean), {c, mgr.make_true(), q});
  EXPECT_EQ(solve_and_evaluate(mgr, t, mgr.make_false()), Result::kUnsound);
  EXPECT_EQ(solve_and_evaluate(mgr, t, mgr.make_true()), Result::kSound);
}

// Random, large widths

constexpr unsigned long kWidths[] = {8, 31, 32, 33, 62, 63, 64, 65, 127, 128, 1000, 4096};

Parameters draw_parameters(Random& random, Kind kind, unsigned long w)
{
  switch (get_operator_info(kind).rule) {
    case SortRule::kBool:
      return {};
    case SortRule::kIte:
    case SortRule::kEq:
    case SortRule::kUniform:
    case SortRule::kPredicate:
    case SortRule::kComparison:
      return {w};
    case SortRule::kConcat:
      return {w, 1 + random.index(w)};
    case SortRule::kExtract: {
      const unsigned long msb = random.index(w);
      return {msb, random.index(msb + 1), w};
    }
    case SortRule::kRotate:
      return {random.index(2 * w + 1), w};
    case SortRule::kExtend:
      return {random.index(w), w};
  }
  return {};
}

const Term* draw_value(TermManager& mgr, Random& random, const DataType* type)
{
  if (type->is_bool()) return random.index(2) == 0 ? mgr.make_false() : mgr.make_true();
  Integer pattern;
  random.natural(pattern, type->get_width());
  return mgr.make_bv_number(BVNumber::from_integer(pattern), type->get_width());
}

/// A separate constant for each position; in one of four cases a value instead, in one a compound term.
const Term* draw_argument(TermManager& mgr, Random& random, const DataType* type, std::size_t position)
{
  const std::size_t choice = random.index(4);
  if (choice == 0) return draw_value(mgr, random, type);
  const std::string name = numbered(numbered("x", position) + "_", type->get_width());
  const Term* constant = mgr.make_constant(name, type);
  if (choice != 1) return constant;
  return mgr.make_term(type->is_bool() ? mgr.make_not_symbol() : mgr.make_bv_neg_symbol(type->get_width()),
                       {constant});
}

const Term* draw_application(TermManager& mgr, Random& random, const Symbol* s)
{
  std::vector<const Term*> args;
  for (std::size_t i = 0; i < s->get_arity(); ++i) {
    args.push_back(draw_argument(mgr, random, as_operator(s).get_argument_type(i), i));
  }
  return mgr.make_term(s, args);
}

class LargeSoundnessTest : public testing::TestWithParam<OperatorInfo>
{};

TEST_P(LargeSoundnessTest, RandomCasesAreSoundSaveForTheKnownExceptions)
{
  constexpr int kCasesPerWidth = 600;  // for 32 operators and 12 widths more than 200,000 in all
  Random random;
  int num_sound = 0;
  for (const unsigned long w : kWidths) {
    TermManager mgr;
    for (int i = 0; i < kCasesPerWidth; ++i) {
      const Symbol* s = make_operator(mgr, GetParam().kind, draw_parameters(random, GetParam().kind, w));
      const Term* t = draw_application(mgr, random, s);
      const Term* value = draw_value(mgr, random, s->get_output_type());
      if (GetParam().rule == SortRule::kExtend && random.index(2) == 0) {
        value = mgr.make_bv_number(static_cast<int>(random.index(2)), s->get_output_type()->get_width());
      }
      const Result result = solve_and_evaluate(mgr, t, value);
      num_sound += result == Result::kSound ? 1 : 0;
      ASSERT_TRUE(result != Result::kUnsound || is_known_exception(mgr, t))
          << describe(t) << " is " << describe(value) << ", seed " << random.seed();
    }
  }
  const bool is_remainder = GetParam().kind == Kind::kBvUrem || GetParam().kind == Kind::kBvSrem;
  EXPECT_EQ(num_sound == 0, is_remainder);
}

INSTANTIATE_TEST_SUITE_P(AllOperators, LargeSoundnessTest, testing::ValuesIn(kOperators), name_operator);

}  // namespace
}  // namespace lumo::test
