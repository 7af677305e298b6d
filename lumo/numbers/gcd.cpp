#include "lumo/numbers/gcd.h"

#include <bit>
#include <utility>

namespace lumo {

long gcd_cache[1024 * 1024];

namespace {

unsigned long euclid(unsigned long x, unsigned long y)
{
  while (y != 0) {
    const unsigned long r = x % y;
    x = y;
    y = r;
  }
  return x;
}

/// The gcd of a pair within the bound. Stores it for all pairs of the remainder chain that are not known yet.
[[gnu::cold]] unsigned long fill_table(unsigned long x, unsigned long y)
{
  const unsigned long g = euclid(x, y);
  const auto entry = static_cast<long>(g);
  while (y != 0) {
    const long known = gcd_entry(x, y).load(std::memory_order_relaxed);
    if (known != 0) return static_cast<unsigned long>(known);
    gcd_entry(x, y).store(entry, std::memory_order_relaxed);
    gcd_entry(y, x).store(entry, std::memory_order_relaxed);
    const unsigned long r = x % y;
    x = y;
    y = r;
  }
  return g;
}

/// The gcd of two numbers that are not 0, by subtractions and shifts (J. Stein; D. E. Knuth, The Art of Computer
/// Programming, vol. 2, section 4.5.2, Algorithm B). The loop has no branch that depends on which number is larger.
unsigned long binary_gcd(unsigned long x, unsigned long y)
{
  const int common_twos = std::countr_zero(x | y);
  x >>= std::countr_zero(x);
  y >>= std::countr_zero(y);
  // Both are odd, so their difference is even.
  while (x != y) {
    const int twos = std::countr_zero(x - y);
    const unsigned long difference = x < y ? y - x : x - y;
    y = x < y ? x : y;
    x = difference >> twos;
  }
  return x << common_twos;
}

}  // namespace

unsigned long gcd_slow(unsigned long x, unsigned long y)
{
  // The numbers of a chain decrease, so once a pair is within the bound, all later pairs are.
  while (x > kGcdCacheBound || y > kGcdCacheBound) {
    const unsigned long r = x % y;
    if (r == 0) return y;
    x = y;
    y = r;
  }
  const long known = gcd_entry(x, y).load(std::memory_order_relaxed);
  return known != 0 ? static_cast<unsigned long>(known) : fill_table(x, y);
}

unsigned long common_factor_slow(unsigned long x, unsigned long y)
{
  if (x <= kGcdCacheBound || y <= kGcdCacheBound) return gcd_of_magnitudes(x, y);
  // If one is much longer than the other, a division reduces it more than many subtractions do.
  constexpr unsigned kManyBits = 8;
  if (x < y) std::swap(x, y);
  if (x >> kManyBits > y) {
    x %= y;
    if (x <= kGcdCacheBound) return gcd_of_magnitudes(y, x);
  }
  return binary_gcd(x, y);
}

}  // namespace lumo
