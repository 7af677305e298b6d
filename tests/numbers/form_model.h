#ifndef LUMO_TESTS_NUMBERS_FORM_MODEL_H
#define LUMO_TESTS_NUMBERS_FORM_MODEL_H

#include <climits>
#include <numeric>

#include "tests/numbers/number_forms.h"
#include "tests/support/gmp_number.h"

namespace lumo::test {

/// Whether the sums and products of small numbers stay small, computed a second time in double width: a result is
/// small if every number on the way to it, the result included, has a magnitude of at most 2^63 - 1.
class FormModel
{
 public:
  [[nodiscard]] static Form sum(const Rational& x, const Rational& y) { return sum(parts(x), parts(y)); }
  [[nodiscard]] static Form difference(const Rational& x, const Rational& y)
  {
    const Parts p = parts(y);
    return sum(parts(x), {-p.num, p.den});
  }
  [[nodiscard]] static Form product(const Rational& x, const Rational& y)
  {
    const auto [xn, xd] = parts(x);
    const auto [yn, yd] = parts(y);
    const long g1 = std::gcd(xn, yd);
    const long g2 = std::gcd(yn, xd);
    return small_if(fits(Wide{xn / g1} * (yn / g2)) && fits(Wide{xd / g2} * (yd / g1)));
  }

 private:
  __extension__ using Wide = __int128;

  struct Parts
  {
    long num;
    long den;
  };

  [[nodiscard]] static Parts parts(const Rational& q) { return {mpz_get_si(q.num()), mpz_get_si(q.den())}; }
  [[nodiscard]] static bool fits(Wide n) { return -LONG_MAX <= n && n <= LONG_MAX; }
  [[nodiscard]] static Form small_if(bool condition) { return condition ? Form::kSmall : Form::kBig; }

  [[nodiscard]] static Form sum(Parts x, Parts y)
  {
    const long g = std::gcd(x.den, y.den);
    const Wide left = Wide{x.num} * (y.den / g);
    const Wide right = Wide{y.num} * (x.den / g);
    if (!fits(left) || !fits(right) || !fits(left + right)) return Form::kBig;
    const long g2 = std::gcd(static_cast<long>(left + right), g);
    return small_if(fits(Wide{x.den / g} * (y.den / g2)));
  }
};

}  // namespace lumo::test

#endif
