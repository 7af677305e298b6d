// Every operator at widths 1 to 4 (if-then-else: 3), with every kind of argument and of value, against the
// reference.

#include <typeinfo>

#include <gtest/gtest.h>

#include "lumo/calculators/calculator_table.h"
#include "tests/calculators/calls.h"
#include "tests/calculators/enumeration.h"
#include "tests/support/make_operator.h"

namespace lumo::test {
namespace {

using adhoccalculator::AdHocCalculator;
using Failure = Outcome::Failure;

Outcome call_calculator(TermManager& mgr, const Term* t, const Term* value)
{
  ModelStore::DefinitionStack defs;
  Outcome outcome;
  try {
    (*find_calculator(mgr, t->get_symbol()))(&mgr, t, value, defs);
  } catch (const Exception& e) {
    outcome.failure =
        typeid(e) == typeid(AdHocCalculator::error) ? Failure::kError : Failure::kPlainException;
    outcome.message = e.what();
  }
  outcome.definitions = take_definitions(defs);
  return outcome;
}

std::string describe_outcome(const Outcome& outcome)
{
  return describe(outcome.definitions) + outcome.message;
}

class ExhaustiveTest : public testing::TestWithParam<OperatorInfo>
{
 protected:
  void check(const Term* t, const Term* value)
  {
    const Outcome expected = reference_.expect(t, value);
    const Outcome found = call_calculator(mgr_, t, value);
    ASSERT_TRUE(found.failure == expected.failure && found.message == expected.message &&
                found.definitions == expected.definitions)
        << describe(t) << " is " << describe(value) << "\nexpected: " << describe_outcome(expected)
        << "\nfound:    " << describe_outcome(found);
    ++(found.failure == Failure::kNone ? num_solved_ : num_refused_);
  }

  TermManager mgr_;
  Reference reference_{&mgr_};
  int num_solved_ = 0;
  int num_refused_ = 0;
};

TEST_P(ExhaustiveTest, AgreesWithTheReferenceOnAllArgumentsAndValues)
{
  const Kind kind = GetParam().kind;
  const unsigned long max_width = kind == Kind::kIte ? 3 : 4;
  for (unsigned long w = 1; w <= max_width; ++w) {
    for (const Parameters& p : enumerate_parameters(kind, w)) {
      const Symbol* s = make_operator(mgr_, kind, p);
      const std::vector<const Term*> values = enumerate_values(mgr_, reference_, s->get_output_type());
      for_each_application(mgr_, reference_, s, [this, &values](const Term* t) {
        for (const Term* value : values) {
          if (HasFatalFailure()) return;
          check(t, value);
        }
      });
    }
  }
  const bool is_remainder = kind == Kind::kBvUrem || kind == Kind::kBvSrem;
  EXPECT_EQ(num_solved_ == 0, is_remainder);
  EXPECT_GT(num_refused_, 0);
}

INSTANTIATE_TEST_SUITE_P(AllOperators, ExhaustiveTest, testing::ValuesIn(kOperators), name_operator);

}  // namespace
}  // namespace lumo::test
