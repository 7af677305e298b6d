#ifndef LUMO_NUMBERS_BVNUMBER_H
#define LUMO_NUMBERS_BVNUMBER_H

#include "lumo/numbers/qnumber.h"

namespace lumo {

/// Helpers for numbers that are read as bit patterns. A pattern of width w is an integer in [0, 2^w - 1];
/// widths and positions count bits. Arguments are integers, and not negative unless a function says so. Results
/// are small if their magnitude is below 2^63, and otherwise big, whatever the form of the arguments.
struct BVNumber
{
  /// 2^w; small for w <= 62, else big.
  [[nodiscard]] static QNumber pow2(unsigned long w)
  {
    if (w <= kWordWidth) [[likely]]
      return QNumber(1L << w);
    return pow2_slow(w);
  }

  /// The integer z, which may be negative.
  [[nodiscard]] static QNumber from_integer(mpz_srcptr z);

  /// The pattern of width w that q stands for: q modulo 2^w, also for a negative q.
  [[nodiscard]] static QNumber reduce(const QNumber& q, unsigned long w)
  {
    long word;
    if (w <= kWordWidth && q.get_word(word)) [[likely]]
      return QNumber(word & ((1L << w) - 1));
    return reduce_slow(q, w);
  }
  /// Whether q lies in [0, 2^w - 1].
  [[nodiscard]] static bool is_pattern(const QNumber& q, unsigned long w)
  {
    long word;
    if (q.get_word(word)) [[likely]]
      return word >= 0 && (w > kWordWidth || word >> w == 0);
    return is_pattern_slow(q, w);
  }
  /// 2^w - 1 - q, for a pattern q of width w: the bitwise complement.
  [[nodiscard]] static QNumber complement(const QNumber& q, unsigned long w)
  {
    long word;
    // GCOVR_EXCL_BR_START: a pattern of this width is a word
    if (w <= kWordWidth && q.get_word(word)) [[likely]]
      return QNumber(word ^ ((1L << w) - 1));
    // GCOVR_EXCL_BR_STOP
    return complement_slow(q, w);
  }
  /// The concatenation of a pattern of any width and a pattern of width w.
  [[nodiscard]] static QNumber concatenate(const QNumber& high, const QNumber& low, unsigned long w);
  /// The w bits of a pattern from bit lsb upwards
  [[nodiscard]] static QNumber extract(const QNumber& q, unsigned long lsb, unsigned long w);
  /// A pattern of width w rotated to the left by k bits; k is at most w.
  [[nodiscard]] static QNumber rotate_left(const QNumber& q, unsigned long k, unsigned long w);
  /// q * 2^k
  [[nodiscard]] static QNumber shift_left(const QNumber& q, unsigned long k);
  /// The integer part of q / 2^k
  [[nodiscard]] static QNumber shift_right(const QNumber& q, unsigned long k);
  /// Bit i of q, counted from 0
  [[nodiscard]] static bool is_bit_set(const QNumber& q, unsigned long i);

  /// The inverse of an odd a modulo 2^w, in [0, 2^w); w is at least 1.
  ///
  /// Newton's iteration x := x * (2 - a * x), each step of which doubles the number of correct low bits
  /// (R. P. Brent and P. Zimmermann, Modern Computer Arithmetic, section 1.6.1).
  [[nodiscard]] static QNumber invert_odd(const QNumber& a, unsigned long w);
  /// Whether q is a power of two; if so, stores its exponent. q is at least 1.
  [[nodiscard]] static bool is_pow2(const QNumber& q, unsigned long& exponent);

  [[nodiscard]] static QNumber bit_and(const QNumber& a, const QNumber& b);
  [[nodiscard]] static QNumber bit_or(const QNumber& a, const QNumber& b);
  [[nodiscard]] static QNumber bit_xor(const QNumber& a, const QNumber& b);

 private:
  /// The largest w for which 2^w is a small number.
  static constexpr unsigned long kWordWidth = 62;

  static QNumber pow2_slow(unsigned long w);
  static QNumber reduce_slow(const QNumber& q, unsigned long w);
  static bool is_pattern_slow(const QNumber& q, unsigned long w);
  static QNumber complement_slow(const QNumber& q, unsigned long w);
};

}  // namespace lumo

#endif
