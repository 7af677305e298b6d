// The limits of the word, and which form each result takes.

#include <climits>
#include <utility>

#include <gtest/gtest.h>

#include "lumo/numbers/qnumber.h"
#include "tests/numbers/number_testing.h"

namespace lumo {
namespace {

using test::Form;
using test::has_form;
using test::holds;
using test::Integer;
using test::kBothForms;
using test::make;
using test::make_power;
using test::Rational;

const Integer kIntegerOne(1);

enum class Operation
{
  kAdd,
  kSubtract,
  kMultiply
};

QNumber apply(Operation operation, QNumber x, const QNumber& y)
{
  switch (operation) {
    case Operation::kAdd:
      x += y;
      break;
    case Operation::kSubtract:
      x -= y;
      break;
    case Operation::kMultiply:
      x *= y;
      break;
  }
  return x;
}

struct Fraction
{
  const char* num;
  const char* den = "1";

  [[nodiscard]] Rational value() const { return {Integer(num), Integer(den)}; }
};

struct SmallCase
{
  Operation operation;
  Form form;  // of the result
  Fraction x;
  Fraction y;
  Fraction expected;
};

// The limits in the cases below:
//   9223372036854775807 = 2^63 - 1    4611686018427387904 = 2^62    3037000499 = floor(sqrt(2^63 - 1))
constexpr SmallCase kSmallCases[] = {
    // Integer sums: up to the limit small, beyond it big; -2^63 would fit the word but is refused.
    {Operation::kAdd, Form::kSmall, {"9223372036854775806"}, {"1"}, {"9223372036854775807"}},
    {Operation::kAdd, Form::kBig, {"9223372036854775807"}, {"1"}, {"9223372036854775808"}},
    {Operation::kAdd, Form::kSmall, {"-9223372036854775806"}, {"-1"}, {"-9223372036854775807"}},
    {Operation::kAdd, Form::kBig, {"-9223372036854775807"}, {"-1"}, {"-9223372036854775808"}},
    {Operation::kAdd, Form::kBig, {"-9223372036854775807"}, {"-2"}, {"-9223372036854775809"}},
    {Operation::kAdd, Form::kBig, {"9223372036854775807"}, {"9223372036854775807"}, {"18446744073709551614"}},
    {Operation::kAdd,
     Form::kBig,
     {"-4611686018427387904"},
     {"-4611686018427387904"},
     {"-9223372036854775808"}},
    {Operation::kAdd, Form::kSmall, {"9223372036854775807"}, {"-9223372036854775807"}, {"0"}},
    {Operation::kAdd, Form::kSmall, {"0"}, {"0"}, {"0"}},
    // Integer differences
    {Operation::kSubtract, Form::kSmall, {"-9223372036854775806"}, {"1"}, {"-9223372036854775807"}},
    {Operation::kSubtract, Form::kBig, {"-9223372036854775807"}, {"1"}, {"-9223372036854775808"}},
    {Operation::kSubtract, Form::kSmall, {"9223372036854775806"}, {"-1"}, {"9223372036854775807"}},
    {Operation::kSubtract, Form::kBig, {"9223372036854775807"}, {"-1"}, {"9223372036854775808"}},
    {Operation::kSubtract, Form::kSmall, {"0"}, {"9223372036854775807"}, {"-9223372036854775807"}},
    {Operation::kSubtract, Form::kBig, {"-1"}, {"9223372036854775807"}, {"-9223372036854775808"}},
    {Operation::kSubtract, Form::kSmall, {"0"}, {"-9223372036854775807"}, {"9223372036854775807"}},
    {Operation::kSubtract, Form::kBig, {"1"}, {"-9223372036854775807"}, {"9223372036854775808"}},
    {Operation::kSubtract, Form::kSmall, {"9223372036854775807"}, {"9223372036854775807"}, {"0"}},
    // Integer products
    {Operation::kMultiply, Form::kSmall, {"3037000499"}, {"3037000499"}, {"9223372030926249001"}},
    {Operation::kMultiply, Form::kBig, {"3037000500"}, {"3037000500"}, {"9223372037000250000"}},
    {Operation::kMultiply, Form::kBig, {"4611686018427387904"}, {"-2"}, {"-9223372036854775808"}},
    {Operation::kMultiply, Form::kBig, {"-4611686018427387904"}, {"2"}, {"-9223372036854775808"}},
    {Operation::kMultiply, Form::kSmall, {"4611686018427387903"}, {"2"}, {"9223372036854775806"}},
    {Operation::kMultiply, Form::kSmall, {"-9223372036854775807"}, {"-1"}, {"9223372036854775807"}},
    {Operation::kMultiply, Form::kSmall, {"9223372036854775807"}, {"0"}, {"0"}},
    {Operation::kMultiply, Form::kSmall, {"0"}, {"-9223372036854775807"}, {"0"}},
    // Fractions
    {Operation::kAdd, Form::kSmall, {"1", "3"}, {"1", "6"}, {"1", "2"}},
    {Operation::kAdd, Form::kSmall, {"1", "2"}, {"1", "2"}, {"1"}},
    {Operation::kAdd, Form::kSmall, {"1", "2"}, {"-1", "2"}, {"0"}},
    {Operation::kAdd, Form::kSmall, {"1", "2"}, {"3"}, {"7", "2"}},
    {Operation::kAdd, Form::kSmall, {"3"}, {"1", "2"}, {"7", "2"}},
    {Operation::kSubtract, Form::kSmall, {"1", "3"}, {"1", "6"}, {"1", "6"}},
    {Operation::kSubtract, Form::kSmall, {"1", "3"}, {"4", "3"}, {"-1"}},
    {Operation::kSubtract, Form::kSmall, {"5", "7"}, {"5", "7"}, {"0"}},
    {Operation::kMultiply, Form::kSmall, {"2", "3"}, {"3", "4"}, {"1", "2"}},
    {Operation::kMultiply, Form::kSmall, {"-2", "3"}, {"3", "2"}, {"-1"}},
    {Operation::kMultiply, Form::kSmall, {"5", "7"}, {"0"}, {"0"}},
    {Operation::kMultiply, Form::kSmall, {"0"}, {"5", "7"}, {"0"}},
    // Cross reduction keeps products near the limit small.
    {Operation::kMultiply,
     Form::kSmall,
     {"9223372036854775806", "9223372036854775807"},
     {"9223372036854775807", "9223372036854775805"},
     {"9223372036854775806", "9223372036854775805"}},
    {Operation::kMultiply, Form::kSmall, {"9223372036854775807", "2"}, {"2", "9223372036854775807"}, {"1"}},
    {Operation::kMultiply, Form::kSmall, {"4611686018427387904", "3"}, {"3", "4"}, {"1152921504606846976"}},
    {Operation::kMultiply, Form::kBig, {"9223372036854775807", "2"}, {"3"}, {"27670116110564327421", "2"}},
    {Operation::kMultiply,
     Form::kBig,
     {"1", "4611686018427387904"},
     {"1", "2"},
     {"1", "9223372036854775808"}},
    {Operation::kMultiply, Form::kBig, {"4611686018427387904", "3"}, {"-2"}, {"-9223372036854775808", "3"}},
    // A sum is big if an intermediate product exceeds the word, even if the result would fit: here
    // (2^63 - 1)/2 + 1/2 = 2^62 goes through (2^63 - 1) + 1.
    {Operation::kAdd, Form::kBig, {"9223372036854775807", "2"}, {"1", "2"}, {"4611686018427387904"}},
    {Operation::kAdd, Form::kSmall, {"9223372036854775807", "2"}, {"-1", "2"}, {"4611686018427387903"}},
    {Operation::kAdd, Form::kBig, {"-9223372036854775807", "2"}, {"-1", "2"}, {"-4611686018427387904"}},
    {Operation::kSubtract, Form::kBig, {"-9223372036854775807", "2"}, {"1", "2"}, {"-4611686018427387904"}},
    {Operation::kSubtract, Form::kSmall, {"9223372036854775807", "2"}, {"1", "2"}, {"4611686018427387903"}},
    {Operation::kAdd,
     Form::kBig,
     {"9223372036854775807", "2"},
     {"-9223372036854775807", "3"},
     {"9223372036854775807", "6"}},
    {Operation::kAdd,
     Form::kBig,
     {"1", "9223372036854775807"},
     {"1"},
     {"9223372036854775808", "9223372036854775807"}},
    {Operation::kSubtract,
     Form::kSmall,
     {"1"},
     {"1", "9223372036854775807"},
     {"9223372036854775806", "9223372036854775807"}},
    {Operation::kAdd, Form::kSmall, {"1", "9223372036854775807"}, {"-1", "9223372036854775807"}, {"0"}},
    {Operation::kAdd,
     Form::kBig,
     {"1", "3037000500"},
     {"1", "3037000501"},
     {"6074001001", "9223372040037250500"}},
    {Operation::kAdd,
     Form::kSmall,
     {"1", "3037000498"},
     {"1", "3037000499"},
     {"6074000997", "9223372027889248502"}},
};

TEST(QNumberEdge, SmallOperandsStaySmallWhereTheWordSuffices)
{
  for (const SmallCase& c : kSmallCases) {
    const QNumber result =
        apply(c.operation, make(c.x.value(), Form::kSmall), make(c.y.value(), Form::kSmall));
    EXPECT_TRUE(holds(result, c.expected.value(), c.form))
        << c.x.value() << ' ' << static_cast<int>(c.operation) << ' ' << c.y.value();
  }
}

TEST(QNumberEdge, ABigOperandMakesTheResultBig)
{
  for (const SmallCase& c : kSmallCases) {
    const Rational expected = c.expected.value();
    for (const auto& [x_form, y_form] :
         {std::pair(Form::kBig, Form::kSmall), std::pair(Form::kSmall, Form::kBig),
          std::pair(Form::kBig, Form::kBig)})
    {
      const bool times_small_zero =
          c.operation == Operation::kMultiply && c.y.value() == Rational(0) && y_form == Form::kSmall;
      const QNumber result = apply(c.operation, make(c.x.value(), x_form), make(c.y.value(), y_form));
      EXPECT_TRUE(holds(result, expected, times_small_zero ? Form::kSmall : Form::kBig))
          << c.x.value() << ' ' << x_form << ' ' << static_cast<int>(c.operation) << ' ' << c.y.value() << ' '
          << y_form;
    }
  }
}

TEST(QNumberEdge, ABigNumberThatBecomesFiveStaysBigAndCompares)
{
  QNumber number = make_power(63);
  number -= QNumber(LONG_MAX);
  number += QNumber(4);
  EXPECT_TRUE(holds(number, 5, Form::kBig));
  const QNumber five(5);
  EXPECT_TRUE(number == five && five == number && number <= five && five <= number);
  EXPECT_FALSE(number != five || five != number || number < five || five < number);
  EXPECT_TRUE(number < QNumber(6) && QNumber(4) < number);
  EXPECT_FALSE(number < QNumber(4) || QNumber(6) < number);
  EXPECT_EQ(number.hash(), five.hash());
}

TEST(QNumberEdge, OnlyASmallZeroFactorShrinks)
{
  const Rational fraction(Integer::power(80), Integer(3));
  for (const Rational& value : {Rational(0), Rational(7), Rational(1, 3), fraction}) {
    QNumber shrunk = make(value, Form::kBig);
    shrunk *= QNumber(0);
    EXPECT_TRUE(holds(shrunk, 0, Form::kSmall)) << value;
    shrunk += QNumber(3);
    EXPECT_TRUE(holds(shrunk, 3, Form::kSmall)) << value;

    QNumber kept = make(value, Form::kBig);
    kept *= make(0, Form::kBig);
    EXPECT_TRUE(holds(kept, 0, Form::kBig)) << value;

    QNumber zero(0);
    zero *= make(value, Form::kBig);
    EXPECT_TRUE(holds(zero, 0, Form::kBig)) << value;

    QNumber difference = make(value, Form::kBig);
    difference -= make(value, Form::kBig);
    EXPECT_TRUE(holds(difference, 0, Form::kBig)) << value;
  }
}

TEST(QNumberEdge, ANumberMayBeItsOwnOperand)
{
  for (const Rational& value :
       {Rational(0), Rational(5), Rational(-3, 7), Rational(LONG_MAX), Rational(-LONG_MAX),
        Rational(1, LONG_MAX), Rational(Integer::power(90, 1), kIntegerOne),
        Rational(Integer::power(90), Integer(-3))})
  {
    for (const Form form : kBothForms) {
      if (!has_form(value, form)) continue;
      Rational expected;
      QNumber doubled = make(value, form);
      doubled += doubled;
      mpq_add(expected, value, value);
      EXPECT_EQ(test::value_of(doubled), expected) << value << ' ' << form;

      QNumber gone = make(value, form);
      gone -= *&gone;
      EXPECT_TRUE(holds(gone, 0, form)) << value << ' ' << form;

      QNumber squared = make(value, form);
      squared *= squared;
      mpq_mul(expected, value, value);
      EXPECT_EQ(test::value_of(squared), expected) << value << ' ' << form;
    }
  }
}

struct DivisionCase
{
  long dividend;
  long divisor;
  long truncated_quotient;
  long truncated_remainder;
  long floored_quotient;
  long floored_remainder;
};

constexpr DivisionCase kDivisionCases[] = {
    {7, 2, 3, 1, 3, 1},
    {-7, 2, -3, -1, -4, 1},
    {7, -2, -3, 1, -4, -1},
    {-7, -2, 3, -1, 3, -1},
    {6, 2, 3, 0, 3, 0},
    {-6, 2, -3, 0, -3, 0},
    {6, -2, -3, 0, -3, 0},
    {0, 5, 0, 0, 0, 0},
    {0, -5, 0, 0, 0, 0},
    {1, 5, 0, 1, 0, 1},
    {-1, 5, 0, -1, -1, 4},
    {1, -5, 0, 1, -1, -4},
    {LONG_MAX, 1, LONG_MAX, 0, LONG_MAX, 0},
    {-LONG_MAX, 1, -LONG_MAX, 0, -LONG_MAX, 0},
    {-LONG_MAX, -1, LONG_MAX, 0, LONG_MAX, 0},
    {LONG_MAX, LONG_MAX, 1, 0, 1, 0},
    {LONG_MAX - 1, LONG_MAX, 0, LONG_MAX - 1, 0, LONG_MAX - 1},
    {-LONG_MAX, 2, -(LONG_MAX / 2), -1, -(LONG_MAX / 2) - 1, 1},
};

TEST(QNumberEdge, SmallOperandsTruncateAndBigOnesFloor)
{
  for (const DivisionCase& c : kDivisionCases) {
    for (const Form dividend_form : kBothForms) {
      for (const Form divisor_form : kBothForms) {
        for (const Form output_form : kBothForms) {
          const bool floors = dividend_form == Form::kBig || divisor_form == Form::kBig;
          const Form expected = floors ? Form::kBig : output_form;
          QNumber q = make(Rational(99, 7), output_form);
          QNumber r = make(Rational(98, 5), output_form);
          make(c.dividend, dividend_form).divmod(make(c.divisor, divisor_form), q, r);
          SCOPED_TRACE(::testing::Message() << c.dividend << ' ' << dividend_form << " by " << c.divisor
                                            << ' ' << divisor_form << ", outputs " << output_form);
          EXPECT_TRUE(holds(q, floors ? c.floored_quotient : c.truncated_quotient, expected));
          EXPECT_TRUE(holds(r, floors ? c.floored_remainder : c.truncated_remainder, expected));
        }
      }
    }
  }
}

TEST(QNumberEdge, DivisionOfTheLowestWordByMinusOneIsExact)
{
  QNumber q;
  QNumber r;
  QNumber(LONG_MIN).divmod(QNumber(-1), q, r);
  EXPECT_TRUE(holds(q, Rational(Integer::power(63), kIntegerOne), Form::kBig));
  EXPECT_TRUE(holds(r, 0, Form::kBig));
}

TEST(QNumberEdge, OutputsOfDivisionKeepTheirFormsApart)
{
  QNumber big_q = make_power(90);
  QNumber small_r(1);
  QNumber(17).divmod(QNumber(5), big_q, small_r);
  EXPECT_TRUE(holds(big_q, 3, Form::kBig));
  EXPECT_TRUE(holds(small_r, 2, Form::kSmall));

  QNumber small_q(1);
  QNumber big_r = make_power(90);
  QNumber(17).divmod(QNumber(5), small_q, big_r);
  EXPECT_TRUE(holds(small_q, 3, Form::kSmall));
  EXPECT_TRUE(holds(big_r, 2, Form::kBig));
}

TEST(QNumberEdge, OrderIsExactWhereCrossProductsLeaveTheWord)
{
  // In ascending order, none equal to its neighbour
  const Rational ascending[] = {
      Rational(Integer("-36893488147419103232"), kIntegerOne),
      Rational(LONG_MIN),
      Rational(-LONG_MAX),
      Rational(-LONG_MAX, 2),
      Rational(-1),
      Rational(-(LONG_MAX - 1), LONG_MAX),
      Rational(-(LONG_MAX - 2), LONG_MAX - 1),
      Rational(Integer(-1), Integer::power(80)),
      Rational(0),
      Rational(Integer(1), Integer::power(80)),
      Rational(1, LONG_MAX),
      Rational(1, LONG_MAX - 1),
      Rational(LONG_MAX - 2, LONG_MAX - 1),
      Rational(LONG_MAX - 1, LONG_MAX),
      Rational(1),
      Rational(LONG_MAX, LONG_MAX - 1),
      Rational(LONG_MAX - 1, LONG_MAX - 2),
      Rational(LONG_MAX, 3),
      Rational(LONG_MAX, 2),
      Rational(LONG_MAX),
      Rational(Integer::power(64, 1), Integer(2)),
      Rational(Integer::power(64), kIntegerOne),
  };
  for (const Rational& x : ascending) {
    for (const Rational& y : ascending) {
      for (const Form x_form : kBothForms) {
        for (const Form y_form : kBothForms) {
          if (!has_form(x, x_form) || !has_form(y, y_form)) continue;
          const QNumber a = make(x, x_form);
          const QNumber b = make(y, y_form);
          SCOPED_TRACE(::testing::Message() << x << ' ' << x_form << ", " << y << ' ' << y_form);
          EXPECT_EQ(a < b, &x < &y);
          EXPECT_EQ(a > b, &x > &y);
          EXPECT_EQ(a <= b, &x <= &y);
          EXPECT_EQ(a >= b, &x >= &y);
          EXPECT_EQ(a == b, &x == &y);
          EXPECT_EQ(a != b, &x != &y);
        }
      }
    }
  }
}

TEST(QNumberEdge, EveryLimbCountsForEquality)
{
  constexpr unsigned long kLimbBits = 64;
  for (unsigned long length = 1; length <= 6; ++length) {
    const Integer top = Integer::power(length * kLimbBits - 1, 1);
    const Integer unit(1);
    for (const Integer& den : {unit, Integer::power(70, 1)}) {
      const Rational x(top, den);
      const QNumber number = make(x, Form::kBig);
      EXPECT_TRUE(number == make(x, Form::kBig)) << x;
      const auto expect_unequal = [&number](const Rational& other) {
        EXPECT_FALSE(number == make(other, Form::kBig)) << other;
        EXPECT_FALSE(make(other, Form::kBig) == number) << other;
      };
      Integer changed(top);
      mpz_neg(changed, changed);
      expect_unequal(Rational(changed, den));
      expect_unequal(Rational(0));
      for (unsigned long bit = 0; bit < length * kLimbBits + 10; bit += 31) {
        changed = top;
        mpz_combit(changed, bit);
        expect_unequal(Rational(changed, den));
        changed = den;
        mpz_combit(changed, bit + 1);
        expect_unequal(Rational(top, changed));
      }
    }
  }
}

TEST(QNumberEdge, CheckedProductRefusesWhatLeavesTheSmallRange)
{
  struct Case
  {
    long a;
    long b;
    bool overflows;
  };
  constexpr Case cases[] = {
      {0, 0, false},
      {LONG_MAX, 1, false},
      {LONG_MAX, -1, false},
      {-LONG_MAX, -1, false},
      {LONG_MAX, 0, false},
      {0, LONG_MIN, false},
      {LONG_MIN, 0, false},
      {LONG_MIN, 1, true},
      {LONG_MIN, -1, true},
      {1, LONG_MIN, true},
      {LONG_MIN, LONG_MIN, true},
      {1L << 62, 2, true},
      {1L << 62, -2, true},
      {-(1L << 62), 2, true},
      {(1L << 62) - 1, 2, false},
      {LONG_MAX, 2, true},
      {1L << 31, 1L << 31, false},
      {3037000500, 3037000500, true},
      {3037000499, -3037000499, false},
  };
  for (const Case& c : cases) {
    constexpr long untouched = 4711;
    long result = untouched;
    EXPECT_EQ(QNumber::mul_overflow(result, c.a, c.b), c.overflows) << c.a << " * " << c.b;
    EXPECT_EQ(result, c.overflows ? untouched : c.a * c.b) << c.a << " * " << c.b;
  }
}

TEST(QNumberEdge, CheckedQuotientRefusesTheOneThatLeavesTheWord)
{
  struct Case
  {
    long a;
    long b;
    long quotient;
  };
  constexpr Case cases[] = {
      {7, 2, 3},
      {-7, 2, -3},
      {7, -2, -3},
      {-7, -2, 3},
      {LONG_MIN, 1, LONG_MIN},
      {LONG_MIN, 2, LONG_MIN / 2},
      {LONG_MAX, -1, -LONG_MAX},
      {-LONG_MAX, -1, LONG_MAX},
      {LONG_MIN, LONG_MIN, 1},
      {0, -1, 0},
  };
  for (const Case& c : cases) {
    long result = 4711;
    EXPECT_FALSE(QNumber::div_overflow(result, c.a, c.b)) << c.a << " / " << c.b;
    EXPECT_EQ(result, c.quotient) << c.a << " / " << c.b;
  }
  long result = 4711;
  EXPECT_TRUE(QNumber::div_overflow(result, LONG_MIN, -1));
  EXPECT_EQ(result, 4711);
}

}  // namespace
}  // namespace lumo
