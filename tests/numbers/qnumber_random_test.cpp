// Random arithmetic against GMP's rational numbers, in all forms and aliasings of operands and outputs.

#include <algorithm>
#include <array>
#include <cstddef>
#include <vector>

#include <gtest/gtest.h>

#include "lumo/numbers/qnumber.h"
#include "tests/numbers/form_model.h"
#include "tests/numbers/number_testing.h"
#include "tests/numbers/random_rational.h"
#include "tests/support/random.h"

namespace lumo {
namespace {

using test::Form;
using test::FormModel;
using test::has_form;
using test::holds;
using test::Integer;
using test::kBothForms;
using test::make;
using test::Random;
using test::RandomRational;
using test::Rational;

/// One of += -= *= with the binary operator that follows from it.
struct Compound
{
  const char* symbol;
  void (*apply)(QNumber& x, const QNumber& y);
  QNumber (*combine)(const QNumber& x, const QNumber& y);
  void (*judge)(mpq_ptr result, mpq_srcptr x, mpq_srcptr y);
  Form (*small_operands_give)(const Rational& x, const Rational& y);
  bool shrinks_by_small_zero;
};

constexpr Compound kAdd = {"+",
                           [](QNumber& x, const QNumber& y) { x += y; },
                           [](const QNumber& x, const QNumber& y) { return x + y; },
                           mpq_add,
                           FormModel::sum,
                           false};
constexpr Compound kSubtract = {"-",
                                [](QNumber& x, const QNumber& y) { x -= y; },
                                [](const QNumber& x, const QNumber& y) { return x - y; },
                                mpq_sub,
                                FormModel::difference,
                                false};
constexpr Compound kMultiply = {"*",
                                [](QNumber& x, const QNumber& y) { x *= y; },
                                [](const QNumber& x, const QNumber& y) { return x * y; },
                                mpq_mul,
                                FormModel::product,
                                true};

Form predict(const Compound& op, const Rational& x, Form x_form, const Rational& y, Form y_form)
{
  if (op.shrinks_by_small_zero && y_form == Form::kSmall && mpz_sgn(y.num()) == 0) return Form::kSmall;
  if (x_form == Form::kBig || y_form == Form::kBig) return Form::kBig;
  return op.small_operands_give(x, y);
}

/// x op= y and its relatives for one pair of forms.
void check_pair(const Compound& op, const Rational& x, Form x_form, const Rational& y, Form y_form,
                const Rational& expected)
{
  const Form form = predict(op, x, x_form, y, y_form);
  QNumber a = make(x, x_form);
  QNumber b = make(y, y_form);
  ASSERT_TRUE(holds(op.combine(a, b), expected, form));
  ASSERT_TRUE(holds(a, x, x_form));
  op.apply(a, b);
  ASSERT_TRUE(holds(a, expected, form));
  ASSERT_TRUE(holds(b, y, y_form));
  b = op.combine(make(x, x_form), b);
  ASSERT_TRUE(holds(b, expected, form));
}

/// x op= x and x = x op x.
void check_self(const Compound& op, const Rational& x, Form x_form, const Rational& expected)
{
  const Form form = predict(op, x, x_form, x, x_form);
  QNumber a = make(x, x_form);
  op.apply(a, a);
  ASSERT_TRUE(holds(a, expected, form));
  a = QNumber();
  QNumber b = make(x, x_form);
  b = op.combine(b, b);
  ASSERT_TRUE(holds(b, expected, form));
}

void check_compound(const Compound& op)
{
  Random random;
  SCOPED_TRACE(random);
  RandomRational draw(random);
  Rational x;
  Rational y;
  Rational expected;
  Rational expected_self;
  std::size_t checked = 0;
  for (int round = 0; round < 25'000; ++round) {
    draw.any(x);
    draw.partner(x, y);
    op.judge(expected, x, y);
    op.judge(expected_self, x, x);
    for (const Form x_form : kBothForms) {
      if (!has_form(x, x_form)) continue;
      check_self(op, x, x_form, expected_self);
      checked += 2;
      for (const Form y_form : kBothForms) {
        if (!has_form(y, y_form)) continue;
        check_pair(op, x, x_form, y, y_form, expected);
        checked += 3;
        ASSERT_FALSE(::testing::Test::HasFailure())
            << x << " (" << x_form << ") " << op.symbol << ' ' << y << " (" << y_form << ")";
      }
    }
  }
  EXPECT_GT(checked, 200'000U);
}

TEST(QNumberRandom, SumsAgreeWithGmp) { check_compound(kAdd); }

TEST(QNumberRandom, DifferencesAgreeWithGmp) { check_compound(kSubtract); }

TEST(QNumberRandom, ProductsAgreeWithGmp) { check_compound(kMultiply); }

/// A long computation in one number, to reach states that no single operation reaches.
TEST(QNumberRandom, ChainsOfOperationsAgreeWithGmp)
{
  constexpr std::array<const Compound*, 3> compounds = {&kAdd, &kSubtract, &kMultiply};
  Random random(1);
  SCOPED_TRACE(random);
  RandomRational draw(random);
  Rational operand;
  for (int chain = 0; chain < 5'000; ++chain) {
    Rational judge;
    QNumber number;
    Form form = Form::kSmall;
    for (int step = 0; step < 12; ++step) {
      const Compound& op = *random.pick(compounds);
      draw.partner(judge, operand);
      const Form operand_form = has_form(operand, Form::kSmall) && random.flip() ? Form::kSmall : Form::kBig;
      form = predict(op, judge, form, operand, operand_form);
      op.judge(judge, judge, operand);
      op.apply(number, make(operand, operand_form));
      ASSERT_TRUE(holds(number, judge, form)) << op.symbol << ' ' << operand << " (" << operand_form << ')';
      if (mpz_sizeinbase(judge.num(), 2) > 2000 || mpz_sizeinbase(judge.den(), 2) > 2000) break;
    }
  }
}

void check_order(const QNumber& a, const QNumber& b, int order)
{
  ASSERT_EQ(a < b, order < 0);
  ASSERT_EQ(a > b, order > 0);
  ASSERT_EQ(a <= b, order <= 0);
  ASSERT_EQ(a >= b, order >= 0);
  ASSERT_EQ(a == b, order == 0);
  ASSERT_EQ(a != b, order != 0);
}

TEST(QNumberRandom, OrderAgreesWithGmp)
{
  Random random;
  SCOPED_TRACE(random);
  RandomRational draw(random);
  Rational x;
  Rational y;
  std::size_t checked = 0;
  for (int round = 0; round < 25'000; ++round) {
    draw.any(x);
    draw.partner(x, y);
    const int order = mpq_cmp(x, y);
    for (const Form x_form : kBothForms) {
      if (!has_form(x, x_form)) continue;
      const QNumber a = make(x, x_form);
      check_order(a, a, 0);
      checked += 6;
      for (const Form y_form : kBothForms) {
        if (!has_form(y, y_form)) continue;
        const QNumber b = make(y, y_form);
        check_order(a, b, order);
        checked += 6;
        ASSERT_TRUE(holds(a, x, x_form) && holds(b, y, y_form));
        ASSERT_FALSE(HasFailure()) << x << " (" << x_form << ") against " << y << " (" << y_form << ')';
      }
    }
  }
  EXPECT_GT(checked, 200'000U);
}

// Division: the four roles dividend, divisor, quotient and remainder are played by one to four objects.

enum Role : std::size_t
{
  kDividend,
  kDivisor,
  kQuotient,
  kRemainder,
  kRoles
};

/// The object that plays each role; objects are counted from 0 in the order of their first role.
using Cast = std::array<std::size_t, kRoles>;

std::vector<Cast> all_casts()
{
  std::vector<Cast> result;
  for (std::size_t d = 0; d <= 1; ++d) {
    for (std::size_t q = 0; q <= d + 1; ++q) {
      for (std::size_t r = 0; r <= std::max(d, q) + 1; ++r)
        result.push_back({0, d, q, r});
    }
  }
  return result;
}

struct Division
{
  Rational dividend;
  Rational divisor;
  Rational truncated_quotient;
  Rational truncated_remainder;
  Rational floored_quotient;
  Rational floored_remainder;

  void solve(const Rational& x, const Rational& d)
  {
    const Integer one(1);
    Integer q;
    Integer r;
    dividend = x;
    divisor = d;
    mpz_tdiv_qr(q, r, x.num(), d.num());
    truncated_quotient.set(q, one);
    truncated_remainder.set(r, one);
    mpz_fdiv_qr(q, r, x.num(), d.num());
    floored_quotient.set(q, one);
    floored_remainder.set(r, one);
  }
};

/// Divides with the given cast; the objects start in the given forms. An object that is only an output
/// starts as a fraction, to show that its denominator is overwritten.
void check_division(const Division& division, const Cast& cast, const std::array<Form, kRoles>& forms)
{
  std::array<QNumber, kRoles> objects;
  std::array<Rational, kRoles> expected;
  std::array<Form, kRoles> expected_forms = forms;
  const std::size_t count = *std::max_element(cast.begin(), cast.end()) + 1;
  for (std::size_t i = 0; i < count; ++i) {
    const bool is_input = i == cast[kDividend] || i == cast[kDivisor];
    if (!is_input) {
      expected[i] = Rational(-5, 3);
    } else {
      expected[i] = i == cast[kDividend] ? division.dividend : division.divisor;
    }
    objects[i] = make(expected[i], forms[i]);
  }

  objects[cast[kDividend]].divmod(objects[cast[kDivisor]], objects[cast[kQuotient]],
                                  objects[cast[kRemainder]]);

  const bool floors = forms[cast[kDividend]] == Form::kBig || forms[cast[kDivisor]] == Form::kBig;
  expected[cast[kQuotient]] = floors ? division.floored_quotient : division.truncated_quotient;
  expected[cast[kRemainder]] = floors ? division.floored_remainder : division.truncated_remainder;
  if (floors) {
    expected_forms[cast[kQuotient]] = Form::kBig;
    expected_forms[cast[kRemainder]] = Form::kBig;
  }
  for (std::size_t i = 0; i < count; ++i) {
    ASSERT_TRUE(holds(objects[i], expected[i], expected_forms[i])) << "object " << i;
  }
}

/// All casts, all forms; returns the number of divisions.
std::size_t check_division_everywhere(const Rational& x, const Rational& d)
{
  static const std::vector<Cast> casts = all_casts();
  Division unlike;
  unlike.solve(x, d);
  Division alike;
  if (mpz_sgn(x.num()) != 0) alike.solve(x, x);
  std::size_t checked = 0;
  for (const Cast& cast : casts) {
    const bool is_alike = cast[kDividend] == cast[kDivisor];
    if (is_alike && mpz_sgn(x.num()) == 0) continue;
    const Division& division = is_alike ? alike : unlike;
    const std::size_t count = *std::max_element(cast.begin(), cast.end()) + 1;
    for (unsigned choice = 0; choice < 1U << count; ++choice) {
      std::array<Form, kRoles> forms{};
      for (std::size_t i = 0; i < count; ++i)
        forms[i] = (choice >> i & 1U) != 0 ? Form::kBig : Form::kSmall;
      if (!has_form(division.dividend, forms[cast[kDividend]])) continue;
      if (!has_form(division.divisor, forms[cast[kDivisor]])) continue;
      check_division(division, cast, forms);
      ++checked;
      if (::testing::Test::HasFailure()) {
        ADD_FAILURE() << division.dividend << " by " << division.divisor << ", objects " << cast[0] << cast[1]
                      << cast[2] << cast[3] << ", big ones " << choice;
        return checked;
      }
    }
  }
  return checked;
}

TEST(QNumberRandom, ThereAreFifteenWaysToCastADivision) { EXPECT_EQ(all_casts().size(), 15U); }

TEST(QNumberRandom, DivisionsAgreeWithGmp)
{
  Random random;
  SCOPED_TRACE(random);
  RandomRational draw(random);
  Rational x;
  Rational d;
  std::size_t checked = 0;
  for (int round = 0; round < 6'000; ++round) {
    draw.integer(d);
    if (mpz_sgn(d.num()) == 0) continue;
    draw.integer(x);
    if (random.flip()) {  // a quotient without remainder, or almost so
      mpq_mul(x, x, d);
      mpq_add(x, x, Rational(random.between(-1, 1)));
    }
    checked += check_division_everywhere(x, d);
    ASSERT_FALSE(HasFailure());
  }
  EXPECT_GT(checked, 200'000U);
}

TEST(QNumberRandom, DivisionsOfShortWordsAgreeWithGmpEverywhere)
{
  for (long x = -7; x <= 7; ++x) {
    for (long d = -4; d <= 4; ++d) {
      if (d == 0) continue;
      (void)check_division_everywhere(x, d);
      ASSERT_FALSE(HasFailure());
    }
  }
}

}  // namespace
}  // namespace lumo
