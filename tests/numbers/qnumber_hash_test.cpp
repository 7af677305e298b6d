// The parts of a long number that its hash depends on.

#include <gtest/gtest.h>

#include "lumo/numbers/qnumber.h"
#include "tests/numbers/number_testing.h"

namespace lumo {
namespace {

using test::make_power;

TEST(QNumberLongHash, TellsANumberFromItsNegative)
{
  for (unsigned long exponent = 63; exponent <= 200; ++exponent) {
    for (const long offset : {1L, 2L, 12345L}) {
      const QNumber number = make_power(exponent, offset);
      EXPECT_NE(number.hash(), (QNumber() - number).hash()) << number.to_string();
    }
  }
}

TEST(QNumberLongHash, DoesNotDependOnWhatTheNumberHeldBefore)
{
  for (unsigned long exponent = 64; exponent <= 400; exponent += 8) {
    const QNumber fresh = make_power(exponent);
    for (const long multiple : {1L, 3L, -5L}) {
      // Only the limbs above the number change.
      QNumber rest = make_power(exponent + 64);
      rest *= QNumber(multiple);
      QNumber used = rest;
      used += fresh;
      used -= rest;
      ASSERT_EQ(used, fresh);
      EXPECT_EQ(used.hash(), fresh.hash()) << fresh.to_string() << " after a multiple of " << multiple;
    }
  }
}

}  // namespace
}  // namespace lumo
