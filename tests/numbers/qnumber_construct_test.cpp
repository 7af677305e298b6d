// Making, copying, moving and assigning numbers.

#include <climits>
#include <type_traits>
#include <utility>
#include <vector>

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

const Integer kUnit(1);

static_assert(sizeof(QNumber) == 2 * sizeof(long));
static_assert(std::is_nothrow_default_constructible_v<QNumber>);
static_assert(std::is_nothrow_move_constructible_v<QNumber>);
static_assert(std::is_nothrow_move_assignable_v<QNumber>);
static_assert(std::is_nothrow_swappable_v<QNumber>);
static_assert(std::is_convertible_v<long, QNumber>);
static_assert(std::is_convertible_v<int, QNumber>);
static_assert(std::is_convertible_v<unsigned, QNumber>);
static_assert(std::is_convertible_v<unsigned long, QNumber>);
static_assert(!std::is_constructible_v<QNumber, double>);
static_assert(!std::is_constructible_v<QNumber, float>);

TEST(QNumberConstruct, DefaultIsSmallZero) { EXPECT_TRUE(holds(QNumber(), 0, Form::kSmall)); }

TEST(QNumberConstruct, AWordIsSmallExceptForTheLowest)
{
  for (const long n : {0L, 1L, -1L, 5L, LONG_MAX, LONG_MAX - 1, -LONG_MAX, -LONG_MAX + 1}) {
    EXPECT_TRUE(holds(QNumber(n), n, Form::kSmall)) << n;
  }
  EXPECT_TRUE(holds(QNumber(LONG_MIN), LONG_MIN, Form::kBig));
}

struct PairCase
{
  long num;
  long den;
  long reduced_num;
  unsigned long reduced_den;
  Form form;
};

constexpr unsigned long kTwoTo63 = 1UL << 63U;

constexpr PairCase kPairCases[] = {
    {0, 1, 0, 1, Form::kSmall},
    {0, -5, 0, 1, Form::kSmall},
    {0, LONG_MAX, 0, 1, Form::kSmall},
    {0, LONG_MIN, 0, 1, Form::kSmall},
    {6, 4, 3, 2, Form::kSmall},
    {-6, 4, -3, 2, Form::kSmall},
    {6, -4, -3, 2, Form::kSmall},
    {-6, -4, 3, 2, Form::kSmall},
    {6, 3, 2, 1, Form::kSmall},
    {LONG_MAX, LONG_MAX, 1, 1, Form::kSmall},
    {-LONG_MAX, LONG_MAX, -1, 1, Form::kSmall},
    {LONG_MAX, -LONG_MAX, -1, 1, Form::kSmall},
    {LONG_MAX, 1, LONG_MAX, 1, Form::kSmall},
    {LONG_MAX, -1, -LONG_MAX, 1, Form::kSmall},
    {1, LONG_MAX, 1, LONG_MAX, Form::kSmall},
    {1, -LONG_MAX, -1, LONG_MAX, Form::kSmall},
    {LONG_MAX - 1, LONG_MAX, LONG_MAX - 1, LONG_MAX, Form::kSmall},
    {LONG_MIN, LONG_MIN, 1, 1, Form::kSmall},
    {LONG_MIN, 2, -(1L << 62), 1, Form::kSmall},
    {LONG_MIN, -2, 1L << 62, 1, Form::kSmall},
    {LONG_MIN, 6, -(1L << 62), 3, Form::kSmall},
    {2, LONG_MIN, -1, 1UL << 62U, Form::kSmall},
    {-6, LONG_MIN, 3, 1UL << 62U, Form::kSmall},
    {LONG_MIN, 1, LONG_MIN, 1, Form::kBig},
    {LONG_MIN, 3, LONG_MIN, 3, Form::kBig},
    {LONG_MIN, LONG_MAX, LONG_MIN, LONG_MAX, Form::kBig},
    {1, LONG_MIN, -1, kTwoTo63, Form::kBig},
    {-1, LONG_MIN, 1, kTwoTo63, Form::kBig},
    {LONG_MAX, LONG_MIN, -LONG_MAX, kTwoTo63, Form::kBig},
    {-3, LONG_MIN, 3, kTwoTo63, Form::kBig},
};

TEST(QNumberConstruct, AnUnsignedWordKeepsItsValueAndIsBigBeyondTheSignedRange)
{
  EXPECT_TRUE(holds(QNumber(~0U), 0xffffffffL, Form::kSmall));
  EXPECT_TRUE(holds(QNumber(static_cast<unsigned long>(LONG_MAX)), LONG_MAX, Form::kSmall));
  EXPECT_TRUE(holds(QNumber(1UL << 63U), Rational(Integer::power(63), kUnit), Form::kBig));
  EXPECT_TRUE(holds(QNumber(~0UL), Rational(Integer::power(64, -1), kUnit), Form::kBig));
}

TEST(QNumberConstruct, APairOfWordsIsReduced)
{
  for (const PairCase& c : kPairCases) {
    EXPECT_TRUE(holds(QNumber(c.num, c.den), Rational(c.reduced_num, c.reduced_den), c.form))
        << c.num << '/' << c.den;
  }
}

TEST(QNumberConstruct, TheLowestWordOverMinusOneIsBigAndPositive)
{
  EXPECT_TRUE(holds(QNumber(LONG_MIN, -1), Rational(Integer::power(63), kUnit), Form::kBig));
  EXPECT_TRUE(holds(QNumber(LONG_MIN, -3), Rational(Integer::power(63), Integer(3)), Form::kBig));
}

TEST(QNumberConstruct, APairWithAnUnsignedWordKeepsItsValues)
{
  EXPECT_TRUE(holds(QNumber(6UL, 4UL), Rational(3, 2), Form::kSmall));
  EXPECT_TRUE(holds(QNumber(-6, 4UL), Rational(-3, 2), Form::kSmall));
  EXPECT_TRUE(holds(QNumber(6UL, -4), Rational(-3, 2), Form::kSmall));
  EXPECT_TRUE(holds(QNumber(true, 4UL), Rational(1, 4), Form::kSmall));
  EXPECT_TRUE(holds(QNumber(0UL, -4L), 0, Form::kSmall));
  EXPECT_TRUE(holds(QNumber(kTwoTo63, 2), 1L << 62, Form::kSmall));
  EXPECT_TRUE(holds(QNumber(kTwoTo63, LONG_MIN), -1, Form::kSmall));
  EXPECT_TRUE(holds(QNumber(~0UL, 3), Rational(0x5555555555555555, 1), Form::kSmall));
  EXPECT_TRUE(holds(QNumber(~0UL, 1), Rational(Integer::power(64, -1), kUnit), Form::kBig));
  EXPECT_TRUE(holds(QNumber(-1, ~0UL), Rational(Integer(-1), Integer::power(64, -1)), Form::kBig));
  EXPECT_TRUE(
      holds(QNumber(~0UL, ~0UL - 1), Rational(Integer::power(64, -1), Integer::power(64, -2)), Form::kBig));
}

struct IntegerPairCase
{
  const char* num;
  const char* den;
  Form form;
};

/// Small only if both given integers fit an `int`, before they are reduced.
constexpr IntegerPairCase kIntegerPairCases[] = {
    {"0", "1", Form::kSmall},
    {"0", "-7", Form::kSmall},
    {"0", "2147483648", Form::kBig},
    {"6", "4", Form::kSmall},
    {"-6", "-4", Form::kSmall},
    {"2147483647", "2147483647", Form::kSmall},
    {"-2147483648", "-2147483648", Form::kSmall},
    {"-2147483648", "2147483647", Form::kSmall},
    {"1", "-2147483648", Form::kSmall},
    {"2147483648", "1", Form::kBig},
    {"2147483648", "2147483648", Form::kBig},
    {"-2147483649", "1", Form::kBig},
    {"1", "2147483648", Form::kBig},
    {"1", "-2147483649", Form::kBig},
    {"9223372036854775807", "1", Form::kBig},
    {"-9223372036854775808", "1", Form::kBig},
    {"-9223372036854775808", "-9223372036854775808", Form::kBig},
    {"9223372036854775808", "-6", Form::kBig},
    {"-36893488147419103232", "-55340232221128654848", Form::kBig},
    {"340282366920938463463374607431768211456", "3", Form::kBig},
    {"1", "-340282366920938463463374607431768211456", Form::kBig},
    {"0", "-340282366920938463463374607431768211456", Form::kBig},
};

TEST(QNumberConstruct, APairOfIntegersIsReduced)
{
  for (const IntegerPairCase& c : kIntegerPairCases) {
    const Integer num(c.num);
    const Integer den(c.den);
    EXPECT_TRUE(holds(QNumber(num, den), Rational(num, den), c.form)) << c.num << '/' << c.den;
  }
}

TEST(QNumberConstruct, APairOfIntegersMayBeScratch)
{
  for (int i = 0; i < 4; ++i) {
    for (int j = 0; j < 4; ++j) {
      if (i == j) continue;
      mpz_set(QNumber::gmp_tmp[i], Integer::power(70));
      mpz_set_si(QNumber::gmp_tmp[j], -96);
      EXPECT_TRUE(holds(QNumber(QNumber::gmp_tmp[i], QNumber::gmp_tmp[j]),
                        Rational(Integer::power(70), Integer(-96)), Form::kBig));
    }
  }
}

/// Values of all kinds; each is tested in each form that it has.
std::vector<Rational> sample_values()
{
  return {0,
          1,
          -1,
          5,
          LONG_MAX,
          -LONG_MAX,
          LONG_MIN,
          Rational(1, 2),
          Rational(-7, 3),
          Rational(1, LONG_MAX),
          Rational(LONG_MAX - 1, LONG_MAX),
          Rational(1, kTwoTo63),
          Rational(Integer::power(63), kUnit),
          Rational(Integer::power(64, -1), kUnit),
          Rational(Integer::power(200, 1), kUnit),
          Rational(Integer::power(200, 1), Integer::power(130)),
          Rational(Integer(-3), Integer::power(90))};
}

/// Calls check(value, form) for every sample in each form that it has.
template <class Check>
void for_each_sample(Check check)
{
  for (const Rational& value : sample_values()) {
    for (const Form form : kBothForms) {
      if (!has_form(value, form)) continue;
      SCOPED_TRACE(::testing::Message() << value << ' ' << form);
      check(value, form);
    }
  }
}

/// The same for every two of them.
template <class Check>
void for_each_two_samples(Check check)
{
  for_each_sample([&](const Rational& x, Form x_form) {
    for_each_sample([&](const Rational& y, Form y_form) { check(x, x_form, y, y_form); });
  });
}

TEST(QNumberCopy, IsDeepAndKeepsTheForm)
{
  for_each_sample([](const Rational& value, Form form) {
    QNumber source = make(value, form);
    const QNumber copy(source);  // NOLINT(performance-unnecessary-copy-initialization)
    EXPECT_TRUE(holds(copy, value, form));
    source += QNumber(1);
    source *= QNumber(3);
    EXPECT_TRUE(holds(copy, value, form));
  });
}

TEST(QNumberCopy, AssignmentLeavesABigTargetBig)
{
  for_each_two_samples([](const Rational& old, Form old_form, const Rational& value, Form form) {
    QNumber target = make(old, old_form);
    QNumber source = make(value, form);
    const Form expected = old_form == Form::kBig ? Form::kBig : form;
    EXPECT_EQ(&(target = source), &target);
    EXPECT_TRUE(holds(target, value, expected));
    EXPECT_TRUE(holds(source, value, form));
    source += QNumber(1);
    EXPECT_TRUE(holds(target, value, expected)) << "the copy is deep";
  });
}

TEST(QNumberCopy, SelfAssignmentChangesNothing)
{
  for_each_sample([](const Rational& value, Form form) {
    QNumber number = make(value, form);
    QNumber& alias = number;
    number = alias;
    EXPECT_TRUE(holds(number, value, form));
  });
}

TEST(QNumberMove, TakesTheFormAndLeavesSmallZero)
{
  for_each_sample([](const Rational& value, Form form) {
    QNumber source = make(value, form);
    const QNumber taken(std::move(source));
    EXPECT_TRUE(holds(taken, value, form));
    EXPECT_TRUE(holds(source, 0, Form::kSmall));  // NOLINT(bugprone-use-after-move): the state is promised
  });
}

TEST(QNumberMove, AssignmentTakesTheFormAndLeavesSmallZero)
{
  for_each_two_samples([](const Rational& old, Form old_form, const Rational& value, Form form) {
    QNumber target = make(old, old_form);
    QNumber source = make(value, form);
    EXPECT_EQ(&(target = std::move(source)), &target);
    EXPECT_TRUE(holds(target, value, form));
    EXPECT_TRUE(holds(source, 0, Form::kSmall));  // NOLINT(bugprone-use-after-move): the state is promised
    source += QNumber(2);  // NOLINT(clang-analyzer-cplusplus.Move): a moved-from number is a number
    EXPECT_TRUE(holds(source, 2, Form::kSmall));
  });
}

TEST(QNumberMove, SelfAssignmentChangesNothing)
{
  for_each_sample([](const Rational& value, Form form) {
    QNumber number = make(value, form);
    QNumber& alias = number;
    number = std::move(alias);
    EXPECT_TRUE(holds(number, value, form));
  });
}

TEST(QNumberSwap, ExchangesValuesAndForms)
{
  for_each_two_samples([](const Rational& x, Form x_form, const Rational& y, Form y_form) {
    QNumber a = make(x, x_form);
    QNumber b = make(y, y_form);
    a.swap(b);
    EXPECT_TRUE(holds(a, y, y_form));
    EXPECT_TRUE(holds(b, x, x_form));
    using std::swap;
    swap(a, b);
    EXPECT_TRUE(holds(a, x, x_form));
    EXPECT_TRUE(holds(b, y, y_form));
    a.swap(a);
    EXPECT_TRUE(holds(a, x, x_form));
  });
}

TEST(QNumberMove, SurvivesAGrowingVector)
{
  std::vector<QNumber> numbers;
  for (unsigned long i = 0; i < 200; ++i)
    numbers.push_back(make_power(i));
  for (unsigned long i = 0; i < 200; ++i) {
    ASSERT_TRUE(holds(numbers[i], Rational(Integer::power(i), kUnit), Form::kBig));
  }
}

}  // namespace
}  // namespace lumo
