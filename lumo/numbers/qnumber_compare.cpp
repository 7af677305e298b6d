// Access to, comparison and printing of numbers; arithmetic is in qnumber.cpp.

#include <cassert>
#include <numeric>

#include "lumo/numbers/gcd.h"
#include "lumo/numbers/hash_mix.h"
#include "lumo/numbers/qnumber.h"
#include "lumo/numbers/scratch.h"

namespace lumo {

namespace {

__extension__ using SignedProduct = __int128;

/// Agrees with the hash of the word if z is one.
std::size_t hash_integer(std::size_t seed, mpz_srcptr z)
{
  if (mpz_fits_slong_p(z) != 0) return mix_hash(seed, static_cast<std::size_t>(mpz_get_si(z)));
  // Mix in the length first, so that 2^64 - 1 does not hash like -1, the word of the same bits.
  const std::size_t length = mpz_size(z);
  std::size_t h = mix_hash(seed, mpz_sgn(z) < 0 ? ~length : length);
  const mp_limb_t* limbs = mpz_limbs_read(z);
  for (std::size_t i = 0; i < mpz_size(z); ++i)
    h = mix_hash(h, limbs[i]);
  return h;
}

/// Whether x and y are equal. Short integers are compared without a call of GMP and without branches that depend on
/// their limbs, which a processor would often mispredict.
bool are_equal(mpz_srcptr x, mpz_srcptr y)
{
  constexpr mp_size_t kShort = 4;
  const auto length = static_cast<mp_size_t>(mpz_size(x));
  if (length > kShort || mpz_size(y) != mpz_size(x)) return mpz_cmp(x, y) == 0;
  auto difference = static_cast<mp_limb_t>(mpz_sgn(x) ^ mpz_sgn(y));
  for (mp_size_t i = 0; i < length; ++i)
    difference |= mpz_getlimbn(x, i) ^ mpz_getlimbn(y, i);
  return difference == 0;
}

}  // namespace

std::string QNumber::to_string() const
{
  // Both conditional expressions also free their strings if an exception is thrown, in branches that no test takes.
  // GCOVR_EXCL_BR_START
  if (!is_big()) return den == 1 ? std::to_string(num) : std::to_string(num) + "/" + std::to_string(den);
  const auto decimal = [](mpz_srcptr z) {
    std::string digits(mpz_sizeinbase(z, 10) + 2, '\0');
    mpz_get_str(digits.data(), 10, z);
    digits.resize(digits.find('\0'));
    return digits;
  };
  return is_int_big() ? decimal(block().num) : decimal(block().num) + "/" + decimal(block().den);
  // GCOVR_EXCL_BR_STOP
}

std::size_t QNumber::hash() const
{
  if (!is_big()) [[likely]] {
    return mix_hash(mix_hash(0, static_cast<std::size_t>(num)), static_cast<std::size_t>(den));
  }
  return hash_integer(hash_integer(0, block().num), block().den);
}

void QNumber::get_numerator(mpz_ptr out) const
{
  if (is_big()) {
    mpz_set(out, block().num);
  } else {
    mpz_set_si(out, num);
  }
}

void QNumber::get_denominator(mpz_ptr out) const
{
  if (is_big()) {
    mpz_set(out, block().den);
  } else {
    mpz_set_si(out, den);
  }
}

mpz_srcptr QNumber::view_numerator(mpz_ptr scratch) const
{
  if (is_big()) return block().num;
  mpz_set_si(scratch, num);
  return scratch;
}

bool QNumber::get_word_slow(long& out) const
{
  if (!is_int_big() || mpz_fits_slong_p(block().num) == 0) return false;
  const long word = mpz_get_si(block().num);
  if (word == LONG_MIN) return false;
  out = word;
  return true;
}

bool QNumber::is_canonical() const
{
  // Do not use lumo::gcd or the scratch integers: a query must not change shared state.
  if (!is_big()) return num != LONG_MIN && den > 0 && std::gcd(magnitude(num), magnitude(den)) == 1;
  if (mpz_sgn(block().den) <= 0) return false;
  if (is_int_big()) return true;
  mpz_t g;
  mpz_init(g);
  mpz_gcd(g, block().num, block().den);
  const bool coprime = mpz_cmp_ui(g, 1) == 0;
  mpz_clear(g);
  return coprime;
}

bool QNumber::equal_slow(const QNumber& lhs, const QNumber& rhs)
{
  if (!lhs.is_big()) return equal_slow(rhs, lhs);
  const Block& x = lhs.block();
  if (!rhs.is_big()) return mpz_cmp_si(x.num, rhs.num) == 0 && mpz_cmp_si(x.den, rhs.den) == 0;
  const Block& y = rhs.block();
  // Integers are the usual case, and one comparison decides it.
  if (lhs.is_int_big() && rhs.is_int_big()) return are_equal(x.num, y.num);
  return are_equal(x.num, y.num) && are_equal(x.den, y.den);
}

bool QNumber::less_slow(const QNumber& lhs, const QNumber& rhs)
{
  if (lhs.is_big() && rhs.is_big() && lhs.is_int_big() && rhs.is_int_big()) {
    return mpz_cmp(lhs.block().num, rhs.block().num) < 0;
  }
  if (!lhs.is_big() && !rhs.is_big()) {
    // Products of two words have at most 126 bits (I2), so no division by a gcd is needed first.
    return SignedProduct{lhs.num} * rhs.den < SignedProduct{rhs.num} * lhs.den;
  }
  const int x_sign = lhs.sign();
  const int y_sign = rhs.sign();
  if (x_sign < 0 && y_sign >= 0) return true;
  if (x_sign >= 0 && y_sign <= 0) return false;
  if (lhs.is_int() && rhs.is_int()) {
    return rhs.is_big() ? mpz_cmp_si(rhs.block().num, lhs.num) > 0 : mpz_cmp_si(lhs.block().num, rhs.num) < 0;
  }
  return less_big(lhs, rhs);
}

bool QNumber::less_big(const QNumber& lhs, const QNumber& rhs)
{
  auto& [t0, t1, t2, t3] = get_scratch();
  lhs.get_numerator(t0);
  rhs.get_numerator(t1);
  mpz_gcd(t2, t0, t1);
  mpz_divexact(t0, t0, t2);
  mpz_divexact(t1, t1, t2);

  // At most one side is small, and its denominator takes the last scratch integer; so compute that side first.
  const auto get_denominator = [scratch = static_cast<mpz_ptr>(t3)](const QNumber& q) -> mpz_srcptr {
    if (q.is_big()) return q.block().den;
    mpz_set_si(scratch, q.den);
    return scratch;
  };
  mpz_srcptr xd = get_denominator(lhs);
  mpz_srcptr yd = get_denominator(rhs);
  mpz_gcd(t2, xd, yd);
  const auto multiply = [g = static_cast<mpz_ptr>(t2), quotient = static_cast<mpz_ptr>(t3)](
                            mpz_ptr side, mpz_srcptr other_den) {
    mpz_divexact(quotient, other_den, g);
    mpz_mul(side, side, quotient);
  };
  if (lhs.is_big()) {
    multiply(t0, yd);
    multiply(t1, xd);
  } else {
    multiply(t1, xd);
    multiply(t0, yd);
  }
  return mpz_cmp(t0, t1) < 0;
}

}  // namespace lumo
