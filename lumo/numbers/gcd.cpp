#include "lumo/numbers/gcd.h"

namespace lumo {

long gcd_cache[1024 * 1024];

namespace {

constexpr unsigned long kRowLength = kGcdCacheBound + 1;

long euclid(unsigned long x, unsigned long y)
{
  while (y != 0) {
    const unsigned long r = x % y;
    x = y;
    y = r;
  }
  return static_cast<long>(x);
}

/// The gcd of a pair within the bound, which is entered for all pairs of its chain that are not known yet.
[[gnu::cold]] long fill_table(unsigned long x, unsigned long y)
{
  const long g = euclid(x, y);
  while (y != 0) {
    long& entry = gcd_cache[x * kRowLength + y];
    if (entry != 0) return entry;
    entry = g;
    gcd_cache[y * kRowLength + x] = g;
    const unsigned long r = x % y;
    x = y;
    y = r;
  }
  return g;
}

}  // namespace

long gcd_slow(unsigned long x, unsigned long y)
{
  // The numbers of a chain fall, so once a pair is within the bound the rest of them are.
  while (x > kGcdCacheBound || y > kGcdCacheBound) {
    const unsigned long r = x % y;
    if (r == 0) return static_cast<long>(y);
    x = y;
    y = r;
  }
  const long known = gcd_cache[x * kRowLength + y];
  return known != 0 ? known : fill_table(x, y);
}

}  // namespace lumo
