#include "numbers/bvnumber.h"

#include <cassert>

namespace lumo {

namespace {

// The scratch integers of the number type; no two helpers that use them are active at once.
mpz_ptr scratch(int i) { return QNumber::gmp_tmp[i]; }

}  // namespace

QNumber BVNumber::pow2_slow(unsigned long w)
{
  mpz_set_ui(scratch(0), 1);
  mpz_mul_2exp(scratch(0), scratch(0), w);
  mpz_set_ui(scratch(1), 1);
  return {scratch(0), scratch(1)};
}

QNumber BVNumber::from_integer(mpz_srcptr z)
{
  if (mpz_fits_slong_p(z) != 0) return {mpz_get_si(z)};
  mpz_ptr one = scratch(z == scratch(3) ? 2 : 3);  // z may be scratch itself
  mpz_set_ui(one, 1);
  return {z, one};
}

QNumber BVNumber::reduce_slow(const QNumber& q, unsigned long w)
{
  mpz_fdiv_r_2exp(scratch(0), q.view_numerator(scratch(0)), w);
  return from_integer(scratch(0));
}

QNumber BVNumber::shift_left(const QNumber& q, unsigned long k)
{
  assert(q.sign() >= 0 && "patterns are not negative");
  long word;
  if (k <= kWordWidth && q.get_word(word) && word < (1L << (kWordWidth - k))) return {word << k};
  mpz_mul_2exp(scratch(0), q.view_numerator(scratch(0)), k);
  return from_integer(scratch(0));
}

QNumber BVNumber::shift_right(const QNumber& q, unsigned long k)
{
  assert(q.sign() >= 0 && "patterns are not negative");
  long word;
  if (q.get_word(word)) return {k <= kWordWidth ? word >> k : 0};
  mpz_tdiv_q_2exp(scratch(0), q.view_numerator(scratch(0)), k);
  return from_integer(scratch(0));
}

bool BVNumber::is_bit_set(const QNumber& q, unsigned long i)
{
  assert(q.sign() >= 0 && "patterns are not negative");
  long word;
  if (q.get_word(word)) return i <= kWordWidth && ((word >> i) & 1) != 0;
  return mpz_tstbit(q.view_numerator(scratch(0)), i) != 0;
}

QNumber BVNumber::bit_and(const QNumber& a, const QNumber& b)
{
  long x;
  long y;
  if (a.get_word(x) && b.get_word(y)) return {x & y};
  mpz_and(scratch(0), a.view_numerator(scratch(0)), b.view_numerator(scratch(1)));
  return from_integer(scratch(0));
}

QNumber BVNumber::bit_or(const QNumber& a, const QNumber& b)
{
  long x;
  long y;
  if (a.get_word(x) && b.get_word(y)) return {x | y};
  mpz_ior(scratch(0), a.view_numerator(scratch(0)), b.view_numerator(scratch(1)));
  return from_integer(scratch(0));
}

QNumber BVNumber::bit_xor(const QNumber& a, const QNumber& b)
{
  long x;
  long y;
  if (a.get_word(x) && b.get_word(y)) return {x ^ y};
  mpz_xor(scratch(0), a.view_numerator(scratch(0)), b.view_numerator(scratch(1)));
  return from_integer(scratch(0));
}

}  // namespace lumo
