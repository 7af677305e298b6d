#ifndef LUMO_TESTS_NUMBERS_RANDOM_RATIONAL_H
#define LUMO_TESTS_NUMBERS_RANDOM_RATIONAL_H

#include "tests/support/gmp_number.h"
#include "tests/support/random.h"

namespace lumo::test {

/// Draws operands for rational arithmetic. Most fit words, and second operands are often related to the
/// first, so that sums and products cancel, reduce, or fall next to the limits of the word.
class RandomRational
{
 public:
  explicit RandomRational(Random& random) : random_(random) {}

  void integer(Rational& out)
  {
    draw_num(random_.one_in(4) ? kLongBits : 63);
    mpz_set_ui(den_, 1);
    out.set(num_, den_);
  }

  void any(Rational& out)
  {
    switch (random_.index(8)) {
      case 0:
      case 1:
      case 2:
        integer(out);
        return;
      case 3:
        mpz_set_si(num_, random_.between(-1000, 1000));
        mpz_set_si(den_, random_.between(1, 1000));
        break;
      case 4:
        draw_num(kLongBits);
        draw_den(kLongBits);
        break;
      default:
        draw_num(63);
        draw_den(63);
        break;
    }
    out.set(num_, den_);
  }

  /// A second operand for x.
  void partner(const Rational& x, Rational& out)
  {
    switch (random_.index(10)) {
      case 0:
        mpq_set(out, x);
        break;
      case 1:
        mpq_neg(out, x);
        break;
      case 2:  // the sum falls next to a limit
        limit(out);
        mpq_sub(out, out, x);
        break;
      case 3:  // the difference does
        limit(out);
        mpq_sub(out, x, out);
        break;
      case 4:  // the product does
        limit(out);
        if (mpz_sgn(x.num()) != 0) mpq_div(out, out, x);
        break;
      case 5:  // the denominators have a common factor
        draw_num(63);
        mpz_mul_si(den_, x.den(), random_.between(1, 12));
        out.set(num_, den_);
        break;
      case 6:  // so have the one's numerator and the other's denominator
        draw_num(63);
        mpz_mul(den_, x.num(), x.num());
        if (den_.sign() == 0) mpz_set_ui(den_, 1);
        out.set(num_, den_);
        break;
      default:
        any(out);
        break;
    }
  }

 private:
  static constexpr unsigned long kLongBits = 200;

  void draw_num(unsigned long bits) { random_.integer(num_, bits); }
  void draw_den(unsigned long bits)
  {
    random_.natural(den_, bits);
    if (den_.sign() == 0) mpz_set_ui(den_, 1);
  }
  /// 2^63 give or take a little, of either sign
  void limit(Rational& out)
  {
    mpz_set_ui(num_, 1UL << 63U);
    mpz_add(num_, num_, Integer(random_.between(-3, 3)));
    if (random_.flip()) mpz_neg(num_, num_);
    mpz_set_ui(den_, 1);
    out.set(num_, den_);
  }

  Random& random_;
  Integer num_;
  Integer den_{1};
};

}  // namespace lumo::test

#endif
