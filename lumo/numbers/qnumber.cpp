#include "lumo/numbers/qnumber.h"

#include <cassert>

#include "lumo/numbers/gcd.h"
#include "lumo/numbers/scratch.h"

namespace lumo {

namespace {

/// x /= y, where y divides x; most often y is 1.
void divide_exactly(mpz_ptr x, mpz_srcptr y)
{
  if (mpz_cmp_ui(y, 1) != 0) mpz_divexact(x, x, y);
}

/// The gcd of a small numerator, or a sum of two, and a small denominator.
[[gnu::always_inline]] inline long gcd_of_parts(long numerator, long denominator)
{
  return static_cast<long>(common_factor(magnitude(numerator), static_cast<unsigned long>(denominator)));
}

}  // namespace

QNumber::QNumber(long numerator, long denominator) : QNumber()
{
  set_fraction((numerator < 0) != (denominator < 0), magnitude(numerator), magnitude(denominator));
}

void QNumber::set_fraction(bool negative, unsigned long n, unsigned long d)
{
  assert(d != 0 && "a denominator is not zero");
  const unsigned long g = common_factor(n, d);
  if (n / g <= LONG_MAX && d / g <= LONG_MAX) {
    const long reduced = static_cast<long>(n / g);
    num = negative ? -reduced : reduced;
    den = static_cast<long>(d / g);
  } else {
    Block& b = adopt_fresh_block();
    mpz_set_ui(b.num, n / g);
    if (negative) mpz_neg(b.num, b.num);
    mpz_set_ui(b.den, d / g);
  }
  assert(is_canonical());
}

QNumber::QNumber(mpz_srcptr numerator, mpz_srcptr denominator) : QNumber()
{
  assert(mpz_sgn(denominator) != 0 && "a denominator is not zero");
  if (mpz_fits_sint_p(numerator) != 0 && mpz_fits_sint_p(denominator) != 0) {
    *this = QNumber(mpz_get_si(numerator), mpz_get_si(denominator));
    return;
  }
  Block& b = adopt_fresh_block();
  mpz_set(b.num, numerator);
  mpz_set(b.den, denominator);
  normalise_big();
}

void QNumber::promote()
{
  const long numerator = num;
  const long denominator = den;
  Block& b = adopt_fresh_block();
  mpz_set_si(b.num, numerator);
  mpz_set_si(b.den, denominator);
}

void QNumber::promote_unsigned(unsigned long n) { mpz_set_ui(adopt_fresh_block().num, n); }

QNumber::Block& QNumber::adopt_fresh_block()
{
  auto* fresh = new Block;
  mpz_init(fresh->num);
  mpz_init_set_ui(fresh->den, 1);
  num = reinterpret_cast<long>(fresh);
  den = 0;
  return *fresh;
}

void QNumber::copy_block(const QNumber& rhs)
{
  auto* fresh = new Block;
  mpz_init_set(fresh->num, rhs.block().num);
  mpz_init_set(fresh->den, rhs.block().den);
  num = reinterpret_cast<long>(fresh);
  den = 0;
}

void QNumber::release() noexcept
{
  Block* old = &block();
  mpz_clear(old->num);
  mpz_clear(old->den);
  delete old;  // GCOVR_EXCL_BR_LINE: the compiler checks for null, which it never is
}

void QNumber::assign_slow(const QNumber& rhs)
{
  if (!is_big()) {
    copy_block(rhs);
  } else if (!rhs.is_big()) {
    mpz_set_si(block().num, rhs.num);
    mpz_set_si(block().den, rhs.den);
  } else {
    mpz_set(block().num, rhs.block().num);
    mpz_set(block().den, rhs.block().den);
  }
}

void QNumber::normalise_big()
{
  Block& b = block();
  if (mpz_cmp_ui(b.den, 1) != 0) {
    if (mpz_sgn(b.den) < 0) {
      mpz_neg(b.num, b.num);
      mpz_neg(b.den, b.den);
    }
    mpz_ptr g = get_scratch()[2];
    mpz_gcd(g, b.num, b.den);  // equals the denominator if the numerator is zero
    divide_exactly(b.num, g);
    divide_exactly(b.den, g);
  }
  assert(is_canonical());
}

// The same letters are used throughout: x = xn/xd is this number, y = yn/yd the operand, t0 to t3 the
// scratch integers. The fraction sums and products divide by common factors before they multiply, so that
// intermediate results stay small (D. E. Knuth, The Art of Computer Programming, vol. 2, section 4.5.1).

template <QNumber::Addend kAddend>
bool QNumber::add_small(long yn, long yd)
{
  // Usually the denominators have no common factor; then the parts of the result have none either.
  const long g = gcd_of_parts(den, yd);
  long a = den;
  long b = yd;
  long t1;
  long t2;
  long s;
  // GCOVR_EXCL_BR_START: common factors are positive, so no division here and in mul_small overflows
  if (g != 1 && (div_overflow(a, den, g) || div_overflow(b, yd, g))) return false;
  // GCOVR_EXCL_BR_STOP
  if (mul_overflow(t1, num, b) || mul_overflow(t2, yn, a)) return false;
  const bool overflow =
      kAddend == Addend::kAdded ? __builtin_add_overflow(t1, t2, &s) : __builtin_sub_overflow(t1, t2, &s);
  if (overflow || s == LONG_MIN) return false;

  const long g2 = g == 1 ? 1 : gcd_of_parts(s, g);
  b = yd;
  // GCOVR_EXCL_BR_START
  if (g2 != 1 && (div_overflow(s, s, g2) || div_overflow(b, yd, g2))) return false;
  // GCOVR_EXCL_BR_STOP
  long new_den;
  if (mul_overflow(new_den, a, b)) return false;
  num = s;
  den = new_den;
  return true;
}

template <QNumber::Addend kAddend>
void QNumber::add_big(const QNumber& rhs)
{
  constexpr auto combine = kAddend == Addend::kAdded ? mpz_add : mpz_sub;
  if (is_int_big() && rhs.is_int_big()) {
    combine(block().num, block().num, rhs.block().num);
  } else {
    add_fraction<kAddend>(rhs.block());
  }
}

template <QNumber::Addend kAddend>
void QNumber::add_fraction(const Block& y)
{
  constexpr auto combine = kAddend == Addend::kAdded ? mpz_add : mpz_sub;
  auto& [t0, t1, t2, t3] = get_scratch();
  mpz_ptr xn = block().num;
  mpz_ptr xd = block().den;
  mpz_set(t0, y.num);
  mpz_set(t1, y.den);
  mpz_gcd(t2, xd, t1);
  divide_exactly(xd, t2);
  mpz_divexact(t3, t1, t2);
  mpz_mul(xn, xn, t3);
  mpz_mul(t0, t0, xd);
  combine(xn, xn, t0);
  mpz_gcd(t2, xn, t2);
  divide_exactly(xn, t2);
  divide_exactly(t1, t2);
  mpz_mul(xd, xd, t1);
}

template <QNumber::Addend kAddend>
void QNumber::add_word(long yn, long yd)
{
  // Adding a negative number is subtracting its magnitude, and vice versa.
  const bool grows = (yn < 0) == (kAddend == Addend::kSubtracted);
  mpz_ptr xn = block().num;
  mpz_ptr xd = block().den;
  if (yd == 1 && is_int_big()) {
    if (grows) {
      mpz_add_ui(xn, xn, magnitude(yn));
    } else {
      mpz_sub_ui(xn, xn, magnitude(yn));
    }
    return;
  }
  const auto d = static_cast<unsigned long>(yd);
  const unsigned long g = mpz_gcd_ui(nullptr, xd, d);
  mpz_divexact_ui(xd, xd, g);
  mpz_mul_ui(xn, xn, d / g);
  if (grows) {
    mpz_addmul_ui(xn, xd, magnitude(yn));
  } else {
    mpz_submul_ui(xn, xd, magnitude(yn));
  }
  const unsigned long g2 = mpz_gcd_ui(nullptr, xn, g);
  mpz_divexact_ui(xn, xn, g2);
  mpz_mul_ui(xd, xd, d / g2);
}

template <QNumber::Addend kAddend>
void QNumber::add_general(const QNumber& rhs)
{
  // If rhs is this number, promoting it changes rhs as well, so read its words first.
  const long yn = rhs.num;
  const long yd = rhs.den;
  const bool y_is_big = rhs.is_big();
  // Two small integers come here only if their sum does not fit; for fractions, try words again.
  const bool are_integers = den == 1 && yd == 1;
  if (is_big() || y_is_big || are_integers || !add_small<kAddend>(yn, yd)) {
    if (!is_big()) promote();
    if (y_is_big) {
      add_big<kAddend>(rhs);
    } else {
      add_word<kAddend>(yn, yd);
    }
  }
  assert(is_canonical());
}

void QNumber::add_slow(const QNumber& rhs) { add_general<Addend::kAdded>(rhs); }

void QNumber::sub_slow(const QNumber& rhs) { add_general<Addend::kSubtracted>(rhs); }

bool QNumber::mul_small(long yn, long yd)
{
  const long g1 = gcd_of_parts(num, yd);
  const long g2 = gcd_of_parts(yn, den);
  long xn;
  long xd;
  // GCOVR_EXCL_BR_START
  if (div_overflow(xn, num, g1) || div_overflow(yn, yn, g2) || div_overflow(xd, den, g2) ||
      div_overflow(yd, yd, g1))
  {
    return false;  // GCOVR_EXCL_LINE
  }
  // GCOVR_EXCL_BR_STOP
  if (mul_overflow(xn, xn, yn) || mul_overflow(xd, xd, yd)) return false;
  num = xn;
  den = xd;
  return true;
}

void QNumber::mul_big(const QNumber& rhs)
{
  if (is_int_big() && rhs.is_int_big()) {
    mpz_mul(block().num, block().num, rhs.block().num);
  } else {
    mul_fraction(rhs.block());
  }
}

void QNumber::mul_fraction(const Block& y)
{
  auto& [t0, t1, t2, t3] = get_scratch();
  mpz_ptr xn = block().num;
  mpz_ptr xd = block().den;
  mpz_set(t0, y.num);
  mpz_set(t1, y.den);
  mpz_gcd(t2, xn, t1);
  mpz_gcd(t3, t0, xd);
  divide_exactly(xn, t2);
  divide_exactly(t0, t3);
  mpz_mul(xn, xn, t0);
  divide_exactly(xd, t3);
  divide_exactly(t1, t2);
  mpz_mul(xd, xd, t1);
}

void QNumber::mul_word(long yn, long yd)
{
  if (yn == 0) {
    release();
    set_zero();
    return;
  }
  mpz_ptr xn = block().num;
  mpz_ptr xd = block().den;
  if (yd == 1 && is_int_big()) {
    mpz_mul_si(xn, xn, yn);
    return;
  }
  const auto d = static_cast<unsigned long>(yd);
  const unsigned long g1 = mpz_gcd_ui(nullptr, xn, d);
  const unsigned long g2 = mpz_gcd_ui(nullptr, xd, magnitude(yn));
  mpz_divexact_ui(xn, xn, g1);
  mpz_mul_si(xn, xn, yn / static_cast<long>(g2));
  mpz_divexact_ui(xd, xd, g2);
  mpz_mul_ui(xd, xd, d / g1);
}

void QNumber::mul_slow(const QNumber& rhs)
{
  const long yn = rhs.num;
  const long yd = rhs.den;
  const bool y_is_big = rhs.is_big();
  const bool are_integers = den == 1 && yd == 1;
  if (is_big() || y_is_big || are_integers || !mul_small(yn, yd)) {
    if (!is_big()) promote();
    if (y_is_big) {
      mul_big(rhs);
    } else {
      mul_word(yn, yd);
    }
  }
  assert(is_canonical());
}

void QNumber::divmod_slow(const QNumber& d, QNumber& q, QNumber& r) const
{
  assert(d.sign() != 0 && "nothing is divided by zero");
  if (!is_big() && !d.is_big()) {
    const QNumber quotient(num / d.num);
    const QNumber remainder(num % d.num);
    q = quotient;
    r = remainder;
    return;
  }
  // Allocate first: a `bad_alloc` must leave q and r unchanged.
  QNumber fresh_q;
  QNumber fresh_r;
  if (!q.is_big()) fresh_q.adopt_fresh_block();
  if (!r.is_big() && &q != &r) fresh_r.adopt_fresh_block();

  // An output may be an input: read a small operand before the outputs become big. A big one keeps its
  // integers, and GMP allows outputs that are inputs.
  mpz_ptr word = get_scratch()[0];
  if (!is_big()) mpz_set_si(word, num);
  if (!d.is_big()) mpz_set_si(word, d.num);
  mpz_srcptr dividend = is_big() ? block().num : word;
  mpz_srcptr divisor = d.is_big() ? d.block().num : word;
  if (!q.is_big()) q.swap(fresh_q);
  if (!r.is_big()) r.swap(fresh_r);
  assert(q.is_big() && r.is_big() && "one block serves both outputs if they are the same object");
  mpz_set_ui(q.block().den, 1);
  mpz_set_ui(r.block().den, 1);
  if (&q == &r) {
    mpz_fdiv_r(r.block().num, dividend, divisor);
  } else {
    mpz_fdiv_qr(q.block().num, r.block().num, dividend, divisor);
  }
  assert(q.is_canonical() && r.is_canonical());
}

}  // namespace lumo
