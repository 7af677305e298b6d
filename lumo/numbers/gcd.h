#ifndef LUMO_NUMBERS_GCD_H
#define LUMO_NUMBERS_GCD_H

namespace lumo {

/// The arguments whose greatest common divisors `gcd_cache` keeps are the numbers 0 to kGcdCacheBound.
inline constexpr unsigned long kGcdCacheBound = 1023;

/// Known greatest common divisors: the one of x and y, both at most kGcdCacheBound, stands at x * 1024 + y;
/// 0 means not yet known. Shared by the whole process and not synchronised.
extern long gcd_cache[1024 * 1024];

/// `gcd` for magnitudes, y not 0; the way through Euclid's remainder chain.
[[nodiscard]] long gcd_slow(unsigned long x, unsigned long y);

/// |n|, right also for the most negative word.
[[nodiscard]] inline unsigned long magnitude(long n)
{
  return n < 0 ? -static_cast<unsigned long>(n) : static_cast<unsigned long>(n);
}

/// The greatest common divisor of |a| and |b|; gcd(0, 0) is 0 and gcd(a, 0) is |a|.
///
/// Pairs within the bound are answered from `gcd_cache`, and every such pair met on the way fills it.
/// The result must be representable: a and b are not both drawn from {0, the most negative word}, except that
/// both may be 0.
[[nodiscard]] inline long gcd(long a, long b)
{
  const unsigned long x = magnitude(a);
  const unsigned long y = magnitude(b);
  if (y == 0) return static_cast<long>(x);
  if (x <= kGcdCacheBound && y <= kGcdCacheBound) {
    const long known = gcd_cache[x * (kGcdCacheBound + 1) + y];
    if (known != 0) [[likely]]
      return known;
  }
  return gcd_slow(x, y);
}

}  // namespace lumo

#endif
