#include "lumo/numbers/bvnumber.h"

#include <array>
#include <bit>
#include <cassert>
#include <climits>

#include "lumo/numbers/scratch.h"

namespace lumo {

// In each function, t0 to t3 are the scratch integers; no two functions that use the same one are active at once.

namespace {

mp_limb_t one_limb = 1;
/// The denominator of an integer; nothing writes to it.
const mpz_t kOne = MPZ_ROINIT_N(&one_limb, 1);

constexpr unsigned long kLimbBits = 64;
static_assert(sizeof(unsigned long) * CHAR_BIT == kLimbBits, "a word holds a limb");

/// The inverse of an odd a modulo 2^64.
unsigned long invert_limb(unsigned long a)
{
  unsigned long x = (3 * a) ^ 2;  // right in five bits
  for (unsigned long bits = 5; bits < kLimbBits; bits *= 2)
    x *= 2 - a * x;
  return x;
}

unsigned long low_bits(unsigned long n, unsigned long w) { return w < kLimbBits ? n & ((1UL << w) - 1) : n; }

/// Extends the inverse x of a modulo 2^known to the inverse modulo 2^w, where known < w <= 2 * known. Uses the last two
/// scratch integers.
void double_precision(mpz_ptr x, mpz_srcptr a, unsigned long known, unsigned long w)
{
  // a * x = 1 + 2^known * e modulo 2^w, and so the missing bits of x are those of -x * e.
  auto& [t0, t1, e, top] = get_scratch();
  mpz_tdiv_r_2exp(e, a, w);
  mpz_mul(e, e, x);
  mpz_tdiv_r_2exp(e, e, w);
  mpz_tdiv_q_2exp(e, e, known);
  mpz_mul(e, e, x);
  mpz_tdiv_r_2exp(e, e, w - known);
  if (mpz_size(e) == 0) return;
  mpz_set_ui(top, 1);
  mpz_mul_2exp(top, top, w - known);
  mpz_sub(top, top, e);
  mpz_mul_2exp(top, top, known);
  mpz_add(x, x, top);
}

}  // namespace

QNumber BVNumber::pow2_slow(unsigned long w)
{
  mpz_ptr t0 = get_scratch()[0];
  mpz_set_ui(t0, 1);
  mpz_mul_2exp(t0, t0, w);
  return {t0, kOne};
}

QNumber BVNumber::from_integer(mpz_srcptr z)
{
  if (mpz_fits_slong_p(z) != 0) return {mpz_get_si(z)};
  return {z, kOne};
}

QNumber BVNumber::reduce_slow(const QNumber& q, unsigned long w)
{
  mpz_ptr t0 = get_scratch()[0];
  mpz_fdiv_r_2exp(t0, q.view_numerator(t0), w);
  return from_integer(t0);
}

bool BVNumber::is_pattern_slow(const QNumber& q, unsigned long w)
{
  mpz_ptr t0 = get_scratch()[0];
  mpz_srcptr z = q.view_numerator(t0);
  return mpz_sgn(z) >= 0 && mpz_sizeinbase(z, 2) <= w;
}

QNumber BVNumber::complement_slow(const QNumber& q, unsigned long w)
{
  mpz_ptr t0 = get_scratch()[0];
  mpz_com(t0, q.view_numerator(t0));
  mpz_fdiv_r_2exp(t0, t0, w);
  return from_integer(t0);
}

QNumber BVNumber::concatenate(const QNumber& high, const QNumber& low, unsigned long w)
{
  assert(high.sign() >= 0 && is_pattern(low, w) && "the operands are patterns");
  long upper;
  long lower;
  if (w <= kWordWidth && high.get_word(upper) && upper < (1L << (kWordWidth - w))) {
    // Unlike the high part, a low part of this width is always a word.
    if (low.get_word(lower)) return {upper << w | lower};  // GCOVR_EXCL_BR_LINE
  }
  auto& [t0, t1, t2, t3] = get_scratch();
  mpz_mul_2exp(t0, high.view_numerator(t0), w);
  mpz_add(t0, t0, low.view_numerator(t1));
  return from_integer(t0);
}

QNumber BVNumber::extract(const QNumber& q, unsigned long lsb, unsigned long w)
{
  assert(q.sign() >= 0 && "patterns are not negative");
  long word;
  if (q.get_word(word)) {
    const long shifted = lsb <= kWordWidth ? word >> lsb : 0;
    return {w <= kWordWidth ? shifted & ((1L << w) - 1) : shifted};
  }
  mpz_ptr t0 = get_scratch()[0];
  mpz_tdiv_q_2exp(t0, q.view_numerator(t0), lsb);
  mpz_tdiv_r_2exp(t0, t0, w);
  return from_integer(t0);
}

QNumber BVNumber::rotate_left(const QNumber& q, unsigned long k, unsigned long w)
{
  assert(is_pattern(q, w) && k <= w && "a pattern of this width is rotated");
  long word;
  // GCOVR_EXCL_BR_START: a pattern of this width is a word
  if (w <= kWordWidth && q.get_word(word)) return {(word << k & ((1L << w) - 1)) | word >> (w - k)};
  // GCOVR_EXCL_BR_STOP
  auto& [t0, t1, t2, t3] = get_scratch();
  mpz_srcptr z = q.view_numerator(t0);
  mpz_tdiv_q_2exp(t1, z, w - k);
  mpz_tdiv_r_2exp(t0, z, w - k);
  mpz_mul_2exp(t0, t0, k);
  mpz_add(t0, t0, t1);
  return from_integer(t0);
}

QNumber BVNumber::shift_left(const QNumber& q, unsigned long k)
{
  assert(q.sign() >= 0 && "patterns are not negative");
  long word;
  if (k <= kWordWidth && q.get_word(word) && word < (1L << (kWordWidth - k))) return {word << k};
  mpz_ptr t0 = get_scratch()[0];
  mpz_mul_2exp(t0, q.view_numerator(t0), k);
  return from_integer(t0);
}

QNumber BVNumber::shift_right(const QNumber& q, unsigned long k)
{
  assert(q.sign() >= 0 && "patterns are not negative");
  long word;
  if (q.get_word(word)) return {k <= kWordWidth ? word >> k : 0};
  mpz_ptr t0 = get_scratch()[0];
  mpz_tdiv_q_2exp(t0, q.view_numerator(t0), k);
  return from_integer(t0);
}

bool BVNumber::is_bit_set(const QNumber& q, unsigned long i)
{
  assert(q.sign() >= 0 && "patterns are not negative");
  long word;
  if (q.get_word(word)) return i <= kWordWidth && ((word >> i) & 1) != 0;
  mpz_ptr t0 = get_scratch()[0];
  return mpz_tstbit(q.view_numerator(t0), i) != 0;
}

QNumber BVNumber::invert_odd(const QNumber& a, unsigned long w)
{
  assert(is_bit_set(a, 0) && w > 0 && "the inverse exists");
  long word;
  if (w <= kWordWidth && a.get_word(word)) [[likely]] {
    return {static_cast<long>(low_bits(invert_limb(static_cast<unsigned long>(word)), w))};
  }
  auto& [t0, x, t2, t3] = get_scratch();
  mpz_srcptr n = a.view_numerator(t0);
  // Each precision is half of the next one, rounded up, so that the last is w.
  std::array<unsigned long, kLimbBits> precisions;
  std::size_t num_steps = 0;
  unsigned long known = w;
  for (; known > kLimbBits; known -= known / 2)
    precisions[num_steps++] = known;
  mpz_set_ui(x, low_bits(invert_limb(mpz_get_ui(n)), known));
  while (num_steps > 0) {
    const unsigned long precision = precisions[--num_steps];
    double_precision(x, n, known, precision);
    known = precision;
  }
  return from_integer(x);
}

bool BVNumber::is_pow2(const QNumber& q, unsigned long& exponent)
{
  assert(q.sign() > 0 && "the number is positive");
  long word;
  if (q.get_word(word)) {
    if ((word & (word - 1)) != 0) return false;
    exponent = static_cast<unsigned long>(std::countr_zero(static_cast<unsigned long>(word)));
    return true;
  }
  mpz_ptr t0 = get_scratch()[0];
  mpz_srcptr z = q.view_numerator(t0);
  const mp_bitcnt_t lowest = mpz_scan1(z, 0);
  if (lowest + 1 != mpz_sizeinbase(z, 2)) return false;
  exponent = lowest;
  return true;
}

QNumber BVNumber::bit_and(const QNumber& a, const QNumber& b)
{
  long x;
  long y;
  if (a.get_word(x) && b.get_word(y)) return {x & y};
  auto& [t0, t1, t2, t3] = get_scratch();
  mpz_and(t0, a.view_numerator(t0), b.view_numerator(t1));
  return from_integer(t0);
}

QNumber BVNumber::bit_or(const QNumber& a, const QNumber& b)
{
  long x;
  long y;
  if (a.get_word(x) && b.get_word(y)) return {x | y};
  auto& [t0, t1, t2, t3] = get_scratch();
  mpz_ior(t0, a.view_numerator(t0), b.view_numerator(t1));
  return from_integer(t0);
}

QNumber BVNumber::bit_xor(const QNumber& a, const QNumber& b)
{
  long x;
  long y;
  if (a.get_word(x) && b.get_word(y)) return {x ^ y};
  auto& [t0, t1, t2, t3] = get_scratch();
  mpz_xor(t0, a.view_numerator(t0), b.view_numerator(t1));
  return from_integer(t0);
}

}  // namespace lumo
