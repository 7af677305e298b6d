#ifndef LUMO_NUMBERS_GCD_H
#define LUMO_NUMBERS_GCD_H

#include <atomic>

namespace lumo {

/// `gcd_cache` keeps the greatest common divisors of pairs of numbers from 0 to kGcdCacheBound.
inline constexpr unsigned long kGcdCacheBound = 1023;

/// Known greatest common divisors: that of x and y, both at most kGcdCacheBound, is at index x * 1024 + y;
/// 0 means not yet known.
///
/// All threads share the table. Entries are read and written as relaxed atomics: an entry goes from 0 to one value that
/// never changes, so no thread depends on the order in which it sees the entries of others.
extern long gcd_cache[1024 * 1024];

/// The entry for x and y, both at most kGcdCacheBound.
[[nodiscard]] inline std::atomic_ref<long> gcd_entry(unsigned long x, unsigned long y)
{
  return std::atomic_ref<long>(gcd_cache[x * (kGcdCacheBound + 1) + y]);
}

/// |n|; n may be LONG_MIN.
[[nodiscard]] inline unsigned long magnitude(long n)
{
  return n < 0 ? -static_cast<unsigned long>(n) : static_cast<unsigned long>(n);
}

/// `gcd_of_magnitudes` through Euclid's remainder chain; y is not 0.
[[nodiscard]] unsigned long gcd_slow(unsigned long x, unsigned long y);

/// `gcd` for numbers that are not negative.
[[nodiscard]] inline unsigned long gcd_of_magnitudes(unsigned long x, unsigned long y)
{
  if (y == 0) return x;
  if (x <= kGcdCacheBound && y <= kGcdCacheBound) {
    const long known = gcd_entry(x, y).load(std::memory_order_relaxed);
    if (known != 0) [[likely]]
      return static_cast<unsigned long>(known);
  }
  return gcd_slow(x, y);
}

/// The greatest common divisor of |a| and |b|; gcd(0, 0) is 0 and gcd(a, 0) is |a|.
///
/// Looks up pairs within the bound in `gcd_cache`, and stores the result for every such pair that it computes.
/// The result must be representable: a and b are not both from {0, the most negative word}, except that
/// both may be 0.
[[nodiscard]] inline long gcd(long a, long b)
{
  return static_cast<long>(gcd_of_magnitudes(magnitude(a), magnitude(b)));
}

/// `common_factor` without the first lookup in the table.
[[nodiscard]] unsigned long common_factor_slow(unsigned long x, unsigned long y);

/// The same number as `gcd_of_magnitudes`, in half of the time if x and y are both above kGcdCacheBound. Then it does not
/// look up the pairs of the remainder chain.
[[nodiscard]] inline unsigned long common_factor(unsigned long x, unsigned long y)
{
  if (x <= kGcdCacheBound && y <= kGcdCacheBound) {
    const long known = gcd_entry(x, y).load(std::memory_order_relaxed);
    if (known != 0) [[likely]]
      return static_cast<unsigned long>(known);
  }
  return common_factor_slow(x, y);
}

}  // namespace lumo

#endif
