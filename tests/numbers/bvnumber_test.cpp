#include "lumo/numbers/bvnumber.h"

#include <array>
#include <climits>
#include <vector>

#include <gtest/gtest.h>

#include "tests/numbers/number_testing.h"
#include "tests/support/random.h"

namespace lumo {
namespace {

using test::Form;
using test::has_form;
using test::holds;
using test::Integer;
using test::kBothForms;
using test::make;
using test::Random;
using test::Rational;

const Integer kOne(1);

/// Whether q is this integer, in the small form if that can hold it.
::testing::AssertionResult is_shortest(const QNumber& q, const Integer& z)
{
  const Rational value(z, kOne);
  return holds(q, value, has_form(value, Form::kSmall) ? Form::kSmall : Form::kBig);
}

/// Calls check(number) for the integer in each form that it has.
template <class Check>
void for_each_form(const Integer& z, Check check)
{
  const Rational value(z, kOne);
  for (const Form form : kBothForms) {
    if (!has_form(value, form)) continue;
    SCOPED_TRACE(::testing::Message() << z << ' ' << form);
    check(make(value, form));
  }
}

TEST(BVNumberPow2, IsSmallUpToSixtyTwo)
{
  for (unsigned long w = 0; w <= 300; ++w) {
    EXPECT_TRUE(
        holds(BVNumber::pow2(w), Rational(Integer::power(w), kOne), w <= 62 ? Form::kSmall : Form::kBig))
        << w;
  }
  EXPECT_TRUE(BVNumber::pow2(0) == QNumber(1));
  EXPECT_TRUE(holds(BVNumber::pow2(1'000'000), Rational(Integer::power(1'000'000), kOne), Form::kBig));
}

TEST(BVNumberPow2, BoundsComeFromItByOne)
{
  const QNumber one(1);
  EXPECT_TRUE(holds(BVNumber::pow2(64) - one, Rational(Integer::power(64, -1), kOne), Form::kBig));
  EXPECT_TRUE(holds(BVNumber::pow2(63) - one, Rational(LONG_MAX), Form::kBig));
  EXPECT_TRUE(holds(BVNumber::pow2(62) - one, Rational((1L << 62) - 1), Form::kSmall));
  EXPECT_TRUE(holds(QNumber(LONG_MAX) + one, Rational(Integer::power(63), kOne), Form::kBig));
  EXPECT_TRUE(holds(QNumber() - one, Rational(-1), Form::kSmall));
}

TEST(BVNumberFromInteger, IsSmallIfItFits)
{
  for (const char* decimal : {"0", "1", "-1", "9223372036854775807", "-9223372036854775807",
                              "-9223372036854775808", "9223372036854775808", "-9223372036854775809",
                              "18446744073709551616", "-340282366920938463463374607431"})
  {
    const Integer z(decimal);
    EXPECT_TRUE(is_shortest(BVNumber::from_integer(z), z)) << decimal;
  }
}

TEST(BVNumberFromInteger, TakesScratchIntegers)
{
  const Integer z = Integer::power(90, 7);
  for (mpz_t& scratch : QNumber::gmp_tmp) {
    mpz_set(scratch, z);
    EXPECT_TRUE(is_shortest(BVNumber::from_integer(scratch), z));
  }
}

constexpr unsigned long kPatternWidths[] = {1, 2, 8, 31, 32, 61, 62, 63, 64, 65, 128, 200};

/// Calls check(width, pattern, z) for patterns of several widths in each of their forms; z is the pattern, too.
template <class Check>
void for_each_pattern(Check check)
{
  Random random;
  SCOPED_TRACE(random);
  for (const unsigned long w : kPatternWidths) {
    std::vector<Integer> patterns{Integer(), Integer(1), Integer::power(w - 1), Integer::power(w, -1)};
    for (int i = 0; i < 20; ++i)
      random.natural(patterns.emplace_back(), w);
    for (const Integer& z : patterns) {
      SCOPED_TRACE(w);
      for_each_form(z, [&](const QNumber& q) { check(w, q, z); });
    }
  }
}

TEST(BVNumberPattern, IsWhatLiesWithinTheWidth)
{
  for_each_pattern([](unsigned long w, const QNumber& q, const Integer& z) {
    EXPECT_TRUE(BVNumber::is_pattern(q, w));
    EXPECT_EQ(BVNumber::is_pattern(q, w - 1), mpz_sizeinbase(z, 2) < w || z.sign() == 0);
    EXPECT_FALSE(BVNumber::is_pattern(QNumber(-1) - q, w));
    EXPECT_FALSE(BVNumber::is_pattern(q + BVNumber::pow2(w), w));
  });
}

TEST(BVNumberPattern, ComplementIsWhatIsMissingToAllOnes)
{
  for_each_pattern([](unsigned long w, const QNumber& q, const Integer& z) {
    Integer expected = Integer::power(w, -1);
    mpz_sub(expected, expected, z);
    EXPECT_TRUE(is_shortest(BVNumber::complement(q, w), expected));
  });
}

TEST(BVNumberPattern, ConcatenationMultipliesAndAdds)
{
  for_each_pattern([](unsigned long w, const QNumber& q, const Integer& z) {
    for (const unsigned long low_width : kPatternWidths) {
      for (const Integer& low : {Integer(1), Integer::power(low_width, -1)}) {
        Integer expected(z);
        mpz_mul_2exp(expected, expected, low_width);
        mpz_add(expected, expected, low);
        for_each_form(low, [&](const QNumber& l) {
          EXPECT_TRUE(is_shortest(BVNumber::concatenate(q, l, low_width), expected)) << w << " " << low_width;
        });
      }
    }
  });
}

TEST(BVNumberPattern, ExtractionDividesAndTakesTheRemainder)
{
  for_each_pattern([](unsigned long w, const QNumber& q, const Integer& z) {
    for (const unsigned long lsb : {0UL, 1UL, w / 2, w - 1, w, 70UL}) {
      for (const unsigned long length : {1UL, 7UL, 62UL, 63UL, 64UL, 100UL}) {
        Integer expected;
        mpz_fdiv_q_2exp(expected, z, lsb);
        mpz_fdiv_r_2exp(expected, expected, length);
        EXPECT_TRUE(is_shortest(BVNumber::extract(q, lsb, length), expected)) << lsb << " " << length;
      }
    }
  });
}

TEST(BVNumberPattern, RotationIsDoublingModuloAllOnes)
{
  for_each_pattern([](unsigned long w, const QNumber& q, const Integer& z) {
    const Integer all_ones = Integer::power(w, -1);
    for (const unsigned long k : {0UL, 1UL, w / 2, w - 1, w}) {
      Integer expected(z);
      mpz_mul_2exp(expected, expected, k);
      // 0 and all ones are the same remainder, but each keeps its own pattern.
      if (!(z == all_ones)) mpz_fdiv_r(expected, expected, all_ones);
      EXPECT_TRUE(is_shortest(BVNumber::rotate_left(q, k, w), z == all_ones ? z : expected)) << k;
    }
  });
}

TEST(BVNumberInvertOdd, GivesTheOnlyFactorModuloThePowerOfTwo)
{
  for_each_pattern([](unsigned long w, const QNumber& q, const Integer& z) {
    if (mpz_even_p(static_cast<mpz_srcptr>(z)) != 0) return;
    // Moduli of other widths, so that numbers above the modulus occur, too
    for (const unsigned long exponent : kPatternWidths) {
      Integer expected;
      mpz_invert(expected, z, Integer::power(exponent));
      EXPECT_TRUE(is_shortest(BVNumber::invert_odd(q, exponent), expected)) << w << " " << exponent;
    }
  });
}

TEST(BVNumberIsPow2, TellsTheExponentOfPowersAlone)
{
  for (unsigned long w = 0; w <= 200; ++w) {
    for_each_form(Integer::power(w), [w](const QNumber& q) {
      unsigned long exponent = 1000;
      EXPECT_TRUE(BVNumber::is_pow2(q, exponent));
      EXPECT_EQ(exponent, w);
    });
    if (w < 2) continue;
    for (const Integer& z : {Integer::power(w, 1), Integer::power(w + 1, -1)}) {
      for_each_form(z, [](const QNumber& q) {
        unsigned long exponent = 1000;
        EXPECT_FALSE(BVNumber::is_pow2(q, exponent));
        EXPECT_EQ(exponent, 1000);
      });
    }
  }
}

struct ReduceCase
{
  const char* value;
  unsigned long width;
  const char* pattern;
};

constexpr ReduceCase kReduceCases[] = {
    {"0", 0, "0"},
    {"5", 0, "0"},
    {"-1", 1, "1"},
    {"2", 1, "0"},
    {"256", 8, "0"},
    {"257", 8, "1"},
    {"-1", 8, "255"},
    {"-256", 8, "0"},
    {"-257", 8, "255"},
    {"-1", 62, "4611686018427387903"},
    {"-1", 63, "9223372036854775807"},
    {"-1", 64, "18446744073709551615"},
    {"-1", 65, "36893488147419103231"},
    {"-9223372036854775807", 62, "1"},
    {"-9223372036854775808", 62, "0"},
    {"-9223372036854775808", 63, "0"},
    {"-9223372036854775808", 64, "9223372036854775808"},
    {"9223372036854775807", 62, "4611686018427387903"},
    {"9223372036854775807", 63, "9223372036854775807"},
    {"9223372036854775807", 200, "9223372036854775807"},
    {"18446744073709551621", 8, "5"},
    {"18446744073709551621", 64, "5"},
    {"-18446744073709551621", 64, "18446744073709551611"},
};

TEST(BVNumberReduce, TakesTheLowBitsOfTwosComplement)
{
  for (const ReduceCase& c : kReduceCases) {
    for_each_form(Integer(c.value), [&](const QNumber& q) {
      EXPECT_TRUE(is_shortest(BVNumber::reduce(q, c.width), Integer(c.pattern))) << "width " << c.width;
    });
  }
}

struct ShiftCase
{
  const char* value;
  unsigned long count;
  const char* left;
  const char* right;
};

constexpr ShiftCase kShiftCases[] = {
    {"0", 0, "0", "0"},
    {"0", 100, "0", "0"},
    {"1", 0, "1", "1"},
    {"1", 62, "4611686018427387904", "0"},
    {"1", 63, "9223372036854775808", "0"},
    {"1", 64, "18446744073709551616", "0"},
    {"3", 61, "6917529027641081856", "0"},
    {"3", 62, "13835058055282163712", "0"},
    {"9223372036854775807", 0, "9223372036854775807", "9223372036854775807"},
    {"9223372036854775807", 1, "18446744073709551614", "4611686018427387903"},
    {"9223372036854775807", 62, "42535295865117307928310139910543638528", "1"},
    {"9223372036854775807", 63, "85070591730234615856620279821087277056", "0"},
    {"9223372036854775807", 64, "170141183460469231713240559642174554112", "0"},
    {"9223372036854775808", 0, "9223372036854775808", "9223372036854775808"},
    {"9223372036854775808", 1, "18446744073709551616", "4611686018427387904"},
    {"9223372036854775808", 63, "85070591730234615865843651857942052864", "1"},
    {"9223372036854775808", 64, "170141183460469231731687303715884105728", "0"},
};

TEST(BVNumberShift, MovesBitsAcrossTheWordsEdge)
{
  for (const ShiftCase& c : kShiftCases) {
    for_each_form(Integer(c.value), [&](const QNumber& q) {
      EXPECT_TRUE(is_shortest(BVNumber::shift_left(q, c.count), Integer(c.left))) << "by " << c.count;
      EXPECT_TRUE(is_shortest(BVNumber::shift_right(q, c.count), Integer(c.right))) << "by " << c.count;
    });
  }
}

TEST(BVNumberShift, CountsMayExceedEveryWord)
{
  for (const unsigned long count : {1UL << 32U, 1UL << 63U, ULONG_MAX}) {
    EXPECT_TRUE(is_shortest(BVNumber::shift_right(QNumber(LONG_MAX), count), 0)) << count;
    EXPECT_TRUE(is_shortest(BVNumber::shift_right(BVNumber::pow2(100), count), 0)) << count;
    EXPECT_FALSE(BVNumber::is_bit_set(QNumber(LONG_MAX), count)) << count;
    EXPECT_FALSE(BVNumber::is_bit_set(BVNumber::pow2(100), count)) << count;
  }
}

TEST(BVNumberBits, SingleBitsAreReadInBothForms)
{
  for (const char* decimal : {"0", "1", "5", "9223372036854775807", "9223372036854775808",
                              "6148914691236517205", "226854911280625642308916404954512140970"})
  {
    const Integer z(decimal);
    for_each_form(z, [&](const QNumber& q) {
      for (unsigned long i = 0; i < 200; ++i) {
        EXPECT_EQ(BVNumber::is_bit_set(q, i), mpz_tstbit(z, i) != 0) << "bit " << i;
      }
    });
  }
}

struct BitOperation
{
  const char* name;
  QNumber (*apply)(const QNumber& a, const QNumber& b);
  void (*judge)(mpz_ptr result, mpz_srcptr a, mpz_srcptr b);
};

constexpr std::array<BitOperation, 3> kBitOperations = {{
    {"and", BVNumber::bit_and, mpz_and},
    {"or", BVNumber::bit_or, mpz_ior},
    {"xor", BVNumber::bit_xor, mpz_xor},
}};

void check_bit_operations(const Integer& a, const Integer& b)
{
  Integer expected;
  for (const BitOperation& operation : kBitOperations) {
    operation.judge(expected, a, b);
    for_each_form(a, [&](const QNumber& x) {
      for_each_form(b, [&](const QNumber& y) {
        ASSERT_TRUE(is_shortest(operation.apply(x, y), expected)) << operation.name;
      });
    });
  }
}

TEST(BVNumberBits, OperationsAreExactForAllShortPatterns)
{
  for (long a = 0; a < 16; ++a) {
    for (long b = 0; b < 16; ++b)
      check_bit_operations(a, b);
  }
}

TEST(BVNumberBits, OperationsThatLeaveAWordAreSmall)
{
  const Integer high = Integer::power(100);
  const Integer pattern = Integer::power(100, 5);
  check_bit_operations(pattern, 7);
  check_bit_operations(pattern, high);
  check_bit_operations(pattern, pattern);
  check_bit_operations(Integer::power(63), Integer::power(63, -1));
  check_bit_operations(Integer::power(64, -1), Integer::power(63));
}

TEST(BVNumberBits, AnOperandMayComeTwice)
{
  const QNumber q = BVNumber::pow2(90) + QNumber(11);
  EXPECT_TRUE(BVNumber::bit_and(q, q) == q);
  EXPECT_TRUE(BVNumber::bit_or(q, q) == q);
  EXPECT_TRUE(is_shortest(BVNumber::bit_xor(q, q), 0));
}

/// Lengths around the word first, then up to the given one.
unsigned long draw_length(Random& random)
{
  constexpr std::array<unsigned long, 3> longest = {64, 130, 4096};
  return random.pick(longest);
}

TEST(BVNumberRandom, BitOperationsAgreeWithGmp)
{
  Random random;
  SCOPED_TRACE(random);
  Integer a;
  Integer b;
  for (int round = 0; round < 5'000; ++round) {
    random.natural(a, draw_length(random));
    random.natural(b, draw_length(random));
    check_bit_operations(a, b);
    ASSERT_FALSE(HasFailure()) << a << ' ' << b;
  }
}

TEST(BVNumberRandom, ReductionAgreesWithGmp)
{
  Random random;
  SCOPED_TRACE(random);
  Integer z;
  Integer expected;
  for (int round = 0; round < 20'000; ++round) {
    random.integer(z, draw_length(random));
    const unsigned long width = random.index(draw_length(random) + 1);
    mpz_fdiv_r_2exp(expected, z, width);
    for_each_form(z, [&](const QNumber& q) {
      ASSERT_TRUE(is_shortest(BVNumber::reduce(q, width), expected)) << "width " << width;
    });
    ASSERT_FALSE(HasFailure());
  }
}

TEST(BVNumberRandom, ShiftsAndBitsAgreeWithGmp)
{
  Random random;
  SCOPED_TRACE(random);
  Integer z;
  Integer left;
  Integer right;
  for (int round = 0; round < 20'000; ++round) {
    random.natural(z, draw_length(random));
    const unsigned long count = random.index(draw_length(random) + 1);
    mpz_mul_2exp(left, z, count);
    mpz_tdiv_q_2exp(right, z, count);
    for_each_form(z, [&](const QNumber& q) {
      ASSERT_TRUE(is_shortest(BVNumber::shift_left(q, count), left)) << "by " << count;
      ASSERT_TRUE(is_shortest(BVNumber::shift_right(q, count), right)) << "by " << count;
      ASSERT_EQ(BVNumber::is_bit_set(q, count), mpz_tstbit(z, count) != 0) << "bit " << count;
    });
    ASSERT_FALSE(HasFailure());
  }
}

}  // namespace
}  // namespace lumo
