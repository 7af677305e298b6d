#include "numbers/gcd.h"

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

}  // namespace

long gcd_slow(unsigned long x, unsigned long y)
{
  // All pairs of one chain share their gcd, so it is computed at most once, on the first miss; the chain is
  // walked on only to fill the table, and ends at the first pair that is known.
  long g = 0;
  for (;;) {
    if (x <= kGcdCacheBound && y <= kGcdCacheBound) {
      long& entry = gcd_cache[x * kRowLength + y];
      if (entry != 0) return entry;
      if (g == 0) g = euclid(x, y);
      entry = g;
      gcd_cache[y * kRowLength + x] = g;
    }
    const unsigned long r = x % y;
    if (r == 0) return static_cast<long>(y);
    x = y;
    y = r;
  }
}

}  // namespace lumo
