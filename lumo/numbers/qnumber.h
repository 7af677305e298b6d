#ifndef LUMO_NUMBERS_QNUMBER_H
#define LUMO_NUMBERS_QNUMBER_H

#include <climits>
#include <concepts>
#include <cstddef>
#include <functional>
#include <string>
#include <type_traits>

#include <gmp.h>

namespace lumo {

/// The integer types whose every value a number can take: a word or narrower.
template <class T>
concept WordInteger = std::integral<T> && sizeof(T) <= sizeof(long);

/// The integer types of a word whose upper values a `long` cannot take.
template <class T>
concept UnsignedWord = std::unsigned_integral<T> && sizeof(T) == sizeof(long);

/// The arithmetic types whose values a word would truncate without a warning: floating-point types and integers
/// wider than a word. `std::integral` holds for `__int128` only in a compiler's GNU modes, so this does not use it.
template <class T>
concept CutByWord = std::convertible_to<T, long> && !WordInteger<T> && !std::is_enum_v<T> &&
                    !std::is_class_v<T> && !std::is_union_v<T>;

/// An exact rational number of two words, optimised for values that fit a machine word.
///
/// The small form keeps numerator and denominator in the object itself; the big form (`den == 0`) keeps them
/// in a heap block of two GMP integers. Every member preserves these invariants:
///
/// I1. The value is in lowest terms and its denominator is positive; zero is 0/1.
/// I2. A small numerator is never LONG_MIN, so that negation and magnitude of a small number cannot overflow.
/// I3. Arithmetic never turns a big value small, with one exception: a big value times a small zero becomes the
///     small zero. Copy assignment keeps a big target big, too. Both forms of a value are equal, ordered alike
///     and hash alike.
///
/// Operands and outputs of every operation may be the same object. Nothing here reports an error: a value
/// that does not fit a word moves to GMP.
///
/// Any number of threads may calculate at the same time. As with an `int`, while one thread changes a number, no
/// other may use it; any number of threads may read a number that none changes.
class QNumber
{
 public:
  /// 0
  constexpr QNumber() noexcept : num(0), den(1) {}
  /// n; small unless n is LONG_MIN.
  // NOLINTNEXTLINE(google-explicit-constructor): an integer is a rational number
  constexpr QNumber(long n) : num(n), den(1)
  {
    if (n == LONG_MIN) [[unlikely]]
      promote();
  }
  /// n; small if it fits. Narrower unsigned types fit a `long`.
  template <UnsignedWord T>
  // NOLINTNEXTLINE(google-explicit-constructor): likewise
  QNumber(T n) : num(static_cast<long>(n)), den(1)
  {
    if (n > static_cast<T>(LONG_MAX)) [[unlikely]]
      promote_unsigned(n);
  }
  template <CutByWord T>
  QNumber(T) = delete;
  /// num/den in lowest terms; small if both parts then fit (I2). den must not be 0.
  QNumber(long num, long den);
  /// The same if at least one part is an unsigned word.
  template <WordInteger Num, WordInteger Den>
  requires(UnsignedWord<Num> || UnsignedWord<Den>) QNumber(Num numerator, Den denominator) : QNumber()
  {
    set_fraction(is_negative(numerator) != is_negative(denominator), get_magnitude(numerator),
                 get_magnitude(denominator));
  }
  template <class Num, class Den>
  requires(CutByWord<Num> || CutByWord<Den>) QNumber(Num, Den)
  = delete;
  /// num/den in lowest terms; small only if both given integers fit an `int`, else big. den must not be 0.
  QNumber(mpz_srcptr num, mpz_srcptr den);

  QNumber(const QNumber& rhs) : num(rhs.num), den(rhs.den)
  {
    if (rhs.is_big()) [[unlikely]]
      copy_block(rhs);
  }
  /// The source becomes 0.
  QNumber(QNumber&& rhs) noexcept : num(rhs.num), den(rhs.den) { rhs.set_zero(); }
  /// A big target stays big and reuses its block (I3).
  QNumber& operator=(const QNumber& rhs)
  {
    if (!is_big() && !rhs.is_big()) [[likely]] {
      num = rhs.num;
      den = rhs.den;
    } else {
      assign_slow(rhs);
    }
    return *this;
  }
  /// Takes over the form of the source, which becomes 0. Self-assignment changes nothing.
  QNumber& operator=(QNumber&& rhs) noexcept
  {
    QNumber taken(static_cast<QNumber&&>(rhs));
    swap(taken);
    return *this;
  }
  ~QNumber()
  {
    if (is_big()) [[unlikely]]
      release();
  }

  void swap(QNumber& rhs) noexcept
  {
    const long rhs_num = rhs.num;
    const long rhs_den = rhs.den;
    rhs.num = num;
    rhs.den = den;
    num = rhs_num;
    den = rhs_den;
  }

  [[nodiscard]] bool is_big() const { return den == 0; }
  [[nodiscard]] bool is_int() const { return is_big() ? is_int_big() : den == 1; }
  /// Whether the denominator is 1; only for a big value.
  [[nodiscard]] bool is_int_big() const
  {
    // Most denominators are 1, which has one limb.
    mpz_srcptr d = block().den;
    return mpz_size(d) == 1 && mpz_getlimbn(d, 0) == 1;
  }
  /// -1, 0 or 1
  [[nodiscard]] int sign() const { return is_big() ? sign_big() : (num > 0) - (num < 0); }
  /// Decimal: `num`, or `num/den` if the number is not an integer.
  [[nodiscard]] std::string to_string() const;
  /// Depends only on the value, not on its form.
  [[nodiscard]] std::size_t hash() const;
  void get_numerator(mpz_ptr out) const;
  void get_denominator(mpz_ptr out) const;
  /// Returns the numerator, without a copy if possible: the number's own integer if it is big, otherwise
  /// scratch, set to it. Valid until the number or scratch changes.
  [[nodiscard]] mpz_srcptr view_numerator(mpz_ptr scratch) const;
  /// Whether the number is an integer above LONG_MIN that fits a word, in either form. If so, stores it;
  /// otherwise out is unchanged.
  [[nodiscard]] bool get_word(long& out) const
  {
    if (den == 1) [[likely]] {
      out = num;
      return true;
    }
    return is_big() && get_word_slow(out);
  }
  /// Whether I1 and I2 hold. Out-of-line members assert it; tests call it.
  [[nodiscard]] bool is_canonical() const;

  QNumber& operator+=(const QNumber& rhs)
  {
    long sum;
    if (is_usual(den == 1 && rhs.den == 1 && !__builtin_add_overflow(num, rhs.num, &sum) && sum != LONG_MIN))
    {
      num = sum;
    } else {
      add_slow(rhs);
    }
    return *this;
  }
  QNumber& operator-=(const QNumber& rhs)
  {
    long difference;
    if (is_usual(den == 1 && rhs.den == 1 && !__builtin_sub_overflow(num, rhs.num, &difference) &&
                 difference != LONG_MIN))
    {
      num = difference;
    } else {
      sub_slow(rhs);
    }
    return *this;
  }
  QNumber& operator*=(const QNumber& rhs)
  {
    long product;
    if (is_usual(den == 1 && rhs.den == 1 && !__builtin_mul_overflow(num, rhs.num, &product) &&
                 product != LONG_MIN))
    {
      num = product;
    } else {
      mul_slow(rhs);
    }
    return *this;
  }

  /// Integer quotient q and remainder r of this number by d; both must be integers, and d not 0.
  ///
  /// Two small operands divide as machine words do: truncated toward zero, the remainder with the sign of the
  /// dividend. If an operand is big, the quotient is rounded toward minus infinity, and the remainder
  /// has the sign of the divisor. The difference is intended; it does not affect non-negative operands.
  /// Small operands leave small outputs small and big outputs big; otherwise both outputs are big. q and r
  /// may be this number or d; if q and r are one object, it receives the remainder.
  void divmod(const QNumber& d, QNumber& q, QNumber& r) const
  {
    if (!is_big() && !d.is_big() && !q.is_big() && !r.is_big()) [[likely]] {
      const long quotient = num / d.num;
      const long remainder = num % d.num;
      q.num = quotient;
      q.den = 1;
      r.num = remainder;
      r.den = 1;
    } else {
      divmod_slow(d, q, r);
    }
  }

  friend bool operator==(const QNumber& lhs, const QNumber& rhs)
  {
    if (!lhs.is_big() && !rhs.is_big()) [[likely]]
      return lhs.num == rhs.num && lhs.den == rhs.den;
    return equal_slow(lhs, rhs);
  }
  friend bool operator<(const QNumber& lhs, const QNumber& rhs)
  {
    if (lhs.den == 1 && rhs.den == 1) [[likely]]
      return lhs.num < rhs.num;
    return less_slow(lhs, rhs);
  }

  /// Stores a * b and returns false; if |a * b| exceeds LONG_MAX, returns true and leaves res unchanged.
  [[nodiscard]] static bool mul_overflow(long& res, long a, long b)
  {
    long product;
    if (__builtin_mul_overflow(a, b, &product) || product == LONG_MIN) return true;
    res = product;
    return false;
  }
  /// Stores a / b, truncated toward zero, and returns false; for LONG_MIN / -1 returns true and leaves res
  /// unchanged. b must not be 0.
  [[nodiscard]] static bool div_overflow(long& res, long a, long b)
  {
    if (a == LONG_MIN && b == -1) return true;
    res = a / b;
    return false;
  }

  /// Scratch integers of the big paths, one set for each thread. They are initialised whenever a thread uses them, also
  /// before and after `main`, and any operation on numbers may change them; their memory is freed when the thread ends.
  static thread_local mpz_t gmp_tmp[4];

 private:
  struct Block
  {
    mpz_t num;
    mpz_t den;
  };
  static_assert(sizeof(long) == sizeof(void*), "the big form keeps a pointer in a word");

  /// Whether the second operand of a sum is added or subtracted.
  enum class Addend
  {
    kAdded,
    kSubtracted
  };

  /// Returns the condition, and lays out the code for it, more strongly than [[likely]] does, at the cost of the
  /// other case.
  [[nodiscard]] static bool is_usual(bool condition)
  {
    return __builtin_expect_with_probability(static_cast<long>(condition), 1, 0.9999) != 0;
  }
  [[nodiscard]] Block& block() const { return *reinterpret_cast<Block*>(num); }
  /// Become 0 without freeing anything.
  void set_zero() noexcept
  {
    num = 0;
    den = 1;
  }
  template <WordInteger T>
  [[nodiscard]] static constexpr bool is_negative(T n)
  {
    return std::is_signed_v<T> && static_cast<long>(n) < 0;
  }
  template <WordInteger T>
  [[nodiscard]] static constexpr unsigned long get_magnitude(T n)
  {
    return is_negative(n) ? -static_cast<unsigned long>(n) : static_cast<unsigned long>(n);
  }
  /// Become n/d or -n/d in lowest terms; the number owns nothing before.
  void set_fraction(bool negative, unsigned long n, unsigned long d);
  /// Become big with the same value. Precondition: small; the numerator may be LONG_MIN (the exception to I2).
  [[gnu::cold]] void promote();
  /// Become big with the given value; the number owns nothing before.
  [[gnu::cold]] void promote_unsigned(unsigned long n);
  /// Become big with fresh integers of value 0/1; the number owns nothing before.
  Block& adopt_fresh_block();
  /// Become a big number with a block of its own; the number owns nothing before.
  void copy_block(const QNumber& rhs);
  /// Free the block; the words are invalid afterwards.
  void release() noexcept;
  void assign_slow(const QNumber& rhs);
  /// Bring a big number to lowest terms with a positive denominator.
  void normalise_big();
  [[nodiscard]] int sign_big() const { return mpz_sgn(block().num); }
  [[nodiscard]] bool get_word_slow(long& out) const;

  void add_slow(const QNumber& rhs);
  void sub_slow(const QNumber& rhs);
  void mul_slow(const QNumber& rhs);
  void divmod_slow(const QNumber& d, QNumber& q, QNumber& r) const;
  static bool equal_slow(const QNumber& lhs, const QNumber& rhs);
  static bool less_slow(const QNumber& lhs, const QNumber& rhs);

  /// These compute in words and return false, the number unchanged, if a word does not suffice.
  template <Addend kAddend>
  [[nodiscard]] bool add_small(long yn, long yd);
  [[nodiscard]] bool mul_small(long yn, long yd);
  template <Addend kAddend>
  void add_general(const QNumber& rhs);
  /// Precondition: this number is big; the operand is big, or the small yn/yd. The paths for fractions are
  /// functions of their own, so that integers do not pay for their registers.
  template <Addend kAddend>
  void add_big(const QNumber& rhs);
  template <Addend kAddend>
  [[gnu::noinline]] void add_fraction(const Block& y);
  template <Addend kAddend>
  void add_word(long yn, long yd);
  void mul_big(const QNumber& rhs);
  [[gnu::noinline]] void mul_fraction(const Block& y);
  void mul_word(long yn, long yd);

  /// Whether lhs < rhs, by cross-multiplication. Precondition: at least one is big, and either both are negative, or
  /// lhs is not negative and rhs is positive.
  static bool less_big(const QNumber& lhs, const QNumber& rhs);

  long num;  ///< small: the numerator; big: the address of the block
  long den;  ///< small: the denominator, positive; big: 0
};

static_assert(sizeof(QNumber) == 16, "a number is two words");

[[nodiscard]] inline QNumber operator+(const QNumber& lhs, const QNumber& rhs)
{
  QNumber result(lhs);
  result += rhs;
  return result;
}

[[nodiscard]] inline QNumber operator-(const QNumber& lhs, const QNumber& rhs)
{
  QNumber result(lhs);
  result -= rhs;
  return result;
}

[[nodiscard]] inline QNumber operator*(const QNumber& lhs, const QNumber& rhs)
{
  QNumber result(lhs);
  result *= rhs;
  return result;
}

// operator!= follows from operator== by the language's rules.
[[nodiscard]] inline bool operator>(const QNumber& lhs, const QNumber& rhs) { return rhs < lhs; }
[[nodiscard]] inline bool operator<=(const QNumber& lhs, const QNumber& rhs) { return !(rhs < lhs); }
[[nodiscard]] inline bool operator>=(const QNumber& lhs, const QNumber& rhs) { return !(lhs < rhs); }

inline void swap(QNumber& lhs, QNumber& rhs) noexcept { lhs.swap(rhs); }

}  // namespace lumo

/// Equal numbers hash alike, whatever their form.
template <>
struct std::hash<lumo::QNumber>
{
  std::size_t operator()(const lumo::QNumber& q) const { return q.hash(); }
};

#endif
