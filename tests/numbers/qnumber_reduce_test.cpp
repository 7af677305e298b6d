// Reduction to lowest terms, for every small denominator and every factor that both parts share.

#include <climits>

#include <gtest/gtest.h>

#include "lumo/numbers/qnumber.h"
#include "tests/numbers/number_testing.h"

namespace lumo {
namespace {

using test::Form;
using test::holds;
using test::Integer;
using test::Rational;

/// The longest denominators and factors that are tried in all combinations
constexpr long kLongest = 12;

Integer times(const Integer& z, long factor)
{
  Integer result;
  mpz_mul_si(result, z, factor);
  return result;
}

TEST(QNumberReduce, TwoLongIntegersLoseEveryCommonFactor)
{
  for (const Integer& num : {Integer(0L), Integer::power(31), Integer::power(64), Integer::power(64, 1),
                             Integer::power(70, -9), times(Integer::power(65), -15)})
  {
    for (long den = 1; den <= kLongest; ++den) {
      for (long factor = -kLongest; factor <= kLongest; ++factor) {
        if (factor == 0) continue;
        const Integer whole = times(Integer(den), factor);
        const Integer long_part = times(num, factor);
        const bool fits_int = mpz_fits_sint_p(long_part) != 0;
        EXPECT_TRUE(holds(QNumber(long_part, whole), Rational(num, Integer(den)),
                          fits_int ? Form::kSmall : Form::kBig))
            << num << '/' << den << " times " << factor;
      }
    }
  }
}

TEST(QNumberReduce, TwoWordsLoseACommonFactorWhoseSquareLeavesTheWord)
{
  constexpr long factors[] = {3L << 30, 3L << 31, (1L << 31) + 1, 3037000500, 5L << 40};
  for (const long factor : factors) {
    const long most = LONG_MAX / factor < kLongest ? LONG_MAX / factor : kLongest;
    for (long num = -most; num <= most; ++num) {
      for (long den = 1; den <= most; ++den) {
        EXPECT_TRUE(holds(QNumber(num * factor, den * factor), Rational(num, static_cast<unsigned long>(den)),
                          Form::kSmall))
            << num << '/' << den << " times " << factor;
      }
    }
  }
}

}  // namespace
}  // namespace lumo
